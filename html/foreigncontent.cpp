// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/foreigncontent.h"

#include "base/ascii.h"
#include "html/characterreferences.h"
#include "html/tagtraits.h"

#include <algorithm>
#include <array>

namespace luma {

namespace {

// Start tags that end svg and math (13.2.6.5); font does only with one of three attributes.
constexpr auto breakoutTags = std::to_array<std::string_view>(
    {"b",     "big",   "blockquote", "body",   "br",   "center", "code",  "dd", "div",  "dl",   "dt",
     "em",    "embed", "h1",         "h2",     "h3",   "h4",     "h5",    "h6", "head", "hr",   "i",
     "img",   "li",    "listing",    "menu",   "meta", "nobr",   "ol",    "p",  "pre",  "ruby", "s",
     "small", "span",  "strong",     "strike", "sub",  "sup",    "table", "tt", "u",    "ul",   "var"});
constexpr auto breakoutFontAttributes = std::to_array<std::string_view>({"color", "face", "size"});
constexpr auto svgHtmlPoints = std::to_array<std::string_view>({"foreignobject", "desc", "title"});
constexpr auto mathTextPoints = std::to_array<std::string_view>({"mi", "mo", "mn", "ms", "mtext"});

bool isBreakout(const HtmlToken& tag)
{
    if (isOneOf(tag.name, breakoutTags))
        return true;
    return equalIgnoringAsciiCase(tag.name, "font") &&
           std::any_of(tag.attributes.begin(), tag.attributes.end(), [](const HtmlAttribute& attribute) {
               return isOneOf(attribute.name, breakoutFontAttributes);
           });
}

bool encodesHtml(const HtmlToken& tag)
{
    for (const HtmlAttribute& attribute : tag.attributes) {
        if (!equalIgnoringAsciiCase(attribute.name, "encoding"))
            continue;
        const std::string value = decodeCharacters(attribute.value, ReferenceContext::AttributeValue);
        return equalIgnoringAsciiCase(value, "text/html") ||
               equalIgnoringAsciiCase(value, "application/xhtml+xml");
    }
    return false;
}

} // namespace

bool ForeignContent::isHtmlPoint(Kind kind)
{
    return kind == Kind::SvgHtmlPoint || kind == Kind::MathHtmlPoint;
}

bool ForeignContent::takesAsHtml(std::string_view name) const
{
    switch (m_open.back().kind) {
    case Kind::Html:
    case Kind::SvgHtmlPoint:
    case Kind::MathHtmlPoint:
        return true;
    case Kind::MathTextPoint:
        return !equalIgnoringAsciiCase(name, "mglyph") && !equalIgnoringAsciiCase(name, "malignmark");
    case Kind::MathAnnotation:
        return equalIgnoringAsciiCase(name, "svg");
    case Kind::Svg:
    case Kind::Math:
        return false;
    }
    return false;
}

ForeignContent::Kind ForeignContent::kindOf(Kind parent, const HtmlToken& tag)
{
    if (parent == Kind::Svg || parent == Kind::SvgHtmlPoint)
        return isOneOf(tag.name, svgHtmlPoints) ? Kind::SvgHtmlPoint : Kind::Svg;
    if (isOneOf(tag.name, mathTextPoints))
        return Kind::MathTextPoint;
    if (equalIgnoringAsciiCase(tag.name, "annotation-xml"))
        return encodesHtml(tag) ? Kind::MathHtmlPoint : Kind::MathAnnotation;
    return Kind::Math;
}

void ForeignContent::open(std::string_view name, Kind kind)
{
    // Browsers build no deeper trees. It also bounds the search for an end tag's element.
    constexpr std::size_t deepest = 512;
    if (m_open.size() < deepest)
        m_open.push_back({name, kind});
}

bool ForeignContent::startHtml(const HtmlToken& tag)
{
    const bool svg = equalIgnoringAsciiCase(tag.name, "svg");
    if (svg || equalIgnoringAsciiCase(tag.name, "math")) {
        if (!tag.selfClosing)
            open(tag.name, svg ? Kind::Svg : Kind::Math);
        return false;
    }
    if (!m_open.empty() && !html::isVoidStartTag(tag.name))
        open(tag.name, Kind::Html);
    return true;
}

void ForeignContent::leaveForeign()
{
    while (isForeign() && !isHtmlPoint(m_open.back().kind) && m_open.back().kind != Kind::MathTextPoint)
        m_open.pop_back();
}

bool ForeignContent::startTag(const HtmlToken& tag)
{
    if (m_open.empty() || takesAsHtml(tag.name))
        return startHtml(tag);
    if (isBreakout(tag)) {
        leaveForeign();
        return startHtml(tag);
    }
    if (!tag.selfClosing)
        open(tag.name, kindOf(m_open.back().kind, tag));
    return false;
}

// Looks for an open HTML element below `top`, down to the integration point that holds it.
void ForeignContent::endHtml(std::string_view name, std::size_t top)
{
    for (std::size_t i = top; i-- > 0;) {
        const Element& element = m_open[i];
        if (element.kind == Kind::Html && equalIgnoringAsciiCase(element.name, name)) {
            m_open.resize(i);
            return;
        }
        if (isHtmlPoint(element.kind) || element.kind == Kind::MathTextPoint)
            return;
    }
    // The element was open before svg or math began, so its end ends them too.
    m_open.clear();
}

void ForeignContent::endTag(std::string_view name)
{
    if (m_open.empty())
        return;
    if (isForeign() && (equalIgnoringAsciiCase(name, "br") || equalIgnoringAsciiCase(name, "p"))) {
        leaveForeign();
        return;
    }
    for (std::size_t i = m_open.size(); i-- > 0;) {
        if (m_open[i].kind == Kind::Html) {
            endHtml(name, i + 1);
            return;
        }
        if (equalIgnoringAsciiCase(m_open[i].name, name)) {
            m_open.resize(i);
            return;
        }
    }
    endHtml(name, m_open.size());
}

} // namespace luma
