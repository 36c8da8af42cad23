// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/stylerulesmodel.h"

#include "base/pathtext.h"
#include "editor/stylecolours.h"
#include "web/csscolours.h"

#include <QFont>
#include <QPalette>
#include <QRegularExpression>

#include <algorithm>
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

/// A use of a custom property in a value.
struct Use
{
    QString name;
    qsizetype at = 0;
    qsizetype length = 0;
};

std::vector<Use> usesIn(const QString& value)
{
    static const QRegularExpression use(QStringLiteral("var\\(\\s*(--[^\\s,)]+)[^()]*\\)?"));
    std::vector<Use> uses;
    auto found = use.globalMatch(value);
    while (found.hasNext()) {
        const QRegularExpressionMatch match = found.next();
        uses.push_back({match.captured(1), match.capturedStart(), match.capturedLength()});
    }
    return uses;
}

/// The first colour that a value shows.
QColor firstColourOf(const StyleDeclaration& declaration, const StyleGroup& group)
{
    const auto colours = cssColoursIn(declaration.name, declaration.value);
    for (const Use& use : usesIn(declaration.value)) {
        const auto behind = cssColoursIn(declaration.name, group.variables.value(use.name));
        if (!behind.empty() && (colours.empty() || use.at < colours.front().at))
            return behind.front().colour;
    }
    return colours.empty() ? QColor() : colours.front().colour;
}

/// What custom properties come to, a line each.
QString variablesOf(const StyleDeclaration& declaration, const StyleGroup& group)
{
    QStringList lines;
    for (const Use& use : usesIn(declaration.value)) {
        if (const QString value = group.variables.value(use.name); !value.isEmpty())
            lines.append(use.name + QStringLiteral(": ") + value);
    }
    const QString own = group.variables.value(declaration.name);
    if (!own.isEmpty() && !lines.isEmpty())
        lines = QStringList(declaration.name + QStringLiteral(": ") + own);
    lines.removeDuplicates();
    return lines.join(u'\n');
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
    const StyleGroup& group = m_groups[parent.data(GroupRole).toUInt()];
    const QColor colour = firstColourOf(declaration, group);
    if (colour.isValid())
        value->setData(StyleColours::swatch(colour), Qt::DecorationRole);
    const QString variables = variablesOf(declaration, group);
    const QString explanation = explanationOf(declaration.state);
    const bool hasColour = value->isEditable() && colour.isValid();
    QString hint = variables.isEmpty() ? QString() : u'\n' + variables;
    if (hasColour)
        hint += u'\n' + (variables.isEmpty()
                             ? tr("A click on the colour or Alt+Down chooses another one")
                             : tr("A click on the colour or Alt+Down changes the custom property"));
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
    QString spoken = declaration.name + QStringLiteral(": ") + declaration.value;
    if (!variables.isEmpty())
        spoken += QStringLiteral(". ") + variables;
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

QModelIndex StyleRulesModel::indexOf(std::size_t group, std::size_t rule, int declaration) const
{
    for (int i = 0; i < rowCount(); ++i) {
        const QModelIndex row = index(i, NameColumn);
        if (kindOf(row) != Row::Rule || row.data(GroupRole).toUInt() != group ||
            row.data(RuleRole).toUInt() != rule)
            continue;
        for (int k = 0; k < rowCount(row); ++k) {
            if (const QModelIndex found = index(k, ValueColumn, row); declarationOf(found) == declaration)
                return found;
        }
    }
    return {};
}

QModelIndex StyleRulesModel::definitionOf(const QString& variable, std::size_t group) const
{
    for (std::size_t i = group; i < m_groups.size(); ++i) {
        // A pseudo-element inherits from its element, which comes first.
        const std::size_t at = i == group ? group : m_groups[i].isInherited ? i : 0;
        const StyleGroup& each = m_groups[at];
        for (std::size_t k = 0; k < each.rules.size(); ++k) {
            const auto& declarations = each.rules[k].declarations;
            for (std::size_t n = 0; n < declarations.size(); ++n) {
                if (declarations[n].name == variable && declarations[n].state == StyleState::Applies)
                    return indexOf(at, k, static_cast<int>(n));
            }
        }
    }
    return {};
}

std::vector<StyleColour> StyleRulesModel::coloursOf(const QModelIndex& index) const
{
    std::vector<StyleColour> colours;
    const StyleRule* const rule = ruleOf(index);
    const int number = declarationOf(index);
    if (!rule || number < 0)
        return colours;
    const std::size_t group = index.parent().data(GroupRole).toUInt();
    const StyleDeclaration& declaration = rule->declarations[static_cast<std::size_t>(number)];
    const QModelIndex value = index.siblingAtColumn(ValueColumn);
    const bool isEditable = value.flags().testFlag(Qt::ItemIsEditable);
    std::vector<std::pair<qsizetype, StyleColour>> found;
    for (const CssColour& each : cssColoursIn(declaration.name, declaration.value))
        found.emplace_back(each.at, StyleColour{each.colour, declaration.value.mid(each.at, each.length),
                                                isEditable ? value : QModelIndex(), each.at, each.length});
    for (const Use& use : usesIn(declaration.value)) {
        const auto behind = cssColoursIn(declaration.name, m_groups[group].variables.value(use.name));
        if (behind.empty())
            continue;
        StyleColour colour = {behind.front().colour, declaration.value.mid(use.at, use.length)};
        // The property may be another one's value in its turn; a circle has none.
        QModelIndex definition = definitionOf(use.name, group);
        for (int steps = 0; definition.isValid() && steps < 10; ++steps) {
            const QString written = definition.data().toString();
            const auto there = cssColoursIn(declaration.name, written);
            const auto uses = usesIn(written);
            if (there.size() == 1 && uses.empty() && definition.flags().testFlag(Qt::ItemIsEditable)) {
                colour.value = definition;
                colour.at = there.front().at;
                colour.length = there.front().length;
            }
            definition = there.empty() && uses.size() == 1
                             ? definitionOf(uses.front().name, definition.parent().data(GroupRole).toUInt())
                             : QModelIndex();
        }
        found.emplace_back(use.at, colour);
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const auto& one, const auto& other) { return one.first < other.first; });
    for (auto& [at, colour] : found)
        colours.push_back(std::move(colour));
    return colours;
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
