// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/synctablemodel.h"

#include <algorithm>

namespace luma {

void SyncTableModel::setRows(std::vector<SyncRow> rows)
{
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
    countSelected();
}

void SyncTableModel::removeRowsAt(const std::vector<std::size_t>& indexes)
{
    if (indexes.empty())
        return;
    // Thousands of scattered rows go at once; telling of each alone would take minutes.
    beginResetModel();
    std::vector<SyncRow> left;
    left.reserve(m_rows.size() - indexes.size());
    auto next = indexes.begin();
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        if (next != indexes.end() && *next == i)
            ++next;
        else
            left.push_back(std::move(m_rows[i]));
    }
    m_rows = std::move(left);
    endResetModel();
    countSelected();
}

void SyncTableModel::selectAll(bool on)
{
    if (m_rows.empty())
        return;
    for (SyncRow& row : m_rows)
        row.select = on ? 1 : 0;
    emit dataChanged(index(0, 0), index(static_cast<int>(m_rows.size()) - 1, 0), {Qt::CheckStateRole});
    countSelected();
}

void SyncTableModel::countSelected()
{
    m_selectedCount = static_cast<std::size_t>(
        std::count_if(m_rows.begin(), m_rows.end(), [](const SyncRow& row) { return row.select == 1; }));
    emit selectionChanged();
}

int SyncTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int SyncTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : 1;
}

QVariant SyncTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const SyncRow& row = m_rows[static_cast<std::size_t>(index.row())];
    if (role == Qt::CheckStateRole)
        return row.select == 1 ? Qt::Checked : Qt::Unchecked;
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole)
        return QString::fromStdString(row.displayName);
    return {};
}

bool SyncTableModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || role != Qt::CheckStateRole)
        return false;
    SyncRow& row = m_rows[static_cast<std::size_t>(index.row())];
    const int select = value.toInt() == Qt::Checked ? 1 : 0;
    if (select == row.select)
        return true;
    row.select = select;
    m_selectedCount += select == 1 ? 1U : std::size_t(-1);
    emit dataChanged(index, index, {Qt::CheckStateRole});
    emit selectionChanged();
    return true;
}

Qt::ItemFlags SyncTableModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemNeverHasChildren;
}

} // namespace luma
