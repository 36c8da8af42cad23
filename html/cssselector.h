// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace luma::html {

class Element;

/// See `Element::cssSelector`.
std::string cssSelector(const Element& element);

/// The text as a CSS identifier, escaped where needed (CSSOM, 2.1, serialise an identifier).
std::string escapedIdentifier(std::string_view text);

} // namespace luma::html
