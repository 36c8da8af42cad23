// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/dottednames.h"

#include <algorithm>

namespace luma {

void DottedNames::add(std::u32string name, std::uint32_t number)
{
    std::u32string shape = name;
    std::replace_if(
        shape.begin(), shape.end(), [](char32_t c) { return c != U'.'; }, U'x');
    m_shapes[shape][std::move(name)].push_back(number);
}

} // namespace luma
