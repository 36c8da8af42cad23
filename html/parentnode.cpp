// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/parentnode.h"

#include "base/ascii.h"
#include "html/characterdata.h"
#include "html/element.h"
#include "html/selector.h"
#include "html/serializer.h"

#include <cassert>

namespace luma::html {

ParentNode::~ParentNode()
{
    // A child's children join the queue before it is deleted, so no destructor finds any and a deep tree
    // needs no stack.
    Node* node = m_first;
    while (node) {
        if (ParentNode* parent = node->asParent(); parent && parent->m_first) {
            parent->m_last->m_next = node->m_next;
            node->m_next = parent->m_first;
            parent->m_first = nullptr;
        }
        Node* const next = node->m_next;
        delete node;
        node = next;
    }
}

Element* ParentNode::firstElement() const
{
    if (m_first && m_first->kind() == Kind::Element)
        return static_cast<Element*>(m_first);
    return m_first ? m_first->nextElement() : nullptr;
}

std::vector<Element*> ParentNode::children() const
{
    std::vector<Element*> result;
    for (Element* child = firstElement(); child; child = child->nextElement())
        result.push_back(child);
    return result;
}

Node& ParentNode::insert(NodePtr node, Node* next)
{
    assert(node && !node->m_parent && (!next || next->m_parent == this));
    assert(!node->asParent() || !node->asParent()->m_first || !isInside(*node));
    Node* const inserted = node.release();
    inserted->m_parent = this;
    inserted->m_next = next;
    inserted->m_previous = next ? next->m_previous : m_last;
    (inserted->m_previous ? inserted->m_previous->m_next : m_first) = inserted;
    (next ? next->m_previous : m_last) = inserted;
    return *inserted;
}

Node& ParentNode::insertChildren(std::size_t index, NodePtr node)
{
    Node* next = m_first;
    for (; next && index > 0; --index)
        next = next->m_next;
    return insert(std::move(node), next);
}

Node& ParentNode::insertAt(const Position& position, NodePtr node)
{
    return position.parent->insert(std::move(node), position.next);
}

NodePtr ParentNode::release(Node& child)
{
    (child.m_previous ? child.m_previous->m_next : m_first) = child.m_next;
    (child.m_next ? child.m_next->m_previous : m_last) = child.m_previous;
    child.m_parent = nullptr;
    child.m_previous = nullptr;
    child.m_next = nullptr;
    return NodePtr(&child);
}

void ParentNode::swapChildren(NodeList& nodes)
{
    NodeList old;
    while (m_first)
        old.push_back(release(*m_first));
    for (NodePtr& node : nodes)
        append(std::move(node));
    nodes = std::move(old);
}

std::vector<Element*> ParentNode::select(std::string_view selector) const
{
    const Selector wanted(selector);
    std::vector<Element*> result;
    for (Node* node = following(*this); node; node = node->following(*this)) {
        if (Element* element = node->asElement(); element && wanted.matches(*element))
            result.push_back(element);
    }
    return result;
}

std::string ParentNode::text() const
{
    std::string all;
    for (const Node* node = following(*this); node; node = node->following(*this)) {
        if (const std::string* text = textOf(*node))
            all += *text;
    }
    return simplified(all);
}

std::string ParentNode::html() const
{
    std::string markup;
    for (const Node* child = m_first; child; child = child->next())
        serialize(*child, markup);
    return markup;
}

} // namespace luma::html
