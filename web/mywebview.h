// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "web/editorpage.h"
#include "web/heldinput.h"

#include <QList>
#include <QPointer>
#include <QUrl>
#include <QWebEngineView>

#include <memory>

class QKeyEvent;
class QMenu;

namespace luma {

/// The view in which a page is edited; owns its EditorPage. Its context menu shows the text styles and the
/// justification of the selection, and files dropped on it are reported instead of being loaded. Main thread.
class MyWebView final : public QWebEngineView
{
    Q_OBJECT

public:
    explicit MyWebView(QWidget* parent = nullptr);
    ~MyWebView() override;

    [[nodiscard]] EditorPage& editorPage() { return *m_page; }

    /// Holds the view's keys; other edits of the page go through it, too.
    [[nodiscard]] HeldInput& heldInput() { return m_heldInput; }

    /// The number of keys pressed since the page was ready. The page counts those that have arrived
    /// (countOfKeys), because scripts overtake keys on their way to it.
    /// In a table, Tab moves between cells instead of moving the focus.
    void setInTable(bool isInTable) { m_isInTable = isInTable; }
    [[nodiscard]] int countOfKeys() const { return m_countOfKeys; }
    void setCountOfKeys(int count) { m_countOfKeys = count; }

    /// Gives the focus to the widget that Tab reaches from here.
    void leave(bool isForward) { focusNextPrevChild(isForward); }

    /// The submenus of the context menu; the caller keeps them.
    void setMenus(QMenu* fontSubMenu, QMenu* justificationSubMenu);
    /// The submenu that the context menu has in a table.
    void setTableMenu(QMenu* menu);

    [[nodiscard]] SpellCheck& spellCheck() { return m_profile->spellCheck(); }

    /// Checks the items of both submenus that have one of the titles (English), and no others.
    void showFormats(const QStringList& titles);

signals:
    /// Files were dropped at a point of the view, in its pixels.
    void filesDropped(const QList<QUrl>& files, const QPointF& where);
    void inspectElementRequested();
    /// Tab was pressed in a table: to the next cell (1) or the one before (-1).
    void cellRequested(int step);
    /// The undo or redo keys were pressed; the engine's own history is not used.
    void undoRequested();
    void redoRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void watchKeys();
    void keepForLater(const QEvent& event);
    /// Tab and Backtab leave the page.
    bool takeTabKey(const QKeyEvent& key);
    bool takeUndoKey(QKeyEvent& key);
    void openMenu(const QPoint& where);
    void addSuggestions(QMenu& menu);

    std::shared_ptr<EditorProfile> m_profile;
    std::unique_ptr<EditorPage> m_page;
    HeldInput m_heldInput;
    int m_countOfKeys = 0;
    bool m_isInTable = false;
    const QEvent* m_madeUp = nullptr; // the held event that is being sent
    QPointer<QWidget> m_keyReceiver;
    QPointer<QMenu> m_fontSubMenu;
    QPointer<QMenu> m_justificationSubMenu;
    QPointer<QMenu> m_tableMenu;
};

} // namespace luma
