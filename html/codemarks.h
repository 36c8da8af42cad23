// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/node.h"

#include <string>
#include <string_view>

/// How a tree holds server code (serverCodeIn()), so that trees and the pages of a browser agree on it: between tags it is
/// a node of its own, an empty `template` element with the code in its first attribute and its first words in the second
/// (luma-mark), as a template may stand wherever code may: an element of svg or math in those, a `meta` in a noscript of the
/// head; or a comment where no element may stand. In names, and where it
/// would end a comment or a script, it is spelled in letters. In attributes, titles and text areas it stands as it is, and
/// Document::serverCode() tells it from text that only looks like it. All marks hold a number that this process has drawn,
/// so no page can forge them. Any thread.
namespace luma::html {

class Element;
class ParentNode;

/// A node for server code as a child of `parent`.
NodePtr makeCodeNode(const ParentNode& parent, std::string_view code);
/// The code that such a node stands for; empty for any other.
std::string codeOf(const Node& node);
bool isServerCode(const Node& node);

/// Code spelled in letters, digits, "-" and a dot.
std::string spelledCode(std::string_view code);
/// The text with all code that was spelled so.
std::string withUnspelledCode(std::string_view text);

} // namespace luma::html
