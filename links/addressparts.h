// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/linkplaces.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace luma {

/// A stretch of a text.
struct TextRange
{
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// Where the addresses stand in an attribute's decoded value that is a list, image candidates or a refresh (see
/// LinkSyntax). Any thread.
std::vector<TextRange> addressesIn(std::string_view value, LinkSyntax syntax);

} // namespace luma
