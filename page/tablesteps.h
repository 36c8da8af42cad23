// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/document.h"
#include "page/pagecommands.h"
#include "page/tablegrid.h"

#include <algorithm>
#include <string_view>

namespace luma {

/// Rows and columns, from the first to the one behind the last.
struct CellBlock
{
    int row = 0;
    int column = 0;
    int endRow = 0;
    int endColumn = 0;

    [[nodiscard]] bool touches(const TableCell& cell) const
    {
        return cell.row < endRow && row < cell.endRow() && cell.column < endColumn &&
               column < cell.endColumn();
    }
    bool operator==(const CellBlock&) const = default;
    void include(const TableCell& cell)
    {
        row = std::min(row, cell.row);
        column = std::min(column, cell.column);
        endRow = std::max(endRow, cell.endRow());
        endColumn = std::max(endColumn, cell.endColumn());
    }
};

/// The steps that edits of a table consist of, each a command of the undo stack. The grid is that of the table before the
/// step; after one that adds or removes rows or columns, the next needs a new grid. Main thread.
class TableSteps final
{
public:
    TableSteps(html::Element& table, const TableGrid& grid, PageCommands& commands)
        : m_table(table), m_grid(grid), m_commands(commands)
    {}

    void addRowBefore(int row);
    void addRowBehind(int row);
    /// The new column gets this number, and cells that look like those of the column `like` beside it.
    void addColumn(int column, int like);
    /// Cells that go on below stay, with their contents.
    void removeRow(int row);
    void removeColumn(int column);
    /// Makes the first cell of the block cover it; the contents of the others follow those of the first.
    void merge(const CellBlock& block);
    void split(const TableCell& cell);
    /// Makes the first row a header of the table, or the header's rows the first ones of the body.
    void toggleHeader();
    /// Removes a node and the white space in front of it.
    void remove(html::Node& node);

private:
    [[nodiscard]] html::NodePtr makeRow(int row, int like);
    void makeHeader(html::Element& row);
    void makeBody(html::Element& head);
    void addColumnElement(int column, int like);
    void removeColumnElement(int column);
    void addCell(int row, int column, html::NodePtr cell);
    void setSpan(html::Element& element, std::string_view attribute, int count);
    void insertBefore(html::Node& neighbour, html::NodePtr node);
    void insertBehind(html::Node& neighbour, html::NodePtr node);
    void replace(html::Node& node, html::NodePtr other);
    void exchange(html::ParentNode& parent, html::Node* previous, html::Node* next, html::NodeList nodes);
    [[nodiscard]] html::Element& rowAt(int row) const
    {
        return *m_grid.rows().at(static_cast<std::size_t>(row));
    }

    html::Element& m_table;
    const TableGrid& m_grid;
    PageCommands& m_commands;
};

/// Whether a row has header cells only, and at least one.
bool isHeaderRow(const html::Element& row);

} // namespace luma
