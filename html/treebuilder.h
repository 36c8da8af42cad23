// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "html/document.h"
#include "html/pagesource.h"
#include "html/parse.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace luma::html {

class MaskedSource;

/// What the parser reads.
struct ParserInput
{
    std::string_view text; // valid UTF-8 without a byte-order mark
    const MaskedSource* page =
        nullptr;            // the page whose masked text this is; null for markup without server code
    std::size_t prefix = 0; // bytes at the beginning that the page does not hold
};

struct BuiltDocument
{
    std::unique_ptr<Document> document;
    std::vector<SourceMarks> marks; // by the record numbers of the nodes' origins
};

/// Parses a page with the parser library and builds our tree from its tree; only ParserNames knows the library, too. Fails as
/// parse() does where the page nests too deeply or multiplies its elements. Any thread.
Result<BuiltDocument> buildDocument(const ParserInput& input, const ParseLimits& limits);

/// Where in the page buildDocument() gives up: a place in bytes, that of the last tag or text that it took, or of the tag
/// with too many attributes. Takes as long. Nothing where it does not fail.
std::optional<std::size_t> placeOfExcess(const ParserInput& input, const ParseLimits& limits);

/// The same as buildDocument() for markup inside `context`.
Result<NodeList> buildFragment(const ParserInput& input, const Element& context, const ParseLimits& limits);

} // namespace luma::html
