// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// Where a run of text stands; the standard reads an unterminated named reference differently in the first two, and knows
/// none in raw text (script, style).
enum class ReferenceContext { Text, AttributeValue, RawText };

/// Decodes `raw`, a piece of HTML source in UTF-8: replaces character references (HTML standard, 13.2.5.72 and
/// following), turns line ends into line feeds and, in attribute values, NUL into U+FFFD.
std::string decodeCharacters(std::string_view raw, ReferenceContext context);

/// Whether decodeCharacters would change anything.
bool needsDecoding(std::string_view raw);

/// A place in a stretch of source between two characters: bytes into it as written, and decoded.
struct ValueBoundary
{
    std::size_t raw = 0;
    std::size_t decoded = 0;
};

/// Every such place in `raw`, from its begin to its end. Bytes of one character are told apart.
std::vector<ValueBoundary> valueBoundaries(std::string_view raw,
                                           ReferenceContext context = ReferenceContext::AttributeValue);

/// The names of the references whose text shares a byte with `characters`, with a semicolon where one is
/// required.
std::vector<std::string> namedReferencesFor(std::string_view characters);

} // namespace luma
