// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/pageencoding.h"

#include "base/ascii.h"
#include "base/utf8.h"
#include "html/htmlscanner.h"

#include <algorithm>
#include <optional>
#include <string>

namespace luma {

namespace {

constexpr std::size_t prescanLength = 1024;

// Behind `name` and its "=", what stands between quotes or before a blank; `ends` also ends an unquoted value.
std::optional<std::string_view> valueBehind(std::string_view text, std::size_t nameEnd, std::string_view ends)
{
    std::size_t at = text.find_first_not_of(whiteSpace, nameEnd);
    if (at == std::string_view::npos || text[at] != '=')
        return std::nullopt;
    at = text.find_first_not_of(whiteSpace, at + 1);
    if (at == std::string_view::npos)
        return std::nullopt;
    if (text[at] == '"' || text[at] == '\'') {
        const std::size_t close = text.find(text[at], at + 1);
        if (close == std::string_view::npos)
            return std::nullopt;
        return text.substr(at + 1, close - at - 1);
    }
    return text.substr(at, text.find_first_of(ends, at) - at);
}

// HTML standard, "extracting a character encoding from a meta element".
std::optional<std::string_view> charsetIn(std::string_view content)
{
    constexpr std::string_view name = "charset";
    for (std::size_t at = 0; at + name.size() <= content.size(); ++at) {
        if (!equalIgnoringAsciiCase(content.substr(at, name.size()), name))
            continue;
        if (const auto value = valueBehind(content, at + name.size(), " \t\n\f\r;"))
            return value;
    }
    return std::nullopt;
}

const HtmlAttribute* findAttribute(const HtmlToken& tag, std::string_view name)
{
    const auto found =
        std::find_if(tag.attributes.begin(), tag.attributes.end(), [name](const HtmlAttribute& attribute) {
            return equalIgnoringAsciiCase(attribute.name, name);
        });
    return found == tag.attributes.end() ? nullptr : &*found;
}

std::optional<Encoding> encodingOfMeta(const HtmlToken& tag)
{
    std::optional<std::string_view> label;
    if (const HtmlAttribute* const charset = findAttribute(tag, "charset")) {
        label = charset->value;
    } else {
        const HtmlAttribute* const equivalent = findAttribute(tag, "http-equiv");
        const HtmlAttribute* const content = findAttribute(tag, "content");
        if (equivalent != nullptr && content != nullptr &&
            equalIgnoringAsciiCase(equivalent->value, "content-type"))
            label = charsetIn(content->value);
    }
    return label ? Encoding::fromLabel(*label) : std::nullopt;
}

std::optional<Encoding> declaredInHtml(std::string_view bytes)
{
    HtmlScanner scanner(bytes.substr(0, prescanLength));
    HtmlToken token;
    while (scanner.next(token)) {
        if (token.kind != HtmlTokenKind::StartTag || !equalIgnoringAsciiCase(token.name, "meta"))
            continue;
        if (const std::optional<Encoding> encoding = encodingOfMeta(token))
            return encoding;
    }
    return std::nullopt;
}

std::optional<Encoding> declaredInXml(std::string_view bytes)
{
    if (!bytes.starts_with("<?xml"))
        return std::nullopt;
    const std::string_view declaration = bytes.substr(0, bytes.find("?>"));
    const std::size_t name = declaration.find("encoding");
    if (name == std::string_view::npos)
        return std::nullopt;
    const auto label = valueBehind(declaration, name + std::string_view("encoding").size(), whiteSpace);
    return label ? Encoding::fromLabel(*label) : std::nullopt;
}

std::optional<Encoding> declaredInCss(std::string_view bytes)
{
    constexpr std::string_view opening = "@charset \"";
    if (!bytes.starts_with(opening))
        return std::nullopt;
    const std::size_t close = bytes.substr(0, prescanLength).find("\";", opening.size());
    if (close == std::string_view::npos)
        return std::nullopt;
    return Encoding::fromLabel(bytes.substr(opening.size(), close - opening.size()));
}

std::optional<PageEncoding> byMark(std::string_view bytes)
{
    const auto found = [](std::string_view label, std::size_t length) {
        return PageEncoding{*Encoding::fromLabel(label), PageEncoding::Source::ByteOrderMark, length};
    };
    if (bytes.starts_with(utf8ByteOrderMark))
        return found("utf-8", utf8ByteOrderMark.size());
    if (bytes.starts_with("\xFE\xFF"))
        return found("utf-16be", 2);
    if (bytes.starts_with("\xFF\xFE"))
        return found("utf-16le", 2);
    return std::nullopt;
}

} // namespace

PageEncoding encodingOf(std::string_view bytes, MarkupLanguage language)
{
    if (const std::optional<PageEncoding> marked = byMark(bytes))
        return *marked;
    // A browser goes by an XML declaration in HTML too, where no meta element speaks.
    std::optional<Encoding> declared = language == MarkupLanguage::Css    ? declaredInCss(bytes)
                                       : language == MarkupLanguage::Html ? declaredInHtml(bytes)
                                                                          : std::nullopt;
    if (!declared && language != MarkupLanguage::Css)
        declared = declaredInXml(bytes);
    if (declared) {
        // A declaration that can be read as ASCII is not in UTF-16.
        return {declared->holdsAscii() ? *declared : Encoding(), PageEncoding::Source::Declared, 0};
    }
    const bool isXml = language == MarkupLanguage::Xml;
    return {isXml || isValidUtf8(bytes) ? Encoding() : Encoding::windows1252(), PageEncoding::Source::Guessed,
            0};
}

} // namespace luma
