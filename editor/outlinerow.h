// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <vector>

namespace luma::html {
class Element;
}

namespace luma {

/// A part of an element's row in the outline.
struct OutlinePart
{
    /// KeyValue is the value of an `id` or `class`. Marks are what stands between the others.
    enum class Kind { Mark, Tag, Name, Value, KeyValue, Text, Code };
    Kind kind;
    QString text;
};

/// An element's row: its tag with all attributes, and its own text. Server code is shown as it is.
std::vector<OutlinePart> outlineParts(const html::Element& element);
/// The same as one text.
QString outlineRowText(const html::Element& element);

} // namespace luma
