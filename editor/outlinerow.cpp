// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/outlinerow.h"

#include "base/ascii.h"
#include "html/characterdata.h"
#include "html/codemarks.h"
#include "html/element.h"
#include "html/serializer.h"

#include <string>
#include <string_view>

namespace luma {

namespace {

using Kind = OutlinePart::Kind;

// A script is a text, too, but a row shows only its beginning.
constexpr std::size_t longestText = 2000;

/// Calls `take` with the kind and the text of each part, in UTF-8.
template <class Take>
void forEachPart(const html::Element& element, bool withText, const Take& take)
{
    if (html::isServerCode(element)) {
        take(Kind::Code, simplified(html::codeOf(element)));
        return;
    }
    take(Kind::Mark, "<");
    take(Kind::Tag, html::withUnspelledCode(element.tagName()));
    std::string_view separator = " ";
    for (const html::Attribute& attribute : element.attributes()) {
        take(Kind::Mark, separator);
        separator = ", ";
        const std::string name = html::withUnspelledCode(attribute.name);
        if (name != attribute.name && attribute.value.empty()) {
            take(Kind::Code, name);
            continue;
        }
        const bool isKey = name == "id" || name == "class";
        take(Kind::Name, name);
        take(isKey ? Kind::KeyValue : Kind::Value,
             html::withUnspelledCode(html::markup(attribute).substr(attribute.name.size())));
    }
    take(Kind::Mark, ">");
    if (const std::string own = withText ? element.ownText() : std::string(); !own.empty()) {
        take(Kind::Mark, " ");
        take(Kind::Text, own);
    }
}

} // namespace

std::vector<OutlinePart> outlineParts(const html::Element& element, bool withText)
{
    std::vector<OutlinePart> parts;
    forEachPart(element, withText, [&parts](Kind kind, std::string_view text) {
        parts.push_back({kind, QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()))});
    });
    return parts;
}

std::vector<OutlinePart> outlineParts(const html::Node& node)
{
    const auto part = [](Kind kind, std::string_view text) {
        // What is cut in the middle of a character ends in a replacement character, far behind what is seen.
        return OutlinePart{kind, QString::fromStdString(simplified(text.substr(0, longestText)))};
    };
    if (html::isServerCode(node))
        return {part(Kind::Code, html::codeOf(node))};
    if (const std::string* const text = html::textOf(node))
        return {part(Kind::Text, *text)};
    return {part(Kind::Mark, html::withUnspelledCode(node.outerHtml()))};
}

QString outlineRowText(const html::Element& element)
{
    std::string row;
    forEachPart(element, true, [&row](Kind, std::string_view text) { row += text; });
    return QString::fromStdString(row);
}

} // namespace luma
