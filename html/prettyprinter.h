// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace luma::html {

class Document;

/// The page as it is saved: elements that a browser sets as blocks on their own lines, indented by one blank
/// a level. Only white space is changed, and only where blocks begin and end: text and the elements in it
/// stay on their line as they are, and with them everything inside `pre`, `textarea`, `script`, `style` and
/// elements whose own style says how to treat white space. Printing what was printed gives the same text.
/// UTF-8, lines end in line feeds.
std::string prettyPrint(const Document& document);

} // namespace luma::html
