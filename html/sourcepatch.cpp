// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/sourcepatch.h"

#include "base/ascii.h"
#include "base/utf8.h"
#include "html/characterreferences.h"
#include "html/element.h"
#include "html/htmlscanner.h"

#include <algorithm>
#include <vector>

namespace luma::html {

namespace {

ReferenceContext contextOf(TextPlace place)
{
    if (place == TextPlace::RawText)
        return ReferenceContext::RawText;
    return place == TextPlace::Text ? ReferenceContext::Text : ReferenceContext::AttributeValue;
}

std::string escaped(std::string_view text, TextPlace place, std::string_view lineEnd)
{
    std::string raw;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\n')
            raw += lineEnd;
        else if (place == TextPlace::RawText)
            raw += c;
        else if (c == '&')
            raw += "&amp;";
        else if (c == '\r')
            raw += "&#13;";
        else if (c == '<' && place == TextPlace::Text)
            raw += "&lt;";
        else if (c == '>' && place == TextPlace::Text)
            raw += "&gt;";
        else if (c == '"' && place == TextPlace::DoubleQuoted)
            raw += "&quot;";
        else if (c == '\'' && place == TextPlace::SingleQuoted)
            raw += "&#39;";
        else if (text.substr(i, 2) == "\xC2\xA0") {
            raw += "&nbsp;";
            ++i;
        } else
            raw += c;
    }
    return raw;
}

bool isInsideCharacter(std::string_view text, std::size_t place)
{
    return place < text.size() && isUtf8Continuation(text[place]);
}

// What could join the text behind it to a tag or reference.
bool couldJoin(std::string_view unit, TextPlace place)
{
    if (place == TextPlace::RawText)
        return unit == "<" || unit == "/" || unit == "\r";
    return unit == "<" || unit == "\r" || (unit.starts_with('&') && !unit.ends_with(';'));
}

/// The places of a text's source between characters, and its text. In an element's text, tags that mean nothing there
/// (</body> with white space behind it) stand for nothing.
struct ReadText
{
    std::vector<ValueBoundary> boundaries;
    std::string text;
};

void append(ReadText& read, std::string_view raw, std::size_t begin, std::size_t end,
            ReferenceContext context)
{
    const std::string_view part = raw.substr(begin, end - begin);
    for (const ValueBoundary& boundary : valueBoundaries(part, context))
        read.boundaries.push_back({begin + boundary.raw, read.text.size() + boundary.decoded});
    read.text += decodeCharacters(part, context);
}

ReadText readText(std::string_view raw, TextPlace place)
{
    ReadText read;
    std::size_t done = 0;
    if (place == TextPlace::Text && raw.find('<') != std::string_view::npos) {
        HtmlScanner scanner(raw);
        HtmlToken token;
        while (scanner.next(token)) {
            append(read, raw, done, token.begin, ReferenceContext::Text);
            done = token.end;
        }
    }
    append(read, raw, done, raw.size(), contextOf(place));
    return read;
}

} // namespace

std::string patchedText(std::string_view raw, std::string_view text, TextPlace place,
                        std::string_view lineEnd)
{
    const auto [boundaries, old] = readText(raw, place);
    if (old == text)
        return std::string(raw);
    auto same = static_cast<std::size_t>(
        std::mismatch(old.begin(), old.end(), text.begin(), text.end()).first - old.begin());
    while (same > 0 && (isInsideCharacter(old, same) || isInsideCharacter(text, same)))
        --same;
    // The last boundary that lies in what is the same, and behind which nothing new can change what is kept.
    std::size_t first = boundaries.size() - 1;
    while (first > 0 && (boundaries[first].decoded > same ||
                         couldJoin(raw.substr(boundaries[first - 1].raw,
                                              boundaries[first].raw - boundaries[first - 1].raw),
                                   place)))
        --first;
    const std::size_t kept = boundaries[first].decoded;
    const std::size_t most = std::min(old.size(), text.size()) - kept;
    std::size_t sameAtEnd = 0;
    while (sameAtEnd < most && old[old.size() - 1 - sameAtEnd] == text[text.size() - 1 - sameAtEnd])
        ++sameAtEnd;
    while (sameAtEnd > 0 && isInsideCharacter(old, old.size() - sameAtEnd))
        --sameAtEnd;
    const auto last = std::lower_bound(
        boundaries.begin() + static_cast<std::ptrdiff_t>(first), boundaries.end(), old.size() - sameAtEnd,
        [](const ValueBoundary& boundary, std::size_t wanted) { return boundary.decoded < wanted; });
    const std::string_view changed = text.substr(kept, text.size() - (old.size() - last->decoded) - kept);
    return std::string(raw.substr(0, boundaries[first].raw)) + escaped(changed, place, lineEnd) +
           std::string(raw.substr(last->raw));
}

namespace {

/// Rewrites one start tag: a copy of its bytes up to each change.
class TagPatch final
{
public:
    TagPatch(std::string_view tag, const HtmlToken& token, std::string_view lineEnd)
        : m_tag(tag), m_token(token), m_lineEnd(lineEnd)
    {}

    std::string patched(const Element& element)
    {
        for (std::size_t i = 0; i < m_token.attributes.size(); ++i)
            patch(i, element);
        std::string added;
        for (const Attribute& attribute : element.attributes()) {
            if (find(attribute.name) != m_token.attributes.size())
                continue;
            added += ' ' + attribute.name;
            added += "=\"" + escaped(attribute.value, TextPlace::DoubleQuoted, m_lineEnd) + '"';
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
        while (i < m_token.attributes.size() && !equalIgnoringAsciiCase(m_token.attributes[i].name, name))
            ++i;
        return i;
    }

    [[nodiscard]] std::size_t placeOf(std::string_view part) const
    {
        return static_cast<std::size_t>(part.data() - m_tag.data());
    }

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
        const auto wanted = std::find_if(element.attributes().begin(), element.attributes().end(),
                                         [&attribute](const Attribute& entry) {
                                             return equalIgnoringAsciiCase(entry.name, attribute.name);
                                         });
        if (wanted == element.attributes().end()) {
            remove(attribute);
            return;
        }
        const std::string old = decodeCharacters(attribute.value, ReferenceContext::AttributeValue);
        if (find(attribute.name) == number && old != wanted->value)
            setValue(attribute, wanted->value);
    }

    void setValue(const HtmlAttribute& attribute, std::string_view value)
    {
        const std::size_t begin = placeOf(attribute.value);
        if (attribute.quotes == Quotes::Double || attribute.quotes == Quotes::Single) {
            const TextPlace place =
                attribute.quotes == Quotes::Double ? TextPlace::DoubleQuoted : TextPlace::SingleQuoted;
            copyUpTo(begin);
            m_result += patchedText(attribute.value, value, place, m_lineEnd);
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
                                 : '"' + escaped(value, TextPlace::DoubleQuoted, m_lineEnd) + '"';
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
    const HtmlToken& m_token;
    std::string_view m_lineEnd;
    std::size_t m_done = 0;
    std::string m_result;
};

} // namespace

std::optional<std::string> patchedStartTag(std::string_view tag, const Element& element,
                                           std::string_view lineEnd)
{
    HtmlScanner scanner(tag);
    HtmlToken token;
    if (!scanner.next(token) || token.kind != HtmlTokenKind::StartTag || token.begin != 0 ||
        token.end != tag.size())
        return std::nullopt;
    return TagPatch(tag, token, lineEnd).patched(element);
}

} // namespace luma::html
