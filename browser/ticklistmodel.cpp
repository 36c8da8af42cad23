// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/ticklistmodel.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace luma {

Qt::CheckState TickListModel::tickState() const
{
    if (m_shownTicked == 0)
        return Qt::Unchecked;
    return m_shownTicked == static_cast<std::size_t>(rowCount()) ? Qt::Checked : Qt::PartiallyChecked;
}

// By one byte after the other, the last first, leaving out those that all keys share: with 100,000 rows a sort that
// compares takes longer than a frame.
void TickListModel::sortByKey(SortKeys& keys)
{
    std::uint64_t differing = 0;
    for (const auto& [key, number] : keys)
        differing |= key ^ keys.front().first;
    SortKeys sorted(keys.size());
    for (unsigned shift = 0; shift < 64; shift += 8) {
        if ((differing >> shift & 0xFFU) == 0)
            continue;
        std::array<std::size_t, 257> places = {};
        for (const auto& [key, number] : keys)
            ++places[(key >> shift & 0xFFU) + 1];
        std::partial_sum(places.begin(), places.end(), places.begin());
        for (const auto& entry : keys)
            sorted[places[entry.first >> shift & 0xFFU]++] = entry;
        keys.swap(sorted);
    }
}

void TickListModel::countTicks()
{
    m_tickedCount = allTicked();
    const auto shown = static_cast<std::size_t>(rowCount());
    m_shownTicked = shown == allCount() ? m_tickedCount : 0;
    for (int row = 0; shown < allCount() && row < rowCount(); ++row)
        m_shownTicked += isTicked(row) ? 1U : 0U;
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
