#pragma once

#include <string>
#include <string_view>

namespace luma::html {

class Element;
class Node;
struct Attribute;

/// Writing a tree as markup, after the HTML standard, 13.3 (serialising HTML fragments), with two additions
/// that keep more: the doctype is written whole, and a line feed that the parser would drop after `pre`,
/// `textarea` or `listing` is written twice. All append UTF-8 to `markup`.

/// The node and all below it.
void serialize(const Node& node, std::string& markup);

/// The tags alone. A void element has no end tag.
void writeStartTag(const Element& element, std::string& markup);
void writeEndTag(const Element& element, std::string& markup);

/// An attribute as it stands in a tag: name="value".
std::string markup(const Attribute& attribute);

} // namespace luma::html
