// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/outlinerow.h"

#include "base/ascii.h"
#include "html/codemarks.h"
#include "html/element.h"
#include "html/serializer.h"

namespace luma {

QString outlineRowText(const html::Element& element)
{
    if (html::isServerCode(element))
        return QString::fromStdString(simplified(html::codeOf(element)));
    std::string text = "<" + html::withUnspelledCode(element.tagName());
    const char* separator = " ";
    for (const html::Attribute& attribute : element.attributes()) {
        const std::string name = html::withUnspelledCode(attribute.name);
        const bool isCode = name != attribute.name && attribute.value.empty();
        text.append(separator).append(isCode ? name : html::withUnspelledCode(html::markup(attribute)));
        separator = ", ";
    }
    text += '>';
    if (const std::string own = element.ownText(); !own.empty())
        text.append(" ").append(own);
    return QString::fromStdString(text);
}

} // namespace luma
