// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/columnhandle.h"

#include <QMouseEvent>
#include <QPainter>

namespace luma {

ColumnHandle::ColumnHandle(QWidget* parent) : QWidget(parent)
{
    setFixedWidth(5);
    setCursor(Qt::SplitHCursor);
}

void ColumnHandle::mousePressEvent(QMouseEvent* event)
{
    m_lastX = qRound(event->globalPosition().x());
}

void ColumnHandle::mouseMoveEvent(QMouseEvent* event)
{
    const int x = qRound(event->globalPosition().x());
    if (event->buttons().testFlag(Qt::LeftButton) && x != m_lastX)
        emit dragged(x - m_lastX);
    m_lastX = x;
}

void ColumnHandle::mouseReleaseEvent(QMouseEvent* /*event*/)
{
    emit released();
}

void ColumnHandle::mouseDoubleClickEvent(QMouseEvent* /*event*/)
{
    emit fitRequested();
}

void ColumnHandle::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    painter.fillRect(QRect(width() / 2, 0, 1, height()), palette().color(QPalette::Mid));
}

} // namespace luma
