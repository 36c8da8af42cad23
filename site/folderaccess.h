// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/filedescriptor.h"
#include "base/result.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace luma {

/// Folders reached from a site's own folder downwards, one open descriptor at a time, so that a path may be
/// longer than the system takes in one call and no symbolic link below the site's folder is ever followed,
/// whoever puts one there meanwhile. Safe on any thread. On failure the descriptor is empty and errno says
/// why.

/// The folder itself; a link to it is followed, for that is what the user chose.
FileDescriptor openSiteFolder(const std::filesystem::path& folder);

/// The folder at `relativePath` below `root`, empty for `root` itself. A link on the way is ELOOP, and what
/// is no folder ENOTDIR.
FileDescriptor openFolderBelow(const FileDescriptor& root, std::string_view relativePath);

/// The system's words for `code`, an errno.
std::string systemReason(int code);

} // namespace luma
