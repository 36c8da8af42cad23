// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractTableModel>

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace luma {

/// The model behind a TickList: every row has a check box in its first column, and the ticked rows are
/// counted. TickTable adds the rows, of which a filter may hide some. Main thread only.
class TickListModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// Of all rows, shown or not.
    [[nodiscard]] std::size_t tickedCount() const { return m_tickedCount; }
    [[nodiscard]] virtual std::size_t allCount() const = 0;
    /// Checked when all shown rows are ticked, PartiallyChecked when some are, Unchecked when none is or there
    /// are no rows.
    [[nodiscard]] Qt::CheckState tickState() const;
    /// Ticks or unticks the rows of `indexes`.
    void tick(const QModelIndexList& indexes, bool on);
    /// Ticks or unticks the shown rows.
    void tickAll(bool on);

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const final;
    bool setData(const QModelIndex& index, const QVariant& value, int role) final;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const final;

signals:
    /// Rows were added, removed, ticked or unticked.
    void ticksChanged();

protected:
    using QAbstractTableModel::QAbstractTableModel;

    /// What rows are sorted by, and their numbers.
    using SortKeys = std::vector<std::pair<std::uint64_t, std::size_t>>;
    /// In the same order.
    static std::uint64_t unsignedKey(std::int64_t key)
    {
        return static_cast<std::uint64_t>(key) ^ (std::uint64_t{1} << 63U);
    }
    /// Sorts by the keys, ascending; rows with the same key stay in their order.
    static void sortByKey(SortKeys& keys);

    /// To be called after rows were added, removed, shown or hidden.
    void countTicks();
    /// To be called after any rows were ticked or unticked.
    void announceTicks();

    [[nodiscard]] virtual bool isTicked(int row) const = 0;
    virtual void setTicked(int row, bool on) = 0;
    [[nodiscard]] virtual std::size_t allTicked() const = 0;
    [[nodiscard]] virtual QString text(int row, int column) const = 0;
    [[nodiscard]] virtual Qt::Alignment alignment(int column) const = 0;

private:
    std::size_t m_tickedCount = 0;
    std::size_t m_shownTicked = 0;

    void announce(int first, int last);
};

} // namespace luma
