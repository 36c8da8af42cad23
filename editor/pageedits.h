// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "page/elementplaces.h"
#include "page/pagecommands.h"
#include "page/tableedits.h"
#include "page/tagmenu.h"

#include <QObject>
#include <QPersistentModelIndex>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

class QUndoStack;

namespace luma {

class OutlineSelection;
struct SubtreeChange;
class TagRules;
class ViewController;

/// The edits that the user makes in a page's window, as commands on its undo stack. Edits in the outline wait
/// until the document has every change made in the rendering (ViewController::whenCaughtUp), so they return
/// at once and signal when done. Edits that the rules forbid, or whose element is gone, are ignored; refused() tells the reason where no command was off for it. Edits
/// in the rendering arrive as markup. Main thread.
class PageEdits final : public QObject
{
    Q_OBJECT

public:
    PageEdits(const TagRules& rules, PageTree& tree, QUndoStack& stack, OutlineSelection& selection,
              ViewController& rendering, QObject* parent);

    /// Inserts a new element as the first child of the selected one; deletes the selected node, or tells why it stays.
    void addTag(const QString& tagName);
    void deleteTag();
    /// Inserts any element or comment (sampleElement) at a place of the selected node, and selects it, or at the caret;
    /// refused where elementOffers() has a reason.
    void insertElement(const QString& tag, InsertPlace place);
    /// Duplicates the selected node, which selects the copy, or moves it among the rows of its siblings.
    void duplicate();
    void moveUp();
    void moveDown();
    /// Gives the element of a row another tag name, or exchanges its attribute of that name for another
    /// (withAttributeText). Then calls `then`, if there is one, and says whether the edit was allowed.
    using Then = std::function<void(bool isDone)>;
    void changeTag(const QPersistentModelIndex& row, const QString& name, const Then& then);
    void changeAttribute(const QPersistentModelIndex& row, const std::string& attribute, const QString& text,
                         const Then& then);
    /// Exchanges the text or comment of a row for another (withTextInLine), or the node for what this markup makes
    /// (withMarkup).
    void changeText(const QPersistentModelIndex& row, const QString& text, const Then& then);
    void changeMarkup(const QPersistentModelIndex& row, const QString& markup, const Then& then);
    /// Gives the element of a row these attributes, the others stay, as one step of that name.
    void setAttributes(const QPersistentModelIndex& row, std::vector<html::Attribute> attributes,
                       const QString& name);
    /// Makes an edit of a row's element that the caller puts on the undo stack. Its error is told.
    void editElement(const QPersistentModelIndex& row,
                     const std::function<Result<void>(html::Element&)>& edit)
    {
        change(row, edit, {});
    }
    /// Edits the table at the cells that are selected in the rendering, or else at the one of the selected element.
    void editTable(TableEdit edit);
    /// Adds a row below the last one and selects its first cell.
    void addLastRow();
    /// Performs an entry of the outline's menu.
    void perform(TagAction action, const QString& title);
    void changeTitle(const QString& title);
    /// Replaces the contents of the style block with that title in the style sheet menu.
    void updateStyleBlock(const QString& title, const QString& css);
    /// Gives the style element of a row this text, as one step of that name.
    void setStyles(const QPersistentModelIndex& row, const QString& css, const QString& name);
    /// Performs a drop in the outline; the arguments are those of OutlineModel::nodeDropped().
    void acceptDrop(const QPersistentModelIndex& dragged, const QPersistentModelIndex& target, int childIndex,
                    Qt::DropAction action);
    void undo();
    void redo();

    /// Makes an edit of the rendering, as one command of that name; it merges as the next one does. False if the change
    /// does not fit the tree.
    bool takeChange(const SubtreeChange& change, const QString& name);
    /// Replaces the page by its root element's markup, in UTF-8, as one command of that name; it merges with
    /// the last command if that has the same name and is recent. On an error the page is unchanged.
    Result<void> takeMarkup(std::string_view markup, const QString& name);

signals:
    /// The tree was edited; the rendering should show the element selected in the outline.
    void edited();
    /// The title or a style sheet was edited; the rendering keeps its selection.
    void editedUnseen();
    /// An edit was undone or redone; the rendering sets the caret there.
    void redone();
    /// The rules forbid an edit, for this reason.
    void refused(const QString& reason);
    /// The style block was updated, or is no longer in the page.
    void styleBlockUpdated();

private:
    void insertAtCaret(const QString& tag, const QString& name);
    void editSelected(const std::function<void(html::Element&)>& edit);
    void editSelectedNode(const std::function<void(html::Node&)>& edit);
    void change(const QPersistentModelIndex& row, const std::function<Result<void>(html::Element&)>& change,
                const Then& then);
    using Exchange = std::function<Result<MarkupDifference>(html::Node&)>;
    void exchange(const QPersistentModelIndex& row, const Exchange& exchange, const QString& name,
                  const Then& then);
    void moveSelected(void (PageCommands::*move)(html::Node&, PageCommands::Among));
    void changeTable(const std::function<Result<const html::Element*>(html::Element& selected)>& change);
    void editAttributes(TagAction action, const QString& title);
    void travelHistory(void (QUndoStack::*step)());
    void whenCaughtUp(const std::function<void()>& edit);

    const TagRules& m_rules;
    PageTree& m_tree;
    QUndoStack& m_stack;
    OutlineSelection& m_selection;
    ViewController& m_rendering;
    PageCommands m_commands{m_tree, m_stack};
    TableEdits m_tableEdits{m_tree, m_stack};
};

} // namespace luma
