// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/pathbelow.h"

namespace luma {

std::optional<std::string_view> pathBelow(std::string_view path, std::string_view folder)
{
    if (folder.empty())
        return {};
    while (folder.ends_with('/'))
        folder.remove_suffix(1);
    if (!path.starts_with(folder))
        return {};
    path.remove_prefix(folder.size());
    // The root, now empty, holds absolute paths only.
    if (path.empty() ? folder.empty() : path.front() != '/')
        return {};
    while (path.starts_with('/'))
        path.remove_prefix(1);
    return path;
}

} // namespace luma
