// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/document.h"

#include "html/characterdata.h"
#include "html/characterreferences.h"
#include "html/element.h"
#include "html/servercode.h"

namespace luma::html {

Element* Document::part(std::string_view name) const
{
    const Element* html = documentElement();
    Element* child = html ? html->firstElement() : nullptr;
    while (child && !child->is(name))
        child = child->nextElement();
    return child;
}

Element* Document::titleElement() const
{
    // The first HTML one in document order, as in browsers; the title of an svg does not count.
    for (Node* node = following(*this); node; node = node->following(*this)) {
        if (Element* element = node->asElement(); element && element->is("title"))
            return element;
    }
    return nullptr;
}

std::string Document::title() const
{
    const Element* element = titleElement();
    return element ? element->text() : std::string();
}

void Document::setTitle(std::string_view title)
{
    Element* element = titleElement();
    if (!element) {
        Element* parent = head();
        if (!parent)
            return;
        element = parent->append(std::make_unique<Element>("title")).asElement();
    }
    NodeList text;
    if (!title.empty())
        text.push_back(CharacterData::text(title));
    element->swapChildren(text);
}

void Document::trustServerCode(std::string_view source)
{
    for (const ServerCode& code : serverCodeIn(source))
        m_serverCode.insert(
            decodeCharacters(source.substr(code.begin, code.end - code.begin), ReferenceContext::RawText));
}

NodePtr Document::shallowCopy() const
{
    auto copied = std::make_unique<Document>();
    copied->setByteOrderMark(m_hasByteOrderMark);
    copied->m_serverCode = m_serverCode;
    return copied;
}

} // namespace luma::html
