// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace luma::html {

class Document;
class Node;

/// The smallest node of `document` around all that is not the same in `other`; null when nothing differs. Text nodes that
/// touch are one text, an attribute's place among the others does not matter. Any thread.
const Node* smallestDifferent(const Document& document, const Document& other);

} // namespace luma::html
