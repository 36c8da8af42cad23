// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/outlinetext.h"

#include "html/element.h"
#include "html/serializer.h"

namespace luma {

QString outlineText(const html::Element& element)
{
    std::string text = "<";
    text += element.tagName();
    const char* separator = " ";
    for (const html::Attribute& attribute : element.attributes()) {
        text.append(separator).append(html::markup(attribute));
        separator = ", ";
    }
    text += '>';
    if (const std::string own = element.ownText(); !own.empty())
        text.append(" ").append(own);
    return QString::fromStdString(text);
}

} // namespace luma
