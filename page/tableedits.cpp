// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/tableedits.h"

#include "base/ascii.h"
#include "html/characterdata.h"
#include "html/tagtraits.h"
#include "page/tablegrid.h"

#include <QCoreApplication>
#include <QUndoStack>

#include <algorithm>
#include <array>
#include <functional>
#include <iterator>
#include <utility>

namespace luma {

namespace {

/// Rows and columns, from the first to the one behind the last.
struct Block
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
    bool operator==(const Block&) const = default;
    void include(const TableCell& cell)
    {
        row = std::min(row, cell.row);
        column = std::min(column, cell.column);
        endRow = std::max(endRow, cell.endRow());
        endColumn = std::max(endColumn, cell.endColumn());
    }
};

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

bool isBlankText(const html::Node* node)
{
    const std::string* const text = node ? html::textOf(*node) : nullptr;
    return text && isBlank(*text);
}

/// A copy of the white space in front of a node, which puts it on a line of its own; null if there is none. The first row
/// of a group that the page doesn't spell out has it in front of the group.
html::NodePtr indentationOf(const html::Node& node)
{
    const html::Node* const above = node.previous() || !node.asElement()->is("tr") ? &node : node.parent();
    return isBlankText(above->previous()) ? above->previous()->copy() : nullptr;
}

/// A row, or the group that would be empty without it.
html::Element& rowOrItsGroup(html::Element& row)
{
    html::Element& parent = *row.parent()->asElement();
    return !parent.is("table") && parent.children().size() == 1 ? parent : row;
}

html::Element* headOf(const html::Element& table)
{
    for (html::Element* const child : table.children()) {
        if (child->is("thead"))
            return child;
    }
    return nullptr;
}

bool isHeaderRow(const html::Element& row)
{
    const auto cells = row.children();
    return !cells.empty() &&
           std::all_of(cells.begin(), cells.end(), [](const auto* cell) { return cell->is("th"); });
}

/// Nothing to be seen but the line break that keeps an empty cell open.
bool isVacant(const html::Element& cell)
{
    for (const html::Node* node = cell.firstChild(); node; node = node->next()) {
        if (!isBlankText(node) && !(node->asElement() && node->asElement()->is("br")))
            return false;
    }
    return true;
}

/// An empty cell that looks like the one beside it.
html::NodePtr emptyCell(const html::Element* like)
{
    constexpr auto looks = std::to_array<std::string_view>({"class", "style", "scope", "align", "valign"});
    auto cell = std::make_unique<html::Element>(like ? like->tagName() : "td");
    for (const std::string_view name : looks) {
        if (like && like->hasAttr(name))
            cell->setAttr(name, like->attr(name));
    }
    cell->append(std::make_unique<html::Element>("br"));
    return cell;
}

/// The row with all cells as td or th.
html::NodePtr withCellsAs(const html::Element& row, const char* tag)
{
    html::NodePtr changed = row.shallowCopy();
    const bool isHeader = std::string_view(tag) == "th";
    for (const html::Node* node = row.firstChild(); node; node = node->next()) {
        const html::Element* const cell = node->asElement();
        if (!cell || !isTableCell(*cell)) {
            changed->asParent()->append(node->copy());
            continue;
        }
        auto other = std::make_unique<html::Element>(tag, cell->nameSpace(), cell->attributes());
        if (isHeader && !other->hasAttr("scope"))
            other->setAttr("scope", "col");
        else if (!isHeader && other->attr("scope") == "col")
            other->removeAttr("scope");
        for (const html::Node* child = cell->firstChild(); child; child = child->next())
            other->append(child->copy());
        changed->asParent()->append(std::move(other));
    }
    return changed;
}

/// The elements that describe columns, each with the number of them.
struct Columns
{
    html::Element* element;
    int count;
};

std::vector<Columns> columnElements(const html::Element& table)
{
    std::vector<Columns> found;
    const auto add = [&found](html::Element& element) {
        const int count = QString::fromUtf8(std::string(element.attr("span"))).toInt();
        found.push_back({&element, std::clamp(count, 1, 1000)});
    };
    for (html::Element* const group : table.children()) {
        if (!group->is("colgroup"))
            continue;
        const auto columns = group->children();
        std::for_each(columns.begin(), columns.end(), [&add](html::Element* column) { add(*column); });
        if (columns.empty())
            add(*group);
    }
    return found;
}

/// The element that describes this column, or null.
const Columns* describing(const std::vector<Columns>& columns, int column)
{
    for (const Columns& each : columns) {
        if (column < each.count)
            return &each;
        column -= each.count;
    }
    return nullptr;
}

bool beginsWithBlock(const html::NodeList& nodes)
{
    const auto first = std::find_if(nodes.begin(), nodes.end(),
                                    [](const html::NodePtr& node) { return !isBlankText(node.get()); });
    return first != nodes.end() && (*first)->asElement() && html::isBlock(*(*first)->asElement());
}

bool endsWithBlock(const html::Node* last)
{
    while (isBlankText(last))
        last = last->previous();
    return last && last->asElement() && html::isBlock(*last->asElement());
}

/// The steps of which edits of a table are made. Each leaves the grid as it was before.
class TableSteps final
{
public:
    TableSteps(html::Element& table, const TableGrid& grid, PageCommands& commands)
        : m_table(table), m_grid(grid), m_commands(commands)
    {}

    void addRowBefore(int row);
    void addRowBehind(int row);
    void addColumn(int column, int like);
    void removeRow(int row);
    void removeColumn(int column);
    void merge(const Block& block);
    void split(const TableCell& cell);
    void toggleHeader();
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

void TableSteps::exchange(html::ParentNode& parent, html::Node* previous, html::Node* next,
                          html::NodeList nodes)
{
    MarkupDifference difference;
    difference.parent = &parent;
    difference.previous = previous;
    difference.next = next;
    difference.nodes = std::move(nodes);
    m_commands.apply(std::move(difference), QString(), PageCommands::Merging::Separate);
}

void TableSteps::insertBefore(html::Node& neighbour, html::NodePtr node)
{
    html::NodeList nodes;
    nodes.push_back(std::move(node));
    if (html::NodePtr indentation = indentationOf(neighbour))
        nodes.push_back(std::move(indentation));
    exchange(*neighbour.parent(), neighbour.previous(), &neighbour, std::move(nodes));
}

void TableSteps::insertBehind(html::Node& neighbour, html::NodePtr node)
{
    html::NodeList nodes;
    if (html::NodePtr indentation = indentationOf(neighbour))
        nodes.push_back(std::move(indentation));
    nodes.push_back(std::move(node));
    exchange(*neighbour.parent(), &neighbour, neighbour.next(), std::move(nodes));
}

void TableSteps::replace(html::Node& node, html::NodePtr other)
{
    html::NodeList nodes;
    nodes.push_back(std::move(other));
    exchange(*node.parent(), node.previous(), node.next(), std::move(nodes));
}

void TableSteps::remove(html::Node& node)
{
    html::Node* const previous = isBlankText(node.previous()) ? node.previous()->previous() : node.previous();
    exchange(*node.parent(), previous, node.next(), {});
}

void TableSteps::setSpan(html::Element& element, std::string_view attribute, int count)
{
    html::Element changed(element.tagName(), element.nameSpace(), element.attributes());
    if (count == 1)
        changed.removeAttr(attribute);
    else
        changed.setAttr(attribute, std::to_string(count));
    m_commands.setAttributes(element, changed.attributes(), QString());
}

/// Adds a cell to a row where the column begins.
void TableSteps::addCell(int row, int column, html::NodePtr cell)
{
    if (const TableCell* const next = m_grid.startingIn(row, column)) {
        insertBefore(*next->element, std::move(cell));
        return;
    }
    const auto children = rowAt(row).children();
    if (children.empty())
        m_commands.insert(std::move(cell), {&rowAt(row), nullptr}, QString());
    else
        insertBehind(*children.back(), std::move(cell));
}

/// A row with a cell in each column that the row `like` has, to become the row of that number. Cells that span the place
/// grow instead.
html::NodePtr TableSteps::makeRow(int row, int like)
{
    // A header's cells are no pattern for the body's.
    const bool isBelowHeader =
        row > like && isHeaderRow(rowAt(like)) && !rowAt(like).parent()->asElement()->is("thead");
    const int pattern = !isBelowHeader ? like : row < m_grid.rowCount() ? row : -1;
    auto added = std::make_unique<html::Element>("tr");
    const auto siblings = rowAt(like).children();
    for (int column = 0; column < m_grid.columnCount();) {
        const TableCell* const above = m_grid.at(row - 1, column);
        const bool isSpanned = above && above == m_grid.at(row, column);
        const bool spansAll = above && above->spansAll && m_grid.areInOneGroup(above->row, like);
        if (isSpanned && !above->spansAll)
            setSpan(*above->element, "rowspan", above->rows + 1);
        if (isSpanned || spansAll) {
            column = above->endColumn();
            continue;
        }
        if (m_grid.at(like, column)) {
            if (html::NodePtr indentation = siblings.empty() ? nullptr : indentationOf(*siblings.front()))
                added->append(std::move(indentation));
            const TableCell* const model = m_grid.at(pattern, column);
            added->append(emptyCell(model ? model->element : nullptr));
        }
        ++column;
    }
    if (isBlankText(rowAt(like).lastChild()) && added->firstChild())
        added->append(rowAt(like).lastChild()->copy());
    return added;
}

void TableSteps::addRowBefore(int row)
{
    insertBefore(rowAt(row), makeRow(row, row));
}

void TableSteps::addRowBehind(int row)
{
    html::Element& group = *rowAt(row).parent()->asElement();
    const bool endsHead = group.is("thead") && !rowAt(row).nextElement();
    if (endsHead && row + 1 < m_grid.rowCount()) {
        addRowBefore(row + 1);
    } else if (endsHead) {
        auto body = std::make_unique<html::Element>("tbody");
        body->append(withCellsAs(*makeRow(row + 1, row)->asElement(), "td"));
        insertBehind(group, std::move(body));
    } else {
        insertBehind(rowAt(row), makeRow(row + 1, row));
    }
}

void TableSteps::addColumn(int column, int like)
{
    for (int row = 0; row < m_grid.rowCount(); ++row) {
        const TableCell* const left = m_grid.at(row, column - 1);
        const TableCell* const right = m_grid.at(row, column);
        const bool isShort = column > 0 && !left && !right;
        if (left && left == right) {
            if (left->row == row)
                setSpan(*left->element, "colspan", left->columns + 1);
        } else if (!isShort) {
            const TableCell* const model = m_grid.at(row, like);
            addCell(row, column, emptyCell(model ? model->element : nullptr));
        }
    }
    addColumnElement(column, like);
}

void TableSteps::addColumnElement(int column, int like)
{
    const auto elements = columnElements(m_table);
    const Columns* const model = describing(elements, like);
    if (!model)
        return;
    if (model->count > 1 || model->element->is("colgroup"))
        setSpan(*model->element, "span", model->count + 1);
    else if (column > like)
        insertBehind(*model->element, model->element->shallowCopy());
    else
        insertBefore(*model->element, model->element->shallowCopy());
}

void TableSteps::removeColumnElement(int column)
{
    const auto elements = columnElements(m_table);
    const Columns* const removed = describing(elements, column);
    if (removed && removed->count > 1)
        setSpan(*removed->element, "span", removed->count - 1);
    else if (removed)
        remove(*removed->element);
}

/// Cells that go on below stay, with their contents.
void TableSteps::removeRow(int row)
{
    for (const TableCell& cell : m_grid.cells()) {
        if (cell.row > row || cell.endRow() <= row || cell.rows == 1)
            continue;
        if (cell.row < row) {
            if (!cell.spansAll)
                setSpan(*cell.element, "rowspan", cell.rows - 1);
            continue;
        }
        html::NodePtr moved = cell.element->copy();
        if (!cell.spansAll && cell.rows == 2)
            moved->asElement()->removeAttr("rowspan");
        else if (!cell.spansAll)
            moved->asElement()->setAttr("rowspan", std::to_string(cell.rows - 1));
        addCell(row + 1, cell.column, std::move(moved));
    }
    remove(rowOrItsGroup(rowAt(row)));
}

void TableSteps::removeColumn(int column)
{
    for (const TableCell& cell : m_grid.cells()) {
        if (cell.column > column || cell.endColumn() <= column)
            continue;
        if (cell.columns > 1)
            setSpan(*cell.element, "colspan", cell.columns - 1);
        else
            remove(*cell.element);
    }
    removeColumnElement(column);
}

/// Makes the first cell of the block cover it; the contents of the others follow those of the first.
void TableSteps::merge(const Block& block)
{
    html::Element& target = *m_grid.at(block.row, block.column)->element;
    html::NodeList contents;
    const bool wasVacant = isVacant(target);
    for (const TableCell& cell : m_grid.cells()) {
        if (cell.element == &target || !block.touches(cell))
            continue;
        html::NodeList more;
        for (const html::Node* node = cell.element->firstChild(); node; node = node->next())
            more.push_back(node->copy());
        const html::Node* const last = !contents.empty() ? contents.back().get()
                                       : wasVacant       ? nullptr
                                                         : target.lastChild();
        if (!isVacant(*cell.element)) {
            if (last && !endsWithBlock(last) && !beginsWithBlock(more))
                contents.push_back(std::make_unique<html::Element>("br"));
            std::move(more.begin(), more.end(), std::back_inserter(contents));
        }
        remove(*cell.element);
    }
    if (!contents.empty())
        exchange(target, wasVacant ? nullptr : target.lastChild(), nullptr, std::move(contents));
    setSpan(target, "colspan", block.endColumn - block.column);
    setSpan(target, "rowspan", block.endRow - block.row);
}

void TableSteps::split(const TableCell& cell)
{
    setSpan(*cell.element, "colspan", 1);
    setSpan(*cell.element, "rowspan", 1);
    for (int column = 1; column < cell.columns; ++column)
        insertBehind(*cell.element, emptyCell(cell.element));
    for (int row = cell.row + 1; row < cell.endRow(); ++row) {
        for (int column = 0; column < cell.columns; ++column)
            addCell(row, cell.column, emptyCell(cell.element));
    }
}

void TableSteps::toggleHeader()
{
    html::Element* const head = headOf(m_table);
    if (head && head->firstElement())
        makeBody(*head);
    else if (isHeaderRow(rowAt(0)))
        replace(rowAt(0), withCellsAs(rowAt(0), "td"));
    else
        makeHeader(rowAt(0));
}

void TableSteps::makeHeader(html::Element& row)
{
    if (html::Element* const empty = headOf(m_table))
        remove(*empty);
    auto head = std::make_unique<html::Element>("thead");
    if (html::NodePtr indentation = indentationOf(row))
        head->append(std::move(indentation));
    head->append(withCellsAs(row, "th"));
    html::Element& group = *row.parent()->asElement();
    if (isBlankText(group.lastChild()) && &group != &m_table)
        head->append(group.lastChild()->copy());
    insertBefore(&group == &m_table ? row : group, std::move(head));
    remove(rowOrItsGroup(row));
}

void TableSteps::makeBody(html::Element& head)
{
    html::NodeList rows;
    for (const html::Node* node = head.firstChild(); node; node = node->next()) {
        const html::Element* const row = node->asElement();
        rows.push_back(row && row->is("tr") ? withCellsAs(*row, "td") : node->copy());
    }
    html::Element* const body = head.nextElement();
    if (body && body->is("tbody")) {
        if (isBlankText(rows.back().get()))
            rows.pop_back();
        exchange(*body, nullptr, body->firstChild(), std::move(rows));
        remove(head);
        return;
    }
    auto made = std::make_unique<html::Element>("tbody");
    for (html::NodePtr& row : rows)
        made->append(std::move(row));
    replace(head, std::move(made));
}

/// Why the edit is not possible; no error if it is.
Result<void> checkEdit(TableEdit edit, const TableGrid& grid, const Block& block, const TableCell& cell)
{
    const bool isOneCell = Block{cell.row, cell.column, cell.endRow(), cell.endColumn()} == block;
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
Block blockBetween(const TableGrid& grid, const TableCell& first, const TableCell& last)
{
    Block block = {first.row, first.column, first.endRow(), first.endColumn()};
    block.include(last);
    for (bool hasGrown = true; hasGrown;) {
        const Block before = block;
        for (const TableCell& cell : grid.cells()) {
            if (block.touches(cell))
                block.include(cell);
        }
        hasGrown = !(before == block);
    }
    return block;
}

/// Makes the edit and gives the element to be selected.
const html::Element* carryOut(TableEdit edit, html::Element& table, const TableGrid& grid, const Block& block,
                              const TableCell& cell, PageCommands& commands)
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

Result<const html::Element*> TableEdits::perform(TableEdit edit, html::Element& first, html::Element& last)
{
    html::Element* const table = tableAround(first);
    auto grid = table ? TableGrid::of(*table) : Error{};
    if (table && !grid)
        return grid.error();
    const TableCell* const cell = table ? grid->cellOf(first) : nullptr;
    if (!cell)
        return tableError(TableTexts::tr("Select a cell of a table first."));
    const TableCell* const other = grid->cellOf(last);
    const Block block = blockBetween(*grid, *cell, other ? *other : *cell);
    if (auto checked = checkEdit(edit, *grid, block, *cell); !checked)
        return checked.error();
    m_stack.beginMacro(nameOf(edit));
    const html::Element* const chosen = carryOut(edit, *table, *grid, block, *cell, m_commands);
    m_stack.endMacro();
    return chosen;
}

} // namespace luma
