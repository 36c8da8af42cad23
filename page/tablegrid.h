// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "html/element.h"

#include <vector>

namespace luma {

/// A cell of a table and the slots that it covers.
struct TableCell
{
    html::Element* element = nullptr;
    int row = 0;
    int column = 0;
    int rows = 1;
    int columns = 1;
    bool spansAll = false; // rows, up to the end of their group: rowspan="0"

    [[nodiscard]] int endRow() const { return row + rows; }
    [[nodiscard]] int endColumn() const { return column + columns; }
};

/// The rows and cells of a table as a browser lays them out (HTML standard, 4.9.12): which cell covers which slot. It refers
/// to the elements of the table and is void once the table changes.
class TableGrid final
{
public:
    /// Fails if the cells cover so many slots that no page would need them.
    static Result<TableGrid> of(const html::Element& table);

    /// In the order of the page; nested tables have their own.
    [[nodiscard]] const std::vector<html::Element*>& rows() const { return m_rows; }
    [[nodiscard]] int rowCount() const { return static_cast<int>(m_rows.size()); }
    [[nodiscard]] int columnCount() const { return m_columnCount; }
    [[nodiscard]] const std::vector<TableCell>& cells() const { return m_cells; }

    /// The cell that covers a slot; null where there is none.
    [[nodiscard]] const TableCell* at(int row, int column) const;
    /// The entry of a cell's element; null for any other.
    [[nodiscard]] const TableCell* cellOf(const html::Element& element) const;
    /// The first cell that starts in the row, in this column or right of it; null if there is none.
    [[nodiscard]] const TableCell* startingIn(int row, int column) const;
    /// Whether the rows are in one thead, tbody or tfoot, which no cell leaves.
    [[nodiscard]] bool areInOneGroup(int row, int other) const;

private:
    Result<void> addRow(html::Element& row, int groupEnd);
    Result<void> addCell(html::Element& cell, int row, int groupEnd);

    std::vector<html::Element*> m_rows;
    std::vector<TableCell> m_cells;
    std::vector<std::vector<int>> m_slots; // by row: the number of the cell, -1 for none
    int m_columnCount = 0;
    std::size_t m_covered = 0;
};

/// A col, or a colgroup without any, and the number of columns that it describes (HTML standard, 4.9.3).
struct ColumnElement
{
    html::Element* element = nullptr;
    int columns = 0;
};

/// What describes a column of the table, counted from 0; without an element where nothing does.
ColumnElement columnElement(const html::Element& table, int column);
/// Whether the element is a td or th.
bool isTableCell(const html::Element& element);

} // namespace luma
