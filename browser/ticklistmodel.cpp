// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/ticklistmodel.h"

#include <algorithm>

namespace luma {

Qt::CheckState TickListModel::tickState() const
{
    if (m_shownTicked == 0)
        return Qt::Unchecked;
    return m_shownTicked == static_cast<std::size_t>(rowCount()) ? Qt::Checked : Qt::PartiallyChecked;
}

void TickListModel::countTicks()
{
    m_shownTicked = 0;
    for (int row = 0; row < rowCount(); ++row)
        m_shownTicked += isTicked(row) ? 1U : 0U;
    m_tickedCount = allTicked();
    emit ticksChanged();
}

void TickListModel::announceTicks()
{
    if (rowCount() == 0)
        countTicks();
    else
        announce(0, rowCount() - 1);
}

void TickListModel::announce(int first, int last)
{
    emit dataChanged(index(first, 0), index(last, 0), {Qt::CheckStateRole});
    countTicks();
}

void TickListModel::tick(const QModelIndexList& indexes, bool on)
{
    if (indexes.isEmpty())
        return;
    for (const QModelIndex& index : indexes)
        setTicked(index.row(), on);
    const auto [first, last] =
        std::minmax_element(indexes.begin(), indexes.end(),
                            [](const QModelIndex& a, const QModelIndex& b) { return a.row() < b.row(); });
    announce(first->row(), last->row());
}

void TickListModel::tickAll(bool on)
{
    if (rowCount() == 0)
        return;
    for (int row = 0; row < rowCount(); ++row)
        setTicked(row, on);
    announceTicks();
}

QVariant TickListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole)
        return text(index.row(), index.column());
    if (role == Qt::TextAlignmentRole)
        return int(alignment(index.column()));
    if (role == Qt::CheckStateRole && index.column() == 0)
        return isTicked(index.row()) ? Qt::Checked : Qt::Unchecked;
    return {};
}

bool TickListModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || index.column() != 0 || role != Qt::CheckStateRole)
        return false;
    tick({index}, value.toInt() == Qt::Checked);
    return true;
}

Qt::ItemFlags TickListModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    return index.column() == 0 ? flags | Qt::ItemIsUserCheckable : flags;
}

} // namespace luma
