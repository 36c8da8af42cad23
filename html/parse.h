// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/document.h"
#include "html/parseresult.h"

#include <cstddef>
#include <memory>
#include <string_view>

namespace luma::html {

class Element;

/// What a page may cost. The parser's time grows with size times depth, its memory with both.
struct ParseLimits
{
    std::size_t bytes = std::size_t{16} << 20U;
    std::size_t depth = 4096;
};

/// Reads a whole page (HTML standard, scripting off: what is in `noscript` becomes elements). Any text is a
/// page; refused are only text that is not UTF-8, and pages that are too large, nested deeper than the limit,
/// or made to grow beyond measure while they are parsed. Line ends become line feeds.
[[nodiscard]] ParseResult<std::unique_ptr<Document>> parse(std::string_view page,
                                                           const ParseLimits& limits = {});

/// Reads markup as it would stand inside `context`, as a browser's innerHTML does. Gives detached nodes.
[[nodiscard]] ParseResult<NodeList> parseFragment(std::string_view markup, const Element& context,
                                                  const ParseLimits& limits = {});

} // namespace luma::html
