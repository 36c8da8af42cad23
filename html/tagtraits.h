// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace luma::html {

class Element;
class Node;

/// What the HTML standard says about elements by name.

/// Written without an end tag: br, img, meta ... (HTML standard, 13.3).
bool isVoid(const Element& element);
/// Whether the parser opens no element for a start tag of this name (any letter case): a void element's, or
/// "image", which it reads as img (HTML standard, 13.2.6.4.7).
bool isVoidStartTag(std::string_view name);
/// Its text is written unescaped: script, style ... (HTML standard, 13.3; scripting is off, so not noscript).
bool hasRawText(const Element& element);
/// Its text has no tags in it but references: title, textarea.
bool hasEscapableRawText(const Element& element);
/// The parser drops a line feed right after its start tag: pre, textarea, listing.
bool swallowsFirstLineFeed(const Element& element);
/// A block in a browser's default style sheet (HTML standard, 15.3), the parts of tables included.
bool isBlock(const Element& element);
/// Never shown, so white space around it makes no difference where there is no text. Server code may show anything.
bool isInvisible(const Node& node);

} // namespace luma::html
