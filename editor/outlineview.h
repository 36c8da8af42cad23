// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QTreeView>

namespace luma::html {
class Node;
}

namespace luma {

/// The outline of a page: expanded at first, with nodes dragged within it. Its column is wide enough
/// to read the deepest row, so it scrolls both ways. Typing the beginning of a tag name, of #id or .class, or of a text or
/// comment in a row of its own, selects the next such row.
/// The Delete key, Return or F2, and H are reported as requests. Its model must be an OutlineModel. Main thread.
class OutlineView final : public QTreeView
{
    Q_OBJECT

public:
    explicit OutlineView(QWidget* parent = nullptr);

    void setModel(QAbstractItemModel* model) override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    void keyboardSearch(const QString& typed) override;

signals:
    void deleteRequested();
    void hideRequested();
    void editRequested(const QModelIndex& index);
    /// The mouse is over this row now; invalid: over none.
    void hovered(const QModelIndex& index);
    /// The user asked for the context menu of a row, which is now the current one.
    void menuRequested(const QPoint& globalPosition);
    /// The row that was cut or copied is to go there; `action` is what dropping it would be.
    void pasteRequested(const QPersistentModelIndex& row, const QPersistentModelIndex& target, int childIndex,
                        Qt::DropAction action);

public slots:
    /// Dragging by keyboard: cut and copy remember the current row; paste moves or copies it to the
    /// element that is current then.
    void cut() { take(Qt::MoveAction); }
    void copy() { take(Qt::CopyAction); }
    void paste();

protected:
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void updateGeometries() override;
    void rowsInserted(const QModelIndex& parent, int start, int end) override;
    void startDrag(Qt::DropActions supportedActions) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool viewportEvent(QEvent* event) override;

private:
    void expandAgain();
    /// The minimum width reserved for a row's text, if the text is that long.
    [[nodiscard]] int readableWidth() const;
    void take(Qt::DropAction action);
    void hover(const QModelIndex& index);
    [[nodiscard]] bool isTypingName() const;
    [[nodiscard]] bool isTyped(const html::Node& node) const;

    QPersistentModelIndex m_hovered;
    QPersistentModelIndex m_top;        // row while all are replaced
    const html::Node* m_kept = nullptr; // the current one meanwhile
    QPersistentModelIndex m_taken;
    Qt::DropAction m_takenFor = Qt::IgnoreAction;
    QString m_typedName; // in small letters
    QElapsedTimer m_sinceTyped;
};

} // namespace luma
