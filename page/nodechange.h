// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "page/markupdifference.h"

#include <QString>

namespace luma {

class TagRules;

/// A text or comment as it is edited in one line: each run of white space is a blank. Empty for any other node.
QString textInLine(const html::Node& node);
/// Whether a node's text can be edited so: white space means nothing in it, and it is not too long.
bool isTextForLine(const html::Node& node);

/// What makes textInLine() of the node this text; white space that the user did not touch stays as it is. An empty text
/// removes a text node. Nothing if the text is the same. Fails if the page would be read differently from then on.
Result<MarkupDifference> withTextInLine(html::Node& node, const QString& text);

/// The markup of a node as the page's file has it, with server code.
QString markupToEdit(const html::Node& node);
/// What exchanges the node for the nodes that this markup makes there, as few as can be. Fails if the rules or the place
/// forbid one of them, if the page would be read differently, or has one of the ids already.
Result<MarkupDifference> withMarkup(const TagRules& rules, html::Node& node, const QString& markup);

} // namespace luma
