// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/ticklistmodel.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <iterator>
#include <span>
#include <utility>
#include <vector>

namespace luma {

/// A column of a TickTable: its untranslated title, what it shows of a row, and how it sorts.
template <class Row>
struct TickColumn
{
    const char* title;
    QString (*text)(const Row& row);
    bool (*less)(const Row& a, const Row& b) = nullptr; ///< with neither of the two: the rows' own order
    std::int64_t (*sortKey)(const Row& row) = nullptr;  ///< faster
    bool isNumber = false;                              ///< shown at the right
};

/// A TickListModel that keeps its rows, plain structs with a member `bool select`, and shows them in the
/// columns it is given, filtered and sorted. Main thread only.
template <class Row>
class TickTable : public TickListModel
{
public:
    using Columns = std::span<const TickColumn<Row>>;
    using Filter = std::function<bool(const Row& row)>;

    /// `columns` outlive the table; the first one holds the check boxes.
    explicit TickTable(Columns columns, QObject* parent = nullptr) : TickListModel(parent), m_columns(columns)
    {}

    /// All rows in their own order, shown or not.
    [[nodiscard]] const std::vector<Row>& rows() const { return m_rows; }
    /// Another number whenever rows have been added or removed.
    [[nodiscard]] std::size_t version() const { return m_version; }
    /// The row that is shown at `position`.
    [[nodiscard]] const Row& shownRow(int position) const
    {
        return m_rows[m_shown[static_cast<std::size_t>(position)]];
    }

    void setRows(std::vector<Row> rows)
    {
        beginResetModel();
        m_rows = std::move(rows);
        ++m_version;
        arrange();
        endResetModel();
        countTicks();
    }

    /// Behind the others, whatever the order; those that the filter accepts are shown.
    void append(std::vector<Row> rows)
    {
        RowNumbers added;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            if (!m_filter || m_filter(rows[i]))
                added.push_back(static_cast<std::uint32_t>(m_rows.size() + i));
        }
        if (!added.empty())
            beginInsertRows({}, rowCount(), rowCount() + static_cast<int>(added.size()) - 1);
        m_shown.insert(m_shown.end(), added.begin(), added.end());
        std::move(rows.begin(), rows.end(), std::back_inserter(m_rows));
        ++m_version;
        if (!added.empty())
            endInsertRows();
        countTicks();
    }

    /// `numbers` are those of rows(), and ascend.
    void removeRowsAt(const std::vector<std::size_t>& numbers)
    {
        if (numbers.empty())
            return;
        // One reset: announcing thousands of scattered rows one by one would take minutes.
        beginResetModel();
        auto next = numbers.begin();
        std::size_t number = 0;
        std::erase_if(m_rows, [&](const Row&) {
            const bool isNext = next != numbers.end() && *next == number;
            ++number;
            next += isNext ? 1 : 0;
            return isNext;
        });
        ++m_version;
        arrange();
        endResetModel();
        countTicks();
    }

    /// Shows only the rows that `filter` accepts; all without one.
    void setFilter(Filter filter)
    {
        beginResetModel();
        m_filter = std::move(filter);
        arrange();
        endResetModel();
        countShownTicks();
    }

    /// Ticks or unticks all rows that `chosen` accepts, shown or not.
    void tickWhere(const Filter& chosen, bool on)
    {
        for (Row& row : m_rows) {
            if (chosen(row))
                row.select = on;
        }
        announceTicks();
    }

    /// As many columns as before.
    void setColumns(Columns columns)
    {
        m_columns = columns;
        emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
    }

    /// By the column of that number; one without order, or none, gives the rows' own order.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) final
    {
        emit layoutAboutToBeChanged({}, VerticalSortHint);
        const RowNumbers before = m_shown;
        m_sortColumn = column;
        m_sortOrder = order;
        orderShown();
        movePersistentIndexes(before);
        emit layoutChanged({}, VerticalSortHint);
    }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const final
    {
        return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
    }

    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const final
    {
        return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
    }

    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const final
    {
        if (orientation != Qt::Horizontal || section < 0 || section >= columnCount())
            return TickListModel::headerData(section, orientation, role);
        if (role == Qt::TextAlignmentRole)
            return int(alignment(section));
        if (role != Qt::DisplayRole)
            return TickListModel::headerData(section, orientation, role);
        return QCoreApplication::translate(metaObject()->className(),
                                           m_columns[static_cast<std::size_t>(section)].title);
    }

    [[nodiscard]] std::size_t allCount() const final { return m_rows.size(); }

protected:
    [[nodiscard]] bool isTicked(int row) const final { return shownRow(row).select; }
    void setTicked(int row, bool on) final { m_rows[m_shown[static_cast<std::size_t>(row)]].select = on; }
    [[nodiscard]] QString text(int row, int column) const final
    {
        return m_columns[static_cast<std::size_t>(column)].text(shownRow(row));
    }
    [[nodiscard]] Qt::Alignment alignment(int column) const final
    {
        const bool isNumber = m_columns[static_cast<std::size_t>(column)].isNumber;
        return Qt::AlignVCenter | (isNumber ? Qt::AlignRight : Qt::AlignLeft);
    }
    [[nodiscard]] std::size_t allTicked() const final
    {
        return static_cast<std::size_t>(
            std::count_if(m_rows.begin(), m_rows.end(), [](const Row& row) { return row.select; }));
    }

private:
    std::vector<Row> m_rows;
    std::size_t m_version = 0;
    RowNumbers m_shown;
    Columns m_columns;
    Filter m_filter;
    int m_sortColumn = -1;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;

    void arrange()
    {
        m_shown.clear();
        for (std::size_t number = 0; number < m_rows.size(); ++number) {
            if (!m_filter || m_filter(m_rows[number]))
                m_shown.push_back(static_cast<std::uint32_t>(number));
        }
        orderShown();
    }

    void orderShown()
    {
        std::vector<bool> isShown(m_rows.size());
        for (const std::uint32_t number : m_shown)
            isShown[number] = true;
        m_shown.clear();
        for (std::uint32_t number = 0; number < isShown.size(); ++number) {
            if (isShown[number])
                m_shown.push_back(number);
        }
        const auto number = static_cast<std::size_t>(m_sortColumn);
        const bool isColumn = m_sortColumn >= 0 && number < m_columns.size();
        const bool descends = m_sortOrder == Qt::DescendingOrder;
        if (isColumn && m_columns[number].sortKey)
            sortBy(m_columns[number].sortKey);
        else if (isColumn && m_columns[number].less)
            std::stable_sort(m_shown.begin(), m_shown.end(),
                             [&, less = m_columns[number].less](std::size_t a, std::size_t b) {
                                 return descends ? less(m_rows[b], m_rows[a]) : less(m_rows[a], m_rows[b]);
                             });
        else if (descends)
            std::reverse(m_shown.begin(), m_shown.end());
    }

    // The keys are copied first: side by side they sort faster than rows spread over the memory.
    void sortBy(std::int64_t (*sortKey)(const Row& row))
    {
        std::vector<std::int64_t> keys;
        keys.reserve(m_shown.size());
        for (const std::uint32_t number : m_shown)
            keys.push_back(sortKey(m_rows[number]));
        sortByKey(m_shown, std::move(keys), m_sortOrder);
    }

    // The same rows as before in another order.
    void movePersistentIndexes(const RowNumbers& before)
    {
        const QModelIndexList from = persistentIndexList();
        if (from.isEmpty())
            return;
        std::vector<int> positions(m_rows.size());
        for (std::size_t position = 0; position < m_shown.size(); ++position)
            positions[m_shown[position]] = static_cast<int>(position);
        QModelIndexList to;
        for (const QModelIndex& old : from)
            to.append(index(positions[before[static_cast<std::size_t>(old.row())]], old.column()));
        changePersistentIndexList(from, to);
    }
};

} // namespace luma
