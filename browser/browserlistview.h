// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/drop.h"

#include <QListView>
#include <QPersistentModelIndex>

#include <optional>

namespace luma {

class DropTarget;

/// The rows of one browser column. Tells when a drag starts and what is dropped on it, marks where a drop
/// would go, and says in the empty space why there are no rows.
class BrowserListView final : public QListView
{
    Q_OBJECT

public:
    explicit BrowserListView(QWidget* parent = nullptr);

    /// Shown in grey while there are no rows.
    void setEmptyText(const QString& text);
    /// Who decides on drops; null refuses them all. Outlives the view.
    void setDropTarget(DropTarget* target);

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
    DropTarget* m_dropTarget = nullptr;
    std::vector<std::filesystem::path> m_dragged; // what hovers over the view
    bool m_wouldDrop = false;
    QPersistentModelIndex m_dropRow;

    std::optional<Drop> judge(QDropEvent& event);
    void markDrop(bool wouldDrop, const QModelIndex& row);
    void paintDropMark();
};

} // namespace luma
