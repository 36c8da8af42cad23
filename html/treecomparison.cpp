// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/treecomparison.h"

#include "html/characterdata.h"
#include "html/codemarks.h"
#include "html/doctype.h"
#include "html/document.h"
#include "html/element.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace luma::html {

namespace {

/// The children of one node, text that touches taken together.
class JoinedChildren final
{
public:
    explicit JoinedChildren(const ParentNode& parent) : m_next(parent.firstChild()) { skipEmptyTexts(); }

    [[nodiscard]] const Node* node() const { return m_next; }

    /// The text of the current child, which is a text.
    [[nodiscard]] std::string text() const
    {
        std::string text;
        for (const Node* node = m_next; node && textOf(*node); node = node->next())
            text += *textOf(*node);
        return text;
    }

    void advance()
    {
        const bool wasText = textOf(*m_next);
        m_next = m_next->next();
        while (wasText && m_next && textOf(*m_next))
            m_next = m_next->next();
        skipEmptyTexts();
    }

private:
    void skipEmptyTexts()
    {
        while (m_next && textOf(*m_next) && text().empty())
            m_next = m_next->next();
    }

    const Node* m_next;
};

std::vector<std::pair<std::string_view, std::string_view>> sortedAttributes(const Element& element)
{
    std::vector<std::pair<std::string_view, std::string_view>> attributes;
    for (const Attribute& attribute : element.attributes())
        attributes.emplace_back(attribute.name, attribute.value);
    std::sort(attributes.begin(), attributes.end());
    return attributes;
}

bool areAlike(const JoinedChildren& one, const JoinedChildren& other)
{
    const Node& a = *one.node();
    const Node& b = *other.node();
    if (a.kind() != b.kind())
        return false;
    switch (a.kind()) {
    case Node::Kind::Text:
        return one.text() == other.text();
    case Node::Kind::Comment:
        return static_cast<const CharacterData&>(a).data() == static_cast<const CharacterData&>(b).data();
    case Node::Kind::Doctype:
        return static_cast<const Doctype&>(a).declaration() == static_cast<const Doctype&>(b).declaration();
    case Node::Kind::Element:
        return a.asElement()->tagName() == b.asElement()->tagName() &&
               (a.asElement()->nameSpace() == b.asElement()->nameSpace() || isServerCode(a)) &&
               (a.asElement()->attributes() == b.asElement()->attributes() ||
                sortedAttributes(*a.asElement()) == sortedAttributes(*b.asElement()));
    case Node::Kind::Document:
        break;
    }
    return true;
}

std::size_t depthOf(const Node* node)
{
    std::size_t depth = 0;
    for (; node->parent(); node = node->parent())
        ++depth;
    return depth;
}

const Node* commonAncestor(const Node* a, const Node* b)
{
    std::size_t depth = depthOf(a);
    std::size_t other = depthOf(b);
    for (; depth > other; --depth)
        a = a->parent();
    for (; other > depth; --other)
        b = b->parent();
    while (a != b) {
        a = a->parent();
        b = b->parent();
    }
    return a;
}

} // namespace

const Node* smallestDifferent(const Document& document, const Document& other)
{
    const Node* around = nullptr;
    std::vector<std::pair<const ParentNode*, const ParentNode*>> waiting = {{&document, &other}};
    while (!waiting.empty()) {
        const auto [mine, theirs] = waiting.back();
        waiting.pop_back();
        JoinedChildren one(*mine);
        JoinedChildren two(*theirs);
        while (one.node() && two.node() && areAlike(one, two)) {
            if (const ParentNode* const parent = one.node()->asParent())
                waiting.emplace_back(parent, two.node()->asParent());
            one.advance();
            two.advance();
        }
        if (one.node() || two.node())
            around = around ? commonAncestor(around, mine) : mine;
    }
    return around;
}

} // namespace luma::html
