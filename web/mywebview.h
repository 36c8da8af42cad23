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

/// The view in which a page is edited. It owns its EditorPage; its context menu holds the page's text styles
/// and justification with the state of the selection, and what is dropped on it as files is told instead of
/// being loaded. Main thread.
class MyWebView final : public QWebEngineView
{
    Q_OBJECT

public:
    explicit MyWebView(QWidget* parent = nullptr);
    ~MyWebView() override;

    [[nodiscard]] EditorPage& editorPage() { return *m_page; }

    /// Holds the view's keys; whoever edits the page otherwise asks it too.
    [[nodiscard]] HeldInput& heldInput() { return m_heldInput; }

    /// How many keys have been pressed since the page stood there; the page counts them too (countOfKeys), as
    /// scripts overtake keys on the way to it.
    [[nodiscard]] int countOfKeys() const { return m_countOfKeys; }
    void setCountOfKeys(int count) { m_countOfKeys = count; }

    /// The submenus of the context menu; they stay the caller's.
    void setMenus(QMenu* fontSubMenu, QMenu* justificationSubMenu);

    /// Checks in both submenus what the page says of its selection. Waits for the page's answers.
    void updateMenuMarks();

signals:
    /// Files were dropped at a point of the view, in the view's pixels.
    void filesDropped(const QList<QUrl>& files, const QPointF& where);
    void inspectElementRequested();
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
    bool takeUndoKey(QKeyEvent& key);
    void openMenu(const QPoint& where);

    std::shared_ptr<EditorProfile> m_profile;
    std::unique_ptr<EditorPage> m_page;
    HeldInput m_heldInput;
    int m_countOfKeys = 0;
    const QEvent* m_madeUp = nullptr; // the event that was held and is sent now
    QPointer<QWidget> m_keyReceiver;
    QPointer<QMenu> m_fontSubMenu;
    QPointer<QMenu> m_justificationSubMenu;
};

} // namespace luma
