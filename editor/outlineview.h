// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTreeView>

namespace luma {

/// The outline of a page: everything expanded, elements dragged within it, the rows that come expanded as
/// well. Its column is as wide as the deepest row needs to be read, so that it scrolls both ways. Delete, and
/// Return or F2, are told as wishes. Its model is an OutlineModel. Main thread.
class OutlineView final : public QTreeView
{
    Q_OBJECT

public:
    explicit OutlineView(QWidget* parent = nullptr);

    void setModel(QAbstractItemModel* model) override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

signals:
    void deleteRequested();
    void editRequested(const QModelIndex& index);
    /// The context menu of a row, which is the current one by now.
    void menuRequested(const QPoint& globalPosition);

public slots:
    /// Dragging by keyboard: the current element is remembered, and paste drops it, or its copy, onto the
    /// element that is current then.
    void cut() { take(Qt::MoveAction); }
    void copy() { take(Qt::CopyAction); }
    void paste();

protected:
    void updateGeometries() override;
    void rowsInserted(const QModelIndex& parent, int start, int end) override;
    void startDrag(Qt::DropActions supportedActions) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    /// The width that a row's text gets at least, where there is as much of it.
    [[nodiscard]] int readableWidth() const;
    void take(Qt::DropAction action);

    QPersistentModelIndex m_taken;
    Qt::DropAction m_takenFor = Qt::IgnoreAction;
};

} // namespace luma
