// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/serializer.h"

#include "html/characterdata.h"
#include "html/doctype.h"
#include "html/document.h"
#include "html/element.h"
#include "html/tagtraits.h"

namespace luma::html {

namespace {

enum class Escaping { Text, AttributeValue };

/// Escapes "&" and no-break spaces everywhere, "<" and ">" in text, quotes in values (HTML standard, 13.3).
void writeEscaped(std::string_view text, Escaping escaping, std::string& markup)
{
    const std::string_view special = escaping == Escaping::Text ? "&<>\r\xC2" : "&\"\r\xC2";
    std::size_t done = 0;
    for (std::size_t at = text.find_first_of(special); at != std::string_view::npos;
         at = text.find_first_of(special, at + 1)) {
        std::string_view escaped;
        std::size_t length = 1;
        switch (text[at]) {
        case '&':
            escaped = "&amp;";
            break;
        case '<':
            escaped = "&lt;";
            break;
        case '>':
            escaped = "&gt;";
            break;
        case '"':
            escaped = "&quot;";
            break;
        case '\r':
            escaped = "&#13;";
            break;
        default:
            // The lead byte of U+0080 to U+00BF, of which only the no-break space is escaped.
            if (text.substr(at, 2) != "\xC2\xA0")
                continue;
            escaped = "&nbsp;";
            length = 2;
        }
        markup += text.substr(done, at - done);
        markup += escaped;
        done = at + length;
    }
    markup += text.substr(done);
}

void writeAttribute(const Attribute& attribute, std::string& markup)
{
    markup += attribute.name;
    markup += "=\"";
    writeEscaped(attribute.value, Escaping::AttributeValue, markup);
    markup += '"';
}

void writeText(const CharacterData& text, std::string& markup)
{
    const Element* parent = text.parent() ? text.parent()->asElement() : nullptr;
    if (parent && hasRawText(*parent))
        markup += text.data();
    else
        writeEscaped(text.data(), Escaping::Text, markup);
}

void writeOpening(const Node& node, std::string& markup)
{
    switch (node.kind()) {
    case Node::Kind::Document:
        if (static_cast<const Document&>(node).hasByteOrderMark())
            markup += "\xEF\xBB\xBF";
        break;
    case Node::Kind::Doctype:
        markup += static_cast<const Doctype&>(node).declaration();
        break;
    case Node::Kind::Element:
        writeStartTag(*node.asElement(), markup);
        break;
    case Node::Kind::Text:
        writeText(static_cast<const CharacterData&>(node), markup);
        break;
    case Node::Kind::Comment:
        markup += "<!--";
        markup += static_cast<const CharacterData&>(node).data();
        markup += "-->";
        break;
    }
}

} // namespace

void writeStartTag(const Element& element, std::string& markup)
{
    markup += '<';
    markup += element.tagName();
    for (const Attribute& attribute : element.attributes()) {
        markup += ' ';
        writeAttribute(attribute, markup);
    }
    markup += '>';
    if (!swallowsFirstLineFeed(element) || !element.firstChild())
        return;
    if (const std::string* text = textOf(*element.firstChild()); text && text->starts_with('\n'))
        markup += '\n';
}

void writeEndTag(const Element& element, std::string& markup)
{
    if (isVoid(element))
        return;
    markup += "</";
    markup += element.tagName();
    markup += '>';
}

void serialize(const Node& node, std::string& markup)
{
    const Node* at = &node;
    for (;;) {
        writeOpening(*at, markup);
        const ParentNode* parent = at->asParent();
        if (parent && parent->firstChild() && !(at->asElement() && isVoid(*at->asElement()))) {
            at = parent->firstChild();
            continue;
        }
        for (;;) {
            if (const Element* element = at->asElement())
                writeEndTag(*element, markup);
            if (at == &node)
                return;
            if (at->next())
                break;
            at = at->parent();
        }
        at = at->next();
    }
}

std::string escapedText(std::string_view text)
{
    std::string markup;
    writeEscaped(text, Escaping::Text, markup);
    return markup;
}

std::string markup(const Attribute& attribute)
{
    std::string result;
    writeAttribute(attribute, result);
    return result;
}

} // namespace luma::html
