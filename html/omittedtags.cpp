// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/omittedtags.h"

#include "base/ascii.h"
#include "html/characterdata.h"
#include "html/codemarks.h"
#include "html/element.h"
#include "html/htmlscanner.h"
#include "html/maskedsource.h"
#include "html/pagesource.h"
#include "html/tagtraits.h"
#include "html/unchangednodes.h"

#include <array>
#include <initializer_list>

namespace luma::html {

namespace {

// Whether the parser would put the node, as the first one in the body, in front of it or into the head.
bool goesBeforeBody(const Node& node)
{
    static constexpr std::array<std::string_view, 11> headElements = {
        "base",     "basefont", "bgsound", "link",     "meta", "noframes",
        "noscript", "script",   "style",   "template", "title"};
    const std::string* const text = textOf(node);
    return text ? text->empty() || whiteSpace.find(text->front()) != std::string_view::npos
                : isComment(node) || isOneOf(node.asElement()->tagName(), headElements);
}

bool beginsWith(const Element& element, std::initializer_list<std::string_view> names)
{
    const Element* const first = element.firstChild() ? element.firstChild()->asElement() : nullptr;
    return first && isOneOf(first->tagName(), names);
}

} // namespace

bool isSkeleton(const Element& element)
{
    return element.is("html") || element.is("head") || element.is("body");
}

bool isFormatting(const Element& element)
{
    static constexpr std::array<std::string_view, 14> names = {
        "a", "b", "big", "code", "em", "font", "i", "nobr", "s", "small", "strike", "strong", "tt", "u"};
    return element.nameSpace() == NameSpace::Html && isOneOf(element.tagName(), names);
}

bool isComment(const Node& node)
{
    return node.kind() == Node::Kind::Comment || isServerCode(node);
}

bool closesItself(const Element& element)
{
    if (element.nameSpace() == NameSpace::Html || !element.origin().source)
        return false;
    const MaskedSource tag(element.origin().source->text(PageSource::recordOf(element).start));
    HtmlScanner scanner(tag.text());
    HtmlToken token;
    return scanner.next(token) && token.selfClosing;
}

bool needsStartTag(const Element& element)
{
    const Node* const first = element.firstChild();
    if (!element.attributes().empty() && !UnchangedNodes::hasSameContent(element))
        return true;
    if (element.is("body"))
        return first && goesBeforeBody(*first);
    if (isSkeleton(element))
        return first && !first->asElement();
    return !(element.is("tbody") && beginsWith(element, {"tr"})) &&
           !(element.is("tr") && beginsWith(element, {"td", "th"})) &&
           !(element.is("colgroup") && beginsWith(element, {"col"}));
}

bool hasOpenEnd(const Node& node)
{
    const Element* const element = node.asElement();
    return element && PageSource::recordOf(node).end.isEmpty() && !isVoid(*element) &&
           !isSkeleton(*element) && !isServerCode(*element) && !closesItself(*element);
}

} // namespace luma::html
