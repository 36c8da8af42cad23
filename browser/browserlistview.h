// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/droptarget.h"

#include <QListView>
#include <QPersistentModelIndex>

#include <optional>

namespace luma {

/// The rows of one browser column. Reports the start of a drag and drops onto it, marks where a drop would
/// go, and says in the empty space why there are no rows. Main thread only.
class BrowserListView final : public QListView
{
    Q_OBJECT

public:
    /// `dropTarget` decides on drops and outlives the view.
    explicit BrowserListView(DropTarget& dropTarget, QWidget* parent = nullptr);

    /// The text shown in grey while there are no rows.
    void setEmptyText(const QString& text);

signals:
    void dragStarted();
    void dropped(const Drop& drop);

protected:
    void startDrag(Qt::DropActions supportedActions) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_emptyText;
    DropTarget& m_dropTarget;
    std::vector<std::filesystem::path> m_dragged; // the files of the drag above the view
    bool m_wouldDrop = false;
    QPersistentModelIndex m_dropRow;

    std::optional<Drop> judge(QDropEvent& event);
    void markDrop(bool wouldDrop, const QModelIndex& row);
    void paintDropMark();
};

} // namespace luma
