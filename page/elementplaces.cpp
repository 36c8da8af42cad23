// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/elementplaces.h"

#include "html/characterdata.h"
#include "html/codemarks.h"
#include "html/element.h"
#include "html/tagtraits.h"
#include "page/elementchange.h"
#include "page/tagrules.h"

#include <QCoreApplication>
#include <QMap>
#include <QStringList>

#include <memory>

namespace luma {

namespace {

struct OfferTexts
{
    Q_DECLARE_TR_FUNCTIONS(luma::ElementOffers)
};

QStringList list(const char* words)
{
    return QString::fromLatin1(words).split(u' ');
}

/// "name: words;name: words;"
QMap<QString, QStringList> rulesIn(const char* text)
{
    QMap<QString, QStringList> all;
    for (const QString& rule : QString::fromLatin1(text).split(u';', Qt::SkipEmptyParts))
        all.insert(rule.section(u':', 0, 0), rule.section(u':', 1).trimmed().split(u' '));
    return all;
}

/// HTML standard, 4.2 to 4.13; obsolete elements are left out.
const QStringList& allTags()
{
    static const QStringList tags = list(
        "a abbr address area article aside audio b base bdi bdo blockquote br button canvas caption cite code col colgroup "
        "data datalist dd del details dfn dialog div dl dt em embed fieldset figcaption figure footer form h1 h2 h3 h4 h5 h6 "
        "header hgroup hr i iframe img input ins kbd label legend li link main map mark menu meta meter nav noscript "
        "object ol optgroup option output p picture pre progress q rp rt ruby s samp script search section select slot small "
        "source span strong style sub summary sup table tbody td template textarea tfoot th thead time title tr track u "
        "ul var video wbr");
    return tags;
}

/// Elements that stand in some others only.
const QMap<QString, QStringList>& parentsOf()
{
    static const auto parents = rulesIn("base: head;"
                                        "caption: table;"
                                        "col: colgroup;"
                                        "colgroup: table;"
                                        "dd: dl;"
                                        "dt: dl;"
                                        "figcaption: figure;"
                                        "legend: fieldset;"
                                        "li: ul ol menu;"
                                        "meta: head;"
                                        "optgroup: select;"
                                        "option: select optgroup datalist;"
                                        "rp: ruby;"
                                        "rt: ruby;"
                                        "source: audio video picture;"
                                        "style: head;"
                                        "summary: details;"
                                        "tbody: table;"
                                        "td: tr;"
                                        "tfoot: table;"
                                        "th: tr;"
                                        "thead: table;"
                                        "title: head;"
                                        "tr: table thead tbody tfoot;"
                                        "track: audio video;");
    return parents;
}

/// Elements that take some others only; scripts and templates may stand in each of them.
const QMap<QString, QStringList>& childrenFor()
{
    static const auto children = rulesIn("colgroup: col;"
                                         "dl: dt dd div;"
                                         "html: head body;"
                                         "head: base link meta noscript style title;"
                                         "menu: li;"
                                         "ol: li;"
                                         "optgroup: option;"
                                         "picture: source img;"
                                         "select: option optgroup hr;"
                                         "table: caption colgroup thead tbody tfoot tr;"
                                         "tbody: tr;"
                                         "tfoot: tr;"
                                         "thead: tr;"
                                         "tr: td th;"
                                         "ul: li;");
    return children;
}

/// Elements that take only what belongs into a line of text (phrasing content).
bool takesLinesOnly(const QString& tag)
{
    static const QStringList tags = list(
        "abbr b bdi bdo button cite code data dfn em h1 h2 h3 h4 h5 h6 i kbd label legend mark meter output p pre "
        "progress q rp rt ruby s samp small span strong sub summary sup time u var");
    return tags.contains(tag);
}

bool isPhrasing(const QString& tag)
{
    static const QStringList tags = list(
        "a abbr area audio b bdi bdo br button canvas cite code data datalist del dfn em embed i iframe img input ins "
        "kbd label link map mark meter noscript object output picture progress q ruby s samp script select slot "
        "small span strong sub sup template textarea time u var video wbr");
    return tags.contains(tag) || parentsOf().contains(tag);
}

/// Elements that must not stand in one of these, at any depth.
QStringList ancestorsAgainst(const QString& tag)
{
    static const QStringList interactive =
        list("a button details embed iframe input label select textarea audio video");
    if (tag == u"form" || tag == u"dfn" || tag == u"progress" || tag == u"meter")
        return {tag};
    if (tag == u"main")
        return list("article aside footer header nav main");
    if (tag == u"header" || tag == u"footer")
        return list("header footer address");
    return interactive.contains(tag) ? list(tag == u"label" ? "a button label" : "a button") : QStringList();
}

QString bracketed(const QStringList& tags)
{
    return u'<' + tags.join(QLatin1String(">, <")) + u'>';
}

QString ancestorReason(const html::Element& parent, const QString& tag)
{
    const QStringList against = ancestorsAgainst(tag);
    for (const html::Node* node = &parent; node; node = node->parent()) {
        const html::Element* const element = node->asElement();
        if (element && against.contains(tagNameOf(*element)))
            return OfferTexts::tr("<%1> can't stand in <%2>.").arg(tag, tagNameOf(*element));
    }
    return {};
}

QString contentReason(const html::Element& parent, const QString& tag)
{
    const QString name = tagNameOf(parent);
    if (html::isServerCode(parent))
        return OfferTexts::tr("Server code has no elements in it.");
    if (html::isVoid(parent) || html::hasRawText(parent) || html::hasEscapableRawText(parent))
        return OfferTexts::tr("<%1> has no elements in it.").arg(name);
    const bool standsAnywhere = tag == u"script" || tag == u"template";
    const auto parents = parentsOf().constFind(tag);
    if (parents != parentsOf().constEnd() && !parents->contains(name) && !parent.is("template"))
        return OfferTexts::tr("<%1> stands only in %2.").arg(tag, bracketed(*parents));
    const auto children = childrenFor().constFind(name);
    if (children != childrenFor().constEnd() && !children->contains(tag) && !standsAnywhere)
        return OfferTexts::tr("<%1> takes only %2.").arg(name, bracketed(*children));
    if (takesLinesOnly(name) && !isPhrasing(tag))
        return OfferTexts::tr("<%1> takes only what belongs into a line of text.").arg(name);
    if (tag == u"title" || (tag == u"base" && !parent.select("base").empty()))
        return OfferTexts::tr("A page may have only one <%1> like this.").arg(tag);
    return {};
}

bool standsFirst(const QString& tag)
{
    return tag == u"caption" || tag == u"legend" || tag == u"summary";
}

QString reasonAgainstComment(const html::Element& parent)
{
    return isClosed(parent) ? OfferTexts::tr("A comment can't stand in <%1>.").arg(tagNameOf(parent))
                            : QString();
}

bool hasElementsBefore(const html::Node& node, InsertPlace place)
{
    const html::Element* const element = node.asElement();
    if (isInside(place))
        return place != InsertPlace::First && element->firstElement();
    const html::Node* before = place == InsertPlace::After ? &node : node.previous();
    while (before && !before->asElement())
        before = before->previous();
    return before;
}

} // namespace

bool isClosed(const html::Element& element)
{
    return html::isServerCode(element) || html::isVoid(element) || html::hasRawText(element) ||
           html::hasEscapableRawText(element);
}

std::vector<InsertPlace> insertPlaces(const html::Node& node)
{
    std::vector<InsertPlace> places;
    if (node.asElement())
        places = {InsertPlace::First, InsertPlace::Last};
    if (node.parent() && node.parent()->asElement())
        places.insert(places.end(), {InsertPlace::Before, InsertPlace::After});
    return places;
}

html::Position positionAt(html::Node& node, InsertPlace place)
{
    switch (place) {
    case InsertPlace::First:
        return {node.asElement(), node.asElement()->firstChild()};
    case InsertPlace::Caret:
    case InsertPlace::Last:
        return {node.asElement(), nullptr};
    case InsertPlace::Before:
        return {node.parent(), &node};
    case InsertPlace::After:
        break;
    }
    return {node.parent(), node.next()};
}

QString reasonAgainst(const html::Node& node, InsertPlace place, const QString& tag)
{
    const html::Element& parent = *(isInside(place) ? node.asElement() : node.parent()->asElement());
    if (tag == commentTag)
        return reasonAgainstComment(parent);
    QString reason = contentReason(parent, tag);
    if (reason.isEmpty())
        reason = ancestorReason(parent, tag);
    if (reason.isEmpty()) {
        const html::NodePtr sample = sampleElement(tag);
        if (!isReadSo(*sample->asElement(), parent))
            reason = OfferTexts::tr("A browser would put <%1> elsewhere.").arg(tag);
    }
    if (reason.isEmpty() && standsFirst(tag) && hasElementsBefore(node, place))
        reason = OfferTexts::tr("<%1> stands first in <%2>.").arg(tag, tagNameOf(parent));
    return reason;
}

std::vector<ElementOffer> elementOffers(const html::Node& node, InsertPlace place)
{
    std::vector<ElementOffer> offers;
    for (const QString& tag : allTags())
        offers.push_back({tag, reasonAgainst(node, place, tag)});
    offers.push_back({commentTag, reasonAgainst(node, place, commentTag)});
    return offers;
}

QString reasonAgainstDrop(const TagRules& rules, const html::Node* dragged, const html::Element* target)
{
    const html::Element* const element = dragged ? dragged->asElement() : nullptr;
    if (!dragged || !target)
        return OfferTexts::tr("Nothing can be put here.");
    const QString place = tagNameOf(*target);
    if (element && !rules.canMove(element))
        return reasonAgainstMove(*element);
    if (element)
        return rules.canDrop(element, target) && !isClosed(*target)
                   ? QString()
                   : OfferTexts::tr("<%1> can't stand in <%2>.").arg(tagNameOf(*element), place);
    const bool isText = html::textOf(*dragged);
    // Whether server code is an element in the tree depends on the place.
    const bool movesCode = html::isServerCode(*dragged) && dragged->parent() != target;
    if (rules.canMove(dragged) && !isClosed(*target) && !movesCode &&
        !(isText && childrenFor().contains(place)))
        return {};
    return (isText      ? OfferTexts::tr("Text can't stand in <%1>.")
            : movesCode ? OfferTexts::tr("Server code can't be moved to <%1>.")
                        : OfferTexts::tr("A comment can't stand in <%1>."))
        .arg(place);
}

QString reasonAgainstMove(const html::Element& fixed)
{
    return OfferTexts::tr("<%1> can't be moved. Its place in a page is fixed.").arg(tagNameOf(fixed));
}

QString reasonOfBrowser(const html::Node& dragged, const html::Element& target)
{
    const html::Element* const element = dragged.asElement();
    if (!element || html::isServerCode(*element) || isReadSo(*element, target))
        return {};
    return OfferTexts::tr("A browser would put <%1> elsewhere.").arg(tagNameOf(*element));
}

html::NodePtr sampleElement(const QString& tag)
{
    static const QMap<QString, QString> contents = {
        {QStringLiteral("colgroup"), QStringLiteral("<col>")},
        {QStringLiteral("datalist"), QStringLiteral("<option>Lorem</option>")},
        {QStringLiteral("details"), QStringLiteral("<summary>Lorem</summary>")},
        {QStringLiteral("dl"), QStringLiteral("<dt>Lorem</dt><dd>Lorem</dd>")},
        {QStringLiteral("fieldset"), QStringLiteral("<legend>Lorem</legend>")},
        {QStringLiteral("figure"), QStringLiteral("<figcaption>Lorem</figcaption>")},
        {QStringLiteral("hgroup"), QStringLiteral("<h2>Header</h2>")},
        {QStringLiteral("menu"), QStringLiteral("<li>Lorem</li>")},
        {QStringLiteral("ol"), QStringLiteral("<li>Lorem</li>")},
        {QStringLiteral("optgroup"), QStringLiteral("<option>Lorem</option>")},
        {QStringLiteral("ruby"), QStringLiteral("Lorem<rt>Lorem</rt>")},
        {QStringLiteral("select"), QStringLiteral("<option>Lorem</option>")},
        {QStringLiteral("table"), QStringLiteral("<tbody><tr><td>Lorem</td></tr></tbody>")},
        {QStringLiteral("tbody"), QStringLiteral("<tr><td>Lorem</td></tr>")},
        {QStringLiteral("tfoot"), QStringLiteral("<tr><td>Lorem</td></tr>")},
        {QStringLiteral("thead"), QStringLiteral("<tr><th>Lorem</th></tr>")},
        {QStringLiteral("tr"), QStringLiteral("<td>Lorem</td>")},
        {QStringLiteral("ul"), QStringLiteral("<li>Lorem</li>")},
    };
    static const QStringList empty = list(
        "audio canvas iframe map noscript object picture script search slot style template textarea video div");
    if (tag == commentTag)
        return html::CharacterData::comment(" Lorem ");
    auto element = std::make_unique<html::Element>(tag.toStdString());
    html::NodePtr ruled = html::isVoid(*element) ? nullptr : TagRules().newElement(tag);
    if (ruled)
        return ruled;
    const QString sample = contents.value(tag, empty.contains(tag) ? QString() : QStringLiteral("Lorem"));
    if (!html::isVoid(*element))
        (void)element->setHtml(sample.toStdString());
    return element;
}

} // namespace luma
