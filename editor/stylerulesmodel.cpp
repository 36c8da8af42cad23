// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/stylerulesmodel.h"

#include "base/pathtext.h"
#include "editor/stylecolours.h"
#include "web/csscolours.h"

#include <QFont>
#include <QPalette>

#include <array>
#include <utility>

namespace luma {

namespace {

enum StyleRole { KindRole = Qt::UserRole + 1, GroupRole, RuleRole, DeclarationRole, KeyRole };

QStandardItem* fixedItem(const QString& text)
{
    auto* const item = new QStandardItem(text);
    item->setEditable(false);
    return item;
}

QString placeOf(const StyleRule& rule)
{
    switch (rule.source.kind) {
    case StyleSource::Kind::Attribute:
        return StyleRulesModel::tr("Style attribute");
    case StyleSource::Kind::Element:
        return rule.line > 0 ? QStringLiteral("<style>:%1").arg(rule.line) : QStringLiteral("<style>");
    case StyleSource::Kind::File:
        break;
    }
    const QString name = textOf(rule.source.file.filename());
    return rule.line > 0 ? QStringLiteral("%1:%2").arg(name).arg(rule.line) : name;
}

QString headingOf(const StyleGroup& group)
{
    if (!group.part.isEmpty())
        return StyleRulesModel::tr("Pseudo-element %1").arg(group.part);
    return group.isInherited ? StyleRulesModel::tr("Inherited from %1").arg(group.element) : QString();
}

QString explanationOf(StyleState state)
{
    switch (state) {
    case StyleState::Applies:
        return {};
    case StyleState::Overridden:
        return StyleRulesModel::tr("Overridden by a more important declaration");
    case StyleState::Invalid:
        return StyleRulesModel::tr("Not known to the web engine, which leaves it out");
    case StyleState::NotInherited:
        return StyleRulesModel::tr("Not inherited");
    case StyleState::Off:
        return StyleRulesModel::tr("Switched off: a comment in the style sheet");
    }
    return {};
}

void dim(QStandardItem& item)
{
    item.setForeground(QPalette().color(QPalette::PlaceholderText));
}

} // namespace

StyleRulesModel::StyleRulesModel(QObject* parent) : QStandardItemModel(0, 2, parent)
{
    setHorizontalHeaderLabels({tr("Property"), tr("Value")});
}

void StyleRulesModel::setGroups(std::vector<StyleGroup> groups)
{
    m_groups = std::move(groups);
    removeRows(0, rowCount());
    for (std::size_t i = 0; i < m_groups.size(); ++i) {
        const StyleGroup& group = m_groups[i];
        if (const QString heading = headingOf(group); !heading.isEmpty()) {
            QStandardItem* const item = fixedItem(heading);
            item->setData(static_cast<int>(Row::Heading), KindRole);
            QFont font = item->font();
            font.setItalic(true);
            item->setFont(font);
            appendRow({item, fixedItem({})});
        }
        for (std::size_t k = 0; k < group.rules.size(); ++k)
            addRule(group.rules[k], static_cast<int>(i), static_cast<int>(k));
    }
}

void StyleRulesModel::addRule(const StyleRule& rule, int group, int number)
{
    QStandardItem* const item =
        fixedItem(rule.selector.isEmpty() ? QStringLiteral("element") : rule.selector);
    QStandardItem* const place = fixedItem(placeOf(rule));
    QFont font = item->font();
    font.setBold(true);
    item->setFont(font);
    dim(*place);
    const QString file = textOf(rule.source.file);
    for (QStandardItem* const each : {item, place}) {
        each->setToolTip((rule.selector + u'\n' + file).trimmed());
        each->setData(static_cast<int>(Row::Rule), KindRole);
        each->setData(group, GroupRole);
        each->setData(number, RuleRole);
        each->setData(QStringLiteral("%1 %2 %3").arg(group).arg(rule.selector, placeOf(rule)), KeyRole);
    }
    item->setData(tr("Rule %1, %2").arg(item->text(), place->text()), Qt::AccessibleTextRole);
    for (const QString& condition : rule.conditions) {
        QStandardItem* const row = fixedItem(condition);
        row->setData(static_cast<int>(Row::Condition), KindRole);
        row->setToolTip(condition);
        dim(*row);
        item->appendRow({row, fixedItem({})});
    }
    for (std::size_t i = 0; i < rule.declarations.size(); ++i)
        addDeclaration(*item, rule, static_cast<int>(i));
    if (rule.isEditable) {
        auto* const row = new QStandardItem(tr("Add..."));
        row->setData(static_cast<int>(Row::NewDeclaration), KindRole);
        row->setData(item->data(KeyRole).toString() + QStringLiteral(" new"), KeyRole);
        row->setToolTip(tr("Type a property and its value, such as “color: red”."));
        dim(*row);
        item->appendRow({row, fixedItem({})});
    }
    appendRow({item, place});
}

void StyleRulesModel::addDeclaration(QStandardItem& parent, const StyleRule& rule, int number)
{
    const StyleDeclaration& declaration = rule.declarations[static_cast<std::size_t>(number)];
    QStandardItem* const name = fixedItem(declaration.name);
    auto* const value = new QStandardItem(declaration.value);
    name->setCheckable(rule.isEditable);
    if (rule.isEditable)
        name->setCheckState(declaration.state == StyleState::Off ? Qt::Unchecked : Qt::Checked);
    value->setEditable(rule.isEditable && declaration.state != StyleState::Off);
    if (const auto colours = cssColoursIn(declaration.name, declaration.value); !colours.empty())
        value->setData(StyleColours::swatch(colours.front().colour), Qt::DecorationRole);
    const QString explanation = explanationOf(declaration.state);
    const bool hasColour = value->isEditable() && value->data(Qt::DecorationRole).isValid();
    const QString hint =
        hasColour ? u'\n' + tr("A click on the colour or Alt+Down chooses another one") : QString();
    for (QStandardItem* const each : {name, value}) {
        each->setData(static_cast<int>(Row::Declaration), KindRole);
        each->setData(number, DeclarationRole);
        each->setData(parent.data(KeyRole).toString() + u' ' + declaration.name, KeyRole);
        each->setToolTip((explanation.isEmpty() ? declaration.value : explanation) + hint);
        if (declaration.state == StyleState::Applies)
            continue;
        dim(*each);
        QFont font = each->font();
        font.setStrikeOut(declaration.state != StyleState::NotInherited);
        each->setFont(font);
    }
    const QString spoken = declaration.name + QStringLiteral(": ") + declaration.value;
    value->setData(explanation.isEmpty() ? spoken : spoken + QStringLiteral(". ") + explanation,
                   Qt::AccessibleTextRole);
    if (!explanation.isEmpty())
        name->setData(QString(declaration.name + QStringLiteral(". ") + explanation), Qt::AccessibleTextRole);
    parent.appendRow({name, value});
}

StyleRulesModel::Row StyleRulesModel::kindOf(const QModelIndex& index)
{
    return static_cast<Row>(index.siblingAtColumn(NameColumn).data(KindRole).toInt());
}

const StyleRule* StyleRulesModel::ruleOf(const QModelIndex& index) const
{
    QModelIndex row = index.siblingAtColumn(NameColumn);
    if (row.parent().isValid())
        row = row.parent();
    if (!row.isValid() || kindOf(row) != Row::Rule)
        return nullptr;
    const StyleGroup& group = m_groups[row.data(GroupRole).toUInt()];
    return &group.rules[row.data(RuleRole).toUInt()];
}

int StyleRulesModel::declarationOf(const QModelIndex& index)
{
    return index.isValid() && kindOf(index) == Row::Declaration ? index.data(DeclarationRole).toInt() : -1;
}

QString StyleRulesModel::keyOf(const QModelIndex& index)
{
    return index.data(KeyRole).toString();
}

QModelIndex StyleRulesModel::rowOf(const QString& key) const
{
    const QModelIndexList found =
        key.isEmpty() ? QModelIndexList()
                      : match(index(0, 0), KeyRole, key, 1, Qt::MatchExactly | Qt::MatchRecursive);
    return found.value(0);
}

bool StyleRulesModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    const Row kind = kindOf(index);
    const QString text = value.toString().trimmed();
    if (kind == Row::Declaration && role == Qt::CheckStateRole)
        emit switchChosen(index);
    else if (kind == Row::Declaration && role == Qt::EditRole && text != index.data().toString())
        emit valueChosen(index, text);
    else if (kind == Row::NewDeclaration && role == Qt::EditRole && !text.isEmpty() &&
             text != index.data().toString())
        emit declarationTyped(index, text);
    else
        return false;
    return true;
}

} // namespace luma
