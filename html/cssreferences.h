// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/ascii.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// Whether a name goes on with this byte of UTF-8 (CSS Syntax 3, 4.2, "ident code point").
inline bool isCssNameByte(char c)
{
    return isAsciiAlphanumeric(c) || c == '-' || c == '_' || static_cast<unsigned char>(c) >= 0x80;
}

/// How a style sheet writes an address: between quotes, or bare in url(...).
enum class CssQuotes : std::uint8_t { None, Single, Double };

/// An address in a style sheet: the bytes from `begin` to `end` of the source, without quotes, escapes as written.
struct CssReference
{
    std::size_t begin = 0;
    std::size_t end = 0;
    CssQuotes quotes = CssQuotes::None;
    bool isImport = false; // of @import, so that it leads to a style sheet
};

/// The addresses of a style sheet, of a style element's content or of a style attribute's value, in their order:
/// url(...), src(...), the strings of @import and of image-set() (CSS Syntax 3, 4.3; CSS Values 4, "URLs"). Those
/// of @namespace are names, not addresses, and are left out. `source` is any bytes in an encoding that holds
/// ASCII. Any thread.
std::vector<CssReference> cssReferences(std::string_view source);

/// The text that a reference's bytes stand for, escapes replaced (CSS Syntax 3, 4.3.7).
std::string decodedCss(std::string_view raw);

/// `text` as it may stand in a reference written with `quotes`.
std::string encodedCss(std::string_view text, CssQuotes quotes);

/// A name as an identifier, escaped where it must be (CSSOM, 2.1, serialise an identifier).
std::string cssIdentifier(std::string_view text);

} // namespace luma
