// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractTableModel>

#include <cstddef>
#include <cstdint>
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
    /// Other rows are shown, or ticksChanged() was emitted: tickState() may be another.
    void tickStateChanged();

protected:
    using QAbstractTableModel::QAbstractTableModel;

    /// Of the rows that are shown, in their order.
    using RowNumbers = std::vector<std::uint32_t>;
    /// Sorts `numbers` by `keys`, which belong to them one by one; numbers with the same key stay in their order.
    static void sortByKey(RowNumbers& numbers, std::vector<std::int64_t> keys, Qt::SortOrder order);

    /// To be called after rows were added or removed.
    void countTicks();
    /// To be called after rows were shown or hidden.
    void countShownTicks();
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
