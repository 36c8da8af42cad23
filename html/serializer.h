// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/document.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace luma::html {

class Element;
class Node;
struct Attribute;

/// Writes a tree as markup by the HTML standard, 13.3 (serialising HTML fragments), so that parsing gives the
/// same tree again: the doctype is written whole, a line feed that the parser would drop after `pre`,
/// `textarea` or `listing` is doubled, and a carriage return becomes a reference. All functions append UTF-8.

/// How server code is written (html/codemarks.h): as the tree holds it, so that parse() gives the same tree; or as code, for
/// a page's file and parseWithSource().
enum class CodeForm : std::uint8_t { Marks, Code };

/// The node and its subtree.
void serialize(const Node& node, std::string& markup, CodeForm form = CodeForm::Marks);

/// The tags alone. A void element has no end tag.
void writeStartTag(const Element& element, std::string& markup, CodeForm form = CodeForm::Marks);
void writeEndTag(const Element& element, std::string& markup, CodeForm form = CodeForm::Marks);

/// A reference for the first character of server code, which makes it text.
std::string_view referenceFor(char first);

/// An attribute as it stands in a tag: name="value".
std::string markup(const Attribute& attribute);

} // namespace luma::html
