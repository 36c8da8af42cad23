// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/serializer.h"

#include "base/utf8.h"
#include "html/characterdata.h"
#include "html/codemarks.h"
#include "html/doctype.h"
#include "html/document.h"
#include "html/element.h"
#include "html/servercode.h"
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

/// Where markup goes, and how code is written there.
struct Output
{
    std::string& markup;
    CodeForm form;
    const Document::ServerCodes* codes; // what is written as code in attributes and text; null: nothing

    [[nodiscard]] bool writesCode() const { return form == CodeForm::Code; }
};

Output outputFor(const Node& node, std::string& markup, CodeForm form)
{
    const Node& root = node.root();
    const bool isKnown = form == CodeForm::Code && root.kind() == Node::Kind::Document;
    return {markup, form, isKnown ? &static_cast<const Document&>(root).serverCode() : nullptr};
}

// Of server code, what is in `codes` is written as such; all other gets a reference, so that it stays text.
void writeEscaped(std::string_view text, Escaping escaping, const Output& output,
                  const Document::ServerCodes* codes)
{
    std::size_t done = 0;
    for (const ServerCode& code : output.writesCode() ? serverCodeIn(text) : std::vector<ServerCode>()) {
        const std::string_view found = text.substr(code.begin, code.end - code.begin);
        const bool isCode = codes && codes->contains(found);
        writeEscaped(text.substr(done, code.begin - done), escaping, output.markup);
        output.markup += isCode ? found : referenceFor(found.front());
        done = isCode ? code.end : code.begin + 1;
    }
    writeEscaped(text.substr(done), escaping, output.markup);
}

void writeAttribute(const Attribute& attribute, const Output& output)
{
    output.markup += output.writesCode() ? withUnspelledCode(attribute.name) : attribute.name.text();
    output.markup += "=\"";
    writeEscaped(attribute.value, Escaping::AttributeValue, output, output.codes);
    output.markup += '"';
}

void writeRaw(std::string_view text, const Output& output)
{
    output.markup += output.writesCode() ? withUnspelledCode(text) : text;
}

void writeText(const CharacterData& text, const Output& output)
{
    const Element* parent = text.parent() ? text.parent()->asElement() : nullptr;
    if (parent && hasRawText(*parent))
        writeRaw(text.data(), output);
    else
        writeEscaped(text.data(), Escaping::Text, output,
                     parent && hasEscapableRawText(*parent) ? output.codes : nullptr);
}

void writeStart(const Element& element, const Output& output)
{
    std::string& markup = output.markup;
    if (output.writesCode() && isServerCode(element)) {
        markup += codeOf(element);
        return;
    }
    markup += '<';
    writeRaw(element.tagName(), output);
    for (const Attribute& attribute : element.attributes()) {
        markup += ' ';
        writeAttribute(attribute, output);
    }
    markup += '>';
    if (!swallowsFirstLineFeed(element) || !element.firstChild())
        return;
    if (const std::string* text = textOf(*element.firstChild()); text && text->starts_with('\n'))
        markup += '\n';
}

void writeEnd(const Element& element, const Output& output)
{
    if (isVoid(element) || (output.writesCode() && isServerCode(element)))
        return;
    output.markup += "</";
    writeRaw(element.tagName(), output);
    output.markup += '>';
}

void writeOpening(const Node& node, const Output& output)
{
    switch (node.kind()) {
    case Node::Kind::Document:
        if (static_cast<const Document&>(node).hasByteOrderMark())
            output.markup += utf8ByteOrderMark;
        break;
    case Node::Kind::Doctype:
        output.markup += static_cast<const Doctype&>(node).declaration();
        break;
    case Node::Kind::Element:
        writeStart(*node.asElement(), output);
        break;
    case Node::Kind::Text:
        writeText(static_cast<const CharacterData&>(node), output);
        break;
    case Node::Kind::Comment:
        if (output.writesCode() && isServerCode(node)) {
            output.markup += codeOf(node);
            break;
        }
        output.markup += "<!--";
        writeRaw(static_cast<const CharacterData&>(node).data(), output);
        output.markup += "-->";
        break;
    }
}

} // namespace

void writeStartTag(const Element& element, std::string& markup, CodeForm form)
{
    writeStart(element, outputFor(element, markup, form));
}

void writeEndTag(const Element& element, std::string& markup, CodeForm form)
{
    writeEnd(element, outputFor(element, markup, form));
}

void serialize(const Node& node, std::string& markup, CodeForm form)
{
    const Output output = outputFor(node, markup, form);
    const Node* at = &node;
    for (;;) {
        writeOpening(*at, output);
        const ParentNode* parent = at->asParent();
        if (parent && parent->firstChild() && !(at->asElement() && isVoid(*at->asElement()))) {
            at = parent->firstChild();
            continue;
        }
        for (;;) {
            if (const Element* element = at->asElement())
                writeEnd(*element, output);
            if (at == &node)
                return;
            if (at->next())
                break;
            at = at->parent();
        }
        at = at->next();
    }
}

std::string_view referenceFor(char first)
{
    return first == '{' ? "&#123;" : "&lt;";
}

std::string markup(const Attribute& attribute)
{
    std::string result;
    writeAttribute(attribute, {result, CodeForm::Marks, nullptr});
    return result;
}

} // namespace luma::html
