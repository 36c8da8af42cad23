#pragma once

#include "editor/editorpage.h"

#include <QList>
#include <QPointer>
#include <QUrl>
#include <QWebEngineView>

#include <memory>

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

    /// The submenus of the context menu; they stay the caller's.
    void setMenus(QMenu* fontSubMenu, QMenu* justificationSubMenu);

    /// Checks in both submenus what the page says of its selection. Waits for the page's answers.
    void updateMenuMarks();

signals:
    /// The user pressed a key or a button, or turned the wheel.
    void touched();
    /// Files were dropped at a point of the view, in the view's pixels.
    void filesDropped(const QList<QUrl>& files, const QPointF& where);
    void inspectElementWanted();
    /// The undo or redo keys were pressed; the engine's own history is not used.
    void undoWanted();
    void redoWanted();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void watchKeys();
    void openMenu(const QPoint& where);

    std::shared_ptr<EditorProfile> m_profile;
    std::unique_ptr<EditorPage> m_page;
    QPointer<QWidget> m_keyReceiver;
    QPointer<QMenu> m_fontSubMenu;
    QPointer<QMenu> m_justificationSubMenu;
};

} // namespace luma
