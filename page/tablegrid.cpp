// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/tablegrid.h"

#include <QCoreApplication>

#include <algorithm>
#include <charconv>
#include <utility>

namespace luma {

namespace {

// The limits of the standard, and one for all slots, as a page of a few letters may claim billions.
constexpr int mostColumnsOfACell = 1000;
constexpr int mostRowsOfACell = 65534;
constexpr std::size_t mostSlots = 500'000;

struct GridTexts
{
    Q_DECLARE_TR_FUNCTIONS(luma::TableGrid)
};

bool isGroup(const html::Element& element)
{
    return element.is("thead") || element.is("tbody") || element.is("tfoot");
}

/// The number of slots; 0 is "up to the end" and possible for rows alone.
int span(const html::Element& cell, std::string_view attribute, int least, int most)
{
    const std::string_view text = cell.attr(attribute);
    int number = 1;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    if (read.ec == std::errc::result_out_of_range)
        return most;
    return read.ec != std::errc() || number < least ? 1 : std::min(number, most);
}

/// In their order, which is that of the columns.
std::vector<html::Element*> columnElements(const html::Element& table)
{
    std::vector<html::Element*> found;
    for (html::Element* const group : table.children()) {
        if (!group->is("colgroup"))
            continue;
        const auto columns = group->children();
        found.insert(found.end(), columns.begin(), columns.end());
        if (columns.empty())
            found.push_back(group);
    }
    return found;
}

} // namespace

ColumnElement columnElement(const html::Element& table, int column)
{
    for (html::Element* const element : columnElements(table)) {
        const int columns = span(*element, "span", 1, mostColumnsOfACell);
        if (column < columns)
            return {element, columns};
        column -= columns;
    }
    return {};
}

bool isTableCell(const html::Element& element)
{
    return element.is("td") || element.is("th");
}

Result<TableGrid> TableGrid::of(const html::Element& table)
{
    TableGrid grid;
    std::vector<std::vector<html::Element*>> groups;
    bool isAlone = false; // rows that stand in the table itself, as they may in XHTML, are a group, too
    for (html::Element* const child : table.children()) {
        if (child->is("tr")) {
            if (!std::exchange(isAlone, true))
                groups.emplace_back();
            groups.back().push_back(child);
        } else if (isGroup(*child)) {
            isAlone = false;
            auto& rows = groups.emplace_back();
            for (html::Element* const row : child->children()) {
                if (row->is("tr"))
                    rows.push_back(row);
            }
        }
    }
    int end = 0;
    for (const auto& rows : groups) {
        end += static_cast<int>(rows.size());
        for (html::Element* const row : rows) {
            if (auto added = grid.addRow(*row, end); !added)
                return added.error();
        }
    }
    return grid;
}

Result<void> TableGrid::addRow(html::Element& row, int groupEnd)
{
    m_rows.push_back(&row);
    const int number = rowCount() - 1;
    if (m_slots.size() < m_rows.size())
        m_slots.resize(m_rows.size());
    for (html::Element* const child : row.children()) {
        if (!isTableCell(*child))
            continue;
        if (auto added = addCell(*child, number, groupEnd); !added)
            return added;
    }
    return {};
}

Result<void> TableGrid::addCell(html::Element& element, int row, int groupEnd)
{
    TableCell cell = {&element, row, 0, 1, span(element, "colspan", 1, mostColumnsOfACell)};
    const int rows = span(element, "rowspan", 0, mostRowsOfACell);
    cell.spansAll = rows == 0;
    cell.rows = rows == 0 ? groupEnd - row : std::min(rows, groupEnd - row);
    m_covered += static_cast<std::size_t>(cell.rows) * static_cast<std::size_t>(cell.columns);
    if (m_covered > mostSlots)
        return Error{GridTexts::tr("This table is too large to be changed here.").toStdString()};
    const auto isTaken = [this, row](int column) { return at(row, column) != nullptr; };
    while (isTaken(cell.column))
        ++cell.column;
    if (m_slots.size() < static_cast<std::size_t>(cell.endRow()))
        m_slots.resize(static_cast<std::size_t>(cell.endRow()));
    for (int each = cell.row; each < cell.endRow(); ++each) {
        std::vector<int>& taken = m_slots[static_cast<std::size_t>(each)];
        if (taken.size() < static_cast<std::size_t>(cell.endColumn()))
            taken.resize(static_cast<std::size_t>(cell.endColumn()), -1);
        for (int column = cell.column; column < cell.endColumn(); ++column) {
            int& slot = taken[static_cast<std::size_t>(column)];
            if (slot < 0) // Cells that overlap are an error of the page.
                slot = static_cast<int>(m_cells.size());
        }
    }
    m_columnCount = std::max(m_columnCount, cell.endColumn());
    m_cells.push_back(cell);
    return {};
}

const TableCell* TableGrid::at(int row, int column) const
{
    if (row < 0 || column < 0 || static_cast<std::size_t>(row) >= m_slots.size())
        return nullptr;
    const std::vector<int>& taken = m_slots[static_cast<std::size_t>(row)];
    const int cell =
        static_cast<std::size_t>(column) < taken.size() ? taken[static_cast<std::size_t>(column)] : -1;
    return cell < 0 ? nullptr : &m_cells[static_cast<std::size_t>(cell)];
}

const TableCell* TableGrid::cellOf(const html::Element& element) const
{
    const auto found = std::find_if(m_cells.begin(), m_cells.end(),
                                    [&element](const TableCell& cell) { return cell.element == &element; });
    return found == m_cells.end() ? nullptr : &*found;
}

const TableCell* TableGrid::startingIn(int row, int column) const
{
    const auto found = std::lower_bound(
        m_cells.begin(), m_cells.end(), std::pair(row, column),
        [](const TableCell& cell, const auto& place) { return std::pair(cell.row, cell.column) < place; });
    return found == m_cells.end() || found->row != row ? nullptr : &*found;
}

bool TableGrid::areInOneGroup(int row, int other) const
{
    return m_rows.at(static_cast<std::size_t>(row))->parent() ==
           m_rows.at(static_cast<std::size_t>(other))->parent();
}

} // namespace luma
