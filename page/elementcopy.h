// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/node.h"

namespace luma {

/// A detached copy of an element for the page that it stands in: an id that the page has already becomes a new one ("name-2"),
/// and what refers to it within the copy (labels, ARIA attributes, links to fragments) refers to the new one.
html::NodePtr copyWithOwnIds(const html::Element& element);

} // namespace luma
