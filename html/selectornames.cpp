// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/selectornames.h"

#include "base/ascii.h"
#include "html/cssreferences.h"

#include <algorithm>
#include <iterator>

namespace luma {

namespace {

/// Walks over a sheet. What precedes a block is a selector or an at-rule's condition; what a semicolon or the end of a block
/// closes was a declaration.
class SelectorScan final
{
public:
    explicit SelectorScan(std::string_view text) : m_text(text) {}

    std::vector<SelectorName> run()
    {
        while (m_at < m_text.size())
            step();
        return std::move(m_found);
    }

private:
    void step()
    {
        const char c = m_text[m_at];
        if (startsWith("/*"))
            skipTo("*/", 2);
        else if (c == '"' || c == '\'')
            skipString();
        else if (c == '{')
            endStatement(m_atRule.empty() || m_atRule == "scope" || m_atRule == "supports");
        else if ((c == ';' || c == '}') && (m_depth == 0 || c == '}'))
            endStatement(false);
        else if (c == '@')
            startAtRule();
        else if (c == '[')
            readAttribute();
        else if ((c == '.' || c == '#') && startsName(m_at + 1))
            readName(c == '#');
        else if (isAsciiDigit(c) || ((c == '.' || c == '+') && isDigitAt(m_at + 1)))
            skipNumber();
        else if (startsName(m_at))
            skipName();
        else
            skipSign(c);
    }

    void skipSign(char c)
    {
        if (c == '(')
            ++m_depth;
        else if (c == ')' && m_depth > 0)
            --m_depth;
        ++m_at;
    }

    void endStatement(bool isSelector)
    {
        if (isSelector)
            std::move(m_pending.begin(), m_pending.end(), std::back_inserter(m_found));
        m_pending.clear();
        m_atRule.clear();
        m_depth = 0;
        ++m_at;
    }

    void startAtRule()
    {
        ++m_at;
        for (const char c : nameAt(m_at))
            m_atRule += asciiLower(c);
        m_at += m_atRule.size();
    }

    [[nodiscard]] bool startsWith(std::string_view sign) const
    {
        return m_text.substr(m_at).starts_with(sign);
    }
    [[nodiscard]] char at(std::size_t place) const { return place < m_text.size() ? m_text[place] : '\0'; }
    [[nodiscard]] bool isDigitAt(std::size_t place) const { return isAsciiDigit(at(place)); }
    [[nodiscard]] bool isEscape(std::size_t place) const
    {
        return at(place) == '\\' && place + 1 < m_text.size() && at(place + 1) != '\n' &&
               at(place + 1) != '\r' && at(place + 1) != '\f';
    }

    // CSS Syntax 3, 4.3.9.
    [[nodiscard]] bool startsName(std::size_t place) const
    {
        const std::size_t second = at(place) == '-' ? place + 1 : place;
        const bool isDash = second > place && at(second) == '-';
        return isDash || isEscape(second) ||
               (isCssNameByte(at(second)) && !isDigitAt(second) && at(second) != '-');
    }

    [[nodiscard]] std::string_view nameAt(std::size_t begin) const
    {
        std::size_t end = begin;
        while (end < m_text.size() && (isCssNameByte(m_text[end]) || isEscape(end))) {
            if (m_text[end] != '\\') {
                ++end;
                continue;
            }
            const std::size_t digits = ++end;
            while (end < m_text.size() && end - digits < 6 && hexValue(m_text[end]) >= 0)
                ++end;
            if (end == digits || (end < m_text.size() && isWhiteSpace(m_text[end])))
                ++end;
        }
        return m_text.substr(begin, end - begin);
    }

    void add(bool isId, std::size_t begin, std::string_view raw)
    {
        m_pending.push_back({isId, {begin, begin + raw.size()}, decodedCss(raw)});
    }

    void readName(bool isId)
    {
        const std::string_view raw = nameAt(m_at + 1);
        add(isId, m_at + 1, raw);
        m_at += 1 + raw.size();
    }

    void skipNumber()
    {
        ++m_at;
        while (m_at < m_text.size() && (isAsciiDigit(m_text[m_at]) || m_text[m_at] == '.'))
            ++m_at;
        m_at += nameAt(m_at).size();
    }

    void skipName()
    {
        const std::string_view name = nameAt(m_at);
        m_at += name.size();
        if (at(m_at) != '(' || !equalIgnoringAsciiCase(name, "url"))
            return;
        const std::size_t content = m_text.find_first_not_of(" \t\r\n\f", m_at + 1);
        if (at(content) != '"' && at(content) != '\'')
            skipTo(")", 1);
    }

    void skipTo(std::string_view end, std::size_t from)
    {
        const std::size_t found = m_text.find(end, m_at + from);
        m_at = found == std::string_view::npos ? m_text.size() : found + end.size();
    }

    // Up to the quote, or the end of the line where it is missing.
    void skipString()
    {
        const char quote = m_text[m_at++];
        while (m_at < m_text.size() && m_text[m_at] != quote && m_text[m_at] != '\n')
            m_at += m_text[m_at] == '\\' ? 2 : 1;
        m_at = std::min(m_at + 1, m_text.size());
    }

    void skipBlanks()
    {
        while (m_at < m_text.size() && isWhiteSpace(m_text[m_at]))
            ++m_at;
    }

    // [class~="a"]: what it compares with is a name if all of it has to be the same.
    void readAttribute()
    {
        ++m_at;
        skipBlanks();
        const std::string_view name = nameAt(m_at);
        const bool isId = equalIgnoringAsciiCase(name, "id");
        const bool isClass = equalIgnoringAsciiCase(name, "class");
        m_at += name.size();
        skipBlanks();
        const bool isWord = startsWith("~=");
        m_at += isWord ? 2 : startsWith("=") ? 1 : 0;
        const bool isSame = m_at > 0 && m_text[m_at - 1] == '=' && (isId || isClass);
        skipBlanks();
        if (!isSame)
            return;
        const char quote = at(m_at);
        if (quote != '"' && quote != '\'') {
            const std::string_view raw = nameAt(m_at);
            add(isId, m_at, raw);
            m_at += raw.size();
            return;
        }
        const std::size_t begin = m_at + 1;
        skipString();
        const std::string_view raw = m_text.substr(begin, std::max(m_at, begin + 1) - begin - 1);
        if (!raw.empty() && nameAt(begin).size() == raw.size())
            add(isId, begin, raw);
    }

    std::string_view m_text;
    std::size_t m_at = 0;
    std::vector<SelectorName> m_found;
    std::vector<SelectorName> m_pending; // of a statement that is perhaps none of selectors
    std::string m_atRule;                // its name, in lower case
    int m_depth = 0;                     // of round brackets
};

} // namespace

std::vector<SelectorName> selectorNames(std::string_view text)
{
    return SelectorScan(text).run();
}

} // namespace luma
