// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/stillwanted.h"

#include <filesystem>

namespace luma {

class SiteFolder;

/// Copies a picture into the site, for its page: into a folder beside the page, or else in the site's folder, that is named
/// as folders of pictures are ("images"), or else beside the page. Gives the copy's path. A file of that name is never
/// replaced: the same picture is used, beside another one the copy gets a number. Any thread.
Result<std::filesystem::path> copyPictureIntoSite(const std::filesystem::path& picture,
                                                  const SiteFolder& site, const StillWanted& stillWanted);

} // namespace luma
