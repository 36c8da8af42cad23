// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/cssedits.h"

#include "base/ascii.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <iterator>

namespace luma {

namespace {

constexpr std::string_view indentOfNewRules = "    ";

Error unreadable(const char* reason)
{
    return Error{QCoreApplication::translate("luma::CssEdits", reason).toStdString()};
}

/// The blanks in front of a place if nothing else stands on its line; nothing otherwise.
std::optional<std::string_view> indentAt(std::string_view sheet, std::size_t at)
{
    std::size_t begin = at;
    while (begin > 0 && (sheet[begin - 1] == ' ' || sheet[begin - 1] == '\t'))
        --begin;
    return begin == 0 || sheet[begin - 1] == '\n' ? std::optional(sheet.substr(begin, at - begin))
                                                  : std::nullopt;
}

std::string_view lineEndOf(std::string_view sheet)
{
    return sheet.find("\r\n") == std::string_view::npos ? "\n" : "\r\n";
}

/// Whether the text reads as this one declaration, with nothing left open that would swallow what follows.
bool isOneDeclaration(const std::string& text)
{
    const auto isOne = [](const std::vector<CssDeclaration>& found, std::size_t count) {
        return found.size() == count && std::none_of(found.begin(), found.end(),
                                                     [](const CssDeclaration& each) { return each.isOff; });
    };
    const std::string sheet = "a{" + text + ";b:c}d{e:f}";
    const std::vector<CssRule> rules = readCssRules(sheet);
    return isOne(readCssDeclarations(text), 1) && rules.size() == 2 && isOne(rules[0].declarations, 2) &&
           isOne(rules[1].declarations, 1) && rules[0].declarations[1].name.of(sheet) == "b";
}

/// What is on the line of a declaration that stands there alone, line end included.
CssRange wholeLines(std::string_view sheet, CssRange range)
{
    const auto indent = indentAt(sheet, range.begin);
    std::size_t end = range.end;
    while (end < sheet.size() && (sheet[end] == ' ' || sheet[end] == '\t' || sheet[end] == '\r'))
        ++end;
    if (!indent || end >= sheet.size() || sheet[end] != '\n')
        return range;
    return {range.begin - indent->size(), end + 1};
}

/// Behind a rule's last declaration.
CssEdit afterLast(std::string_view sheet, const CssDeclaration& last, const std::string& text)
{
    std::string added;
    if (!last.isOff && !last.all.of(sheet).ends_with(';'))
        added += ';';
    if (const auto indent = indentAt(sheet, last.all.begin); indent && sheet.find('\n') != std::string::npos)
        added.append(lineEndOf(sheet)).append(*indent);
    else if (last.all.begin > 0 && isWhiteSpace(sheet[last.all.begin - 1]))
        added += ' ';
    return {last.all.end, 0, added + text + ';'};
}

/// The parts of a value between blanks that stand in no brackets; none if they can't be told apart.
std::vector<CssRange> partsOfValue(std::string_view value)
{
    if (value.find_first_of("\"'\\/") != std::string_view::npos)
        return {};
    std::vector<CssRange> parts;
    int depth = 0;
    bool isInside = false;
    for (std::size_t i = 0; i < value.size(); ++i) {
        depth += value[i] == '(' ? 1 : value[i] == ')' ? -1 : 0;
        const bool isBlank = depth == 0 && isWhiteSpace(value[i]);
        if (!isBlank && !isInside)
            parts.push_back({i, i});
        isInside = !isBlank;
        if (isInside)
            parts.back().end = i + 1;
    }
    return parts;
}

/// Which of one to four parts is that of a side: top, right, bottom, left (CSS Box Model 3, 3.2).
std::size_t partOfSide(std::size_t side, std::size_t count)
{
    constexpr std::array<std::size_t, 4> ofThree = {0, 1, 2, 1};
    return count == 3 ? ofThree[side] : count == 4 ? side : side % count;
}

/// A value for all sides with another part for one of them; nothing if it has no parts for sides.
std::optional<std::string> withSide(const std::string& value, std::size_t side, const std::string& wanted)
{
    const std::vector<CssRange> parts = partsOfValue(value);
    const bool isOfAll = parts.size() == 1 && isAsciiLetter(value.front()) && value != "auto" &&
                         value.find('(') == std::string::npos; // "inherit"
    if (parts.empty() || parts.size() > 4 || isOfAll || value.find("var(") != std::string::npos)
        return std::nullopt;
    const std::size_t own = partOfSide(side, parts.size());
    int sharing = 0;
    std::vector<std::string> sides;
    for (std::size_t i = 0; i < 4; ++i) {
        sharing += partOfSide(i, parts.size()) == own ? 1 : 0;
        sides.emplace_back(i == side ? wanted : parts[partOfSide(i, parts.size())].of(value));
    }
    if (sharing == 1)
        return std::string(value).replace(parts[own].begin, parts[own].end - parts[own].begin, wanted);
    if (sides[3] == sides[1])
        sides.pop_back();
    if (sides.size() == 3 && sides[2] == sides[0])
        sides.pop_back();
    if (sides.size() == 2 && sides[1] == sides[0])
        sides.pop_back();
    while (sides.size() < parts.size())
        sides.push_back(sides[sides.size() % 2]);
    std::string text = sides.front();
    for (std::size_t i = 1; i < sides.size(); ++i)
        text += ' ' + sides[i];
    return text;
}

/// The value of "border-left" and its like with another width; nothing if it has none.
std::optional<std::string> withBorderWidth(const std::string& value, const std::string& wanted)
{
    for (const CssRange& part : partsOfValue(value)) {
        const std::string_view text = part.of(value);
        if (isAsciiDigit(text.front()) || text.front() == '.' || text == "thin" || text == "medium" ||
            text == "thick")
            return std::string(value).replace(part.begin, text.size(), wanted);
    }
    return std::nullopt;
}

/// The value of the declaration with that of one property in it changed; nothing if it can't be.
std::optional<std::string> withPartOf(const std::string& name, const std::string& value,
                                      const std::string& property, const std::string& wanted)
{
    constexpr std::array<std::string_view, 4> sides = {"top", "right", "bottom", "left"};
    if (name == property)
        return wanted;
    if (name + "-width" == property && name != "border")
        return withBorderWidth(value, wanted);
    for (std::size_t side = 0; side < sides.size(); ++side) {
        const std::string_view at = sides[side];
        if ((name == "border-width" && property == "border-" + std::string(at) + "-width") ||
            property == name + '-' + std::string(at))
            return withSide(value, side, wanted);
    }
    return std::nullopt;
}

CssEdit intoEmpty(std::string_view sheet, const CssRule& rule, const std::string& text)
{
    const std::string_view inner = rule.block.of(sheet);
    const std::size_t blanks = std::min(inner.find_first_not_of(whiteSpace), inner.size());
    if (inner.substr(0, blanks).find('\n') == std::string_view::npos)
        return {rule.block.begin, blanks, ' ' + text + (blanks == inner.size() ? "; " : ";")};
    const std::string indent(indentAt(sheet, rule.all.begin).value_or(""));
    std::string added(lineEndOf(sheet));
    added.append(indent).append(indentOfNewRules).append(text).append(";");
    return {rule.block.begin, 0, added};
}

} // namespace

std::string CssEdit::applied(std::string_view sheet) const
{
    return std::string(sheet).replace(at, length, text);
}

CssEdit CssEdit::inverse(std::string_view sheet) const
{
    return {at, text.size(), std::string(sheet.substr(at, length))};
}

Result<CssEdit> withCssValue(std::string_view sheet, const CssDeclaration& declaration,
                             const std::string& value)
{
    const std::string wanted(trimmed(value));
    if (wanted.empty() || !isOneDeclaration("a:" + wanted))
        return unreadable(QT_TRANSLATE_NOOP("luma::CssEdits", "This is not one value of a style sheet."));
    return CssEdit{declaration.written.begin, declaration.written.of(sheet).size(), wanted};
}

Result<CssEdit> withCssBoxValue(std::string_view sheet, const CssDeclaration& declaration,
                                const std::string& property, const std::string& value)
{
    const std::string important(
        sheet.substr(declaration.value.end, declaration.written.end - declaration.value.end));
    const std::string wanted(trimmed(value));
    if (const auto whole = withPartOf(asciiLower(declaration.name.of(sheet)),
                                      std::string(declaration.value.of(sheet)), property, wanted))
        return withCssValue(sheet, declaration, *whole + important);
    const std::string added = property + ": " + wanted + important;
    if (wanted.empty() || !isOneDeclaration(added))
        return withCssValue(sheet, declaration, wanted); // says what is wrong
    return afterLast(sheet, declaration, added);
}

CssEdit withoutCssDeclaration(std::string_view sheet, const CssDeclaration& declaration)
{
    CssRange gone = wholeLines(sheet, declaration.all);
    if (gone.begin == declaration.all.begin && gone.end == declaration.all.end) {
        while (gone.begin > 0 && (sheet[gone.begin - 1] == ' ' || sheet[gone.begin - 1] == '\t'))
            --gone.begin;
    }
    return {gone.begin, gone.end - gone.begin, {}};
}

Result<CssEdit> withCssSwitched(std::string_view sheet, const CssDeclaration& declaration)
{
    const std::string_view text = declaration.all.of(sheet);
    if (declaration.isOff) {
        std::string on(trimmed(text.substr(2, text.size() - 4)));
        // Another declaration may follow.
        if (!on.ends_with(';'))
            on += ';';
        return CssEdit{declaration.all.begin, text.size(), on};
    }
    if (text.find("*/") != std::string_view::npos)
        return unreadable(QT_TRANSLATE_NOOP(
            "luma::CssEdits", "A comment stands in this declaration, so it can't be switched off."));
    return CssEdit{declaration.all.begin, text.size(), "/* " + std::string(text) + " */"};
}

Result<CssEdit> withCssDeclaration(std::string_view sheet, const CssRule* rule, const std::string& text)
{
    std::string wanted(trimmed(text));
    if (wanted.ends_with(';'))
        wanted = trimmed(std::string_view(wanted).substr(0, wanted.size() - 1));
    const auto read = readCssDeclarations(wanted);
    if (!isOneDeclaration(wanted) || read.front().value.of(wanted).empty())
        return unreadable(
            QT_TRANSLATE_NOOP("luma::CssEdits", "Type a property and its value, such as “color: red”."));
    const std::vector<CssDeclaration> declarations = rule ? rule->declarations : readCssDeclarations(sheet);
    if (!declarations.empty())
        return afterLast(sheet, declarations.back(), wanted);
    return rule ? intoEmpty(sheet, *rule, wanted) : CssEdit{0, sheet.size(), wanted};
}

CssEdit withCssRule(std::string_view sheet, std::string_view selector, std::string_view declarations)
{
    const std::string lineEnd(lineEndOf(sheet));
    std::string rule;
    if (!sheet.empty() && !sheet.ends_with('\n'))
        rule += lineEnd;
    if (!trimmed(sheet).empty())
        rule += lineEnd;
    rule.append(selector).append(" {").append(lineEnd);
    for (const CssDeclaration& each : readCssDeclarations(declarations)) {
        std::string text(trimmed(each.all.of(declarations)));
        if (!text.ends_with(';') && !each.isOff)
            text += ';';
        rule.append(indentOfNewRules).append(text).append(lineEnd);
    }
    return {sheet.size(), 0, rule + '}' + lineEnd};
}

int lineOfCss(std::string_view sheet, std::size_t at)
{
    const auto begin = sheet.begin();
    return 1 + static_cast<int>(std::count(begin, std::next(begin, static_cast<std::ptrdiff_t>(at)), '\n'));
}

} // namespace luma
