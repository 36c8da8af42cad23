// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/utf8.h"
#include "html/htmlscanner.h"
#include "links/linkrules.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// One link of a page: `value` is decoded, the bytes from `begin` to `end` of the source are how it is
/// written, without quotes.
struct PageLink
{
    std::size_t attribute = 0; // index into linkAttributes
    std::string value;
    std::size_t begin = 0;
    std::size_t end = 0;
    Quotes quotes = Quotes::NoValue;
};

/// A page's source, which is UTF-8, with its links: all of one attribute in document order, the attributes in
/// the order of linkAttributes.
struct ParsedPage
{
    std::string source;
    std::vector<PageLink> links;
};

/// Calls `sink(attributeIndex, const HtmlAttribute&)` for every link in `tag`, a start tag.
template <class Sink>
void forEachLinkOf(const HtmlToken& tag, Sink sink);

/// Nothing when `source` is not UTF-8.
std::optional<ParsedPage> parsePage(std::string source);

/// Nothing for what is no page: a file that cannot be read, or is not UTF-8.
std::optional<ParsedPage> parsePageFile(const std::filesystem::path& path);

/// The source of every style element's content, in document order.
std::vector<std::string_view> styleContents(std::string_view source);

struct LinkChange
{
    std::size_t link = 0; // index into ParsedPage::links
    std::string value;    // decoded
};

/// The page's source with the values of these links changed and every other byte as it was. `changes` name
/// each link at most once. The part of a value that stays at its end keeps its spelling.
std::string withChangedLinks(const ParsedPage& page, std::vector<LinkChange> changes);

template <class Sink>
void forEachLinkOf(const HtmlToken& tag, Sink sink)
{
    unsigned seen = 0;
    for (const HtmlAttribute& attribute : tag.attributes) {
        const std::size_t length = attribute.name.size();
        if (length != 4 && length != 3 && length != 10)
            continue;
        const std::size_t index = length == 4 ? 0 : length == 3 ? 1 : 2;
        const unsigned bit = 1U << index;
        if ((seen & bit) != 0 || !equalIgnoringAsciiCase(attribute.name, linkAttributes[index]))
            continue;
        seen |= bit;
        sink(index, attribute);
    }
}

} // namespace luma
