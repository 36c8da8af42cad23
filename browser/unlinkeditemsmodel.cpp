// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/unlinkeditemsmodel.h"

#include "browser/displaytext.h"

namespace luma {

void UnlinkedItemsModel::clear()
{
    beginResetModel();
    m_rows.clear();
    endResetModel();
    emit selectionChanged();
}

void UnlinkedItemsModel::append(const std::vector<std::string>& displayNames)
{
    if (displayNames.empty())
        return;
    const int first = static_cast<int>(m_rows.size());
    beginInsertRows({}, first, first + static_cast<int>(displayNames.size()) - 1);
    for (const std::string& name : displayNames)
        m_rows.push_back({1, name});
    endInsertRows();
    emit selectionChanged();
}

void UnlinkedItemsModel::remove(const std::vector<std::string>& displayNames)
{
    if (displayNames.empty())
        return;
    // Thousands of scattered rows go at once; telling of each alone would take minutes.
    beginResetModel();
    auto gone = displayNames.begin();
    std::erase_if(m_rows, [&](const Row& row) {
        const bool isGone = gone != displayNames.end() && *gone == row.displayName;
        if (isGone)
            ++gone;
        return isGone;
    });
    endResetModel();
    emit selectionChanged();
}

void UnlinkedItemsModel::selectAll(bool on)
{
    if (m_rows.empty())
        return;
    for (Row& row : m_rows)
        row.select = on ? 1 : 0;
    emit dataChanged(index(0, 0), index(static_cast<int>(m_rows.size()) - 1, 0), {Qt::CheckStateRole});
    emit selectionChanged();
}

std::vector<std::string> UnlinkedItemsModel::selectedNames() const
{
    std::vector<std::string> names;
    for (const Row& row : m_rows) {
        if (row.select == 1)
            names.push_back(row.displayName);
    }
    return names;
}

int UnlinkedItemsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int UnlinkedItemsModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : 1;
}

QVariant UnlinkedItemsModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const Row& row = m_rows[static_cast<std::size_t>(index.row())];
    if (role == Qt::CheckStateRole)
        return row.select == 1 ? Qt::Checked : Qt::Unchecked;
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole)
        return displayText(row.displayName);
    return {};
}

bool UnlinkedItemsModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || role != Qt::CheckStateRole)
        return false;
    m_rows[static_cast<std::size_t>(index.row())].select = value.toInt() == Qt::Checked ? 1 : 0;
    emit dataChanged(index, index, {Qt::CheckStateRole});
    emit selectionChanged();
    return true;
}

Qt::ItemFlags UnlinkedItemsModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemNeverHasChildren;
}

} // namespace luma
