// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string_view>

namespace luma {

/// Whether a path lies in a folder is decided by the bytes of the two names alone: the disk is not read,
/// letter case counts, and neither ".", ".." nor symbolic links are resolved. Slashes at the end of the folder
/// make no difference. An empty folder holds nothing.

/// The rest of `path` below `folder`, without slashes in front; empty for the folder itself; nothing for a
/// path outside. Points into `path`.
std::optional<std::string_view> pathBelow(std::string_view path, std::string_view folder);

/// True for the folder itself and for all below it.
inline bool isAtOrBelow(std::string_view path, std::string_view folder)
{
    return pathBelow(path, folder).has_value();
}

} // namespace luma
