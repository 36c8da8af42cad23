// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/element.h"

#include <utility>
#include <vector>

namespace luma {

/// The smallest change that a walk from the root finds to turn one tree into another: attributes on the way, and
/// one run of children to replace. Nodes outside the run are kept, and so is everything that refers to them.
struct MarkupDifference
{
    std::vector<std::pair<html::Element*, std::vector<html::Attribute>>> attributes;
    /// The run: the nodes between `previous` and `next` (null: the ends) in `parent` are replaced by `nodes`.
    /// No run without a parent.
    html::ParentNode* parent = nullptr;
    html::Node* previous = nullptr;
    html::Node* next = nullptr;
    html::NodeList nodes;

    [[nodiscard]] bool isEmpty() const { return attributes.empty() && !parent; }
};

/// Compares `mine` with `theirs`: their attributes and everything below them. The nodes of the run are moved out of
/// `theirs`.
MarkupDifference differenceTo(html::ParentNode& mine, html::ParentNode& theirs);

/// Compares a run of the children of `mine`, from `first` up to `end` (null: to the end), with all that is below
/// `theirs`.
MarkupDifference differenceInRun(html::ParentNode& mine, html::Node* first, html::Node* end,
                                 html::ParentNode& theirs);

} // namespace luma
