// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/syncrow.h"

#include "base/ascii.h"

#include <algorithm>
#include <array>

namespace luma {

bool isPage(std::string_view path)
{
    constexpr auto extensions =
        std::to_array<std::string_view>({"html", "htm", "xhtml", "xht", "shtml", "php", "xml"});
    const std::string_view name = path.substr(path.rfind('/') + 1);
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos)
        return false;
    return isOneOf(name.substr(dot + 1), extensions);
}

std::vector<std::size_t> transferOrder(const std::vector<SyncRow>& rows)
{
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].select && rows[i].mode != SyncMode::RsyncDelete)
            order.push_back(i);
    }
    std::stable_partition(order.begin(), order.end(),
                          [&rows](std::size_t row) { return !isPage(rows[row].relativePath); });
    return order;
}

} // namespace luma
