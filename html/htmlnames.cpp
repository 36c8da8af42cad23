// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/htmlnames.h"

#include <array>

namespace luma {

bool isVoidElement(std::string_view name)
{
    // The four at the end are old: parsers treat them so all the same.
    static constexpr auto names = std::to_array<std::string_view>(
        {"area", "base", "br", "col", "embed", "hr", "img", "input", "link", "meta", "source", "track", "wbr",
         "param", "keygen", "bgsound", "basefont", "frame", "image"});
    return isOneOf(name, names);
}

} // namespace luma
