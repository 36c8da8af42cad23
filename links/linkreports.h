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

/// A line of a report with its line feed.
using LineSink = std::function<void(std::string_view line)>;

/// Gets the findings of one page.
using FindingsSink = std::function<void(const PageFindings& page)>;

/// Gets a path relative to the site's folder.
using SubpathSink = std::function<void(const std::string& subpath)>;

/// The links of one page, in the order of the report; of what is no page: none, and isPage is false.
PageFindings findLinksFrom(const std::filesystem::path& page);

/// The same as lines of text. Reports nothing for what is no page.
void listLinksFrom(const std::filesystem::path& page, const LineSink& line);

/// Hands on every page of the site with its links, in the byte order of the subpaths, on the calling thread;
/// with FindingsKept::Missing only missing links, and only pages that have one. False when it was no longer
/// wanted. Error: the site's folder can't be read.
Result<bool> findMissingLinks(const std::filesystem::path& site, FindingsKept kept, const FindingsSink& page,
                              const StillWanted& stillWanted = {});

/// Hands on every file of the site that refers to `target` (isLinkedFromSite), in the byte order of the
/// subpaths, on the calling thread. False when it was no longer wanted. Error: the site's folder can't be
/// read.
Result<bool> findLinksTo(const std::filesystem::path& site, const std::filesystem::path& target,
                         const SubpathSink& subpath, const StillWanted& stillWanted = {});

} // namespace luma
