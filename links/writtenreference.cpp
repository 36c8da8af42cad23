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

// What two texts share at both ends, in bytes; whole characters.
struct SharedEnds
{
    std::size_t before = 0;
    std::size_t after = 0;
};

SharedEnds sharedEnds(std::string_view a, std::string_view b)
{
    const std::size_t most = std::min(a.size(), b.size());
    const auto isInside = [](std::string_view text, std::size_t at) {
        return at < text.size() && isUtf8Continuation(text[at]);
    };
    SharedEnds shared;
    while (shared.before < most && a[shared.before] == b[shared.before])
        ++shared.before;
    while (shared.before > 0 && (isInside(a, shared.before) || isInside(b, shared.before)))
        --shared.before;
    while (shared.before + shared.after < most &&
           a[a.size() - 1 - shared.after] == b[b.size() - 1 - shared.after])
        ++shared.after;
    while (shared.after > 0 && (isInside(a, a.size() - shared.after) || isInside(b, b.size() - shared.after)))
        --shared.after;
    return shared;
}

// An attribute's value, or a part of one, that stands for `old` and has to stand for `text`.
std::string patchedValue(std::string_view raw, std::string_view old, std::string_view text, Quotes quotes)
{
    const SharedEnds shared = sharedEnds(old, text);
    const std::vector<ValueBoundary> boundaries = valueBoundaries(raw);
    const auto first =
        std::find_if(boundaries.rbegin(), boundaries.rend(),
                     [&](const ValueBoundary& boundary) { return boundary.decoded <= shared.before; });
    const auto last = std::find_if(boundaries.begin(), boundaries.end(), [&](const ValueBoundary& boundary) {
        return boundary.decoded >= old.size() - shared.after;
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
    const SharedEnds shared = sharedEnds(old, text);
    const std::string_view changed = text.substr(shared.before, text.size() - shared.before - shared.after);
    return std::string(raw.substr(0, shared.before))
        .append(encodedCss(changed, quotes))
        .append(raw.substr(raw.size() - shared.after));
}

} // namespace

std::string writtenReference(std::string_view raw, const LinkReference& reference, std::string_view value)
{
    if (reference.syntax == LinkSyntax::StyleSheet)
        return patchedCss(raw, reference.value, value, reference.cssQuotes);
    if (reference.syntax != LinkSyntax::StyleDeclarations)
        return patchedValue(raw, reference.value, value, reference.quotes);
    const std::string css = decodeCharacters(raw, ReferenceContext::AttributeValue);
    return patchedValue(raw, css, patchedCss(css, reference.value, value, reference.cssQuotes),
                        reference.quotes);
}

} // namespace luma
