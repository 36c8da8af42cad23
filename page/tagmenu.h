// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "page/tagrules.h"

#include <vector>

namespace luma {

/// What choosing a menu entry does.
enum class TagAction { None, AddTag, DeleteTag, AddClass, RemoveClass, AddID, RemoveID };

/// One entry of the outline's context menu, as data for whoever shows it.
struct TagMenuEntry
{
    QString title;
    TagAction action = TagAction::None;
    bool isSeparator = false;
    QString submenuTitle;
    std::vector<TagMenuEntry> submenu; // empty: none

    bool operator==(const TagMenuEntry&) const = default;
};

/// The context menu of an element: what `rules` allow, with the class and ID names that the page's style
/// sheets define. Empty for no element.
std::vector<TagMenuEntry> buildTagMenu(const TagRules& rules, const html::Element* element,
                                       const QStringList& cssClassArray, const QStringList& cssIDArray);

} // namespace luma
