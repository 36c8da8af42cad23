// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/characterdata.h"
#include "html/doctype.h"
#include "html/document.h"
#include "html/element.h"
#include "html/pagesource.h"
#include "html/serializer.h"

#include <cassert>
#include <utility>

namespace luma::html {

void Node::operator delete(Node* node, std::destroying_delete_t)
{
    switch (node->m_kind) {
    case Kind::Document:
        static_cast<Document*>(node)->~Document();
        break;
    case Kind::Doctype:
        static_cast<Doctype*>(node)->~Doctype();
        break;
    case Kind::Element:
        static_cast<Element*>(node)->~Element();
        break;
    case Kind::Text:
    case Kind::Comment:
        static_cast<CharacterData*>(node)->~CharacterData();
        break;
    }
    ::operator delete(node);
}

void* Node::operator new(std::size_t size)
{
    return ::operator new(size);
}

void Node::operator delete(void* memory)
{
    ::operator delete(memory);
}

NodePtr Node::shallowCopy() const
{
    switch (m_kind) {
    case Kind::Document:
        return static_cast<const Document*>(this)->shallowCopy();
    case Kind::Doctype:
        return static_cast<const Doctype*>(this)->shallowCopy();
    case Kind::Element:
        return static_cast<const Element*>(this)->shallowCopy();
    default:
        return static_cast<const CharacterData*>(this)->shallowCopy();
    }
}

void Node::setOrigin(const Origin& origin)
{
    if (origin.source)
        origin.source->addNode();
    if (m_source)
        m_source->removeNode();
    m_source = origin.source;
    m_record = origin.record;
}

void Node::swapOrigin(Node& other)
{
    std::swap(m_source, other.m_source);
    std::swap(m_record, other.m_record);
}

Element* Node::asElement()
{
    return m_kind == Kind::Element ? static_cast<Element*>(this) : nullptr;
}

const Element* Node::asElement() const
{
    return m_kind == Kind::Element ? static_cast<const Element*>(this) : nullptr;
}

ParentNode* Node::asParent()
{
    return m_kind == Kind::Element || m_kind == Kind::Document ? static_cast<ParentNode*>(this) : nullptr;
}

const ParentNode* Node::asParent() const
{
    return const_cast<Node*>(this)->asParent();
}

Element* Node::nextElement() const
{
    Node* node = m_next;
    while (node && node->m_kind != Kind::Element)
        node = node->m_next;
    return static_cast<Element*>(node);
}

const Node& Node::root() const
{
    const Node* node = this;
    while (node->m_parent)
        node = node->m_parent;
    return *node;
}

Node* Node::following(const Node& top) const
{
    if (const ParentNode* parent = asParent(); parent && parent->firstChild())
        return parent->firstChild();
    for (const Node* node = this; node && node != &top; node = node->m_parent) {
        if (node->m_next)
            return node->m_next;
    }
    return nullptr;
}

bool Node::isInside(const Node& other) const
{
    const Node* node = this;
    while (node && node != &other)
        node = node->m_parent;
    return node;
}

NodePtr Node::detach()
{
    assert(m_parent);
    return m_parent->release(*this);
}

Node& Node::before(NodePtr node)
{
    assert(m_parent);
    return m_parent->insert(std::move(node), this);
}

Node& Node::after(NodePtr node)
{
    assert(m_parent);
    return m_parent->insert(std::move(node), m_next);
}

NodePtr Node::copy() const
{
    const auto copyOf = [](const Node& node) {
        NodePtr copy = node.shallowCopy();
        copy->setOrigin(node.origin());
        return copy;
    };
    NodePtr result = copyOf(*this);
    Node* copied = result.get();
    const Node* node = this;
    for (;;) {
        if (const ParentNode* parent = node->asParent(); parent && parent->firstChild()) {
            node = parent->firstChild();
            copied = &copied->asParent()->append(copyOf(*node));
            continue;
        }
        while (node != this && !node->next()) {
            node = node->parent();
            copied = copied->parent();
        }
        if (node == this)
            return result;
        node = node->next();
        copied = &copied->parent()->append(copyOf(*node));
    }
}

std::string Node::outerHtml() const
{
    std::string markup;
    serialize(*this, markup);
    return markup;
}

namespace {

bool sameNode(const Node& a, const Node& b)
{
    if (a.kind() != b.kind())
        return false;
    switch (a.kind()) {
    case Node::Kind::Document:
        return true;
    case Node::Kind::Doctype: {
        const auto& one = static_cast<const Doctype&>(a);
        const auto& other = static_cast<const Doctype&>(b);
        return one.declaration() == other.declaration();
    }
    case Node::Kind::Element: {
        const Element& one = *a.asElement();
        const Element& other = *b.asElement();
        return one.tagName() == other.tagName() && one.nameSpace() == other.nameSpace() &&
               one.attributes() == other.attributes();
    }
    case Node::Kind::Text:
    case Node::Kind::Comment:
        return static_cast<const CharacterData&>(a).data() == static_cast<const CharacterData&>(b).data();
    }
    return false;
}

} // namespace

bool sameTree(const Node& a, const Node& b)
{
    const Node* one = &a;
    const Node* other = &b;
    while (one && other) {
        const bool leaf = !one->asParent() || !one->asParent()->firstChild();
        const bool otherLeaf = !other->asParent() || !other->asParent()->firstChild();
        const bool last = one == &a || !one->next();
        const bool otherLast = other == &b || !other->next();
        if (!sameNode(*one, *other) || leaf != otherLeaf || last != otherLast)
            return false;
        one = one->following(a);
        other = other->following(b);
    }
    return !one && !other;
}

} // namespace luma::html
