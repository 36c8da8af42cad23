// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/relativepath.h"

#include <string_view>

namespace luma {

std::string pathBelow(const std::filesystem::path& folder, const std::filesystem::path& item)
{
    std::string_view prefix = folder.native();
    while (prefix.ends_with('/'))
        prefix.remove_suffix(1);
    std::string_view rest = item.native();
    if (!rest.starts_with(prefix))
        return {};
    rest.remove_prefix(prefix.size());
    if (!rest.starts_with('/'))
        return {};
    return std::string(rest.substr(
        rest.find_first_not_of('/') == std::string_view::npos ? rest.size() : rest.find_first_not_of('/')));
}

} // namespace luma
