// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "html/document.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

namespace luma::html {

class Element;

/// What a page may cost: the parser's time grows with size times depth, its memory with both.
struct ParseLimits
{
    std::size_t bytes = std::size_t{16} << 20U;
    std::size_t depth = 4096;
};

/// Reads a whole page (HTML standard, scripting off: what is in `noscript` becomes elements). Any UTF-8 text
/// is a page, except one that is too large, nested deeper than the limit, or built so that parsing multiplies
/// its elements. The error is a sentence about the page ("It is larger than 16 MB."). Line ends become line
/// feeds.
Result<std::unique_ptr<Document>> parse(std::string_view page, const ParseLimits& limits = {});

/// The same for a page as its file holds it, and the tree knows the text it came from (Node::origin), so that writePage()
/// can write it back. A byte-order mark does not belong to that text. The tree holds server code as marks
/// (html/codemarks.h). Rows and cells without a table, for a server to include, stand in a table.
Result<std::unique_ptr<Document>> parseWithSource(std::string_view page, const ParseLimits& limits = {});

/// Where parseWithSource() gives up a page that it refuses: a place in bytes. Takes as long. Nothing for a page that it takes.
std::optional<std::size_t> placeOfRefusal(std::string_view page, const ParseLimits& limits = {});

/// Reads markup inside `context`, as setting innerHTML does in a browser, and gives detached nodes. Fails as
/// parse() does.
Result<NodeList> parseFragment(std::string_view markup, const Element& context,
                               const ParseLimits& limits = {});

/// The same for markup as a page's file holds it, with server code; Document::trustServerCode() lets the code of its
/// attributes be written as code.
Result<NodeList> parseSourceFragment(std::string_view source, const Element& context,
                                     const ParseLimits& limits = {});

} // namespace luma::html
