// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/filedescriptor.h"
#include "base/result.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace luma {

/// Opens folders from a site's own folder downwards, one descriptor at a time, so that a path may be longer
/// than the system takes in one call and no symbolic link below the site's folder is followed, even one made
/// meanwhile. Safe on any thread. Errors carry the system's code.

/// The site's folder itself; a link to it is followed, because the user chose it.
Result<FileDescriptor> openSiteFolder(const std::filesystem::path& folder);

/// The folder at `relativePath` below `root`; an empty path opens `root` itself. Errors: a link on the way is
/// too_many_symbolic_link_levels, anything else that is not a folder not_a_directory.
Result<FileDescriptor> openFolderBelow(const FileDescriptor& root, std::string_view relativePath);

/// What the user may still write to the disk of an open folder, in bytes; none where the file system doesn't
/// say.
std::optional<std::int64_t> freeBytesAt(const FileDescriptor& folder);

/// An open folder's entry as a path that stays right when the folder is moved or replaced by a link (proc(5),
/// /proc/self/fd).
std::filesystem::path entryOf(const FileDescriptor& folder, const std::string& name);

} // namespace luma
