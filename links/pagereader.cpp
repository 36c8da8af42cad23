// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/pagereader.h"

#include "base/ascii.h"
#include "base/utf8.h"
#include "html/characterreferences.h"
#include "links/addressparts.h"
#include "links/rawplaces.h"

#include <algorithm>

namespace luma {

namespace {

const HtmlAttribute* findAttribute(const HtmlToken& tag, std::string_view name)
{
    const auto found =
        std::find_if(tag.attributes.begin(), tag.attributes.end(), [name](const HtmlAttribute& attribute) {
            return equalIgnoringAsciiCase(attribute.name, name);
        });
    return found == tag.attributes.end() ? nullptr : &*found;
}

// Of attributes with the same name the first one counts.
bool isRepeated(const HtmlToken& tag, const HtmlAttribute& attribute)
{
    return findAttribute(tag, attribute.name) != &attribute;
}

constexpr std::string_view styleInstruction = "<?xml-stylesheet";
constexpr std::string_view blanks = " \t\r\n";

using Entities = std::vector<std::pair<std::string_view, std::string_view>>;

constexpr std::size_t mostEntities = 256;
constexpr std::size_t longestEntity = 256;
constexpr std::size_t mostExpanded = std::size_t(1) << 20U;

bool isCode(std::string_view element, std::string_view attribute)
{
    return startsWithIgnoringAsciiCase(attribute, "on") || startsWithIgnoringAsciiCase(attribute, "data-") ||
           equalIgnoringAsciiCase(attribute, "srcdoc") || equalIgnoringAsciiCase(attribute, "archive") ||
           (equalIgnoringAsciiCase(attribute, "code") && equalIgnoringAsciiCase(element, "applet")) ||
           (equalIgnoringAsciiCase(attribute, "value") && equalIgnoringAsciiCase(element, "param"));
}

// `raw` with the text of the page's own entities in their place.
std::string expanded(std::string_view raw, const Entities& entities)
{
    std::string text;
    for (std::size_t mark = raw.find('&'); mark != std::string_view::npos; mark = raw.find('&')) {
        text.append(raw.substr(0, mark));
        raw.remove_prefix(mark + 1);
        const std::size_t end = raw.substr(0, longestEntity).find(';');
        const std::string_view name = raw.substr(0, std::min(end, longestEntity));
        const auto entity = std::find_if(entities.begin(), entities.end(),
                                         [name](const auto& declared) { return declared.first == name; });
        if (end == std::string_view::npos || entity == entities.end()) {
            text += '&';
        } else {
            text += entity->second;
            raw.remove_prefix(end + 1);
        }
    }
    return text.append(raw);
}

} // namespace

void PageReader::read(std::string_view source, PageFormat format)
{
    m_source = source;
    m_references.clear();
    m_anchors.clear();
    m_decoded.clear();
    m_code.clear();
    m_base.reset();
    m_entities.clear();
    m_expandedSize = 0;
    if (format == PageFormat::StyleSheet) {
        addCss(source, 0);
        return;
    }
    HtmlScanner scanner(source,
                        format == PageFormat::Xml ? HtmlScanner::Markup::Xml : HtmlScanner::Markup::Html);
    HtmlToken token;
    std::size_t styleBegin = std::string_view::npos;
    bool isInProlog = format == PageFormat::Xml;
    const auto closeStyle = [&](std::size_t end) {
        const std::string_view css =
            m_source.substr(std::min(styleBegin, end), end - std::min(styleBegin, end));
        // XML replaces references in it, too.
        if (format == PageFormat::Xml && css.find('&') != std::string_view::npos &&
            css.find("<![CDATA[") == std::string_view::npos)
            readParts({{}, css, Quotes::NoValue}, LinkPlace::SheetUrl, LinkSyntax::StyleDeclarations);
        else if (styleBegin != std::string_view::npos)
            addCss(css, styleBegin);
        styleBegin = std::string_view::npos;
    };
    std::size_t scriptBegin = std::string_view::npos;
    while (scanner.next(token)) {
        if (scriptBegin != std::string_view::npos) {
            m_code.push_back(m_source.substr(scriptBegin, token.begin - scriptBegin));
            scriptBegin = std::string_view::npos;
        }
        const bool isStyle = token.name.size() == 5 && equalIgnoringAsciiCase(token.name, "style");
        if (token.kind == HtmlTokenKind::StartTag) {
            isInProlog = false;
            if (!token.attributes.empty())
                readTag(token);
            if (isStyle && styleBegin == std::string_view::npos)
                styleBegin = token.end;
            else if (token.name.size() == 6 && equalIgnoringAsciiCase(token.name, "script"))
                scriptBegin = token.end;
        } else if (token.kind == HtmlTokenKind::Comment &&
                   (token.content.starts_with('#') || token.content.starts_with('['))) {
            m_code.push_back(token.content);
        } else if (token.kind == HtmlTokenKind::EndTag && isStyle) {
            closeStyle(token.begin);
        } else if (isInProlog && token.kind == HtmlTokenKind::Doctype) {
            readEntities(m_source.substr(token.begin, token.end - token.begin));
        } else if (isInProlog && m_source.substr(token.begin).starts_with(styleInstruction)) {
            readInstruction(token.content);
        }
    }
    closeStyle(token.begin);
}

void PageReader::readTag(const HtmlToken& tag)
{
    if (tag.name.size() == 4 && equalIgnoringAsciiCase(tag.name, "meta"))
        readMeta(tag);
    else if (tag.name.size() == 4 && equalIgnoringAsciiCase(tag.name, "base")) {
        const HtmlAttribute* const href = findAttribute(tag, "href");
        if (href != nullptr && !m_base) {
            const std::size_t begin = offsetIn(m_source, href->value);
            m_base = {decodedWhole(href->value),
                      begin,
                      begin + href->value.size(),
                      LinkPlace::Href,
                      LinkSyntax::Address,
                      href->quotes,
                      CssQuotes::None};
        }
    }
    for (const HtmlAttribute& attribute : tag.attributes)
        readAttribute(tag, attribute);
}

// W3C, "Associating Style Sheets with XML documents": the pseudo-attributes of <?xml-stylesheet href="a.css"?>.
void PageReader::readInstruction(std::string_view content)
{
    std::string_view rest = content.substr(styleInstruction.size() - 1);
    while (!rest.empty() && blanks.find(rest.front()) != std::string_view::npos) {
        rest.remove_prefix(std::min(rest.find_first_not_of(blanks), rest.size()));
        const std::string_view name = rest.substr(0, rest.find_first_of(" \t\r\n="));
        rest.remove_prefix(name.size());
        const std::size_t open = rest.find_first_not_of(" \t\r\n=");
        const std::size_t close = open == std::string_view::npos ? open : rest.find(rest[open], open + 1);
        if (close == std::string_view::npos || (rest[open] != '"' && rest[open] != '\''))
            return;
        if (name == "href")
            readValue({name, rest.substr(open + 1, close - open - 1),
                       rest[open] == '"' ? Quotes::Double : Quotes::Single},
                      LinkPlace::Href, LinkSyntax::Address);
        rest.remove_prefix(close + 1);
    }
}

// Those with other entities in them are left out, so that no page grows beyond measure.
void PageReader::readEntities(std::string_view documentType)
{
    constexpr std::string_view declaration = "<!ENTITY";
    for (std::size_t at = documentType.find(declaration);
         at != std::string_view::npos && m_entities.size() < mostEntities;
         at = documentType.find(declaration, at)) {
        at += declaration.size();
        const std::size_t name = documentType.find_first_not_of(blanks, at);
        const std::size_t nameEnd = documentType.find_first_of(blanks, name);
        const std::size_t open = documentType.find_first_not_of(blanks, nameEnd);
        if (name == at || open == std::string_view::npos)
            continue;
        const char quote = documentType[open];
        const std::size_t close =
            quote == '"' || quote == '\'' ? documentType.find(quote, open + 1) : std::string_view::npos;
        const std::string_view text =
            documentType.substr(open + 1, std::min(close, documentType.size()) - open - 1);
        if (close != std::string_view::npos && text.size() <= longestEntity &&
            text.find_first_of("<&") == std::string_view::npos)
            m_entities.emplace_back(documentType.substr(name, nameEnd - name), text);
    }
}

void PageReader::readAttribute(const HtmlToken& tag, const HtmlAttribute& attribute)
{
    const std::size_t length = attribute.name.size();
    if (length == 2) {
        if (equalIgnoringAsciiCase(attribute.name, "id") && !isRepeated(tag, attribute))
            m_anchors.push_back(decodedWhole(attribute.value));
        return;
    }
    if (length == 4 && equalIgnoringAsciiCase(attribute.name, "name")) {
        if (equalIgnoringAsciiCase(tag.name, "a"))
            m_anchors.push_back(decoded(attribute.value));
        else if (equalIgnoringAsciiCase(tag.name, "map"))
            m_anchors.push_back(m_decoded.emplace_back('\1' + std::string(decoded(attribute.value))));
        return;
    }
    if (isCode(tag.name, attribute.name))
        m_code.push_back(decoded(attribute.value));
    if (length == 6 && !m_isFrame && equalIgnoringAsciiCase(attribute.name, "srcdoc") &&
        equalIgnoringAsciiCase(tag.name, "iframe") && !isRepeated(tag, attribute))
        readFrame(attribute);
    const std::optional<PlaceAndSyntax> found = linkPlaceOf(tag.name, attribute.name);
    if (found && attribute.quotes != Quotes::NoValue && !isRepeated(tag, attribute))
        readValue(attribute, found->place, found->syntax);
}

void PageReader::readMeta(const HtmlToken& tag)
{
    const HtmlAttribute* const content = findAttribute(tag, "content");
    if (content == nullptr)
        return;
    const HtmlAttribute* const equivalent = findAttribute(tag, "http-equiv");
    const HtmlAttribute* const property = findAttribute(tag, "property");
    const HtmlAttribute* const name = findAttribute(tag, "name");
    if (equivalent != nullptr && equalIgnoringAsciiCase(decoded(equivalent->value), "refresh"))
        readValue(*content, LinkPlace::MetaContent, LinkSyntax::Refresh);
    else if ((property != nullptr && isAddressProperty(decoded(property->value))) ||
             (name != nullptr && isAddressProperty(decoded(name->value))))
        readValue(*content, LinkPlace::MetaContent, LinkSyntax::Address);
}

void PageReader::readValue(const HtmlAttribute& attribute, LinkPlace place, LinkSyntax syntax)
{
    if (syntax != LinkSyntax::Address) {
        readParts(attribute, place, syntax);
        return;
    }
    const std::size_t begin = offsetIn(m_source, attribute.value);
    m_references.push_back({decodedWhole(attribute.value), begin, begin + attribute.value.size(), place,
                            syntax, attribute.quotes, CssQuotes::None});
}

// HTML standard, "The iframe element": the page in a srcdoc attribute has the addresses' base from the page around it, unless it
// sets its own. Its fragments lead to places of its own.
void PageReader::readFrame(const HtmlAttribute& attribute)
{
    const std::string_view page = decoded(attribute.value);
    const std::size_t begin = offsetIn(m_source, attribute.value);
    const RawPlaces raw(attribute.value, page);
    if (!m_frame) {
        m_frame = std::make_unique<PageReader>();
        m_frame->m_isFrame = true;
    }
    m_frame->read(page, PageFormat::Html);
    if (m_frame->baseReference())
        return;
    for (LinkReference reference : m_frame->references()) {
        if (reference.value.starts_with('#'))
            continue;
        reference.value = m_decoded.emplace_back(reference.value);
        reference.begin = begin + raw(reference.begin);
        reference.end = begin + raw(reference.end);
        reference.frameQuotes = attribute.quotes;
        m_references.push_back(reference);
    }
}

void PageReader::readParts(const HtmlAttribute& attribute, LinkPlace place, LinkSyntax syntax)
{
    const std::string_view value = decoded(attribute.value);
    const std::size_t begin = offsetIn(m_source, attribute.value);
    const RawPlaces raw(attribute.value, value);
    if (syntax != LinkSyntax::StyleDeclarations) {
        for (const TextRange& part : addressesIn(value, syntax))
            m_references.push_back({value.substr(part.begin, part.end - part.begin), begin + raw(part.begin),
                                    begin + raw(part.end), place, syntax, attribute.quotes, CssQuotes::None});
        return;
    }
    for (const CssReference& css : cssReferences(value)) {
        const std::string_view text = value.substr(css.begin, css.end - css.begin);
        const bool escaped = text.find('\\') != std::string_view::npos;
        const bool isImport = place == LinkPlace::SheetUrl && css.isImport;
        m_references.push_back({escaped ? m_decoded.emplace_back(decodedCss(text)) : text,
                                begin + raw(css.begin), begin + raw(css.end),
                                isImport ? LinkPlace::SheetImport : place, syntax, attribute.quotes,
                                css.quotes});
    }
}

void PageReader::addCss(std::string_view css, std::size_t begin)
{
    for (const CssReference& reference : cssReferences(css)) {
        const std::string_view text = css.substr(reference.begin, reference.end - reference.begin);
        const bool escaped = text.find('\\') != std::string_view::npos;
        m_references.push_back({escaped ? m_decoded.emplace_back(decodedCss(text)) : text,
                                begin + reference.begin, begin + reference.end,
                                reference.isImport ? LinkPlace::SheetImport : LinkPlace::SheetUrl,
                                LinkSyntax::StyleSheet, Quotes::NoValue, reference.quotes});
    }
}

std::string_view PageReader::decoded(std::string_view raw)
{
    if (!needsDecoding(raw))
        return raw;
    return m_decoded.emplace_back(decodeCharacters(raw, ReferenceContext::AttributeValue));
}

// A value of which no part is looked for in the source.
std::string_view PageReader::decodedWhole(std::string_view raw)
{
    if (m_entities.empty() || raw.find('&') == std::string_view::npos || m_expandedSize > mostExpanded)
        return decoded(raw);
    const std::string& text =
        m_decoded.emplace_back(decodeCharacters(expanded(raw, m_entities), ReferenceContext::AttributeValue));
    m_expandedSize += text.size();
    return text;
}

} // namespace luma
