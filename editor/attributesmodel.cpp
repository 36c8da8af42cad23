// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/attributesmodel.h"

#include <QPalette>

#include <algorithm>
#include <utility>

namespace luma {

void AttributesModel::setAttributes(std::vector<ElementAttribute> attributes, Of of)
{
    if (of == Of::TheSame) {
        update(std::move(attributes));
        return;
    }
    beginResetModel();
    m_attributes = std::move(attributes);
    endResetModel();
}

void AttributesModel::update(std::vector<ElementAttribute> attributes)
{
    for (ElementAttribute& row : m_attributes) {
        row.isSet = false;
        row.value.clear();
    }
    for (ElementAttribute& each : attributes) {
        const auto row = std::find_if(m_attributes.begin(), m_attributes.end(),
                                      [&each](const ElementAttribute& at) { return at.name == each.name; });
        if (row != m_attributes.end()) {
            *row = std::move(each);
            continue;
        }
        beginInsertRows({}, 0, 0);
        m_attributes.insert(m_attributes.begin(), std::move(each));
        endInsertRows();
    }
    if (!m_attributes.empty())
        emit dataChanged(index(0, NameColumn), index(rowCount() - 1, ValueColumn));
}

const ElementAttribute* AttributesModel::attribute(const QModelIndex& index) const
{
    return index.isValid() ? &m_attributes.at(static_cast<std::size_t>(index.row())) : nullptr;
}

int AttributesModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_attributes.size());
}

int AttributesModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : 2;
}

QVariant AttributesModel::data(const QModelIndex& index, int role) const
{
    const ElementAttribute* const row = attribute(index);
    if (!row)
        return {};
    const bool isName = index.column() == NameColumn;
    const bool isSwitch = row->kind == AttributeKind::Boolean;
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return isName ? QString::fromStdString(row->name) : row->value;
    case Qt::ToolTipRole:
        return isName ? QVariant() : row->value.toHtmlEscaped();
    case Qt::CheckStateRole:
        if (isName || !isSwitch)
            return {};
        return row->isSet ? Qt::Checked : Qt::Unchecked;
    case Qt::AccessibleTextRole:
        // A reader names the value with its attribute.
        return isName || isSwitch ? QString::fromStdString(row->name)
                                  : QString::fromStdString(row->name) + u' ' + row->value;
    case Qt::ForegroundRole:
        return row->isSet ? QVariant() : QPalette().color(QPalette::PlaceholderText);
    default:
        return {};
    }
}

QVariant AttributesModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal)
        return {};
    return section == NameColumn ? tr("Attribute") : tr("Value");
}

Qt::ItemFlags AttributesModel::flags(const QModelIndex& index) const
{
    const ElementAttribute* const row = attribute(index);
    if (!row)
        return Qt::NoItemFlags;
    const Qt::ItemFlags common = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    if (index.column() == NameColumn)
        return common;
    return common | (row->kind == AttributeKind::Boolean ? Qt::ItemIsUserCheckable : Qt::ItemIsEditable);
}

bool AttributesModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    const ElementAttribute* const row = attribute(index);
    if (!row || index.column() != ValueColumn)
        return false;
    const ElementAttribute changed = *row;
    if (role == Qt::CheckStateRole && value.toInt() == Qt::Unchecked) {
        emit removalChosen(changed);
        return true;
    }
    const QString text = role == Qt::CheckStateRole ? QString() : value.toString();
    const bool isNothing = role == Qt::EditRole && text == changed.value;
    if (!isNothing)
        emit valueChosen(changed, text);
    return !isNothing;
}

} // namespace luma
