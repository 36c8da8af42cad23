// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/stillwanted.h"
#include "links/webrules.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <vector>

namespace luma {

class SiteLinks;

/// Links that would lead nowhere without some items.
struct LostLinks
{
    std::size_t links = 0;
    std::size_t pages = 0; // that have them
};

/// Counts the links of `site` that lead to the items (absolute paths), or to something below them, but for those of the items'
/// own pages and of pages that can't be written. `keptLinks`, what is kept of the site's links, saves reading it; may be null.
/// Error: the site can't be read, or the job was stopped (isStopped()).
Result<LostLinks> countLinksTo(const std::filesystem::path& site,
                               const std::vector<std::filesystem::path>& items, const WebRules& rules,
                               const std::shared_ptr<SiteLinks>& keptLinks,
                               const StillWanted& stillWanted = {});

} // namespace luma
