// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/node.h"

#include <string_view>

namespace luma::html {

/// A node with children, which it owns: the document or an element. The contents of a `template` element are
/// its children here.
class ParentNode : public Node
{
public:
    ~ParentNode();

    Node* firstChild() const { return m_first; }
    Node* lastChild() const { return m_last; }
    Element* firstElement() const;
    /// The element children, in order.
    std::vector<Element*> children() const;

    /// Inserts a detached node before the child `next` (null means at the end) and gives it back.
    Node& insert(NodePtr node, Node* next);
    Node& append(NodePtr node) { return insert(std::move(node), nullptr); }
    /// Inserts a detached node as child number `index`, from 0, text and comments included; beyond the last
    /// means at the end.
    Node& insertChildren(std::size_t index, NodePtr node);
    /// Swaps all child nodes with the given detached ones. An undo command needs no more: a second call
    /// restores the first state.
    void swapChildren(NodeList& nodes);
    /// Inserts a detached node at `position`, and gives it back.
    static Node& insertAt(const Position& position, NodePtr node);

    /// The elements below this node that match, in document order. A selector is a tag name or "*", "#id", ".class",
    /// "[attr]", "[attr=value]" or "[attr^=prefix]" (the value may be quoted), ":root", ":nth-child(2)" or
    /// ":nth-of-type(2)", any of these joined ("link[rel=stylesheet]"), steps from ancestors separated by blanks
    /// ("head style") or from parents by ">", and several such separated by commas. Letter case matters for ids and
    /// classes only. Any other selector matches nothing.
    std::vector<Element*> select(std::string_view selector) const;

    /// All text below this node, simplified().
    std::string text() const;
    /// The markup of all child nodes.
    std::string html() const;

protected:
    explicit ParentNode(Kind kind) : Node(kind) {}

private:
    friend class Node;
    NodePtr release(Node& child);

    Node* m_first = nullptr;
    Node* m_last = nullptr;
};

} // namespace luma::html
