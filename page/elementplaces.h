// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/node.h"

#include <QString>

#include <vector>

namespace luma {

class TagRules;

/// Where a new node goes: beside another one, as its first or last child, or to the caret in it, whose place only the
/// rendering knows.
enum class InsertPlace { Caret, First, Last, Before, After };

/// Whether the new node becomes a child of the other one.
constexpr bool isInside(InsertPlace place)
{
    return place != InsertPlace::Before && place != InsertPlace::After;
}
/// Whether an element can have no child but text that means itself alone, or none at all.
bool isClosed(const html::Element& element);

/// The places at a node of a page that may take elements, but for the caret's.
std::vector<InsertPlace> insertPlaces(const html::Node& node);
/// One of these places.
html::Position positionAt(html::Node& node, InsertPlace place);

/// Stands for a comment among the names of tags.
inline const QString commentTag = QStringLiteral("!--");

/// An element of the HTML standard, or a comment, and why it can't stand in a place (reasonAgainst).
struct ElementOffer
{
    QString tag;
    QString reason;
};

/// Why such an element can't stand there; empty: it can. The place is the caret or one of insertPlaces().
QString reasonAgainst(const html::Node& node, InsertPlace place, const QString& tag);

/// All elements that the standard knows and a page may use, by name, and at last a comment. They are judged by the
/// standard's content models, and by what a browser makes of them.
std::vector<ElementOffer> elementOffers(const html::Node& node, InsertPlace place);

/// Why a node can't be dropped into `target`, by the rules (TagRules::canDrop; for comments and texts, by what may hold
/// them); empty: it can. Null can't. What a browser would make of it is asked apart,
/// as that takes time in a large element.
QString reasonAgainstDrop(const TagRules& rules, const html::Node* dragged, const html::Element* target);
QString reasonAgainstMove(const html::Element& fixed);
QString reasonOfBrowser(const html::Node& dragged, const html::Element& target);

/// A detached new element, or comment, with contents that show where it is.
html::NodePtr sampleElement(const QString& tag);

} // namespace luma
