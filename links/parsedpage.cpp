// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/parsedpage.h"

#include "base/ascii.h"
#include "base/utf8.h"
#include "html/characterreferences.h"

#include <algorithm>
#include <array>

namespace luma {

namespace {

// `raw` is a part of `source`.
std::string escaped(std::string_view text, Quotes quotes)
{
    std::string raw;
    raw.reserve(text.size());
    for (const char c : text) {
        if (c == '&')
            raw += "&amp;";
        else if (c == '"' && quotes == Quotes::Double)
            raw += "&quot;";
        else if (c == '\'' && quotes == Quotes::Single)
            raw += "&#39;";
        else
            raw += c;
    }
    return raw;
}

// A new value, split by what it shares with the old one.
struct ValueParts
{
    std::string_view before;  // shared, as written
    std::string_view changed; // decoded
    std::string_view after;   // shared, as written
};

ValueParts partsOf(std::string_view raw, std::string_view old, std::string_view value)
{
    const auto same = [](auto a, auto aEnd, auto b, auto bEnd) {
        return static_cast<std::size_t>(std::mismatch(a, aEnd, b, bEnd).first - a);
    };
    const std::size_t atEnd = same(old.rbegin(), old.rend(), value.rbegin(), value.rend());
    const std::size_t atBegin = std::min(same(old.begin(), old.end(), value.begin(), value.end()),
                                         std::min(old.size(), value.size()) - atEnd);
    const std::vector<ValueBoundary> boundaries = valueBoundaries(raw);
    const auto first = std::find_if(boundaries.begin(), boundaries.end(), [&](const ValueBoundary& boundary) {
        return boundary.decoded >= old.size() - atEnd;
    });
    const auto last =
        std::find_if(boundaries.rbegin(), boundaries.rend(),
                     [&](const ValueBoundary& boundary) { return boundary.decoded <= atBegin; });
    const std::size_t tail = old.size() - first->decoded;
    return {raw.substr(0, last->raw), value.substr(last->decoded, value.size() - tail - last->decoded),
            raw.substr(first->raw)};
}

// Quotes are added only where the value needs them.
Quotes quotesFor(Quotes old, const ValueParts& parts)
{
    if (old == Quotes::Double || old == Quotes::Single)
        return old;
    const bool empty = parts.before.empty() && parts.changed.empty() && parts.after.empty();
    const bool slashAtEnd = parts.after.empty() && parts.changed.ends_with('/');
    const bool bare =
        old == Quotes::None && !empty && !slashAtEnd &&
        parts.changed.find_first_of("\t\n\f\r \"'=<>`") == std::string_view::npos &&
        !(parts.before.empty() && parts.changed.empty() && parts.after.find_first_of("\"'") == 0);
    return bare ? Quotes::None : Quotes::Double;
}

// What replaces the bytes of the old value in the source.
std::string writtenValue(const PageLink& link, std::string_view raw, std::string_view value)
{
    const ValueParts parts = partsOf(raw, link.value, value);
    const Quotes quotes = quotesFor(link.quotes, parts);
    std::string written =
        std::string(parts.before).append(escaped(parts.changed, quotes)).append(parts.after);
    // A reference without a semicolon may take in what now follows it, and a kept quote may end the value.
    const bool mixesQuotes =
        link.quotes == Quotes::None && quotes == Quotes::Double && written.find('"') != std::string::npos;
    if (mixesQuotes || decodeCharacters(written, ReferenceContext::AttributeValue) != value)
        written = escaped(value, quotes);
    if (quotes == link.quotes)
        return written;
    const char quote = quotes == Quotes::Double ? '"' : '\'';
    std::string quoted(link.quotes == Quotes::NoValue ? "=" : "");
    quoted += quote;
    quoted += written;
    quoted += quote;
    return quoted;
}

} // namespace

std::optional<ParsedPage> parsePage(std::string source)
{
    if (!isValidUtf8(source))
        return std::nullopt;
    ParsedPage page;
    page.source = std::move(source);
    std::array<std::vector<PageLink>, linkAttributes.size()> links;
    HtmlScanner scanner(page.source);
    HtmlToken token;
    while (scanner.next(token)) {
        if (token.kind != HtmlTokenKind::StartTag)
            continue;
        forEachLinkOf(token, [&](std::size_t index, const HtmlAttribute& attribute) {
            const std::size_t begin = offsetIn(page.source, attribute.value);
            links.at(index).push_back({index,
                                       decodeCharacters(attribute.value, ReferenceContext::AttributeValue),
                                       begin, begin + attribute.value.size(), attribute.quotes});
        });
    }
    for (std::vector<PageLink>& ofOneAttribute : links)
        std::move(ofOneAttribute.begin(), ofOneAttribute.end(), std::back_inserter(page.links));
    return page;
}

bool isStyleTag(const HtmlToken& tag)
{
    return tag.name.size() == 5 && equalIgnoringAsciiCase(tag.name, "style");
}

std::vector<std::string_view> styleContents(std::string_view source)
{
    std::vector<std::string_view> contents;
    HtmlScanner scanner(source);
    HtmlToken token;
    bool open = false;
    std::size_t begin = 0;
    const auto close = [&](std::size_t end) {
        if (open)
            contents.push_back(source.substr(begin, end - begin));
        open = false;
    };
    while (scanner.next(token)) {
        if (token.kind == HtmlTokenKind::EndTag && isStyleTag(token)) {
            close(token.begin);
        } else if (token.kind == HtmlTokenKind::StartTag && !open && isStyleTag(token)) {
            open = true;
            begin = token.end;
        }
    }
    close(token.begin);
    return contents;
}

std::string withChangedLinks(const ParsedPage& page, std::vector<LinkChange> changes)
{
    std::sort(changes.begin(), changes.end(), [&](const LinkChange& a, const LinkChange& b) {
        return page.links[a.link].begin < page.links[b.link].begin;
    });
    const std::string_view source = page.source;
    std::string changed;
    changed.reserve(source.size() + changes.size() * 16);
    std::size_t done = 0;
    for (const LinkChange& change : changes) {
        const PageLink& link = page.links[change.link];
        const std::string_view raw = source.substr(link.begin, link.end - link.begin);
        changed.append(source.substr(done, link.begin - done)).append(writtenValue(link, raw, change.value));
        done = link.end;
    }
    return changed.append(source.substr(done));
}

} // namespace luma
