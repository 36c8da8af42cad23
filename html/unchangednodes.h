// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <unordered_set>

namespace luma::html {

class Document;
class Node;

/// Which nodes of a tree are, with all below them, as they were parsed: the same records of one source in the same order.
/// Valid until the tree changes. Any thread.
class UnchangedNodes final
{
public:
    explicit UnchangedNodes(const Document& document);

    [[nodiscard]] bool contains(const Node& node) const { return m_nodes.contains(&node); }
    /// Whether the node itself is as it was parsed, whatever became of its children. It has an origin.
    static bool hasSameContent(const Node& node);
    /// Whether the children of the node, which has an origin, are those that were parsed, whatever became of each.
    static bool hasSameChildren(const Node& node);
    /// Whether the node, which has an origin, was edited itself, not only somewhere in it.
    static bool isEdited(const Node& node) { return !hasSameContent(node) || !hasSameChildren(node); }

private:
    [[nodiscard]] bool areUnchanged(const Node& parent) const; // the children

    std::unordered_set<const Node*> m_nodes;
};

} // namespace luma::html
