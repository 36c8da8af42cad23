// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/node.h"
#include "html/pagesource.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace luma::html {

class ParentNode;
class UnchangedNodes;

/// Which children of a node stay where they were in its source. Those that stay are in the source's order, as many as
/// can be. Valid until the tree changes. Any thread.
class KeptChildren final
{
public:
    /// Children of the source whose bytes belong together: one, or several whose bytes are entangled.
    struct Cluster
    {
        SourceRange range;
        std::uint32_t first;
        std::uint32_t behind; // in the list of the parent's records
    };
    /// A child of the tree, or several text nodes that touch, of which at most one has bytes of its own.
    struct Unit
    {
        const Node* node;
        const Node* behind; // the node after it
        Origin origin;
        std::ptrdiff_t cluster = -1;
        std::size_t length = 1; // in units: entangled children are kept together
        bool kept = false;
        bool isBeforeEdit = false; // something is new, or gone, directly behind it
    };

    /// Where a text stays that was typed into the white space behind </body>: a comment behind it would come into the body.
    enum class TypedBehindBody { InPlace, InFrontOfEnd };

    /// The parent has an origin.
    KeptChildren(const ParentNode& parent, const UnchangedNodes& unchanged, TypedBehindBody typed);

    [[nodiscard]] const std::vector<Cluster>& clusters() const { return m_clusters; }
    [[nodiscard]] const std::vector<Unit>& units() const { return m_units; }

    /// The record of a cluster that is one child.
    [[nodiscard]] std::uint32_t childOf(const Cluster& cluster) const { return m_children[cluster.first]; }

    /// The children of any node, matched with nothing.
    static std::vector<Unit> unitsOf(const ParentNode& parent);

private:
    void findClusters(const Node& parent);
    void match(const Node& parent, const UnchangedNodes& unchanged);
    void chooseKept();
    void releaseLastBlank(const Node& parent, TypedBehindBody typed);

    std::vector<std::uint32_t> m_children; // the parent's records
    std::vector<Cluster> m_clusters;
    std::vector<Unit> m_units;
};

} // namespace luma::html
