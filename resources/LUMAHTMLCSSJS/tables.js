// SPDX-License-Identifier: GPL-3.0-or-later
// Tables: inserting one, moving between its cells, and which cells are selected. The editor changes rows and columns itself.

'use strict';

// Inserts a table at the caret, each row on a line of its own, and sets the caret into its first cell.
function insertTable(rows, columns, hasHeader) {
    const table = document.createElement('table');
    table.style.width = '100%';
    table.append('\n');
    if (hasHeader)
        table.append(tableGroup('thead', 1, columns), '\n');
    if (rows > (hasHeader ? 1 : 0))
        table.append(tableGroup('tbody', hasHeader ? rows - 1 : rows, columns), '\n');
    insertNode(table);
    const cell = table.querySelector('td, th');
    if (cell)
        setCaret(cell, 0);
    cleanUp();
}

function tableGroup(name, rows, columns) {
    const group = document.createElement(name);
    group.append('\n');
    for (; rows > 0; --rows) {
        const row = document.createElement('tr');
        for (let column = 0; column < columns; ++column) {
            const cell = document.createElement(name === 'thead' ? 'th' : 'td');
            if (name === 'thead')
                cell.scope = 'col';
            cell.append(document.createElement('br'));
            row.append(cell);
        }
        group.append(row, '\n');
    }
    return group;
}

function cellsOf(table) {
    return Array.from(table.querySelectorAll('td, th')).filter((each) => each.closest('table') === table);
}

// Tab and Shift+Tab move between cells. Returns 'moved', 'end' behind the last cell and in front of the first one, or
// nothing if the caret is in no cell.
function moveToCell(step) {
    const cell = currentRange() && closestAt(currentRange().startContainer, 'td, th');
    if (!cell)
        return '';
    const cells = cellsOf(cell.closest('table'));
    const next = cells[cells.indexOf(cell) + step];
    if (!next)
        return 'end';
    getSelection().selectAllChildren(next);
    reveal(next);
    return 'moved';
}

// The paths of the first and the last cell that the selection reaches into; none outside tables.
function selectedCells() {
    const range = currentRange();
    const table = range && closestAt(range.commonAncestorContainer, 'table');
    if (!table)
        return [];
    const cells = cellsOf(table).filter((cell) => reaches(range, cell));
    return cells.length > 0 ? [pathOfElement(cells[0]), pathOfElement(cells[cells.length - 1])] : [];
}

function reaches(range, cell) {
    if (cell.contains(range.startContainer))
        return true;
    const inner = document.createRange();
    inner.selectNodeContents(cell);
    if (range.compareBoundaryPoints(range.START_TO_END, inner) < 0
        || range.compareBoundaryPoints(range.END_TO_START, inner) >= 0)
        return false;
    // A triple click selects up to the beginning of the next cell.
    return range.endOffset > 0 || !cell.contains(range.endContainer) || cell.textContent.trim() === '';
}
