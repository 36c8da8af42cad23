// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/tagtraits.h"

#include "base/ascii.h"
#include "html/codemarks.h"
#include "html/element.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace luma::html {

namespace {

using namespace std::string_view_literals;

// Sorted, for the binary search.
constexpr std::array voidTags = {"area"sv,  "base"sv,  "basefont"sv, "bgsound"sv, "br"sv,    "col"sv,
                                 "embed"sv, "frame"sv, "hr"sv,       "img"sv,     "input"sv, "keygen"sv,
                                 "link"sv,  "meta"sv,  "param"sv,    "source"sv,  "track"sv, "wbr"sv};
constexpr std::array rawTextTags = {"iframe"sv, "noembed"sv, "noframes"sv, "plaintext"sv,
                                    "script"sv, "style"sv,   "xmp"sv};
constexpr std::array blockTags = {
    "address"sv,   "article"sv,  "aside"sv,    "blockquote"sv, "body"sv,    "caption"sv, "center"sv,
    "col"sv,       "colgroup"sv, "dd"sv,       "details"sv,    "dialog"sv,  "dir"sv,     "div"sv,
    "dl"sv,        "dt"sv,       "fieldset"sv, "figcaption"sv, "figure"sv,  "footer"sv,  "form"sv,
    "frame"sv,     "frameset"sv, "h1"sv,       "h2"sv,         "h3"sv,      "h4"sv,      "h5"sv,
    "h6"sv,        "head"sv,     "header"sv,   "hgroup"sv,     "hr"sv,      "html"sv,    "legend"sv,
    "li"sv,        "listing"sv,  "main"sv,     "menu"sv,       "nav"sv,     "ol"sv,      "p"sv,
    "plaintext"sv, "pre"sv,      "search"sv,   "section"sv,    "summary"sv, "table"sv,   "tbody"sv,
    "td"sv,        "tfoot"sv,    "th"sv,       "thead"sv,      "tr"sv,      "ul"sv,      "xmp"sv};
constexpr std::array invisibleTags = {"base"sv,   "link"sv,  "meta"sv,     "noframes"sv,
                                      "script"sv, "style"sv, "template"sv, "title"sv};
static_assert(std::is_sorted(voidTags.begin(), voidTags.end()));
static_assert(std::is_sorted(rawTextTags.begin(), rawTextTags.end()));
static_assert(std::is_sorted(blockTags.begin(), blockTags.end()));
static_assert(std::is_sorted(invisibleTags.begin(), invisibleTags.end()));

template <class Tags>
bool isOneOf(const Tags& tags, const Element& element)
{
    return element.nameSpace() == NameSpace::Html &&
           std::binary_search(tags.begin(), tags.end(), std::string_view(element.tagName()));
}

} // namespace

bool isVoid(const Element& element)
{
    return isOneOf(voidTags, element);
}

bool isVoidStartTag(std::string_view name)
{
    return luma::isOneOf(name, voidTags) || equalIgnoringAsciiCase(name, "image");
}

bool hasRawText(const Element& element)
{
    return isOneOf(rawTextTags, element);
}

bool hasEscapableRawText(const Element& element)
{
    return element.is("title") || element.is("textarea");
}

bool swallowsFirstLineFeed(const Element& element)
{
    return element.is("pre") || element.is("textarea") || element.is("listing");
}

bool isBlock(const Element& element)
{
    return isOneOf(blockTags, element);
}

bool isInvisible(const Node& node)
{
    if (isServerCode(node))
        return false;
    const Element* element = node.asElement();
    return element ? isOneOf(invisibleTags, *element) : node.kind() != Node::Kind::Text;
}

} // namespace luma::html
