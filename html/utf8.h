// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace luma::html {

/// Whether the bytes are well-formed UTF-8 (RFC 3629): no overlong forms, no surrogates, nothing beyond
/// U+10FFFF.
bool isUtf8(std::string_view bytes);

/// The length in bytes of the character that `bytes` begin with; 0 when they begin with none.
std::size_t characterLength(std::string_view bytes);
/// The code point of one well-formed character.
char32_t codePoint(std::string_view character);
void appendCharacter(char32_t codePoint, std::string& text);

} // namespace luma::html
