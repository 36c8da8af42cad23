// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/ticklistmodel.h"

#include <algorithm>
#include <array>
#include <bit>
#include <numeric>

namespace luma {

namespace {

// By the bits from `first` to before `end`.
void sortByDigits(std::vector<std::uint64_t>& entries, unsigned first, unsigned end)
{
    constexpr unsigned digitBits = 11;
    constexpr std::size_t digits = std::size_t{1} << digitBits;
    std::vector<std::uint64_t> sorted(entries.size());
    for (unsigned shift = first; shift < end; shift += digitBits) {
        std::array<std::uint32_t, digits + 1> places = {};
        for (const std::uint64_t entry : entries)
            ++places[(entry >> shift & (digits - 1)) + 1];
        std::partial_sum(places.begin(), places.end(), places.begin());
        for (const std::uint64_t entry : entries)
            sorted[places[entry >> shift & (digits - 1)]++] = entry;
        entries.swap(sorted);
    }
}

} // namespace

Qt::CheckState TickListModel::tickState() const
{
    if (m_shownTicked == 0)
        return Qt::Unchecked;
    return m_shownTicked == static_cast<std::size_t>(rowCount()) ? Qt::Checked : Qt::PartiallyChecked;
}

// With 100,000 rows a sort that compares takes longer than a frame. So key and position share a number where
// they fit into one, and these are sorted by one digit after the other, the last first.
void TickListModel::sortByKey(RowNumbers& numbers, std::vector<std::int64_t> keys, Qt::SortOrder order)
{
    if (keys.empty())
        return;
    const auto [least, most] = std::minmax_element(keys.begin(), keys.end());
    const auto first = static_cast<std::uint64_t>(*least);
    const std::uint64_t range = static_cast<std::uint64_t>(*most) - first;
    const auto positionBits = static_cast<unsigned>(std::bit_width(keys.size()));
    std::vector<std::uint64_t> entries(keys.size());
    if (std::bit_width(range) + positionBits < 64) {
        for (std::size_t i = 0; i < keys.size(); ++i) {
            const std::uint64_t key = static_cast<std::uint64_t>(keys[i]) - first;
            entries[i] = (order == Qt::AscendingOrder ? key : range - key) << positionBits | i;
        }
        sortByDigits(entries, positionBits, positionBits + static_cast<unsigned>(std::bit_width(range)));
    } else {
        std::iota(entries.begin(), entries.end(), 0);
        std::stable_sort(entries.begin(), entries.end(), [&](std::uint64_t a, std::uint64_t b) {
            return order == Qt::AscendingOrder ? keys[a] < keys[b] : keys[b] < keys[a];
        });
    }
    const std::uint64_t position = (std::uint64_t{1} << positionBits) - 1;
    const RowNumbers before = numbers;
    std::transform(entries.begin(), entries.end(), numbers.begin(),
                   [&](std::uint64_t entry) { return before[entry & position]; });
}

void TickListModel::countTicks()
{
    m_tickedCount = allTicked();
    countShownTicks();
    emit ticksChanged();
}

void TickListModel::countShownTicks()
{
    const auto shown = static_cast<std::size_t>(rowCount());
    m_shownTicked = shown == allCount() ? m_tickedCount : 0;
    for (int row = 0; shown < allCount() && row < rowCount(); ++row)
        m_shownTicked += isTicked(row) ? 1U : 0U;
    emit tickStateChanged();
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
