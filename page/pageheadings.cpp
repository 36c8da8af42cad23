// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/pageheadings.h"

#include "html/document.h"
#include "html/element.h"
#include "page/pagecheck.h"

namespace luma {

namespace {

int headingLevel(const html::Element& element)
{
    const std::string& name = element.tagName();
    const bool isHeading = name.size() == 2 && name[0] == 'h' && name[1] >= '1' && name[1] <= '6';
    return isHeading && element.is(name) ? name[1] - '0' : 0;
}

} // namespace

bool isHiddenFromReaders(const html::Element& element)
{
    return element.hasAttr("hidden") || element.attr("aria-hidden") == "true";
}

std::vector<PageHeading> headingsOf(const html::Document& page)
{
    std::vector<PageHeading> headings;
    for (const html::Node* node = page.firstChild(); node;) {
        const html::Element* const element = node->asElement();
        const int level = element && !isHiddenFromReaders(*element) ? headingLevel(*element) : 0;
        if (level > 0)
            headings.push_back({element, level, headings.empty() ? 0 : headings.back().level});
        const bool isTemplate = element && element->is("template");
        node = isTemplate ? nodeBehind(*node) : node->following(page);
    }
    return headings;
}

} // namespace luma
