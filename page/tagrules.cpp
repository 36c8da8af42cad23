// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/tagrules.h"

#include "html/characterdata.h"
#include "html/codemarks.h"
#include "html/element.h"
#include "html/tagtraits.h"

namespace luma {

namespace {

bool isInBody(const html::Element& element)
{
    for (const html::Node* above = element.parent(); above; above = above->parent()) {
        if (above->asElement() && above->asElement()->is("body"))
            return true;
    }
    return false;
}

} // namespace

TagRules::TagRules()
    : unmoveableTags({u"html"_qs, u"head"_qs, u"body"_qs}),
      headTags({u"title"_qs, u"style"_qs, u"meta"_qs, u"link"_qs, u"script"_qs, u"base"_qs}),
      bodyTags({u"header"_qs, u"footer"_qs, u"nav"_qs, u"section"_qs, u"details"_qs, u"main"_qs, u"mark"_qs,
                u"time"_qs, u"div"_qs, u"span"_qs}),
      sectionTags({u"article"_qs, u"summary"_qs, u"aside"_qs, u"figure"_qs, u"figcaption"_qs, u"h1"_qs,
                   u"h2"_qs, u"h3"_qs, u"h4"_qs, u"h5"_qs, u"h6"_qs, u"div"_qs}),
      articleTags(
          {u"p"_qs, u"h1"_qs, u"h2"_qs, u"h3"_qs, u"h4"_qs, u"h5"_qs, u"h6"_qs, u"img"_qs, u"href"_qs}),
      navTags({u"ul"_qs}),
      ulTags({u"li"_qs}),
      tagDict({{u"unmoveable"_qs, unmoveableTags},
               {u"head"_qs, headTags},
               {u"body"_qs, bodyTags},
               {u"section"_qs, sectionTags},
               {u"article"_qs, articleTags},
               {u"nav"_qs, navTags},
               {u"ul"_qs, ulTags}})
{}

QVariant TagRules::itemArrayForMenu(const QString& key, const html::Element* element) const
{
    if (!element)
        return {};
    if (key == u"itemArrayForMenu")
        return canEnable(element) ? QVariant(insertableTags(element)) : QVariant();
    if (key == u"canEnable")
        return canEnable(element);
    if (key == u"canDelete")
        return canDelete(element);
    if (key == u"canAddClass")
        return canAddClass(element);
    if (key == u"canRemoveClass")
        return canRemoveClass(element);
    if (key == u"canAddID")
        return canAddID(element);
    if (key == u"canRemoveID")
        return canRemoveID(element);
    return {};
}

QStringList TagRules::insertableTags(const html::Element* element) const
{
    if (!element)
        return {};
    QStringList tags = tagDict.value(tagNameOf(*element));
    if (element->is("head"))
        tags.removeAll(u"title"_qs);
    return tags;
}

bool TagRules::canEnable(const html::Element* element) const
{
    return element && tagDict.contains(tagNameOf(*element));
}

bool TagRules::canDelete(const html::Node* node) const
{
    const html::Element* const element = node ? node->asElement() : nullptr;
    if (node && !element)
        return node->kind() != html::Node::Kind::Doctype;
    return element && canDrag(element) && element->tagName() != "title" &&
           !(element->tagName() == "meta" && !element->attr("charset").empty());
}

bool TagRules::canAddClass(const html::Element* element) const
{
    return element && isInBody(*element) && !html::isServerCode(*element);
}

bool TagRules::canRemoveClass(const html::Element* element) const
{
    return element && !element->attr("class").empty();
}

bool TagRules::canAddID(const html::Element* element) const
{
    return canAddClass(element) && element->attr("id").empty();
}

bool TagRules::canRemoveID(const html::Element* element) const
{
    return element && !element->attr("id").empty();
}

bool TagRules::canDrag(const html::Element* element) const
{
    return element && !unmoveableTags.contains(tagNameOf(*element));
}

bool TagRules::canMove(const html::Node* node) const
{
    if (!node || node->asElement())
        return canDrag(node ? node->asElement() : nullptr);
    const html::Element* const parent = node->parent() ? node->parent()->asElement() : nullptr;
    return node->kind() == html::Node::Kind::Comment ||
           (html::textOf(*node) && parent && !html::hasRawText(*parent) &&
            !html::hasEscapableRawText(*parent));
}

bool TagRules::canDrop(const html::Element* dragged, const html::Element* target) const
{
    if (!dragged || !target || target->isInside(*dragged))
        return false;
    if (dragged->tagName() == target->tagName() || target->is("html") || html::isServerCode(*target))
        return false;
    // What belongs in the head goes nowhere else; the head takes anything.
    return !headTags.contains(tagNameOf(*dragged)) || target->is("head");
}

html::Position TagRules::dropPosition(html::Element& target, const std::vector<html::Node*>& children,
                                      int childIndex, const html::Node* moved)
{
    html::Position place = {&target, target.firstChild()};
    if (childIndex >= 0 && !children.empty()) {
        const auto index = static_cast<std::size_t>(childIndex);
        place.next = index < children.size() ? children[index] : children.back()->next();
    }
    // A position is the node that follows, which must not be the one that moves away.
    if (moved && place.next == moved)
        place.next = moved->next();
    return place;
}

QString TagRules::innerMarkup(const QString& tagName) const
{
    if (articleTags.contains(tagName))
        return tagName.startsWith(u'h') ? u"Header"_qs : u"Lorem"_qs;
    if (tagName == u"li")
        return u"Lorem"_qs;
    if (tagName == u"section")
        return u" <h2>Header</h2>"_qs;
    if (tagName == u"article")
        return u" <h2>Header</h2><p>Lorem</p>"_qs;
    return {};
}

html::NodePtr TagRules::newElement(const QString& tagName) const
{
    const QString markup = innerMarkup(tagName);
    if (markup.isNull())
        return nullptr;
    auto element = std::make_unique<html::Element>(tagName.toStdString());
    if (!element->setHtml(markup.toStdString()))
        return nullptr;
    return element;
}

QString tagNameOf(const html::Element& element)
{
    return QString::fromStdString(element.tagName());
}

} // namespace luma
