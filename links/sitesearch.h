// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/stillwanted.h"
#include "links/linkplan.h"
#include "links/textfinder.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace luma {

/// What the user looks for in the files of a site.
struct SiteQuery
{
    TextQuery text;
    SearchedText searched = SearchedText::Shown; // style sheets and scripts show no text
    bool inPages = true;
    bool inStyleSheets = true;
    bool inScripts = true;
    std::string folder; // the subpath of the only one that is searched; empty for the whole site
};

/// A file in which something was found, or that could not be searched.
struct SearchedFile
{
    std::string path; // subpath
    std::string hash; // hashOfFile()
    std::vector<FoundText> found;
    std::string problem;
};

using SearchedFileSink = std::function<void(SearchedFile&& file)>;

/// Searches a site's files as they are on the disk, and gives those with something in them, in the byte order of their
/// subpaths. Uses all cores. False if it was stopped. Error: the query is none, or the site can't be read.
Result<bool> searchSite(const std::filesystem::path& site, const SiteQuery& query,
                        const SearchedFileSink& sink, const StillWanted& stillWanted = {});

/// Places of a file that are to be replaced.
struct WantedPlaces
{
    std::string path; // subpath
    std::string hash; // of the file in which they were found
    std::vector<bool> isWanted;
};

/// Plans to replace these places, which searchSite() has found. Problems are files that have changed since, or whose text can't
/// be replaced; the plan does without them. Error: as searchSite().
Result<LinkPlan> planReplacement(const std::filesystem::path& site, const SiteQuery& query,
                                 const QString& replacement, const std::vector<WantedPlaces>& places,
                                 const StillWanted& stillWanted = {});

} // namespace luma
