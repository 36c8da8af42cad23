// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/codeedit.h"

#include <QFontDatabase>
#include <QPaintEvent>
#include <QPainter>
#include <QTextBlock>

namespace luma {

namespace {

constexpr int gap = 6; // pixels beside a number

} // namespace

CodeEdit::CodeEdit(QWidget* parent) : QPlainTextEdit(parent), m_margin(new QWidget(this))
{
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setLineWrapMode(NoWrap);
    setTabChangesFocus(true);
    m_margin->installEventFilter(this);
    connect(this, &QPlainTextEdit::blockCountChanged, this, &CodeEdit::layOut);
    connect(this, &QPlainTextEdit::updateRequest, m_margin, [this] { m_margin->update(); });
    layOut();
}

QString CodeEdit::textIn(const QPlainTextEdit& field)
{
    return field.document()->toRawText().replace(QChar::ParagraphSeparator, u'\n');
}

void CodeEdit::setLineNumbers(bool shown)
{
    m_lineNumbers = shown;
    layOut();
}

int CodeEdit::numberWidth() const
{
    const auto digits = QString::number(blockCount()).size();
    return m_lineNumbers ? 2 * gap + fontMetrics().horizontalAdvance(QString(digits, u'9')) : 0;
}

void CodeEdit::layOut()
{
    setViewportMargins(numberWidth(), 0, 0, 0);
    const QRect inner = contentsRect();
    m_margin->setGeometry(inner.left(), inner.top(), numberWidth(), inner.height());
}

void CodeEdit::resizeEvent(QResizeEvent* event)
{
    QPlainTextEdit::resizeEvent(event);
    layOut();
}

bool CodeEdit::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_margin && event->type() == QEvent::Paint)
        paintNumbers(static_cast<QPaintEvent*>(event)->rect());
    return QPlainTextEdit::eventFilter(watched, event);
}

void CodeEdit::paintNumbers(const QRect& area)
{
    QPainter painter(m_margin);
    painter.fillRect(area, palette().alternateBase());
    painter.setFont(font());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    for (QTextBlock block = firstVisibleBlock(); block.isValid(); block = block.next()) {
        const QRectF line = blockBoundingGeometry(block).translated(contentOffset());
        if (line.top() > area.bottom())
            break;
        painter.drawText(QRectF(0, line.top(), m_margin->width() - gap, line.height()), Qt::AlignRight,
                         QString::number(block.blockNumber() + 1));
    }
}

} // namespace luma
