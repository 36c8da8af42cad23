// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/stillwanted.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace luma {

/// What the report on unlinked items calls while it runs, on the calling thread but for stillWanted. All may
/// be empty.
struct UnlinkedItemsCallbacks
{
    /// The file being examined.
    std::function<void(const std::string& subpath)> examining;
    /// An unlinked file, in the byte order of the subpaths. Rows arrive only after the scan of all files; those
    /// delivered before a stop are valid.
    std::function<void(const std::string& subpath)> row;
    StillWanted stillWanted;
};

/// Finds the files of a site that no file of it refers to, as LinkedFile decides. Every file is read once; only
/// for names with characters special to regular expressions are style elements and style sheets read again.
///
/// `excludedFolders` are folders at the top of the site, separated by commas, each a regular expression with
/// letter case ignored (taken literally if it is invalid). Files below them are not reported, but their links
/// count. False when the report was stopped. Error: the site's folder can't be read.
Result<bool> findUnlinkedItems(const std::filesystem::path& site, std::string_view excludedFolders,
                               const UnlinkedItemsCallbacks& callbacks);

} // namespace luma
