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

/// The edits that the user of a page's window makes, as commands on its undo stack. Those of the outline
/// first take over what the rendering has, for which they may run other events, and tell when they are done;
/// nothing happens where the rules or a missing element forbid one. Those of the rendering come as markup.
/// Main thread.
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

private:
    void editSelected(const std::function<void(html::Element&)>& edit);
    void editAttributes(TagAction action, const QString& title);
    void travelHistory(void (QUndoStack::*step)());
    /// False when the window went meanwhile.
    [[nodiscard]] bool catchUp();

    const TagRules& m_rules;
    PageTree& m_tree;
    QUndoStack& m_stack;
    OutlineSelection& m_selection;
    ViewController& m_rendering;
    PageCommands m_commands{m_tree, m_stack};
};

} // namespace luma
