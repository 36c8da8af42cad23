// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace luma::html {

class Element;
class Node;
class PageSource;
class ParentNode;

using NodePtr = std::unique_ptr<Node>;
using NodeList = std::vector<NodePtr>;

/// A place between two nodes: inside `parent`, before `next` (null means at the end). An undo command may keep
/// one: it is valid again once all later edits have been undone.
struct Position
{
    ParentNode* parent = nullptr;
    Node* next = nullptr;
};

/// The record of a page's text that a node was parsed from; no source for a node made otherwise. It stays with the node
/// through moves and edits, and a copy has it too. The source lives as long as a node has it as its origin.
struct Origin
{
    const PageSource* source = nullptr;
    std::uint32_t record = 0;
};

/// One node of a page's tree. A node in the tree is owned by its parent, a detached one by the NodePtr that
/// detach() gave. Its address is its identity and survives moves, so an undo command holds either the plain
/// pointer or the NodePtr. Nothing here recurses, however deep the tree. A tree belongs to one thread at a
/// time. Const covers this node alone, not its neighbours.
class Node
{
public:
    enum class Kind : std::uint8_t { Document, Doctype, Element, Text, Comment };

    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;
    ~Node()
    {
        if (m_source)
            setOrigin({});
    }
    /// Deletes a node of any kind: a page has many nodes, which need no pointer to virtual functions each.
    static void operator delete(Node* node, std::destroying_delete_t);
    static void* operator new(std::size_t size);
    static void operator delete(void* memory); // of a node whose construction failed

    Kind kind() const { return m_kind; }
    /// This node as an element, or null.
    Element* asElement();
    const Element* asElement() const;
    /// This node as one that can have children (document or element), or null.
    ParentNode* asParent();
    const ParentNode* asParent() const;

    /// Neighbours; null at the ends and for a detached node.
    ParentNode* parent() const { return m_parent; }
    Node* previous() const { return m_previous; }
    Node* next() const { return m_next; }
    /// The nearest element after this node among its siblings, or null.
    Element* nextElement() const;
    /// The topmost ancestor (the document, for a node of a page), or the node itself.
    const Node& root() const;
    /// The next node in document order in the tree under `top`, or null at its end.
    Node* following(const Node& top) const;
    /// Whether `other` is this node or an ancestor.
    bool isInside(const Node& other) const;

    /// Where the node is, for ParentNode::insertAt() to put it back.
    Position position() const { return {m_parent, m_next}; }
    /// Takes the node and its subtree out of the tree. It must have a parent.
    NodePtr detach();
    /// Takes the node and its subtree out of the tree and destroys them.
    void remove() { detach(); }
    /// Inserts a detached node right before or after this one, which must have a parent, and gives it back. To
    /// move a node within the tree, detach it first.
    Node& before(NodePtr node);
    Node& after(NodePtr node);

    /// A detached copy of the node and its subtree.
    NodePtr copy() const;
    /// A detached copy of this node alone.
    NodePtr shallowCopy() const;
    [[nodiscard]] Origin origin() const { return {m_source, m_record}; }
    void setOrigin(const Origin& origin);
    void swapOrigin(Node& other);

    /// The node and its subtree as markup (UTF-8), serialised as the HTML standard says.
    std::string outerHtml() const;

protected:
    explicit Node(Kind kind) : m_kind(kind) {}

private:
    friend class ParentNode;

    ParentNode* m_parent = nullptr;
    Node* m_previous = nullptr;
    Node* m_next = nullptr;
    const PageSource* m_source = nullptr; // counts this node
    std::uint32_t m_record = 0;
    Kind m_kind;
};

/// Whether the two trees are equal: kinds, names, name spaces, attributes in order, text, the doctype as it is written.
bool sameTree(const Node& a, const Node& b);

} // namespace luma::html
