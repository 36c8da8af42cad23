// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

namespace luma {

/// One item of a folder on a share; of its status only type, mode, size and time of modification are set.
struct ShareItem
{
    std::string name; ///< bytes
    struct stat status;
    std::string target; ///< a link's, as bytes
};

/// Lists a folder on a share with all attributes in one request, where the file system takes one for each item.
/// Blocks; any thread. Errors carry the system's code.
using ShareLister = Result<std::vector<ShareItem>> (*)(const std::filesystem::path& folder);

/// The lister for a local path in gvfs' folder; null for every other path, and in a process that mounts nothing.
ShareLister shareListerFor(const std::filesystem::path& folder);

/// Told by the mounter, so that programs without one don't need GIO.
void setShareLister(ShareLister lister);

} // namespace luma
