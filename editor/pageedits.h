// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "page/pagecommands.h"
#include "page/tagmenu.h"

#include <QObject>
#include <QPersistentModelIndex>

#include <functional>
#include <string_view>

class QUndoStack;

namespace luma {

class OutlineSelection;
class TagRules;
class ViewController;

/// The edits that the user makes in a page's window, as commands on its undo stack. Edits of the outline wait
/// until the document has everything that was done in the rendering (ViewController::whenCaughtUp), so they
/// return at once and report when they are done; edits that the rules forbid, or that miss their element, are
/// ignored. Edits of the rendering arrive as markup. Main thread.
class PageEdits final : public QObject
{
    Q_OBJECT

public:
    PageEdits(const TagRules& rules, PageTree& tree, QUndoStack& stack, OutlineSelection& selection,
              ViewController& rendering, QObject* parent);

    /// A new element as the first child of the selected one; deleting the selected one.
    void addTag(const QString& tagName);
    void deleteTag();
    /// What an entry of the outline's menu does.
    void perform(TagAction action, const QString& title);
    void changeTitle(const QString& title);
    /// The contents of the page's own style sheet of that entry of the style sheets' menu.
    void updateStyleBlock(const QString& title, const QString& css);
    /// A drop in the outline, as OutlineModel::elementDropped tells it.
    void acceptDrop(const QPersistentModelIndex& dragged, const QPersistentModelIndex& target, int childIndex,
                    Qt::DropAction action);
    void undo();
    void redo();

    /// Makes the page what its root element's markup, UTF-8, says: one command of that name, which joins the
    /// last one of the same name within a moment. On an error the page stays as it was.
    Result<void> takeMarkup(std::string_view markup, const QString& name);

signals:
    /// The tree was edited; the element selected in the outline is to be shown in the rendering.
    void edited();
    /// An edit was undone or made again, or a style sheet changed: the rendering keeps its selection.
    void redone();
    /// The style block has its new contents, or is no longer in the page.
    void styleBlockUpdated();

private:
    void editSelected(const std::function<void(html::Element&)>& edit);
    void editAttributes(TagAction action, const QString& title);
    void travelHistory(void (QUndoStack::*step)());
    void whenCaughtUp(const std::function<void()>& edit);

    const TagRules& m_rules;
    PageTree& m_tree;
    QUndoStack& m_stack;
    OutlineSelection& m_selection;
    ViewController& m_rendering;
    PageCommands m_commands{m_tree, m_stack};
};

} // namespace luma
