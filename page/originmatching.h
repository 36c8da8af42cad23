// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace luma {

struct MarkupDifference;

/// Before `difference` is applied: gives the nodes that it brings the origins (html::Node::origin) of those that give way
/// and that they most likely are, so that the page's writer keeps their bytes. Equal subtrees come first, then elements of
/// one name and texts in their order, then equal subtrees from elsewhere in the run. Nodes that have an origin keep it.
void adoptOrigins(MarkupDifference& difference);

} // namespace luma
