// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/utf8.h"

#include <algorithm>
#include <string_view>

namespace luma {

/// Whether `name` is, letter case ignored, one of the names in `list`.
template <class List>
bool isOneOf(std::string_view name, const List& list)
{
    return std::any_of(list.begin(), list.end(),
                       [name](std::string_view entry) { return equalIgnoringAsciiCase(name, entry); });
}

/// Elements without content and end tag (HTML standard, 13.1.2).
bool isVoidElement(std::string_view name);

} // namespace luma
