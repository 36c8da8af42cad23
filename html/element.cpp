// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/element.h"

#include "base/ascii.h"
#include "html/characterdata.h"
#include "html/cssselector.h"
#include "html/parse.h"

#include <algorithm>

namespace luma::html {

Element::Element(std::string tagName, NameSpace nameSpace, std::vector<Attribute> attributes)
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
    return html::cssSelector(*this);
}

NodePtr Element::shallowCopy() const
{
    return std::make_unique<Element>(m_tagName, m_nameSpace, m_attributes);
}

} // namespace luma::html
