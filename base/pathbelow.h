// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace luma {

/// Paths by their bytes alone.
///
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

/// What stands in front of the last slash of `path`; empty where there is none.
inline std::string_view folderPart(std::string_view path)
{
    const std::size_t slash = path.rfind('/');
    return path.substr(0, slash == std::string_view::npos ? 0 : slash);
}

/// What stands behind the last slash of `path`; all of it where there is none.
inline std::string_view namePart(std::string_view path)
{
    return path.substr(path.rfind('/') + 1);
}

} // namespace luma
