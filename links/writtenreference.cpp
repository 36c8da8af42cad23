// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/writtenreference.h"

#include "base/utf8.h"
#include "html/characterreferences.h"

#include <algorithm>

namespace luma {

namespace {

std::string escaped(std::string_view text, Quotes quotes)
{
    std::string raw;
    for (const char c : text) {
        const bool endsBareValue = std::string_view("\t\n\f \"'<>=`").find(c) != std::string_view::npos;
        if (c == '&')
            raw += "&amp;";
        else if ((c == '"' && quotes == Quotes::Double) || (c == '\'' && quotes == Quotes::Single) ||
                 c == '<' || c == '\r' || (endsBareValue && quotes == Quotes::None))
            raw += "&#" + std::to_string(static_cast<int>(c)) + ";";
        else
            raw += c;
    }
    return raw;
}

// An attribute's value, or a part of one, that stands for `old` and has to stand for `text`.
std::string patchedValue(std::string_view raw, std::string_view old, std::string_view text, Quotes quotes)
{
    // An entity of the page's own gives way to its text.
    if (decodeCharacters(raw, ReferenceContext::AttributeValue) != old)
        return escaped(text, quotes);
    const std::size_t before = sharedPrefix(old, text);
    const std::size_t after = sharedSuffix(old.substr(before), text.substr(before));
    const std::vector<ValueBoundary> boundaries = valueBoundaries(raw);
    const auto first =
        std::find_if(boundaries.rbegin(), boundaries.rend(),
                     [&](const ValueBoundary& boundary) { return boundary.decoded <= before; });
    const auto last = std::find_if(boundaries.begin(), boundaries.end(), [&](const ValueBoundary& boundary) {
        return boundary.decoded >= old.size() - after;
    });
    const std::size_t tail = old.size() - last->decoded;
    std::string patched(raw.substr(0, first->raw));
    patched += escaped(text.substr(first->decoded, text.size() - tail - first->decoded), quotes);
    patched += raw.substr(last->raw);
    // A reference without a semicolon may take in what now follows it.
    return decodeCharacters(patched, ReferenceContext::AttributeValue) == text ? patched
                                                                               : escaped(text, quotes);
}

std::string patchedCss(std::string_view raw, std::string_view old, std::string_view text, CssQuotes quotes)
{
    if (raw != old)
        return encodedCss(text, quotes);
    const std::size_t before = sharedPrefix(old, text);
    const std::size_t after = sharedSuffix(old.substr(before), text.substr(before));
    const std::string_view changed = text.substr(before, text.size() - before - after);
    return std::string(raw.substr(0, before))
        .append(encodedCss(changed, quotes))
        .append(raw.substr(raw.size() - after));
}

} // namespace

std::string writtenReference(std::string_view raw, const LinkReference& reference, std::string_view value)
{
    if (reference.frameQuotes != Quotes::NoValue) {
        LinkReference inFrame = reference;
        inFrame.frameQuotes = Quotes::NoValue;
        const std::string markup = decodeCharacters(raw, ReferenceContext::AttributeValue);
        return patchedValue(raw, markup, writtenReference(markup, inFrame, value), reference.frameQuotes);
    }
    if (reference.syntax == LinkSyntax::StyleSheet)
        return patchedCss(raw, reference.value, value, reference.cssQuotes);
    if (reference.syntax != LinkSyntax::StyleDeclarations)
        return patchedValue(raw, reference.value, value, reference.quotes);
    const std::string css = decodeCharacters(raw, ReferenceContext::AttributeValue);
    return patchedValue(raw, css, patchedCss(css, reference.value, value, reference.cssQuotes),
                        reference.quotes);
}

} // namespace luma
