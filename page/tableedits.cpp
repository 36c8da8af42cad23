// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/tableedits.h"

#include "page/tablesteps.h"

#include <QCoreApplication>
#include <QUndoStack>

#include <algorithm>
#include <functional>

namespace luma {

namespace {

struct TableTexts
{
    Q_DECLARE_TR_FUNCTIONS(luma::TableEdits)
};

Error tableError(const QString& text)
{
    return Error{text.toStdString()};
}

QString nameOf(TableEdit edit)
{
    switch (edit) {
    case TableEdit::RowAbove:
    case TableEdit::RowBelow:
        return TableTexts::tr("Add Row");
    case TableEdit::ColumnLeft:
    case TableEdit::ColumnRight:
        return TableTexts::tr("Add Column");
    case TableEdit::RemoveRows:
        return TableTexts::tr("Remove Row");
    case TableEdit::RemoveColumns:
        return TableTexts::tr("Remove Column");
    case TableEdit::MergeCells:
        return TableTexts::tr("Merge Cells");
    case TableEdit::SplitCell:
        return TableTexts::tr("Split Cell");
    case TableEdit::HeaderRow:
        return TableTexts::tr("Header Row");
    }
    return {};
}

/// Why the edit is not possible; no error if it is.
Result<void> checkEdit(TableEdit edit, const TableGrid& grid, const CellBlock& block, const TableCell& cell)
{
    const bool isOneCell = CellBlock{cell.row, cell.column, cell.endRow(), cell.endColumn()} == block;
    if (edit == TableEdit::MergeCells && isOneCell)
        return tableError(TableTexts::tr("Select the cells that are to become one first."));
    if (edit == TableEdit::MergeCells && !grid.areInOneGroup(block.row, block.endRow - 1))
        return tableError(TableTexts::tr("Cells of the header and of the body can't be merged."));
    if (edit == TableEdit::SplitCell && cell.rows == 1 && cell.columns == 1)
        return tableError(TableTexts::tr("Only a merged cell can be split."));
    const auto isHigh = [](const TableCell& each) { return each.row == 0 && each.rows > 1; };
    const html::Element& firstRow = *grid.rows().front();
    if (edit == TableEdit::HeaderRow && !firstRow.parent()->asElement()->is("thead") &&
        !isHeaderRow(firstRow) && std::any_of(grid.cells().begin(), grid.cells().end(), isHigh))
        return tableError(
            TableTexts::tr("A cell of the first row reaches into the next one. Split it first."));
    return {};
}

/// The block from one cell to the other, widened until no cell crosses its border.
CellBlock blockBetween(const TableGrid& grid, const TableCell& first, const TableCell& last)
{
    CellBlock block = {first.row, first.column, first.endRow(), first.endColumn()};
    block.include(last);
    for (bool hasGrown = true; hasGrown;) {
        const CellBlock before = block;
        for (const TableCell& cell : grid.cells()) {
            if (block.touches(cell))
                block.include(cell);
        }
        hasGrown = !(before == block);
    }
    return block;
}

/// Makes the edit and gives the element to be selected.
const html::Element* carryOut(TableEdit edit, html::Element& table, const TableGrid& grid,
                              const CellBlock& block, const TableCell& cell, PageCommands& commands)
{
    TableSteps steps(table, grid, commands);
    int row = block.row;
    int column = block.column;
    const html::Element* const parent = table.parent()->asElement();
    const auto again = [&](int count, void (TableSteps::*step)(int), int at) {
        for (; count > 0; --count) {
            const auto now = TableGrid::of(table);
            TableSteps each(table, *now, commands);
            std::invoke(step, each, at);
        }
    };
    switch (edit) {
    case TableEdit::RowAbove:
        steps.addRowBefore(row);
        break;
    case TableEdit::RowBelow:
        row = block.endRow;
        steps.addRowBehind(row - 1);
        break;
    case TableEdit::ColumnLeft:
        steps.addColumn(column, column);
        break;
    case TableEdit::ColumnRight:
        column = block.endColumn;
        steps.addColumn(column, column - 1);
        break;
    case TableEdit::RemoveRows:
        if (block.endRow - row == grid.rowCount()) {
            steps.remove(table);
            return parent;
        }
        again(block.endRow - row, &TableSteps::removeRow, row);
        break;
    case TableEdit::RemoveColumns:
        if (block.endColumn - column == grid.columnCount()) {
            steps.remove(table);
            return parent;
        }
        again(block.endColumn - column, &TableSteps::removeColumn, column);
        break;
    case TableEdit::MergeCells:
        steps.merge(block);
        break;
    case TableEdit::SplitCell:
        steps.split(cell);
        break;
    case TableEdit::HeaderRow:
        steps.toggleHeader();
        break;
    }
    const auto now = TableGrid::of(table);
    const TableCell* const chosen =
        now ? now->at(std::min(row, now->rowCount() - 1), std::min(column, now->columnCount() - 1)) : nullptr;
    return chosen ? chosen->element : &table;
}

} // namespace

html::Element* tableAround(html::Element& element)
{
    for (html::Node* node = &element; node; node = node->parent()) {
        if (node->asElement() && node->asElement()->is("table"))
            return node->asElement();
    }
    return nullptr;
}

html::Element* tableCellFor(html::Element& element)
{
    for (html::Node* node = &element; node && node->asElement(); node = node->parent()) {
        html::Element& around = *node->asElement();
        if (isTableCell(around))
            return &around;
        if (around.is("tr") || around.is("table")) {
            const auto cells = around.select("td, th");
            if (!cells.empty())
                return cells.front();
        }
    }
    return nullptr;
}

Error TableEdits::noCell()
{
    return tableError(TableTexts::tr("Select a cell of a table first."));
}

Result<const html::Element*> TableEdits::perform(TableEdit edit, html::Element& first, html::Element& last)
{
    html::Element* const table = tableAround(first);
    auto grid = table ? TableGrid::of(*table) : Error{};
    if (table && !grid)
        return grid.error();
    const TableCell* const cell = table ? grid->cellOf(first) : nullptr;
    if (!cell)
        return noCell();
    const TableCell* const other = grid->cellOf(last);
    const CellBlock block = blockBetween(*grid, *cell, other ? *other : *cell);
    if (auto checked = checkEdit(edit, *grid, block, *cell); !checked)
        return checked.error();
    m_stack.beginMacro(nameOf(edit));
    const html::Element* const chosen = carryOut(edit, *table, *grid, block, *cell, m_commands);
    m_stack.endMacro();
    return chosen;
}

} // namespace luma
