// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// Where a run of text stands; the standard reads an unterminated named reference differently in the two.
enum class ReferenceContext { Text, AttributeValue };

/// The text that `raw`, a stretch of HTML source in UTF-8, stands for: character references replaced (HTML
/// standard, 13.2.5.72 and following), line ends made line feeds, and in attribute values NUL made U+FFFD.
std::string decodeCharacters(std::string_view raw, ReferenceContext context);

/// Whether decodeCharacters would change anything.
bool needsDecoding(std::string_view raw);

/// A place in an attribute's value between two characters: bytes into it as written, and decoded.
struct ValueBoundary
{
    std::size_t raw = 0;
    std::size_t decoded = 0;
};

/// Every such place in `raw`, from its begin to its end.
std::vector<ValueBoundary> valueBoundaries(std::string_view raw);

/// The names (with their semicolon where they need it) of the references whose text shares a byte with
/// `characters`.
std::vector<std::string> namedReferencesFor(std::string_view characters);

} // namespace luma
