// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/stillwanted.h"
#include "links/linkchecker.h"
#include "links/sitetree.h"

#include <filesystem>
#include <functional>
#include <string>

namespace luma {

/// Receives the findings of one page.
using FindingsSink = std::function<void(const PageFindings& page)>;

/// Receives a path relative to the site's folder.
using SubpathSink = std::function<void(const std::string& subpath)>;

/// The links of one page. For anything but a page isPage is false and there are none.
PageFindings findLinksFrom(const std::filesystem::path& page);

/// Delivers every page of the site with its links, in the byte order of the subpaths, on the calling thread;
/// with FindingsKept::Missing only missing links and only pages that have one. False when the report was
/// stopped. Error: the site's folder can't be read.
Result<bool> findMissingLinks(const std::filesystem::path& site, FindingsKept kept, const FindingsSink& page,
                              const StillWanted& stillWanted = {});

/// Delivers every file of the site that refers to `target`, as LinkedFile decides, in the byte order of the
/// subpaths, on the calling thread. False when the report was stopped. Error: the site's folder can't be read.
Result<bool> findLinksTo(const std::filesystem::path& site, const std::filesystem::path& target,
                         const SubpathSink& subpath, const StillWanted& stillWanted = {});

} // namespace luma
