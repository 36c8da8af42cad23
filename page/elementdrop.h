// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/node.h"

#include <QByteArray>

#include <optional>

namespace luma {

class TagRules;

/// The drag type under which the outline carries its record.
inline constexpr const char* nodeDragType = "com.palisanlabs.LUMA.nodeDragType";

/// Whether `dragged` may be dropped on `target` (the proposed parent). Either may be null, which is refused.
bool isDropAllowed(const TagRules& rules, const html::Element* dragged, const html::Element* target);

/// Where a drop lands that the outline proposes at `childIndex` (-1: onto the target itself) among the
/// element children of `target`. The rule shifts by one on purpose: a drop between children i-1 and i lands
/// before child i-1. `moved` is the element that moves there, null for a copy: a place right beside it stays
/// valid once it is detached.
html::Position dropPosition(html::Element& target, int childIndex, const html::Element* moved);

} // namespace luma
