// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/element.h"

#include "base/ascii.h"
#include "html/characterdata.h"
#include "html/cssreferences.h"
#include "html/parse.h"

#include <algorithm>

namespace luma::html {

namespace {

bool isInTemplate(const Element& element)
{
    for (const Node* above = element.parent(); above; above = above->parent()) {
        if (const Element* ancestor = above->asElement(); ancestor && ancestor->is("template"))
            return true;
    }
    return false;
}

/// Whether no other element has the id, ignoring letter case as browsers do on pages in quirks mode.
bool hasUniqueId(const Element& element)
{
    const std::string_view id = element.attr("id");
    if (id.empty())
        return false;
    const Node& root = element.root();
    for (const Node* node = &root; node; node = node->following(root)) {
        const Element* other = node->asElement();
        if (other && other != &element && equalIgnoringAsciiCase(other->attr("id"), id))
            return false;
    }
    return true;
}

/// Classes make the step readable; the position makes it unique among siblings.
std::string step(const Element& element)
{
    std::string result = cssIdentifier(element.tagName());
    for (const std::string_view name : words(element.attr("class")))
        result.append(".").append(cssIdentifier(name));
    std::size_t position = 1;
    bool isAlone = true;
    if (const ParentNode* parent = element.parent()) {
        std::size_t count = 0;
        for (const Element* child = parent->firstElement(); child; child = child->nextElement()) {
            ++count;
            if (child == &element)
                position = count;
            else if (equalIgnoringAsciiCase(child->tagName(), element.tagName()))
                isAlone = false;
        }
    }
    if (!isAlone)
        result.append(":nth-child(").append(std::to_string(position)).append(")");
    return result;
}

} // namespace

Element::Element(Name tagName, NameSpace nameSpace, std::vector<Attribute> attributes)
    : ParentNode(Kind::Element),
      m_tagName(std::move(tagName)),
      m_attributes(std::move(attributes)),
      m_nameSpace(nameSpace)
{}

bool Element::is(std::string_view htmlTagName) const
{
    return m_nameSpace == NameSpace::Html && m_tagName == htmlTagName;
}

std::string_view Element::attr(std::string_view name) const
{
    for (const Attribute& attribute : m_attributes) {
        if (attribute.name == name)
            return attribute.value;
    }
    return {};
}

bool Element::hasAttr(std::string_view name) const
{
    return std::any_of(m_attributes.begin(), m_attributes.end(),
                       [name](const Attribute& attribute) { return attribute.name == name; });
}

void Element::setAttr(std::string_view name, std::string_view value)
{
    for (Attribute& attribute : m_attributes) {
        if (attribute.name == name) {
            attribute.value = value;
            return;
        }
    }
    m_attributes.push_back({std::string(name), std::string(value)});
}

void Element::removeAttr(std::string_view name)
{
    std::erase_if(m_attributes, [name](const Attribute& attribute) { return attribute.name == name; });
}

std::string Element::ownText() const
{
    if (is("script") || is("style"))
        return {};
    std::string all;
    for (const Node* child = firstChild(); child; child = child->next()) {
        if (const std::string* text = textOf(*child))
            all += *text;
    }
    return simplified(all);
}

Result<void> Element::setHtml(std::string_view markup)
{
    auto nodes = parseFragment(markup, *this);
    if (!nodes)
        return nodes.error();
    swapChildren(*nodes);
    return {};
}

std::string Element::cssSelector() const
{
    if (isInTemplate(*this))
        return {};
    std::vector<std::string> steps;
    for (const Node* node = this; node; node = node->parent()) {
        const Element* at = node->asElement();
        if (!at)
            break;
        if (hasUniqueId(*at)) {
            steps.push_back(cssIdentifier(at->attr("id")).insert(0, 1, '#'));
            break;
        }
        steps.push_back(at->parent() && at->parent()->kind() == Node::Kind::Document ? ":root" : step(*at));
    }
    std::string result;
    for (auto it = steps.rbegin(); it != steps.rend(); ++it)
        result.append(result.empty() ? "" : " > ").append(*it);
    return result;
}

NodePtr Element::shallowCopy() const
{
    return std::make_unique<Element>(m_tagName, m_nameSpace, m_attributes);
}

} // namespace luma::html
