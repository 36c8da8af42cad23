// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "page/elementattributes.h"

#include <QAbstractTableModel>

#include <vector>

namespace luma {

/// The attributes of one element as a table of names and values, first those that it has, then those that it may have.
/// An edit is reported and shown once setAttributes() brings it. Main thread.
class AttributesModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { NameColumn, ValueColumn };

    using QAbstractTableModel::QAbstractTableModel;

    /// Shows other attributes: of another element, or of the same one, whose rows then keep their places.
    enum class Of { AnotherElement, TheSame };
    void setAttributes(std::vector<ElementAttribute> attributes, Of of);
    /// The attribute of a row; null for an invalid index.
    [[nodiscard]] const ElementAttribute* attribute(const QModelIndex& index) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

signals:
    /// The user gave an attribute this value, or switched a Boolean on (with an empty value) or off.
    void valueChosen(const luma::ElementAttribute& attribute, const QString& value);
    void removalChosen(const luma::ElementAttribute& attribute);

private:
    void update(std::vector<ElementAttribute> attributes);

    std::vector<ElementAttribute> m_attributes;
};

} // namespace luma
