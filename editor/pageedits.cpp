// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/pageedits.h"

#include "editor/outlinemodel.h"
#include "editor/outlineselection.h"
#include "html/parse.h"
#include "page/classedits.h"
#include "page/cssmenu.h"
#include "page/elementchange.h"
#include "page/nodechange.h"
#include "page/pagetree.h"
#include "page/subtreechange.h"
#include "page/tablegrid.h"
#include "web/scriptcall.h"
#include "web/viewcontroller.h"

#include <QUndoStack>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>

namespace luma {

PageEdits::PageEdits(const TagRules& rules, PageTree& tree, QUndoStack& stack, OutlineSelection& selection,
                     ViewController& rendering, QObject* parent)
    : QObject(parent),
      m_rules(rules),
      m_tree(tree),
      m_stack(stack),
      m_selection(selection),
      m_rendering(rendering)
{}

void PageEdits::whenCaughtUp(const std::function<void()>& edit)
{
    m_rendering.whenCaughtUp(this, [this, edit] {
        if (m_tree.document())
            edit();
    });
}

void PageEdits::editSelected(const std::function<void(html::Element&)>& edit)
{
    if (m_selection.element())
        editSelectedNode([edit](html::Node& node) { edit(*node.asElement()); });
}

void PageEdits::editSelectedNode(const std::function<void(html::Node&)>& edit)
{
    whenCaughtUp([this, edit, chosen = m_selection.index()] {
        html::Node* const node = OutlineModel::nodeAt(chosen);
        if (!node)
            return;
        {
            const auto quiet = m_selection.quietly();
            edit(*node);
        }
        emit edited();
    });
}

void PageEdits::addTag(const QString& tagName)
{
    if (!m_rules.newElement(tagName))
        return;
    editSelected([this, tagName](html::Element& target) {
        m_commands.insert(m_rules.newElement(tagName), {&target, target.firstChild()},
                          tr("Insert <%1>").arg(tagName));
    });
}

void PageEdits::insertElement(const QString& tag, InsertPlace place)
{
    const QString name = tag == commentTag ? tr("Insert Comment") : tr("Insert <%1>").arg(tag);
    if (place == InsertPlace::Caret) {
        insertAtCaret(tag, name);
        return;
    }
    editSelectedNode([this, tag, place, name](html::Node& node) {
        const auto places = insertPlaces(node);
        const bool isThere = std::find(places.begin(), places.end(), place) != places.end();
        const QString reason =
            isThere ? reasonAgainst(node, place, tag) : tr("The page has changed meanwhile.");
        if (!reason.isEmpty()) {
            emit refused(reason);
            return;
        }
        html::NodePtr added = sampleElement(tag);
        const html::Node* const shown = added.get();
        m_commands.insert(std::move(added), positionAt(node, place), name);
        m_selection.select(shown);
    });
}

void PageEdits::insertAtCaret(const QString& tag, const QString& name)
{
    whenCaughtUp([this, tag, name] {
        const html::Node* const node = m_selection.holdsCaret() ? m_selection.node() : nullptr;
        const QString reason =
            node ? reasonAgainst(*node, InsertPlace::Caret, tag) : tr("The page has changed meanwhile.");
        if (reason.isEmpty())
            m_rendering.insertNode(name, sampleElement(tag)->outerHtml());
        else
            emit refused(reason);
    });
}

void PageEdits::deleteTag()
{
    const html::Node* const selected = m_selection.node();
    if (m_rules.canDelete(selected))
        editSelectedNode([this](html::Node& node) { m_commands.remove(node); });
    else if (selected)
        emit refused(reasonAgainstDelete(*selected));
}

void PageEdits::duplicate()
{
    const html::Element* const selected = m_selection.element();
    if (selected && !m_rules.canDelete(selected)) {
        emit refused(tr("A page may have only one <%1> like this.").arg(tagNameOf(*selected)));
        return;
    }
    if (m_rules.canMove(m_selection.node()))
        editSelectedNode([this](html::Node& node) { m_selection.select(m_commands.duplicate(node)); });
}

void PageEdits::moveUp()
{
    moveSelected(&PageCommands::moveUp);
}

void PageEdits::moveDown()
{
    moveSelected(&PageCommands::moveDown);
}

void PageEdits::moveSelected(void (PageCommands::*move)(html::Node&, PageCommands::Among))
{
    const html::Element* const selected = m_selection.element();
    if (selected && !m_rules.canDrag(selected)) {
        emit refused(reasonAgainstMove(*selected));
        return;
    }
    if (!m_rules.canMove(m_selection.node()))
        return;
    editSelectedNode([this, move](html::Node& node) {
        const auto among =
            m_selection.hasAllNodes() ? PageCommands::Among::AllNodes : PageCommands::Among::Elements;
        std::invoke(move, m_commands, node, among);
        m_selection.select(&node);
    });
}

void PageEdits::change(const QPersistentModelIndex& row,
                       const std::function<Result<void>(html::Element&)>& change, const Then& then)
{
    whenCaughtUp([this, row, change, then] {
        html::Element* const element = OutlineModel::elementAt(row);
        const int before = m_stack.index();
        Result<void> changed;
        if (element) {
            const auto quiet = m_selection.quietly();
            changed = change(*element);
        }
        if (!changed)
            emit refused(QString::fromStdString(changed.error().text));
        if (m_stack.index() != before)
            emit edited();
        if (then)
            then(static_cast<bool>(changed));
    });
}

void PageEdits::exchange(const QPersistentModelIndex& row, const Exchange& exchange, const QString& name,
                         const Then& then)
{
    whenCaughtUp([this, row, exchange, name, then] {
        html::Node* const node = OutlineModel::nodeAt(row);
        auto difference = node ? exchange(*node) : Result<MarkupDifference>(MarkupDifference());
        if (!difference) {
            emit refused(QString::fromStdString(difference.error().text));
        } else if (!difference->isEmpty()) {
            const auto quiet = m_selection.quietly();
            const html::Node* const added =
                difference->nodes.empty() ? nullptr : difference->nodes.front().get();
            const bool wasSelected = m_selection.index() == row;
            m_commands.apply(*std::move(difference), name, PageCommands::Merging::Separate);
            if (wasSelected && !row.isValid())
                m_selection.select(added);
            emit edited();
        }
        if (then)
            then(static_cast<bool>(difference));
    });
}

void PageEdits::changeText(const QPersistentModelIndex& row, const QString& text, const Then& then)
{
    exchange(
        row, [text](html::Node& node) { return withTextInLine(node, text); }, tr("Change Text"), then);
}

void PageEdits::changeMarkup(const QPersistentModelIndex& row, const QString& markup, const Then& then)
{
    const auto parsed = [this, markup](html::Node& node) {
        auto difference = withMarkup(m_rules, node, markup);
        if (difference)
            m_tree.document()->trustServerCode(markup.toStdString());
        return difference;
    };
    exchange(row, parsed, tr("Change Markup"), then);
}

void PageEdits::changeTag(const QPersistentModelIndex& row, const QString& name, const Then& then)
{
    const auto rename = [this, name, row](html::Element& element) -> Result<void> {
        auto difference = withTagName(m_rules, element, name);
        if (!difference)
            return difference.error();
        if (difference->isEmpty())
            return {};
        const html::Element* const renamed = difference->nodes.front()->asElement();
        const bool wasSelected = m_selection.index() == row;
        m_commands.apply(*std::move(difference), tr("Change Tag"), PageCommands::Merging::Separate);
        if (wasSelected)
            m_selection.select(renamed);
        return {};
    };
    change(row, rename, then);
}

void PageEdits::changeAttribute(const QPersistentModelIndex& row, const std::string& attribute,
                                const QString& text, const Then& then)
{
    const auto exchange = [this, attribute, text](html::Element& element) -> Result<void> {
        auto attributes = withAttributeText(element, attribute, text);
        if (!attributes)
            return attributes.error();
        const auto count = element.attributes().size();
        const QString name = attributes->size() > count   ? tr("Add Attribute")
                             : attributes->size() < count ? tr("Remove Attribute")
                                                          : tr("Change Attribute");
        m_commands.setAttributes(element, *std::move(attributes), name);
        return {};
    };
    change(row, exchange, then);
}

void PageEdits::setAttributes(const QPersistentModelIndex& row, std::vector<html::Attribute> attributes,
                              const QString& name)
{
    const auto set = [this, attributes = std::move(attributes),
                      name](html::Element& element) -> Result<void> {
        std::vector<html::Attribute> all = element.attributes();
        for (const html::Attribute& wanted : attributes) {
            const auto old = std::find_if(all.begin(), all.end(),
                                          [&wanted](const auto& each) { return each.name == wanted.name; });
            if (old == all.end())
                all.push_back(wanted);
            else
                *old = wanted;
        }
        m_commands.setAttributes(element, std::move(all), name);
        return {};
    };
    change(row, set, {});
}

void PageEdits::changeTable(
    const std::function<Result<const html::Element*>(html::Element& selected)>& change)
{
    whenCaughtUp([this, change] {
        html::Element* const selected = m_selection.element();
        if (!selected)
            return;
        const auto changed = [this, &change, selected] {
            const auto quiet = m_selection.quietly();
            auto result = change(*selected);
            if (result)
                m_selection.select(*result);
            return result;
        }();
        if (changed)
            emit edited();
        else
            emit refused(QString::fromStdString(changed.error().text));
    });
}

void PageEdits::editTable(TableEdit edit)
{
    m_rendering.ask(QStringLiteral("selectedCells()"), this, [this, edit](const QVariant& answer) {
        const QVariantList paths = answer.toList();
        changeTable([this, edit, paths](html::Element& selected) -> Result<const html::Element*> {
            const auto cellAt = [this](const QVariant& path) {
                html::Element* const element = elementAtPath(*m_tree.document(), ScriptCall::path(path));
                return element && isTableCell(*element) ? element : nullptr;
            };
            html::Element* first = paths.isEmpty() ? nullptr : cellAt(paths.first());
            html::Element* last = paths.isEmpty() ? nullptr : cellAt(paths.last());
            if (!first || !last || tableAround(*first) != tableAround(selected))
                first = last = tableCellFor(selected);
            return first ? m_tableEdits.perform(edit, *first, *last)
                         : Result<const html::Element*>(TableEdits::noCell());
        });
    });
}

void PageEdits::addLastRow()
{
    changeTable([this](html::Element& selected) -> Result<const html::Element*> {
        const html::Element* const table = tableAround(selected);
        const auto grid = table ? TableGrid::of(*table) : Result<TableGrid>(TableEdits::noCell());
        if (!grid)
            return grid.error();
        const TableCell* const first = grid->rowCount() > 0 ? grid->at(grid->rowCount() - 1, 0) : nullptr;
        return first ? m_tableEdits.perform(TableEdit::RowBelow, *first->element, *first->element)
                     : Result<const html::Element*>(TableEdits::noCell());
    });
}

void PageEdits::editAttributes(TagAction action, const QString& title)
{
    editSelected([this, action, name = title.toStdString()](html::Element& element) {
        if (action == TagAction::AddClass)
            m_commands.setAttributes(element, withClass(element.attributes(), name), tr("Add Class"));
        else if (action == TagAction::RemoveClass)
            m_commands.setAttributes(element, withoutClass(element.attributes(), name), tr("Remove Class"));
        else if (action == TagAction::AddID)
            m_commands.setAttributes(element, withID(element.attributes(), name), tr("Add ID"));
        else
            m_commands.setAttributes(element, withoutID(element.attributes()), tr("Remove ID"));
    });
}

void PageEdits::perform(TagAction action, const QString& title)
{
    if (action == TagAction::AddTag)
        addTag(title);
    else if (action == TagAction::DeleteTag)
        deleteTag();
    else if (action != TagAction::None)
        editAttributes(action, title);
}

void PageEdits::changeTitle(const QString& title)
{
    whenCaughtUp([this, title] {
        if (QString::fromStdString(m_tree.document()->title()) == title)
            return;
        m_commands.setTitle(title);
        emit editedUnseen();
    });
}

void PageEdits::updateStyleBlock(const QString& title, const QString& css)
{
    whenCaughtUp([this, title, css] {
        html::Element* const block = styleBlock(*m_tree.document(), title);
        if (block)
            m_commands.setInnerMarkup(*block, css, tr("Update CSS"));
        emit styleBlockUpdated();
        if (block)
            emit editedUnseen();
    });
}

void PageEdits::setStyles(const QPersistentModelIndex& row, const QString& css, const QString& name)
{
    whenCaughtUp([this, row, css, name] {
        html::Element* const element = OutlineModel::elementAt(row);
        if (!element || !element->is("style"))
            return;
        m_commands.setInnerMarkup(*element, css, name);
        emit editedUnseen();
    });
}

void PageEdits::acceptDrop(const QPersistentModelIndex& dragged, const QPersistentModelIndex& target,
                           int childIndex, Qt::DropAction action)
{
    whenCaughtUp([this, dragged, target, childIndex, action] {
        html::Node* const node = OutlineModel::nodeAt(dragged);
        html::Element* const parent = OutlineModel::elementAt(target);
        QString reason = reasonAgainstDrop(m_rules, node, parent);
        if (reason.isEmpty())
            reason = reasonOfBrowser(*node, *parent);
        if (!reason.isEmpty()) {
            emit refused(reason);
            return;
        }
        {
            const auto quiet = m_selection.quietly();
            const auto rows = static_cast<const OutlineModel*>(target.model())->nodesBelow(target);
            const bool isCopy = action == Qt::CopyAction;
            const html::Position place =
                TagRules::dropPosition(*parent, rows, childIndex, isCopy ? nullptr : node);
            const html::Node* dropped = node;
            if (isCopy)
                dropped = m_commands.copy(*node, place);
            else
                m_commands.move(*node, place);
            m_selection.select(dropped);
        }
        emit edited();
    });
}

void PageEdits::undo()
{
    travelHistory(&QUndoStack::undo);
}

void PageEdits::redo()
{
    travelHistory(&QUndoStack::redo);
}

void PageEdits::travelHistory(void (QUndoStack::*step)())
{
    whenCaughtUp([this, step] {
        const int before = m_stack.index();
        {
            const auto quiet = m_selection.quietly();
            std::invoke(step, m_stack);
        }
        if (m_stack.index() != before)
            emit redone();
    });
}

bool PageEdits::takeChange(const SubtreeChange& change, const QString& name)
{
    auto difference = m_tree.document() ? differenceOf(*m_tree.document(), change) : std::nullopt;
    if (!difference)
        return false;
    const auto quiet = m_selection.quietly();
    m_commands.apply(*std::move(difference), name, PageCommands::Merging::WithTheLast);
    return true;
}

Result<void> PageEdits::takeMarkup(std::string_view markup, const QString& name)
{
    html::Document* const document = m_tree.document();
    if (!document)
        return {};
    // The markup starts at the root element, but parsing depends on the doctype.
    std::string page;
    for (const html::Node* node = document->firstChild(); node; node = node->next()) {
        if (node->kind() == html::Node::Kind::Doctype)
            page = node->outerHtml();
    }
    auto parsed = html::parse(page.append(markup));
    if (!parsed)
        return Error{parsed.error().text};
    if (html::Element* body = (*parsed)->body())
        body->removeAttr("contenteditable");
    const auto quiet = m_selection.quietly();
    m_commands.apply(differenceTo(*document->documentElement(), *(*parsed)->documentElement()), name,
                     PageCommands::Merging::WithTheLast);
    return {};
}

} // namespace luma
