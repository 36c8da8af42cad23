// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/elementchange.h"

#include "base/ascii.h"
#include "html/document.h"
#include "html/parse.h"
#include "html/tagtraits.h"
#include "page/tagrules.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <algorithm>
#include <memory>
#include <utility>

namespace luma {

namespace {

struct ChangeTexts
{
    Q_DECLARE_TR_FUNCTIONS(luma::ElementChange)
};

Error error(const QString& text)
{
    return Error{text.toStdString()};
}

/// Names of HTML's elements and attributes are written in lower case; others keep their letters.
QString nameFor(const html::Element& element, const QString& typed)
{
    return element.nameSpace() == html::NameSpace::Html ? typed.toLower() : typed;
}

html::Attribute attributeOf(const html::Element& element, const QString& text)
{
    const qsizetype equals = text.indexOf(u'=');
    QString value = equals < 0 ? QString() : text.mid(equals + 1).trimmed();
    const QChar quote = value.size() > 1 ? value.front() : QChar();
    if ((quote == u'"' || quote == u'\'') && value.endsWith(quote))
        value = value.mid(1, value.size() - 2);
    const QString name = nameFor(element, text.left(equals).trimmed());
    return {name.toStdString(), value.toStdString()};
}

bool hasOtherElementTheId(const html::Element& element, std::string_view id)
{
    const html::Node& page = element.root();
    for (const html::Node* node = &page; node; node = node->following(page)) {
        if (node != &element && node->asElement() && node->asElement()->attr("id") == id)
            return true;
    }
    return false;
}

/// A page that holds nothing but `element`, inside its ancestors.
html::NodePtr pageAround(const html::Element& element, const html::Node& place)
{
    html::NodePtr inner = element.copy();
    for (const html::Node* above = &place; above; above = above->parent()) {
        const html::ParentNode& original = *above->asParent();
        html::NodePtr around = original.shallowCopy();
        html::ParentNode& parent = *around->asParent();
        const bool isRoot = above->asElement() && above->asElement()->is("html");
        const bool isInBody = isRoot && inner->asElement()->is("body");
        for (const html::Node* node = original.firstChild(); node && !above->asElement();
             node = node->next()) {
            if (node->kind() == html::Node::Kind::Doctype)
                parent.append(node->copy());
        }
        if (isInBody)
            parent.append(std::make_unique<html::Element>("head"));
        parent.append(std::move(inner));
        if (isRoot && !isInBody)
            parent.append(std::make_unique<html::Element>("body"));
        inner = std::move(around);
    }
    return inner;
}

} // namespace

bool isReadSo(const html::Element& element, const html::Node& place)
{
    if (html::isVoid(element) && element.firstChild())
        return false;
    const std::string page = pageAround(element, place)->outerHtml();
    const auto parsed = html::parse(page);
    return parsed && (*parsed)->outerHtml() == page;
}

QString attributeText(const html::Attribute& attribute)
{
    const QString value = QString::fromStdString(attribute.value);
    const QChar quote = value.contains(u'"') ? u'\'' : u'"';
    return QString::fromStdString(attribute.name) + u'=' + quote + value + quote;
}

Result<std::vector<html::Attribute>> withAttributeText(const html::Element& element,
                                                       const std::string& replaced, const QString& text)
{
    static const QRegularExpression validName(QStringLiteral("^[^\\s\"'<>/=\\x00-\\x1f\\x7f]+$"));
    std::vector<html::Attribute> attributes = element.attributes();
    const auto old = std::find_if(attributes.begin(), attributes.end(),
                                  [&replaced](const auto& each) { return each.name.text() == replaced; });
    if (text.trimmed().isEmpty()) {
        if (old != attributes.end())
            attributes.erase(old);
        return attributes;
    }
    html::Attribute wanted = attributeOf(element, text);
    const QString name = QString::fromStdString(wanted.name);
    if (!validName.match(name).hasMatch())
        return error(ChangeTexts::tr("\u201c%1\u201d is not the name of an attribute.").arg(name));
    if (wanted.name.text() != replaced && element.hasAttr(wanted.name.text()))
        return error(ChangeTexts::tr("<%1> has an attribute %2 already.").arg(tagNameOf(element), name));
    if (name == u"id" && !wanted.value.empty() && hasOtherElementTheId(element, wanted.value))
        return error(ChangeTexts::tr("Another element has the ID %1 already.")
                         .arg(QString::fromStdString(wanted.value)));
    if (old == attributes.end())
        attributes.push_back(std::move(wanted));
    else
        *old = std::move(wanted);
    return attributes;
}

QString reasonAgainstDelete(const html::Node& fixed)
{
    const html::Element* const element = fixed.asElement();
    return element ? ChangeTexts::tr("A page needs its <%1>.").arg(tagNameOf(*element))
                   : ChangeTexts::tr("This is edited in the page's source.");
}

Result<MarkupDifference> withTagName(const TagRules& rules, html::Element& element, const QString& name)
{
    static const QRegularExpression validName(QStringLiteral("^[A-Za-z][-.\\w]*$"));
    const QString wanted = nameFor(element, name.trimmed());
    if (wanted == tagNameOf(element))
        return MarkupDifference();
    if (!validName.match(wanted).hasMatch())
        return error(ChangeTexts::tr("\u201c%1\u201d is not the name of a tag.").arg(wanted));
    if (!rules.canDelete(&element))
        return error(reasonAgainstDelete(element));
    auto renamed =
        std::make_unique<html::Element>(wanted.toStdString(), element.nameSpace(), element.attributes());
    for (const html::Node* child = element.firstChild(); child; child = child->next())
        renamed->append(child->copy());
    const html::Element* const parent = element.parent()->asElement();
    if (!parent || !rules.canDrop(renamed.get(), parent) || !isReadSo(*renamed, *parent))
        return error(ChangeTexts::tr("<%1> can't stand here, or not with these contents.").arg(wanted));
    MarkupDifference difference;
    difference.parent = element.parent();
    difference.previous = element.previous();
    difference.next = element.next();
    difference.nodes.push_back(std::move(renamed));
    return difference;
}

} // namespace luma
