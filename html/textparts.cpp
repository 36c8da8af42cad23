// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/textparts.h"

#include "base/ascii.h"
#include "base/utf8.h"
#include "html/characterreferences.h"
#include "html/htmlscanner.h"
#include "html/maskedsource.h"

#include <algorithm>

namespace luma::html {

namespace {

bool endsPage(std::string_view token)
{
    return startsWithIgnoringAsciiCase(token, "</body") || startsWithIgnoringAsciiCase(token, "</html");
}

} // namespace

TextParts::TextParts(std::string_view raw, bool isForeign) : m_raw(raw)
{
    const MaskedSource masked(raw);
    HtmlScanner scanner(masked.text());
    if (isForeign)
        scanner.startInForeignContent();
    HtmlToken token;
    std::size_t done = 0;
    while (scanner.next(token)) {
        add(done, token.begin, TextPlace::Text);
        if (token.kind == HtmlTokenKind::Cdata) {
            const std::size_t content = offsetIn(masked.text(), token.content);
            m_parts.push_back({token.begin, content, false, {}, {}, {}});
            add(content, content + token.content.size(), TextPlace::RawText);
            m_parts.push_back({content + token.content.size(), token.end, false, {}, {}, {}});
        } else {
            m_parts.push_back({token.begin, token.end, false, {}, {}, {}});
        }
        done = token.end;
    }
    add(done, raw.size(), TextPlace::Text);
}

void TextParts::add(std::size_t begin, std::size_t end, TextPlace place)
{
    if (begin == end)
        return;
    const auto context = place == TextPlace::RawText ? ReferenceContext::RawText : ReferenceContext::Text;
    const std::string text = decodeCharacters(m_raw.substr(begin, end - begin), context);
    m_parts.push_back({begin, end, true, place, text, text});
}

std::string TextParts::text() const
{
    std::string text;
    for (const Part& part : m_parts)
        text += part.text;
    return text;
}

bool TextParts::endPage() const
{
    return std::any_of(m_parts.begin(), m_parts.end(), [this](const Part& part) {
        return !part.isText && endsPage(m_raw.substr(part.begin, part.end - part.begin));
    });
}

std::string TextParts::ownBytes() const
{
    std::string bytes;
    for (const Part& part : m_parts) {
        if (part.place == TextPlace::RawText)
            return {};
        bytes += part.isText ? m_raw.substr(part.begin, part.end - part.begin) : std::string_view();
    }
    return bytes;
}

// The number of the part in which, or at whose end, what is new at `place` of the text stands.
std::size_t TextParts::partFor(std::size_t place, bool isBlankText) const
{
    std::size_t found = m_parts.size();
    std::size_t beforeEnd = m_parts.size(); // of the page, while nothing but white space is behind it
    bool isBehindEnd = false;
    std::size_t done = 0;
    for (std::size_t i = 0; i < m_parts.size() && (found == m_parts.size() || place > done); ++i) {
        const Part& part = m_parts[i];
        if (part.isText) {
            const std::string_view before = std::string_view(part.text).substr(0, place - done);
            if (isBehindEnd && !isBlank(before))
                beforeEnd = m_parts.size();
            found = i;
            done += part.text.size();
        } else if (!isBehindEnd && endsPage(m_raw.substr(part.begin, part.end - part.begin))) {
            isBehindEnd = true;
            beforeEnd = found;
        }
    }
    return isBlankText || beforeEnd == m_parts.size() ? found : beforeEnd;
}

void TextParts::setText(std::string_view text)
{
    const std::string old = this->text();
    std::size_t from = sharedPrefix(old, text);
    const std::size_t sameAtEnd = sharedSuffix(std::string_view(old).substr(from), text.substr(from));
    const std::size_t to = old.size() - sameAtEnd;
    const std::size_t home = partFor(from, isBlank(text.substr(from, text.size() - sameAtEnd - from)));
    std::size_t done = 0;
    for (std::size_t i = 0; i < m_parts.size(); ++i) {
        Part& part = m_parts[i];
        const std::size_t end = done + part.text.size();
        if (i == home)
            from = std::min(from, end);
        const std::size_t head = std::min(end, std::max(done, from));
        const std::size_t tail = std::min(end, std::max(done, to));
        part.wanted = part.text.substr(0, head - done);
        if (i == home)
            part.wanted += text.substr(from, text.size() - sameAtEnd - from);
        part.wanted += part.text.substr(tail - done);
        done = end;
    }
}

} // namespace luma::html
