// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// UTF-8 after RFC 3629: overlong forms, surrogates and code points above U+10FFFF are not valid.
namespace luma {

/// U+FEFF in UTF-8, which may stand at the start of a text.
inline constexpr std::string_view utf8ByteOrderMark = "\xEF\xBB\xBF";

bool isValidUtf8(std::string_view bytes);

/// Whether `c` is the second or a later byte of a character.
constexpr bool isUtf8Continuation(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

/// The length in bytes of the character at the start of `bytes`; 0 if no valid character starts there.
std::size_t characterLength(std::string_view bytes);

/// The code point of `character`, which must be exactly one valid character.
char32_t codePoint(std::string_view character);

/// How many bytes two texts share at their start, and at their end; whole characters.
std::size_t sharedPrefix(std::string_view a, std::string_view b);
std::size_t sharedSuffix(std::string_view a, std::string_view b);

/// Appends the UTF-8 form of `codePoint`, which must be a Unicode scalar value.
void appendUtf8(std::string& text, char32_t codePoint);

/// The code points of valid UTF-8, each with Unicode simple case folding applied, for comparing text
/// regardless of letter case.
std::u32string caseFoldedCodePoints(std::string_view text);

/// The same as UTF-8; invalid bytes are kept unchanged.
std::string caseFolded(std::string_view text);

} // namespace luma
