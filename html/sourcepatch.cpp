// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/sourcepatch.h"

#include "base/ascii.h"
#include "base/utf8.h"
#include "html/characterreferences.h"
#include "html/codemarks.h"
#include "html/element.h"
#include "html/htmlscanner.h"
#include "html/maskedsource.h"
#include "html/readtext.h"
#include "html/serializer.h"
#include "html/servercode.h"

#include <algorithm>
#include <vector>

namespace luma::html {

namespace {

// escapedText() for text with server code: what is in `codes` is written as such where code may stand, all other as text.
std::string escaped(std::string_view text, TextPlace place, const Document::ServerCodes& codes,
                    std::string_view lineEnd)
{
    if (place == TextPlace::RawText)
        return escapedText(withUnspelledCode(text), place, lineEnd);
    std::string raw;
    std::size_t done = 0;
    for (const ServerCode& code : serverCodeIn(text)) {
        const std::string_view found = text.substr(code.begin, code.end - code.begin);
        const bool isCode = place != TextPlace::Text && codes.contains(found);
        raw += escapedText(text.substr(done, code.begin - done), place, lineEnd);
        raw += isCode ? escapedText(found, TextPlace::RawText, lineEnd)
                      : std::string(referenceFor(found.front()));
        done = isCode ? code.end : code.begin + 1;
    }
    return raw + escapedText(text.substr(done), place, lineEnd);
}

// What could join the text behind it to a tag or reference.
bool couldJoin(std::string_view unit, TextPlace place)
{
    if (place == TextPlace::RawText)
        return unit == "<" || unit == "/" || unit == "\r";
    return unit == "<" || unit == "\r" || (unit.starts_with('&') && !unit.ends_with(';'));
}

} // namespace

std::string patchedText(std::string_view raw, std::string_view text, TextPlace place,
                        const Document::ServerCodes& codes, std::string_view lineEnd)
{
    const auto [boundaries, old] = readText(raw, place);
    if (old == text)
        return std::string(raw);
    const std::size_t same = sharedPrefix(old, text);
    // The last boundary that lies in what is the same, and behind which nothing new can change what is kept.
    std::size_t first = boundaries.size() - 1;
    while (first > 0 && (boundaries[first].decoded > same ||
                         couldJoin(raw.substr(boundaries[first - 1].raw,
                                              boundaries[first].raw - boundaries[first - 1].raw),
                                   place)))
        --first;
    const std::size_t kept = boundaries[first].decoded;
    const std::size_t sameAtEnd = sharedSuffix(std::string_view(old).substr(kept), text.substr(kept));
    const auto last = std::lower_bound(
        boundaries.begin() + static_cast<std::ptrdiff_t>(first), boundaries.end(), old.size() - sameAtEnd,
        [](const ValueBoundary& boundary, std::size_t wanted) { return boundary.decoded < wanted; });
    const std::string_view changed = text.substr(kept, text.size() - (old.size() - last->decoded) - kept);
    return std::string(raw.substr(0, boundaries[first].raw)) + escaped(changed, place, codes, lineEnd) +
           std::string(raw.substr(last->raw));
}

namespace {

/// Rewrites one start tag: a copy of its bytes up to each change.
class TagPatch final
{
public:
    /// The token is that of the masked tag.
    TagPatch(std::string_view tag, const MaskedSource& masked, const HtmlToken& token,
             const Document::ServerCodes& codes, std::string_view lineEnd)
        : m_tag(tag), m_masked(masked), m_token(token), m_codes(codes), m_lineEnd(lineEnd)
    {}

    std::string patched(const Element& element)
    {
        for (std::size_t i = 0; i < m_token.attributes.size(); ++i)
            patch(i, element);
        std::string added;
        for (const Attribute& attribute : element.attributes()) {
            if (find(attribute.name) != m_token.attributes.size())
                continue;
            added += ' ' + withUnspelledCode(attribute.name);
            added += "=\"" + escaped(attribute.value, TextPlace::DoubleQuoted, m_codes, m_lineEnd) + '"';
        }
        if (!added.empty())
            copyUpTo(endOfAttributes());
        m_result += added;
        copyUpTo(m_tag.size());
        return m_result;
    }

private:
    // The number of the first attribute of this name, or their count.
    [[nodiscard]] std::size_t find(std::string_view name) const
    {
        std::size_t i = 0;
        while (i < m_token.attributes.size() && !equalIgnoringAsciiCase(nameOf(m_token.attributes[i]), name))
            ++i;
        return i;
    }

    [[nodiscard]] std::string nameOf(const HtmlAttribute& attribute) const
    {
        const std::size_t begin = placeOf(attribute.name);
        return m_masked.name(begin, begin + attribute.name.size());
    }

    [[nodiscard]] std::size_t placeOf(std::string_view part) const { return offsetIn(m_masked.text(), part); }

    [[nodiscard]] std::size_t endOf(const HtmlAttribute& attribute) const
    {
        const std::size_t valueEnd = placeOf(attribute.value) + attribute.value.size();
        switch (attribute.quotes) {
        case Quotes::NoValue:
            return placeOf(attribute.name) + attribute.name.size();
        case Quotes::None:
            return valueEnd;
        default:
            return valueEnd + 1;
        }
    }

    [[nodiscard]] std::size_t endOfAttributes() const
    {
        return m_token.attributes.empty() ? placeOf(m_token.name) + m_token.name.size()
                                          : endOf(m_token.attributes.back());
    }

    void copyUpTo(std::size_t place)
    {
        if (place > m_done)
            m_result += m_tag.substr(m_done, place - m_done);
        m_done = std::max(m_done, place);
    }

    void patch(std::size_t number, const Element& element)
    {
        const HtmlAttribute& attribute = m_token.attributes[number];
        const std::string name = nameOf(attribute);
        const auto wanted = std::find_if(
            element.attributes().begin(), element.attributes().end(),
            [&name](const Attribute& entry) { return equalIgnoringAsciiCase(entry.name, name); });
        if (wanted == element.attributes().end()) {
            remove(attribute);
            return;
        }
        const std::size_t begin = placeOf(attribute.value);
        const std::string old =
            m_masked.decoded(begin, begin + attribute.value.size(), ReferenceContext::AttributeValue);
        if (find(name) == number && old != wanted->value)
            setValue(attribute, wanted->value);
    }

    void setValue(const HtmlAttribute& attribute, std::string_view value)
    {
        const std::size_t begin = placeOf(attribute.value);
        if (attribute.quotes == Quotes::Double || attribute.quotes == Quotes::Single) {
            const TextPlace place =
                attribute.quotes == Quotes::Double ? TextPlace::DoubleQuoted : TextPlace::SingleQuoted;
            copyUpTo(begin);
            m_result +=
                patchedText(m_tag.substr(begin, attribute.value.size()), value, place, m_codes, m_lineEnd);
            m_done = begin + attribute.value.size();
            return;
        }
        copyUpTo(attribute.quotes == Quotes::None ? begin : endOf(attribute));
        const bool canDoWithout = attribute.quotes == Quotes::None && !value.empty() &&
                                  value.find_first_of(" \t\n\f\r\"'=<>`&") == std::string_view::npos &&
                                  !value.ends_with('/');
        if (attribute.quotes == Quotes::NoValue)
            m_result += '=';
        m_result += canDoWithout ? std::string(value)
                                 : '"' + escaped(value, TextPlace::DoubleQuoted, m_codes, m_lineEnd) + '"';
        m_done = endOf(attribute);
    }

    // With the blanks before it, unless what follows would join what stands before.
    void remove(const HtmlAttribute& attribute)
    {
        const std::size_t begin = placeOf(attribute.name);
        const std::size_t end = endOf(attribute);
        const std::size_t before = m_tag.find_last_not_of(whiteSpace, begin - 1) + 1;
        const bool joins = whiteSpace.find(m_tag[end]) == std::string_view::npos && m_tag[end] != '>';
        copyUpTo(joins ? begin : before);
        if (joins && begin == before)
            m_result += ' ';
        m_done = std::max(m_done, end);
    }

    std::string_view m_tag;
    const MaskedSource& m_masked;
    const HtmlToken& m_token;
    const Document::ServerCodes& m_codes;
    std::string_view m_lineEnd;
    std::size_t m_done = 0;
    std::string m_result;
};

} // namespace

std::optional<std::string> patchedStartTag(std::string_view tag, const Element& element,
                                           const Document::ServerCodes& codes, std::string_view lineEnd)
{
    const MaskedSource masked(tag);
    HtmlScanner scanner(masked.text());
    HtmlToken token;
    if (!scanner.next(token) || token.kind != HtmlTokenKind::StartTag || token.begin != 0 ||
        token.end != tag.size())
        return std::nullopt;
    return TagPatch(tag, masked, token, codes, lineEnd).patched(element);
}

} // namespace luma::html
