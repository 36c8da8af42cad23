// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/namereader.h"

#include "base/ascii.h"
#include "base/pathbelow.h"
#include "html/characterreferences.h"
#include "html/cssreferences.h"
#include "html/htmlscanner.h"
#include "html/selectornames.h"
#include "html/servercode.h"
#include "links/percentencoding.h"
#include "links/rawplaces.h"
#include "links/webrules.h"

#include <algorithm>
#include <array>
#include <utility>

namespace luma {

namespace {

// Attributes that name ids of their page, with blanks between them (HTML standard; WAI-ARIA 1.2).
constexpr auto idAttributes = std::to_array<std::string_view>(
    {"for", "form", "headers", "list", "itemref", "popovertarget", "commandfor", "aria-activedescendant",
     "aria-controls", "aria-describedby", "aria-details", "aria-errormessage", "aria-flowto",
     "aria-labelledby", "aria-owns"});

} // namespace

void NameReader::parse(std::string_view bytes, const std::string& subpath)
{
    m_uses.clear();
    m_words.clear();
    const std::string_view name = namePart(subpath);
    m_reader.parse(bytes, name, SitePageReader::FilePlaces::Known);
    m_text = m_reader.text();
    const WebFileKind kind = webFileKind(name);
    if (kind == WebFileKind::Other) {
        readWords(m_reader.text());
        return;
    }
    if (kind == WebFileKind::StyleSheet)
        readSheet(0, m_reader.text().size());
    else
        readTags(kind == WebFileKind::XmlPage);
    readFragments(subpath);
    for (const std::string_view code : m_reader.page().code())
        readWords(code);
}

void NameReader::readSheet(std::size_t begin, std::size_t end)
{
    for (const SelectorName& found : selectorNames(m_text.substr(begin, end - begin))) {
        NameUse use{NameUse::Kind::Rule,     found.isId, true, found.name, begin + found.range.begin,
                    begin + found.range.end, {}};
        if (use.name.find(maskedServerCode) == std::string::npos)
            m_uses.push_back(std::move(use));
    }
}

void NameReader::readTags(bool isXml)
{
    HtmlScanner scanner(m_text, isXml ? HtmlScanner::Markup::Xml : HtmlScanner::Markup::Html);
    HtmlToken token;
    std::size_t styles = std::string::npos; // where the text of a style element begins
    while (scanner.next(token)) {
        if (styles != std::string::npos)
            readSheet(styles, token.begin);
        if (styles != std::string::npos && token.kind == HtmlTokenKind::Cdata) {
            const std::size_t content = offsetIn(m_text, token.content);
            readSheet(content, content + token.content.size());
        }
        const bool isStart = token.kind == HtmlTokenKind::StartTag;
        const bool isStyle = isStart && equalIgnoringAsciiCase(token.name, "style") && !token.selfClosing;
        styles = isStyle ? token.end : std::string::npos;
        if (!isStart)
            continue;
        const bool isFrame = !m_isFrame && equalIgnoringAsciiCase(token.name, "iframe");
        for (const HtmlAttribute& attribute : token.attributes) {
            if (isFrame && equalIgnoringAsciiCase(attribute.name, "srcdoc"))
                readFrame(attribute);
            else
                readAttribute(attribute);
        }
    }
}

void NameReader::readAttribute(const HtmlAttribute& attribute)
{
    if (equalIgnoringAsciiCase(attribute.name, "class"))
        readTokens(attribute, NameUse::Kind::Element, false);
    else if (isOneOf(attribute.name, idAttributes))
        readTokens(attribute, NameUse::Kind::Reference, true);
    else if (equalIgnoringAsciiCase(attribute.name, "id") && !attribute.value.empty())
        add(NameUse::Kind::Element, true, attribute.value, 0,
            decodeCharacters(attribute.value, ReferenceContext::AttributeValue).size());
}

void NameReader::readFrame(const HtmlAttribute& attribute)
{
    const std::string_view written = attribute.value;
    const std::string decoded = decodeCharacters(written, ReferenceContext::AttributeValue);
    const std::string_view page = needsDecoding(written) ? std::string_view(decoded) : written;
    const RawPlaces places(written, page);
    const std::size_t begin = offsetIn(m_text, written);
    std::vector<NameUse> uses = std::exchange(m_uses, {});
    const std::string_view text = std::exchange(m_text, page);
    m_isFrame = true;
    readTags(false);
    m_isFrame = false;
    m_text = text;
    uses.swap(m_uses);
    for (NameUse& use : uses) {
        if (use.isId)
            continue;
        use.begin = begin + places(use.begin);
        use.end = begin + places(use.end);
        m_uses.push_back(std::move(use));
    }
}

void NameReader::readTokens(const HtmlAttribute& attribute, NameUse::Kind kind, bool isId)
{
    const std::string value = decodeCharacters(attribute.value, ReferenceContext::AttributeValue);
    for (std::size_t at = value.find_first_not_of(whiteSpace); at != std::string::npos;) {
        const std::size_t end = std::min(value.find_first_of(whiteSpace, at), value.size());
        add(kind, isId, attribute.value, at, end);
        at = value.find_first_not_of(whiteSpace, end);
    }
}

void NameReader::add(NameUse::Kind kind, bool isId, std::string_view raw, std::size_t from, std::size_t to)
{
    CssRange range{from, to};
    if (needsDecoding(raw)) {
        const RawPlaces places(raw, {});
        range = {places(from), places(to)};
    }
    const std::size_t begin = offsetIn(m_text, raw);
    std::string name = decodeCharacters(range.of(raw), ReferenceContext::AttributeValue);
    if (name.find(maskedServerCode) == std::string::npos)
        m_uses.push_back({kind, isId, false, std::move(name), begin + range.begin, begin + range.end, {}});
}

void NameReader::readFragments(const std::string& subpath)
{
    const PageReader& page = m_reader.page();
    const SiteAddresses::Page place = m_addresses->page(subpath, page.base());
    for (const LinkReference& reference : page.references()) {
        const bool isFrame = reference.frameQuotes != Quotes::NoValue;
        if (reference.place == LinkPlace::UseMap || isFrame ||
            reference.value.find('#') == std::string_view::npos)
            continue;
        const LinkTarget target = m_addresses->resolve(reference.value, place);
        const std::string_view raw = m_reader.text().substr(reference.begin, reference.end - reference.begin);
        const std::size_t hash = raw.find('#');
        if (target.kind != LinkTarget::Kind::Inside || target.fragment.empty() ||
            hash == std::string_view::npos || raw.substr(hash + 1) != target.fragment)
            continue;
        const bool isCss = reference.syntax == LinkSyntax::StyleSheet;
        m_uses.push_back({NameUse::Kind::Fragment, true, isCss, percentDecoded(target.fragment),
                          reference.begin + hash + 1, reference.end, target.path});
    }
}

void NameReader::readWords(std::string_view script)
{
    for (std::size_t at = 0; at < script.size();) {
        if (!isCssNameByte(script[at])) {
            ++at;
            continue;
        }
        std::size_t end = at;
        while (end < script.size() && isCssNameByte(script[end]))
            ++end;
        m_words.emplace(script.substr(at, end - at));
        at = end;
    }
}

} // namespace luma
