#include "browser/browserlistview.h"

#include <QPainter>

namespace luma {

BrowserListView::BrowserListView(QWidget* parent) : QListView(parent)
{
    setFrameShape(QFrame::NoFrame);
    // All rows are alike, so that 50,000 of them need no measuring.
    setUniformItemSizes(true);
    setLayoutMode(QListView::SinglePass);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::EditKeyPressed);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideMiddle);
    setDragEnabled(true);
    setDefaultDropAction(Qt::CopyAction);
}

void BrowserListView::setEmptyText(const QString& text)
{
    m_emptyText = text;
    viewport()->update();
}

void BrowserListView::startDrag(Qt::DropActions supportedActions)
{
    emit dragStarted();
    QListView::startDrag(supportedActions);
}

void BrowserListView::paintEvent(QPaintEvent* event)
{
    QListView::paintEvent(event);
    if (m_emptyText.isEmpty() || !model() || model()->rowCount(rootIndex()) > 0)
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(8, 12, -8, -8),
                     Qt::AlignTop | Qt::AlignHCenter | Qt::TextWordWrap, m_emptyText);
}

} // namespace luma
