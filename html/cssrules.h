// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// Bytes of a style sheet's text, from `begin` up to `end`.
struct CssRange
{
    std::size_t begin = 0;
    std::size_t end = 0;

    [[nodiscard]] std::string_view of(std::string_view text) const { return text.substr(begin, end - begin); }
};

/// A declaration, or one that is switched off: a comment that holds exactly one.
struct CssDeclaration
{
    CssRange all; ///< with its semicolon, if there is one; a comment with its marks
    CssRange name;
    CssRange value;   ///< without the white space around it and without !important
    CssRange written; ///< the value with !important
    bool isOff = false;

    [[nodiscard]] bool isImportant() const { return written.end > value.end; }
};

/// A rule as the syntax has it, whether or not a browser knows its name or selector.
struct CssRule
{
    CssRange all;
    std::string name; ///< of an at-rule, in lower case without "@"; empty for a style rule
    CssRange prelude; ///< selectors or conditions, without white space around them
    CssRange block;   ///< between the braces; empty and at the end where there are none
    bool hasBlock = false;
    std::vector<CssDeclaration> declarations; ///< of a style rule
    std::vector<CssRule> rules;               ///< of an at-rule that groups rules, such as @media
};

/// The rules of a style sheet, UTF-8, in their order (CSS Syntax 3, 5.4). Damaged text gives the rules that a browser
/// finds in it. Rules that are nested in style rules are left out, and so are those below the hundredth level. Any thread.
std::vector<CssRule> readCssRules(std::string_view text);

/// The declarations of a style attribute's value or of a block.
std::vector<CssDeclaration> readCssDeclarations(std::string_view text);

} // namespace luma
