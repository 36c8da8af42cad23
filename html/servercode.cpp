// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/servercode.h"

#include "base/ascii.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace luma {

namespace {

constexpr std::size_t npos = std::string_view::npos;

std::size_t behind(std::string_view source, std::string_view ending, std::size_t from)
{
    const std::size_t found = source.find(ending, from);
    return found == npos ? npos : found + ending.size();
}

/// Finds the end of PHP code: reads its strings and comments as PHP does.
class PhpReader final
{
public:
    PhpReader(std::string_view source, std::size_t begin) : m_source(source), m_at(begin) {}

    /// npos where a string or comment is never closed.
    std::size_t end()
    {
        while (m_at < m_source.size()) {
            m_at = m_source.find_first_of("?'\"`/#<", m_at);
            if (m_at == npos)
                break;
            if (startsWith("?>"))
                return m_at + 2;
            skip();
            if (m_at == npos)
                return npos;
        }
        return m_source.size();
    }

private:
    [[nodiscard]] bool startsWith(std::string_view text) const
    {
        return m_source.substr(m_at, text.size()) == text;
    }

    void skip()
    {
        const char c = m_source[m_at];
        if (c == '\'' || c == '"' || c == '`')
            skipString(c);
        else if (startsWith("/*"))
            m_at = behind(m_source, "*/", m_at + 2);
        else if (startsWith("//") || (c == '#' && !startsWith("#[")))
            skipLine();
        else if (startsWith("<<<"))
            skipHeredoc();
        else
            ++m_at;
    }

    void skipString(char quote)
    {
        for (++m_at; m_at < m_source.size() && m_source[m_at] != quote; ++m_at)
            m_at += m_source[m_at] == '\\' ? 1 : 0;
        m_at = m_at < m_source.size() ? m_at + 1 : npos;
    }

    // A comment of one line ends at the code's end too.
    void skipLine()
    {
        const std::size_t lineEnd = std::min(m_source.find('\n', m_at), m_source.size());
        m_at = std::min(lineEnd, m_source.find("?>", m_at));
    }

    void skipHeredoc()
    {
        std::size_t name = m_source.find_first_not_of(" \t'\"", m_at + 3);
        const std::size_t nameEnd = std::min(m_source.find_first_of("'\" \t\r\n;", name), m_source.size());
        m_at += 3;
        if (name >= nameEnd || !isAsciiLetter(m_source[name]))
            return;
        const std::string_view mark = m_source.substr(name, nameEnd - name);
        for (std::size_t line = m_source.find('\n', nameEnd); line != npos;
             line = m_source.find('\n', line + 1)) {
            const std::size_t start = m_source.find_first_not_of(" \t", line + 1);
            if (start != npos && m_source.substr(start, mark.size()) == mark) {
                m_at = start + mark.size();
                return;
            }
        }
        m_at = npos;
    }

    std::string_view m_source;
    std::size_t m_at;
};

/// One way in which server code begins.
enum class Kind : std::uint8_t { Instruction, Asp, Expression, Statement, Include, Comment };
constexpr std::array<std::string_view, 6> openings = {"<?", "<%", "{{", "{%", "<!--#", "{#"};

// Looking for the last character is fast: few pages hold many.
std::size_t findOpening(std::string_view source, std::string_view opening, std::size_t from)
{
    const std::size_t mark = opening.size() - 1;
    for (std::size_t at = source.find(opening[mark], from + mark); at != npos;
         at = source.find(opening[mark], at + 1)) {
        if (source.substr(at - mark, opening.size()) == opening)
            return at - mark;
    }
    return npos;
}

/// Finds all server code in one pass. Each part of the page is read a few times at most, however it is damaged.
class Finder final
{
public:
    /// Looks for code of the first `kinds` kinds.
    Finder(std::string_view source, std::size_t kinds) : m_source(source)
    {
        m_next.fill(npos);
        for (std::size_t i = 0; i < kinds; ++i)
            m_next.at(i) = findOpening(source, openings.at(i), 0);
    }

    std::vector<ServerCode> run()
    {
        std::vector<ServerCode> found;
        for (;;) {
            const auto first = std::min_element(m_next.begin(), m_next.end());
            if (*first == npos)
                return found;
            const std::size_t open = *first;
            const std::size_t end = endOf(static_cast<Kind>(first - m_next.begin()), open);
            if (end == npos)
                *first = npos; // nor does any later one end
            else if (end > open)
                found.push_back({open, end});
            moveOn(end == npos ? open + 1 : std::max(end, open + 1));
        }
    }

private:
    void moveOn(std::size_t from)
    {
        for (std::size_t i = 0; i < m_next.size(); ++i) {
            if (m_next.at(i) < from)
                m_next.at(i) = findOpening(m_source, openings.at(i), from);
        }
    }

    // Where the code ends; `open` where none begins there, npos where its ending is in no place behind it.
    std::size_t endOf(Kind kind, std::size_t open)
    {
        switch (kind) {
        case Kind::Instruction:
            return endOfInstruction(open);
        case Kind::Asp:
            return behind(m_source, m_source.substr(open, 4) == "<%--" ? "--%>" : "%>", open + 2);
        case Kind::Include:
            return open + 5 < m_source.size() && isAsciiLetter(m_source[open + 5])
                       ? behind(m_source, "-->", open + 5)
                       : open;
        case Kind::Comment:
            return endOfTemplateComment(open);
        default:
            return endOfTemplateTag(open);
        }
    }

    // Any text on one line; over several only without markup, as other braces happen to match.
    std::size_t endOfTemplateComment(std::size_t open) const
    {
        const std::string_view rest = m_source.substr(0, m_source.find("{#", open + 2));
        const std::size_t end = behind(rest, "#}", open + 2);
        if (end == npos)
            return open;
        const std::string_view comment = rest.substr(open, end - open);
        return comment.find('\n') != npos && comment.find('<') != npos ? open : end;
    }

    std::size_t endOfInstruction(std::size_t open)
    {
        const std::string_view name = m_source.substr(open + 2);
        if (startsWithIgnoringAsciiCase(name, "php") || name.starts_with('='))
            return endOfPhp(open + 2);
        if (startsWithIgnoringAsciiCase(name, "xml"))
            return open;
        const std::string_view rest = m_source.substr(0, m_source.find("<?", open + 2));
        const std::size_t close = behind(rest, "?>", open + 2);
        return close == npos ? open : close;
    }

    std::size_t endOfPhp(std::size_t begin)
    {
        const std::size_t end = m_hasOpenString ? npos : PhpReader(m_source, begin).end();
        if (end != npos)
            return end;
        m_hasOpenString = true;
        return std::min(behind(m_source, "?>", begin), m_source.size());
    }

    // The tag of a template holds no other and no markup, but for its strings: other braces that happen to match do.
    std::size_t endOfTemplateTag(std::size_t open) const
    {
        const std::string_view rest = m_source.substr(open);
        if (rest.starts_with("{{!--"))
            return behind(m_source, "--}}", open + 5);
        const std::string_view ending = rest.starts_with("{%")    ? "%}"
                                        : rest.starts_with("{{{") ? "}}}"
                                                                  : "}}";
        std::size_t quotes = 0;
        for (std::size_t i = ending.size(); i + 1 < rest.size(); ++i) {
            const char c = rest[i];
            const char next = rest[i + 1];
            if (rest.substr(i, ending.size()) == ending)
                return open + i + ending.size();
            quotes += c == '"' || c == '\'' ? 1 : 0;
            const bool isMarkup = c == '<' && (isAsciiLetter(next) || next == '/' || next == '!');
            if ((isMarkup && quotes % 2 == 0) || (c == '{' && (next == '{' || next == '%')))
                return open;
        }
        return open;
    }

    std::string_view m_source;
    std::array<std::size_t, openings.size()> m_next{};
    bool m_hasOpenString = false; // in PHP that was read; then it ends at the next mark
};

} // namespace

std::vector<ServerCode> serverCodeIn(std::string_view source)
{
    return Finder(source, openings.size()).run();
}

std::optional<std::string> withMaskedServerCode(std::string_view source)
{
    constexpr std::size_t blocks = 2;
    std::optional<std::string> masked;
    for (const ServerCode& code : Finder(source, blocks).run()) {
        if (!masked)
            masked.emplace(source);
        const auto begin = masked->begin() + static_cast<std::ptrdiff_t>(code.begin);
        std::replace_if(
            begin, begin + static_cast<std::ptrdiff_t>(code.end - code.begin),
            [](char c) { return c != '\n' && c != '\r'; }, maskedServerCode);
    }
    return masked;
}

std::string withEllipses(std::string_view text)
{
    std::string shown;
    while (!text.empty()) {
        const std::size_t code = std::min(text.find(maskedServerCode), text.size());
        shown.append(text.substr(0, code)).append(code < text.size() ? "\u2026" : "");
        text.remove_prefix(std::min(text.find_first_not_of("\x1A\r\n", code), text.size()));
    }
    return shown;
}

} // namespace luma
