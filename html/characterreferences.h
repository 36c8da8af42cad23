// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// Where a run of text is from: the two read an unterminated named reference differently.
enum class ReferenceContext { Text, AttributeValue };

/// Decodes `raw`, a piece of HTML source in UTF-8: replaces character references (HTML standard, 13.2.5.72 and
/// following), turns line ends into line feeds and, in attribute values, NUL into U+FFFD.
std::string decodeCharacters(std::string_view raw, ReferenceContext context);

/// Whether decodeCharacters would change anything.
bool needsDecoding(std::string_view raw);

/// A boundary between two characters of an attribute's value, as byte offsets into its raw and decoded forms.
struct ValueBoundary
{
    std::size_t raw = 0;
    std::size_t decoded = 0;
};

/// All boundaries in `raw`, its start and end included.
std::vector<ValueBoundary> valueBoundaries(std::string_view raw);

/// The names of the references whose text shares a byte with `characters`, with a semicolon where one is
/// required.
std::vector<std::string> namedReferencesFor(std::string_view characters);

} // namespace luma
