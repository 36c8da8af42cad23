// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <QStringList>

#include <string>
#include <string_view>
#include <vector>

namespace luma::html {
class Element;
}

namespace luma {

/// What the value of an attribute may be. A Boolean is true if the attribute is there; a Keyword is usually one of a list.
enum class AttributeKind { Text, Number, Address, Keyword, Boolean };

/// An attribute that an element has or may have.
struct ElementAttribute
{
    std::string name;
    AttributeKind kind = AttributeKind::Text;
    QStringList keywords = {};
    bool isSet = false;
    QString value = {};
};

/// The attributes that the element has, in its order; then those that the HTML standard knows for this element; then those
/// it knows for every element. Event handlers are left out, and so are names that hold server code. Server code has none.
std::vector<ElementAttribute> attributesFor(const html::Element& element);

/// Fails if a Number's value is neither a number nor a percentage. What holds server code is not checked.
Result<void> checkValue(AttributeKind kind, const QString& value);

} // namespace luma
