// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Which tags a page may leave out, and which it does (HTML standard, 13.1.2.4). Any thread.
namespace luma::html {

class Element;
class Node;

/// Whether the element is html, head or body, which are there without tags.
bool isSkeleton(const Element& element);
/// Whether the element is one of those that the parser opens again where another element cut them in two, such as b.
bool isFormatting(const Element& element);
/// Whether the node is a comment, or server code, which is one to the parser.
bool isComment(const Node& node);
/// Whether the element, which has an origin, has to have a start tag to hold what it does, where the page leaves it out. A comment at the beginning
/// of html or head would stand before it, white space at the beginning of body, too.
bool needsStartTag(const Element& element);
/// Whether the element is one of svg or math whose start tag in the page is its end, too: <path/>.
bool closesItself(const Element& element);
/// Whether the page leaves out the end tag of the node, which has an origin. Of html, head and body it never counts.
bool hasOpenEnd(const Node& node);

} // namespace luma::html
