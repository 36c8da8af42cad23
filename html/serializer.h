// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace luma::html {

class Element;
class Node;
struct Attribute;

/// Writing a tree as markup, after the HTML standard, 13.3 (serialising HTML fragments), with what it takes
/// to read the same again: the doctype is written whole, a line feed that the parser would drop after `pre`,
/// `textarea` or `listing` is written twice, and a carriage return as a reference. All append UTF-8.

/// The node and all below it.
void serialize(const Node& node, std::string& markup);

/// The tags alone. A void element has no end tag.
void writeStartTag(const Element& element, std::string& markup);
void writeEndTag(const Element& element, std::string& markup);

/// An attribute as it stands in a tag: name="value".
std::string markup(const Attribute& attribute);

} // namespace luma::html
