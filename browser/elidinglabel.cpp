// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/elidinglabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

namespace luma {

ElidingLabel::ElidingLabel(QWidget* parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
}

QSize ElidingLabel::minimumSizeHint() const
{
    return {fontMetrics().horizontalAdvance(QLatin1String("MMM")), QLabel::minimumSizeHint().height()};
}

void ElidingLabel::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideMiddle, contentsRect().width());
    style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment() | Qt::TextSingleLine),
                          palette(), isEnabled(), shown, foregroundRole());
}

bool ElidingLabel::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QLabel::event(event);
    const bool cut = fontMetrics().horizontalAdvance(text()) > contentsRect().width();
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), cut ? text().toHtmlEscaped() : QString(),
                       this);
    return true;
}

} // namespace luma
