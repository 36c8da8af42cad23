// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/element.h"

#include <utility>
#include <vector>

namespace luma {

/// What turns one tree into another, as small as a walk from the root down finds it: attributes on the way,
/// and one run of children that is exchanged. Nodes outside the run stay, and with them all that refers to
/// them.
struct MarkupDifference
{
    std::vector<std::pair<html::Element*, std::vector<html::Attribute>>> attributes;
    /// The run: what stands between `previous` and `next` (null: the ends) in `parent` gives way to `nodes`.
    /// No run without a parent.
    html::ParentNode* parent = nullptr;
    html::Node* previous = nullptr;
    html::Node* next = nullptr;
    html::NodeList nodes;

    [[nodiscard]] bool isEmpty() const { return attributes.empty() && !parent; }
};

/// Compares what is below `mine` with what is below `theirs`, and their attributes; the nodes of the run are
/// taken out of `theirs`.
MarkupDifference differenceTo(html::ParentNode& mine, html::ParentNode& theirs);

} // namespace luma
