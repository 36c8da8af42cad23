// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/ticklistmodel.h"

#include <iterator>
#include <span>
#include <utility>
#include <vector>

namespace luma {

/// A column of a TickTable: its untranslated title, and what it shows of a row.
template <class Row>
struct TickColumn
{
    const char* title;
    QString (*text)(const Row& row);
};

/// A TickListModel that keeps its rows, plain structs with a member `bool select`, and shows them in the
/// columns it is given. Main thread only.
template <class Row>
class TickTable : public TickListModel
{
public:
    /// `columns` outlive the table; the first one holds the check boxes.
    explicit TickTable(std::span<const TickColumn<Row>> columns, QObject* parent = nullptr)
        : TickListModel(parent), m_columns(columns)
    {}

    [[nodiscard]] const std::vector<Row>& rows() const { return m_rows; }

    void setRows(std::vector<Row> rows)
    {
        beginResetModel();
        m_rows = std::move(rows);
        endResetModel();
        countTicks();
    }

    void append(std::vector<Row> rows)
    {
        if (rows.empty())
            return;
        beginInsertRows({}, rowCount(), rowCount() + static_cast<int>(rows.size()) - 1);
        std::move(rows.begin(), rows.end(), std::back_inserter(m_rows));
        endInsertRows();
        countTicks();
    }

    /// `numbers` ascend.
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
        endResetModel();
        countTicks();
    }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const final
    {
        return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
    }

    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const final
    {
        return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
    }

    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const final
    {
        if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section >= columnCount())
            return TickListModel::headerData(section, orientation, role);
        return metaObject()->tr(m_columns[static_cast<std::size_t>(section)].title, nullptr);
    }

protected:
    [[nodiscard]] bool isTicked(int row) const final { return m_rows[static_cast<std::size_t>(row)].select; }
    void setTicked(int row, bool on) final { m_rows[static_cast<std::size_t>(row)].select = on; }
    [[nodiscard]] QString text(int row, int column) const final
    {
        return m_columns[static_cast<std::size_t>(column)].text(m_rows[static_cast<std::size_t>(row)]);
    }

private:
    std::vector<Row> m_rows;
    std::span<const TickColumn<Row>> m_columns;
};

} // namespace luma
