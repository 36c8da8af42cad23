// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/pagecheck.h"

#include "html/codemarks.h"
#include "html/element.h"
#include "page/pageheadings.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace luma {

namespace {

using html::Element;

bool isPartOfPage(const html::Document& page)
{
    const Element* const root = page.documentElement();
    const Element* const head = page.head();
    if (!root || !root->attributes().empty() || (head && head->firstChild()))
        return false;
    const html::Node* node = page.firstChild();
    while (node && node->kind() != html::Node::Kind::Doctype)
        node = node->next();
    return !node;
}

bool hasCodeChild(const html::ParentNode& parent)
{
    const html::Node* node = parent.firstChild();
    while (node && !html::isServerCode(*node))
        node = node->next();
    return node != nullptr;
}

// Code that stands for attributes is spelled in a name.
bool hasCodeAttribute(const Element& element)
{
    const auto& attributes = element.attributes();
    return std::any_of(attributes.begin(), attributes.end(), [](const html::Attribute& each) {
        return html::withUnspelledCode(each.name.text()) != each.name.text();
    });
}

bool isNamedByAttribute(const Element& element)
{
    return !element.attr("aria-label").empty() || !element.attr("aria-labelledby").empty() ||
           !element.attr("title").empty();
}

// An image without alternative text is a fault of its own.
bool givesName(const html::Node& node)
{
    const Element* const element = node.asElement();
    if (!element)
        return html::isServerCode(node);
    if (element->is("img") || element->tagName() == "image")
        return !element->hasAttr("alt") || !element->attr("alt").empty();
    return isNamedByAttribute(*element) || html::isServerCode(node) || element->is("object") ||
           element->is("video") || element->is("iframe") || element->is("input");
}

bool isEmpty(const Element& element)
{
    if (isHiddenFromReaders(element) || isNamedByAttribute(element) || hasCodeAttribute(element) ||
        !element.text().empty())
        return false;
    for (const html::Node* node = element.firstChild(); node; node = node->following(element)) {
        if (givesName(*node))
            return false;
    }
    return true;
}

bool lacksAlternative(const Element& element)
{
    const bool isImage = element.is("img") || (element.is("area") && element.hasAttr("href")) ||
                         (element.is("input") && element.attr("type") == "image");
    return isImage && !element.hasAttr("alt") && !isHiddenFromReaders(element) &&
           !hasCodeAttribute(element) && element.attr("aria-label").empty() &&
           element.attr("aria-labelledby").empty() && element.attr("role") != "presentation" &&
           element.attr("role") != "none";
}

/// Walks through a page once and notes what is wrong.
class Walk final
{
public:
    std::vector<PageFinding> take() { return std::move(m_found); }

    void lookAtPage(const html::Document& page)
    {
        m_headings = headingsOf(page);
        const Element* const root = page.documentElement();
        if (!root || isPartOfPage(page))
            return;
        const Element* const head = page.head();
        if (page.title().empty() && !(head && hasCodeChild(*head)))
            add(PageFault::NoTitle, head ? *head : *root);
        if (root->attr("lang").empty() && root->attr("xml:lang").empty() && !hasCodeAttribute(*root))
            add(PageFault::NoLanguage, *root);
    }

    void lookAt(const Element& element)
    {
        const std::string id(element.attr("id"));
        if (!id.empty() && !m_ids.insert(id).second)
            add(PageFault::RepeatedId, element, id);
        if (lacksAlternative(element))
            add(PageFault::NoAlternative, element);
        if (element.is("a") && element.hasAttr("href") && isEmpty(element))
            add(PageFault::EmptyLink, element);
        if (element.is("button") && isEmpty(element))
            add(PageFault::EmptyButton, element);
        if (m_heading < m_headings.size() && m_headings[m_heading].element == &element)
            lookAtHeading(m_headings[m_heading++]);
    }

private:
    void lookAtHeading(const PageHeading& heading)
    {
        if (heading.jumps())
            add(PageFault::HeadingJump, *heading.element,
                "h" + std::to_string(heading.levelBefore) + " \u2192 h" + std::to_string(heading.level));
    }

    void add(PageFault fault, const Element& element, std::string detail = {})
    {
        m_found.push_back({fault, &element, std::move(detail)});
    }

    std::vector<PageFinding> m_found;
    std::unordered_set<std::string> m_ids;
    std::vector<PageHeading> m_headings;
    std::size_t m_heading = 0; // the next one
};

} // namespace

const html::Node* nodeBehind(const html::Node& node)
{
    const html::Node* at = &node;
    while (at && !at->next())
        at = at->parent();
    return at ? at->next() : nullptr;
}

std::vector<PageFinding> checkPage(const html::Document& page)
{
    Walk walk;
    walk.lookAtPage(page);
    for (const html::Node* node = page.firstChild(); node;) {
        const Element* const element = node->asElement();
        const bool isTemplate = element && element->is("template");
        if (element && !isTemplate)
            walk.lookAt(*element);
        node = isTemplate ? nodeBehind(*node) : node->following(page);
    }
    return walk.take();
}

} // namespace luma
