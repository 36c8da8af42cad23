// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/node.h"

#include <QString>

#include <vector>

namespace luma {

/// An element of the HTML standard, and why it can't be a child of another one (reasonAgainst).
struct ElementOffer
{
    QString tag;
    QString reason;
};

/// Why such an element can't be a first child of `parent`; empty: it can.
QString reasonAgainst(const html::Element& parent, const QString& tag);

/// All elements that the standard knows and a page may use, by name. They are judged by the
/// standard's content models, and by what a browser makes of them.
std::vector<ElementOffer> elementOffers(const html::Element& parent);

/// A detached new element with contents that show where it is.
html::NodePtr sampleElement(const QString& tag);

} // namespace luma
