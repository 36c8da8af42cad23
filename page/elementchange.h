// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "page/markupdifference.h"

#include <QString>

#include <string>
#include <vector>

namespace luma {

class TagRules;

/// An attribute as the user edits it: name="value", in single quotes if the value holds double ones.
QString attributeText(const html::Attribute& attribute);

/// The element's attributes after the one named `replaced` (empty: none, at the end) has become what the text says:
/// name=value, with or without quotes; an empty text removes it. Fails if the text has no valid name, or if the element has
/// that attribute or another element that id already.
Result<std::vector<html::Attribute>> withAttributeText(const html::Element& element,
                                                       const std::string& replaced, const QString& text);

/// Why a node that the rules don't let go (TagRules::canDelete) has to stay.
QString reasonAgainstDelete(const html::Node& fixed);

/// Whether a browser reads the element, in `place` and alone, as it stands in the tree.
bool isReadSo(const html::Element& element, const html::Node& place);

/// What gives the element another tag name; nothing if it has that name. Fails if the rules forbid it, or if the page would
/// be read differently from then on.
Result<MarkupDifference> withTagName(const TagRules& rules, html::Element& element, const QString& name);

} // namespace luma
