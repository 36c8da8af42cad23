// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/cssrules.h"

#include "base/ascii.h"

#include <algorithm>
#include <array>
#include <optional>

namespace luma {

namespace {

constexpr int deepestGroup = 100;
constexpr std::array<std::string_view, 6> groupNames = {"media", "supports",       "layer",
                                                        "scope", "starting-style", "container"};

bool startsName(char c)
{
    return isAsciiLetter(c) || c == '_' || static_cast<unsigned char>(c) >= 0x80;
}

/// Walks over a part of a sheet, a token or a bracketed part at a time.
class CssCursor final
{
public:
    CssCursor(std::string_view text, CssRange part) : m_text(text), m_at(part.begin), m_end(part.end) {}

    [[nodiscard]] std::size_t at() const { return m_at; }
    [[nodiscard]] bool ended() const { return m_at >= m_end; }
    [[nodiscard]] char current() const { return m_text[m_at]; }
    [[nodiscard]] bool startsWith(std::string_view sign) const
    {
        return m_text.substr(m_at, m_end - m_at).starts_with(sign);
    }
    void step(std::size_t count = 1) { m_at = std::min(m_at + count, m_end); }

    void skipWhiteSpace()
    {
        while (!ended() && isWhiteSpace(current()))
            step();
    }

    void skipWhiteSpaceAndComments()
    {
        for (skipWhiteSpace(); startsWith("/*"); skipWhiteSpace())
            skipComment();
    }

    void skipComment()
    {
        const std::size_t found = m_text.substr(0, m_end).find("*/", m_at + 2);
        m_at = found == std::string_view::npos ? m_end : found + 2;
    }

    /// Whether a name starts here (CSS Syntax 3, 4.3.9).
    [[nodiscard]] bool isAtName(std::size_t offset = 0) const
    {
        const std::string_view left = m_text.substr(m_at, m_end - m_at);
        const auto isEscape = [&left](std::size_t i) {
            return i + 1 < left.size() && left[i] == '\\' && left[i + 1] != '\n' && left[i + 1] != '\r' &&
                   left[i + 1] != '\f';
        };
        if (left.size() <= offset)
            return false;
        if (left[offset] != '-')
            return startsName(left[offset]) || isEscape(offset);
        return left.size() > offset + 1 &&
               (startsName(left[offset + 1]) || left[offset + 1] == '-' || isEscape(offset + 1));
    }

    CssRange takeName()
    {
        const std::size_t begin = m_at;
        while (!ended() && (startsName(current()) || isAsciiDigit(current()) || current() == '-' ||
                            (current() == '\\' && isAtName())))
            step(current() == '\\' ? 2 : 1);
        return {begin, m_at};
    }

    /// Goes behind the next token, or behind the bracket that closes what opens here.
    void skipComponent()
    {
        std::string open; // the brackets that are open, innermost last
        do {
            const char c = current();
            if (!open.empty() && c == open.back()) {
                open.pop_back();
                step();
            } else if (c == '(' || c == '[' || c == '{') {
                open += c == '(' ? ')' : c == '[' ? ']' : '}';
                step();
            } else if (skipToken()) {
                open += ')';
            }
        } while (!open.empty() && !ended());
    }

private:
    /// Whether the token opens a function's bracket.
    bool skipToken()
    {
        if (startsWith("/*")) {
            skipComment();
        } else if (current() == '"' || current() == '\'') {
            skipString();
        } else if (isAtName()) {
            return skipNameOrUrl();
        } else {
            step();
        }
        return false;
    }

    bool skipNameOrUrl()
    {
        const std::string_view name = takeName().of(m_text);
        if (ended() || current() != '(')
            return false;
        step();
        if (!equalIgnoringAsciiCase(name, "url"))
            return true;
        skipWhiteSpace();
        if (!ended() && (current() == '"' || current() == '\''))
            return true;
        while (!ended() && current() != ')')
            step(current() == '\\' ? 2 : 1);
        step();
        return false;
    }

    // A line end closes a damaged string (CSS Syntax 3, 4.3.5).
    void skipString()
    {
        const char quote = current();
        step();
        while (!ended() && current() != quote) {
            if (current() == '\n' || current() == '\r' || current() == '\f')
                return;
            step(current() == '\\' ? 2 : 1);
        }
        step();
    }

    std::string_view m_text;
    std::size_t m_at;
    std::size_t m_end;
};

CssRange trimmedRange(std::string_view text, CssRange range)
{
    while (range.begin < range.end && isWhiteSpace(text[range.begin]))
        ++range.begin;
    while (range.end > range.begin && isWhiteSpace(text[range.end - 1]))
        --range.end;
    return range;
}

std::size_t endWithoutImportant(std::string_view text, CssRange written)
{
    constexpr std::string_view word = "important";
    const std::string_view value = written.of(text);
    if (value.size() <= word.size() ||
        !equalIgnoringAsciiCase(value.substr(value.size() - word.size()), word))
        return written.end;
    const CssRange before = trimmedRange(text, {written.begin, written.end - word.size()});
    if (before.of(text).empty() || before.of(text).back() != '!')
        return written.end;
    return trimmedRange(text, {before.begin, before.end - 1}).end;
}

/// The declaration that begins here; nothing where there is none. Goes behind it in any case.
std::optional<CssDeclaration> takeDeclaration(std::string_view text, CssCursor& cursor)
{
    CssDeclaration found;
    found.all.begin = cursor.at();
    bool isDeclaration = cursor.isAtName();
    if (isDeclaration) {
        found.name = cursor.takeName();
        cursor.skipWhiteSpaceAndComments();
        isDeclaration = !cursor.ended() && cursor.current() == ':';
    }
    if (isDeclaration)
        cursor.step();
    const std::size_t begin = cursor.at();
    while (!cursor.ended() && cursor.current() != ';') {
        const bool isBlock = cursor.current() == '{';
        cursor.skipComponent();
        // A nested rule needs no semicolon.
        if (isBlock && !isDeclaration)
            return {};
    }
    found.written = trimmedRange(text, {begin, cursor.at()});
    found.value = {found.written.begin, endWithoutImportant(text, found.written)};
    cursor.step();
    found.all.end = std::max(found.written.end, cursor.at());
    if (found.all.end > found.written.end && text[found.all.end - 1] != ';')
        found.all.end = found.written.end;
    return isDeclaration ? std::optional(found) : std::nullopt;
}

std::optional<CssDeclaration> switchedOff(std::string_view text, CssRange comment)
{
    const std::string_view whole = comment.of(text);
    if (whole.size() < 4 || !whole.ends_with("*/"))
        return {};
    CssCursor cursor(text, {comment.begin + 2, comment.end - 2});
    cursor.skipWhiteSpace();
    if (!cursor.isAtName())
        return {};
    auto found = takeDeclaration(text, cursor);
    cursor.skipWhiteSpace();
    if (!found || !cursor.ended() || found->value.of(text).empty())
        return {};
    found->all = comment;
    found->isOff = true;
    return found;
}

std::vector<CssDeclaration> declarationsIn(std::string_view text, CssRange part)
{
    std::vector<CssDeclaration> found;
    CssCursor cursor(text, part);
    while (true) {
        cursor.skipWhiteSpace();
        if (cursor.ended())
            return found;
        const std::size_t begin = cursor.at();
        if (cursor.startsWith("/*")) {
            cursor.skipComment();
            if (const auto off = switchedOff(text, {begin, cursor.at()}))
                found.push_back(*off);
        } else if (cursor.current() == ';') {
            cursor.step();
        } else if (const auto declaration = takeDeclaration(text, cursor)) {
            found.push_back(*declaration);
        }
    }
}

std::vector<CssRule> rulesIn(std::string_view text, CssRange part, int level);

/// At a brace.
void takeBlock(std::string_view text, CssCursor& cursor, CssRule& rule, int level)
{
    rule.hasBlock = true;
    rule.block.begin = cursor.at() + 1;
    cursor.skipComponent();
    const bool isClosed = cursor.at() > rule.block.begin && text[cursor.at() - 1] == '}';
    rule.block.end = std::max(rule.block.begin, cursor.at() - (isClosed ? 1 : 0));
    if (rule.name.empty())
        rule.declarations = declarationsIn(text, rule.block);
    else if (level < deepestGroup &&
             std::find(groupNames.begin(), groupNames.end(), rule.name) != groupNames.end())
        rule.rules = rulesIn(text, rule.block, level + 1);
}

/// The rule that begins here. A style rule without a block is none (CSS Syntax 3, 5.4.3).
std::optional<CssRule> takeRule(std::string_view text, CssCursor& cursor, int level)
{
    CssRule rule;
    rule.all.begin = cursor.at();
    if (cursor.current() == '@' && cursor.isAtName(1)) {
        cursor.step();
        rule.name = asciiLower(cursor.takeName().of(text));
    }
    const std::size_t begin = cursor.at();
    while (!cursor.ended() && cursor.current() != '{' && (rule.name.empty() || cursor.current() != ';'))
        cursor.skipComponent();
    rule.prelude = trimmedRange(text, {begin, cursor.at()});
    rule.block = {cursor.at(), cursor.at()};
    if (!cursor.ended() && cursor.current() == '{')
        takeBlock(text, cursor, rule, level);
    else
        cursor.step();
    rule.all.end = cursor.at();
    return rule.hasBlock || !rule.name.empty() ? std::optional(std::move(rule)) : std::nullopt;
}

std::vector<CssRule> rulesIn(std::string_view text, CssRange part, int level)
{
    std::vector<CssRule> rules;
    CssCursor cursor(text, part);
    while (true) {
        cursor.skipWhiteSpaceAndComments();
        if (cursor.ended())
            return rules;
        if (level == 0 && (cursor.startsWith("<!--") || cursor.startsWith("-->")))
            cursor.step(cursor.startsWith("-->") ? 3 : 4);
        else if (auto rule = takeRule(text, cursor, level))
            rules.push_back(*std::move(rule));
    }
}

} // namespace

std::vector<CssRule> readCssRules(std::string_view text)
{
    return rulesIn(text, {0, text.size()}, 0);
}

std::vector<CssDeclaration> readCssDeclarations(std::string_view text)
{
    return declarationsIn(text, {0, text.size()});
}

} // namespace luma
