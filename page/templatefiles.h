// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/stillwanted.h"

#include <filesystem>
#include <string>
#include <vector>

namespace luma {

/// What a new page is made from.
struct PageTemplate
{
    std::filesystem::path page; // empty: the usual template
    /// The files below this folder that the page uses are copied into the site; empty: none are.
    std::filesystem::path folder = {};
};

/// The files that a template page brings into a site, once they are there.
struct CopiedFiles
{
    std::string page; // the template's bytes, with its links right for "Untitled.html" in the site's folder
    std::vector<std::filesystem::path> made;  // files, and the folders that they needed
    std::vector<std::filesystem::path> found; // files that were there already
};

/// The files that the template takes to be shown, and those that it links to that are no pages: absolute paths, without the
/// page itself. Reads the whole folder of templates. Any thread. Error: the page or its folder can't be read.
Result<std::vector<std::filesystem::path>> filesOfTemplate(const PageTemplate& from);

/// Copies them into `site`. A file keeps the folder that it has below the folder of templates; one that lies right in that goes
/// into the site's folder for its kind, as a dropped picture does (folderForFile()). No file is replaced: an equal one is used,
/// beside another one the copy gets a number. In style sheets the links change with the places. Nothing is taken that lies
/// outside the folder of templates, be it by a symbolic link. Other links keep their place as seen from the folder
/// of templates, which stands for the site's; those that lead out of it lead to the same files. Any thread. Error: a file can't
/// be copied, or they are more than a page needs, or the job was stopped (isStopped()); then nothing has been made.
Result<CopiedFiles> copyTemplateFiles(const PageTemplate& from, const std::filesystem::path& site,
                                      const StillWanted& stillWanted);

/// Removes what was made, in reverse; a folder only if it is empty.
void removeMade(const std::vector<std::filesystem::path>& made);

} // namespace luma
