// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <vector>

namespace luma::html {
class Element;
class Node;
} // namespace luma::html

namespace luma {

/// A part of an element's row in the outline.
struct OutlinePart
{
    /// KeyValue is the value of an `id` or `class`. Marks are what stands between the others.
    enum class Kind { Mark, Tag, Name, Value, KeyValue, Text, Code };
    Kind kind;
    QString text;
};

/// An element's row: its tag with all attributes, and its own text if that is wanted. Server code is shown as it is.
std::vector<OutlinePart> outlineParts(const html::Element& element, bool withText = true);
/// The row of a node that is no element: the beginning of its text, with white space as blanks.
std::vector<OutlinePart> outlineParts(const html::Node& node);
/// An element's row, with its text, as one text.
QString outlineRowText(const html::Element& element);

} // namespace luma
