// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "page/pagecommands.h"

class QUndoStack;

namespace luma {

class PageTree;

/// What can be done to a table at some of its cells. HeaderRow makes the first row a header, or one of the body.
enum class TableEdit {
    RowAbove,
    RowBelow,
    ColumnLeft,
    ColumnRight,
    RemoveRows,
    RemoveColumns,
    MergeCells,
    SplitCell,
    HeaderRow
};

/// The edits of tables. Each is one named step of the undo stack, respects cells that span rows or columns, and leaves the
/// markup of the other cells as it is; what it adds is laid out as its neighbours are. Main thread.
class TableEdits final
{
public:
    TableEdits(PageTree& tree, QUndoStack& stack) : m_stack(stack), m_commands(tree, stack) {}

    /// Makes the edit at the cells between two cells of one table. Gives the element to be selected then: a cell or, if the
    /// table has gone, its parent. Fails, and changes nothing, where the edit is not possible.
    Result<const html::Element*> perform(TableEdit edit, html::Element& first, html::Element& last);

    /// What an edit fails with where there is no cell to make it at.
    static Error noCell();

private:
    QUndoStack& m_stack;
    PageCommands m_commands;
};

/// The innermost table around an element, which may be the element itself; null if there is none.
html::Element* tableAround(html::Element& element);
/// The cell that an element is in or stands for: a cell around it, else the first one of the row or table that it is. Null
/// if there is none.
html::Element* tableCellFor(html::Element& element);

} // namespace luma
