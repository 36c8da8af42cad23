// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <unordered_set>

namespace luma::html {

class Document;
class Element;

/// Elements that a page's style sheets show in a line of text or with all their blanks, whatever their names say.
using ShownInLines = std::unordered_set<const Element*>;

/// Prints a page with block elements on lines of their own, indented by one blank per level. Only white space
/// changes, and only where blocks start and end: text and inline elements stay on their line unchanged, as
/// does everything inside `pre`, `textarea`, `script`, `style` and elements whose style attribute sets
/// white-space, and those of `inLines`. Printing the result again gives the same text. UTF-8, lines end in line
/// feeds.
std::string prettyPrint(const Document& document, const ShownInLines& inLines = {});

} // namespace luma::html
