// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/stylerules.h"

#include <QColor>
#include <QStandardItemModel>

namespace luma {

/// A colour that a declaration shows, and where it is written: in its value or, for "var(--x)", in the declaration of the
/// custom property.
struct StyleColour
{
    QColor colour;
    QString text;           ///< in the declaration that shows it
    QModelIndex value = {}; ///< that it is written in; invalid where it can't be edited
    qsizetype at = 0;       ///< its place there
    qsizetype length = 0;
};

/// The rules of the selected element as a tree: a row for each rule, with headings between the groups, and below it its
/// conditions, its declarations, and a row for a further one. Edits are reported and shown once setGroups() brings them.
/// Main thread.
class StyleRulesModel final : public QStandardItemModel
{
    Q_OBJECT

public:
    enum Column { NameColumn, ValueColumn };
    enum class Row { Heading, Rule, Condition, Declaration, NewDeclaration };

    explicit StyleRulesModel(QObject* parent = nullptr);

    void setGroups(std::vector<StyleGroup> groups);
    [[nodiscard]] const std::vector<StyleGroup>& groups() const { return m_groups; }

    [[nodiscard]] static Row kindOf(const QModelIndex& index);
    /// The rule of a row, and the place of its declaration in it; null and -1 for others.
    [[nodiscard]] const StyleRule* ruleOf(const QModelIndex& index) const;
    [[nodiscard]] static int declarationOf(const QModelIndex& index);
    /// The colours of a declaration in the order of its value.
    [[nodiscard]] std::vector<StyleColour> coloursOf(const QModelIndex& index) const;
    /// What stays the same of a row while its texts change.
    [[nodiscard]] static QString keyOf(const QModelIndex& index);
    /// The row with that key; invalid if there is none.
    [[nodiscard]] QModelIndex rowOf(const QString& key) const;

    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

signals:
    /// The user gave a declaration this value, switched it on or off, or typed a further one for a rule.
    void valueChosen(const QModelIndex& index, const QString& value);
    void switchChosen(const QModelIndex& index);
    void declarationTyped(const QModelIndex& index, const QString& text);

private:
    void addRule(const StyleRule& rule, int group, int number);
    void addDeclaration(QStandardItem& parent, const StyleRule& rule, int number);
    [[nodiscard]] QModelIndex indexOf(std::size_t group, std::size_t rule, int declaration) const;
    /// The value of the declaration that gives a custom property its value for this group; invalid if there is none.
    [[nodiscard]] QModelIndex definitionOf(const QString& variable, std::size_t group) const;

    std::vector<StyleGroup> m_groups;
};

} // namespace luma
