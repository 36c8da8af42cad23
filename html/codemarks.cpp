// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/codemarks.h"

#include "base/ascii.h"
#include "base/utf8.h"
#include "html/characterdata.h"
#include "html/element.h"

#include <array>
#include <random>

namespace luma::html {

namespace {

constexpr std::string_view digits = "0123456789abcdef";
constexpr std::string_view codeAttribute = "luma-code";
constexpr std::string_view markAttribute = "luma-mark";

const std::string& ownNumber()
{
    static const std::string number = [] {
        std::random_device random;
        std::string text;
        for (int i = 0; i < 20; ++i)
            text += digits[random() % digits.size()];
        return text;
    }();
    return number;
}

const std::string& spelling()
{
    static const std::string prefix = "luma-" + ownNumber() + '-';
    return prefix;
}

std::string firstWords(std::string_view code)
{
    constexpr std::size_t longest = 28;
    std::string words = simplified(code);
    if (words.size() <= longest)
        return words;
    std::size_t end = longest;
    while (isUtf8Continuation(words[end]))
        --end;
    return words.substr(0, end) + "\xE2\x80\xA6";
}

bool isSpelled(std::string_view text)
{
    return text.starts_with(spelling()) && text.find('.') == text.size() - 1;
}

bool takesElements(const ParentNode& parent)
{
    const Element* const element = parent.asElement();
    return element && !element->is("html") && !element->is("frameset");
}

// In the head noscript takes no templates (HTML standard, 13.2.6.4.5).
bool takesMetas(const Element& element)
{
    const Element* const above = element.parent() ? element.parent()->asElement() : nullptr;
    return element.is("noscript") && above && above->is("head");
}

// What a template's start tag makes: in svg and math an element of theirs, but for the places of HTML in them (13.2.6.5).
NameSpace nameSpaceIn(const Element& element)
{
    static constexpr auto htmlPlaces =
        std::to_array<std::string_view>({"foreignObject", "desc", "title", "mi", "mo", "mn", "ms", "mtext"});
    const std::string encoding = asciiLower(element.attr("encoding"));
    const bool holdsHtml = element.tagName() == "annotation-xml"
                               ? encoding == "text/html" || encoding == "application/xhtml+xml"
                               : isOneOf(element.tagName(), htmlPlaces);
    return holdsHtml ? NameSpace::Html : element.nameSpace();
}

} // namespace

NodePtr makeCodeNode(const ParentNode& parent, std::string_view code)
{
    if (!takesElements(parent))
        return CharacterData::comment(spelledCode(code));
    const Element& element = *parent.asElement();
    return std::make_unique<Element>(
        takesMetas(element) ? "meta" : "template", nameSpaceIn(element),
        std::vector<Attribute>{{std::string(codeAttribute), ownNumber() + ':' + std::string(code)},
                               {std::string(markAttribute), firstWords(code)}});
}

bool isServerCode(const Node& node)
{
    if (node.kind() == Node::Kind::Comment)
        return isSpelled(static_cast<const CharacterData&>(node).data());
    const Element* const element = node.asElement();
    return element && element->attr(codeAttribute).starts_with(ownNumber() + ':');
}

std::string codeOf(const Node& node)
{
    if (!isServerCode(node))
        return {};
    if (const Element* const element = node.asElement())
        return std::string(element->attr(codeAttribute).substr(ownNumber().size() + 1));
    return withUnspelledCode(static_cast<const CharacterData&>(node).data());
}

std::string spelledCode(std::string_view code)
{
    std::string text = spelling();
    for (const char c : code) {
        const auto byte = static_cast<unsigned char>(c);
        text += digits[byte >> 4U];
        text += digits[byte & 0xFU];
    }
    return text + '.';
}

std::string withUnspelledCode(std::string_view text)
{
    std::string result;
    for (std::size_t at = text.find(spelling()); at != std::string_view::npos; at = text.find(spelling())) {
        result += text.substr(0, at);
        text.remove_prefix(at + spelling().size());
        for (; text.size() > 1 && hexValue(text[0]) >= 0 && hexValue(text[1]) >= 0; text.remove_prefix(2))
            result += static_cast<char>(hexValue(text[0]) * 16 + hexValue(text[1]));
        text.remove_prefix(text.starts_with('.') ? 1 : 0);
    }
    return result.append(text);
}

} // namespace luma::html
