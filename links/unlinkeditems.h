// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/stillwanted.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace luma {

/// What the report on unlinked items tells while it runs, on the calling thread. Either may be empty.
struct UnlinkedItemsCallbacks
{
    /// The file that is being looked through.
    std::function<void(const std::string& subpath)> examining;
    /// An unlinked file, in the byte order of the subpaths. Before all files have been looked through nobody
    /// knows of one; rows that came before a stop are right.
    std::function<void(const std::string& subpath)> row;
    StillWanted stillWanted;
};

/// Finds the files of a site that no file of it refers to, in the sense of isLinkedFromSite. Every file is
/// read once (but for those with characters special to regular expressions in their names, which are asked
/// for one by one when nothing else speaks for them).
///
/// `excludedFolders` are names with commas between, regular expressions with letter case ignored: what is
/// below such a folder at the top of the site is not reported, though its links count. One that is no valid
/// expression is taken literally. False when it was no longer wanted. Error: the site's folder can't be read.
Result<bool> findUnlinkedItems(const std::filesystem::path& site, std::string_view excludedFolders,
                               const UnlinkedItemsCallbacks& callbacks);

} // namespace luma
