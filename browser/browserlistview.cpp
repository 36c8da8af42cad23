// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/browserlistview.h"

#include "browser/dragimage.h"

#include <QDrag>
#include <QDropEvent>
#include <QMimeData>
#include <QPainter>

namespace luma {

namespace {

constexpr QPoint besidePointer(-14, -10);

} // namespace

BrowserListView::BrowserListView(DropTarget& dropTarget, QWidget* parent)
    : QListView(parent), m_dropTarget(dropTarget)
{
    setFrameShape(QFrame::NoFrame);
    // All rows have the same height, so 50,000 of them need no measuring.
    setUniformItemSizes(true);
    setLayoutMode(QListView::SinglePass);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::EditKeyPressed);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideMiddle);
    setDragEnabled(true);
    setDefaultDropAction(Qt::CopyAction);
    setDropIndicatorShown(false);
    viewport()->setAcceptDrops(true);
}

void BrowserListView::setEmptyText(const QString& text)
{
    m_emptyText = text;
    viewport()->update();
}

void BrowserListView::startDrag(Qt::DropActions supportedActions)
{
    // The view may be destroyed while the drag runs; the token still ends with the drag.
    const std::shared_ptr<const void> drag = m_dropTarget.beginDrag();
    emit dragStarted();
    const QModelIndexList rows = selectionModel()->selectedRows();
    QMimeData* const record = model()->mimeData(rows);
    if (!record)
        return;
    auto* const out = new QDrag(this);
    out->setMimeData(record);
    out->setPixmap(dragImage(*this, rows));
    out->setHotSpot(besidePointer);
    // The columns learn from the disk what has become of the items.
    (void)out->exec(supportedActions, defaultDropAction());
}

/// Accepts or refuses the event; the drop that it would be, or none if refused.
std::optional<Drop> BrowserListView::judge(QDropEvent& event)
{
    const QModelIndex row = indexAt(event.position().toPoint());
    std::optional<Drop> drop = m_dropTarget.validateDrop(event, m_dragged, row, rootIndex());
    const Qt::DropAction action =
        drop && drop->operation == MoveOperation::Move ? Qt::MoveAction : Qt::CopyAction;
    if (!event.possibleActions().testFlag(action))
        drop.reset();
    event.setDropAction(drop ? action : Qt::IgnoreAction);
    event.setAccepted(drop.has_value());
    markDrop(drop.has_value(), row);
    return drop;
}

void BrowserListView::dragEnterEvent(QDragEnterEvent* event)
{
    // Read once: a drag of thousands of files moves over every row.
    m_dragged = DropTarget::droppedPaths(*event->mimeData());
    setState(DraggingState);
    (void)judge(*event);
    // Another row may accept what this one refuses; only a drag without files is refused everywhere.
    event->setAccepted(!m_dragged.empty());
}

void BrowserListView::dragMoveEvent(QDragMoveEvent* event)
{
    // The base class scrolls at the edges.
    QListView::dragMoveEvent(event);
    (void)judge(*event);
}

void BrowserListView::dragLeaveEvent(QDragLeaveEvent* event)
{
    markDrop(false, {});
    m_dragged.clear();
    QListView::dragLeaveEvent(event);
}

void BrowserListView::dropEvent(QDropEvent* event)
{
    const std::optional<Drop> drop = judge(*event);
    const Qt::DropAction action = event->dropAction();
    markDrop(false, {});
    m_dragged.clear();
    // The base class would make the model read the data as rows; it only has to end the drag.
    QDragLeaveEvent over;
    QListView::dragLeaveEvent(&over);
    event->setDropAction(action);
    event->setAccepted(drop.has_value());
    if (drop)
        emit dropped(*drop);
}

void BrowserListView::markDrop(bool wouldDrop, const QModelIndex& row)
{
    m_wouldDrop = wouldDrop;
    m_dropRow = row;
    viewport()->update();
}

/// Frames the row, or the whole column if the drop goes into the column's folder.
void BrowserListView::paintDropMark()
{
    if (!m_wouldDrop)
        return;
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    const QRect area = m_dropRow.isValid() ? visualRect(m_dropRow) : viewport()->rect();
    painter.drawRoundedRect(QRectF(area).adjusted(1, 1, -1, -1), 3, 3);
}

void BrowserListView::paintEvent(QPaintEvent* event)
{
    QListView::paintEvent(event);
    paintDropMark();
    if (m_emptyText.isEmpty() || !model() || model()->rowCount(rootIndex()) > 0)
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(8, 12, -8, -8),
                     Qt::AlignTop | Qt::AlignHCenter | Qt::TextWordWrap, m_emptyText);
}

} // namespace luma
