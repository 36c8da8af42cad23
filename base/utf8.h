// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace luma {

/// Whether `bytes` are UTF-8 as RFC 3629 has it: no overlong form, no surrogate, nothing above U+10FFFF.
bool isValidUtf8(std::string_view bytes);

/// Appends the UTF-8 form of `codePoint`, which is a Unicode scalar value.
void appendUtf8(std::string& text, char32_t codePoint);

/// The code points of valid UTF-8, each folded to the one it is compared by when letter case does not count
/// (Unicode simple case folding).
std::u32string caseFoldedCodePoints(std::string_view text);

/// The same as UTF-8; bytes that are none come back as they are.
std::string caseFolded(std::string_view text);

/// ASCII letters in lower case, every other byte as it is.
constexpr char asciiLower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
}

/// Whether the two are equal but for the case of ASCII letters.
bool equalIgnoringAsciiCase(std::string_view a, std::string_view b);

} // namespace luma
