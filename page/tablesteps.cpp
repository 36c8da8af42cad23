// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/tablesteps.h"

#include "base/ascii.h"
#include "html/characterdata.h"
#include "html/tagtraits.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace luma {

namespace {

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

} // namespace

bool isHeaderRow(const html::Element& row)
{
    const auto cells = row.children();
    return !cells.empty() &&
           std::all_of(cells.begin(), cells.end(), [](const auto* cell) { return cell->is("th"); });
}

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
    const auto [model, columns] = columnElement(m_table, like);
    if (!model)
        return;
    if (columns > 1 || model->is("colgroup"))
        setSpan(*model, "span", columns + 1);
    else if (column > like)
        insertBehind(*model, model->shallowCopy());
    else
        insertBefore(*model, model->shallowCopy());
}

void TableSteps::removeColumnElement(int column)
{
    const auto [removed, columns] = columnElement(m_table, column);
    if (removed && columns > 1)
        setSpan(*removed, "span", columns - 1);
    else if (removed)
        remove(*removed);
}

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

void TableSteps::merge(const CellBlock& block)
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

} // namespace luma
