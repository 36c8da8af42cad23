// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "html/cssrules.h"

#include <optional>
#include <string>
#include <string_view>

namespace luma {

/// A change of a style sheet's text: the bytes that go and the text that comes in their place.
struct CssEdit
{
    std::size_t at = 0;
    std::size_t length = 0;
    std::string text;

    [[nodiscard]] std::string applied(std::string_view sheet) const;
    /// The edit that takes this one back.
    [[nodiscard]] CssEdit inverse(std::string_view sheet) const;
};

/// The smallest changes that edit a rule or a declaration of a sheet, or of a style attribute's value; the rest keeps its
/// bytes. `sheet` is UTF-8; rules and declarations are what the reader found in it.

/// Another value, which may end in !important. Fails if the declaration would not end where the value ends.
Result<CssEdit> withCssValue(std::string_view sheet, const CssDeclaration& declaration,
                             const std::string& value);
/// Another value of a property of the box, such as "margin-left", "border-top-width" or "width", that the declaration sets
/// under this name or a shorter one: "margin: 1em 2em" keeps its other sides. What can't take it ("border", "margin: inherit")
/// gets a declaration behind it. As important as before. Fails as withCssValue() does.
Result<CssEdit> withCssBoxValue(std::string_view sheet, const CssDeclaration& declaration,
                                const std::string& property, const std::string& value);
/// With its line, if it has one.
CssEdit withoutCssDeclaration(std::string_view sheet, const CssDeclaration& declaration);
/// As a comment, or no longer so. Fails if a comment stands in the declaration.
Result<CssEdit> withCssSwitched(std::string_view sheet, const CssDeclaration& declaration);
/// A further declaration, "name: value", as the last one of a rule, set as the others are. Without a rule, the text is a
/// style attribute's. Fails as withCssValue() does, and if the text is no declaration.
Result<CssEdit> withCssDeclaration(std::string_view sheet, const CssRule* rule, const std::string& text);
/// A further rule with these declarations, one a line, at the end.
CssEdit withCssRule(std::string_view sheet, std::string_view selector, std::string_view declarations);

/// The counted line of a place, from 1.
int lineOfCss(std::string_view sheet, std::size_t at);

} // namespace luma
