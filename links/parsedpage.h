// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/htmlscanner.h"
#include "links/linkrules.h"

#include <bitset>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// One link of a page. `value` is decoded; bytes `begin` to `end` of the source are the value as written,
/// without quotes.
struct PageLink
{
    std::size_t attribute = 0; // index into linkAttributes
    std::string value;
    std::size_t begin = 0;
    std::size_t end = 0;
    Quotes quotes = Quotes::NoValue;
};

/// A page's source, which is UTF-8, and its links, sorted by attribute (in the order of linkAttributes), then
/// in document order.
struct ParsedPage
{
    std::string source;
    std::vector<PageLink> links;
};

/// Calls `sink(index into linkAttributes, const HtmlAttribute&)` for every link in `tag`, a start tag.
template <class Sink>
void forEachLinkOf(const HtmlToken& tag, Sink sink);

/// Nothing when `source` is not UTF-8.
std::optional<ParsedPage> parsePage(std::string source);

/// Whether `tag`, a start tag or an end tag, is a style element's.
bool isStyleTag(const HtmlToken& tag);

/// The content of every style element as written, in document order.
std::vector<std::string_view> styleContents(std::string_view source);

/// A new value for one link of a page.
struct LinkChange
{
    std::size_t link = 0; // index into ParsedPage::links
    std::string value;    // decoded
};

/// The page's source with these links changed and every other byte kept; what a new value shares with the old
/// one at both ends keeps its spelling. `changes` name each link at most once.
std::string withChangedLinks(const ParsedPage& page, std::vector<LinkChange> changes);

template <class Sink>
void forEachLinkOf(const HtmlToken& tag, Sink sink)
{
    // Of attributes with the same name the first one counts.
    std::bitset<linkAttributes.size()> seen;
    for (const HtmlAttribute& attribute : tag.attributes) {
        const std::optional<std::size_t> index = linkAttributeIndex(attribute.name);
        if (!index || seen[*index])
            continue;
        seen.set(*index);
        sink(*index, attribute);
    }
}

} // namespace luma
