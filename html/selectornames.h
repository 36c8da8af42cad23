// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/cssrules.h"

#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// A class or id in a selector.
struct SelectorName
{
    bool isId = false;
    CssRange range; ///< the name as written, escapes and all, without "." or "#"
    std::string name;
};

/// The classes and ids in the selectors of a style sheet, in their order: of nested rules, inside :not() and its like, in @scope,
/// in selector() of @supports, and where [class~=...], [class=...] or [id=...] name one. `text` is UTF-8. Any thread.
std::vector<SelectorName> selectorNames(std::string_view text);

} // namespace luma
