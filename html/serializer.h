// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace luma::html {

class Element;
class Node;
struct Attribute;

/// Writes a tree as markup by the HTML standard, 13.3 (serialising HTML fragments), so that parsing gives the
/// same tree again: the doctype is written whole, a line feed that the parser would drop after `pre`,
/// `textarea` or `listing` is doubled, and a carriage return becomes a reference. All functions append UTF-8.

/// The node and its subtree.
void serialize(const Node& node, std::string& markup);

/// The tags alone. A void element has no end tag.
void writeStartTag(const Element& element, std::string& markup);
void writeEndTag(const Element& element, std::string& markup);

/// A text as it stands in an element that holds no raw text.
std::string escapedText(std::string_view text);

/// An attribute as it stands in a tag: name="value".
std::string markup(const Attribute& attribute);

} // namespace luma::html
