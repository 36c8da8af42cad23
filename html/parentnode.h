// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/node.h"

#include <string_view>

namespace luma::html {

/// A node with children: the document or an element. Owns them. The contents of a `template` element are its
/// children here.
class ParentNode : public Node
{
public:
    ~ParentNode() override;

    Node* firstChild() const { return m_first; }
    Node* lastChild() const { return m_last; }
    Element* firstElement() const;
    /// The element children, in order.
    std::vector<Element*> children() const;

    /// Puts a detached node before the child `next`, at the end when that is null. Gives the inserted node.
    Node& insert(NodePtr node, Node* next);
    Node& append(NodePtr node) { return insert(std::move(node), nullptr); }
    /// Puts a detached node among the child nodes (text and comments count) so that it becomes number
    /// `index`, counted from 0; beyond the last one means at the end.
    Node& insertChildren(std::size_t index, NodePtr node);
    /// Exchanges all child nodes for the given detached ones: the whole of an undo command that changes
    /// inner markup, since doing it twice restores what was.
    void swapChildren(NodeList& nodes);
    /// Puts the node back where `position` says.
    static Node& insertAt(const Position& position, NodePtr node);

    /// The elements below this node that match, in document order. Known selectors: a tag name or "*",
    /// "#id", "[attr]", "[attr=value]" and "[attr^=prefix]" (values may stand in quotes), any of them joined
    /// ("link[rel=stylesheet]"), and ancestors before a blank ("head style"). Letter case of tag names,
    /// attribute names and attribute values is ignored, that of an id counts. Anything else matches nothing.
    std::vector<Element*> select(std::string_view selector) const;

    /// All text below, white space trimmed and simplified.
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
