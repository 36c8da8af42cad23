// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/elementdrop.h"

#include "html/element.h"
#include "page/tagrules.h"

namespace luma {

bool isDropAllowed(const TagRules& rules, const html::Element* dragged, const html::Element* target)
{
    if (!dragged || !target || target->isInside(*dragged))
        return false;
    if (dragged->tagName() == target->tagName() || target->is("html"))
        return false;
    // One-sided: what belongs into the head goes nowhere else, but anything may go into the head.
    return !rules.headTags.contains(tagNameOf(*dragged)) || target->is("head");
}

html::Position dropPosition(html::Element& target, int childIndex, const html::Element* moved)
{
    const std::vector<html::Element*> children = target.children();
    const int before = childIndex - 1;
    html::Position place = {&target, target.firstChild()};
    if (before >= 1 && !children.empty()) {
        const auto index = static_cast<std::size_t>(before);
        place.next = index < children.size() ? children[index] : children.back()->next();
    }
    // A place is named by the node after it, which must not be the one that goes away.
    if (moved && place.next == moved)
        place.next = moved->next();
    return place;
}

} // namespace luma
