// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/boxoverlay.h"

#include "web/mywebview.h"
#include "web/scriptcall.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace luma {

namespace {

// They lie over a page, whose colours have nothing to do with the desktop's.
constexpr QColor marginColour(246, 178, 107, 150);
constexpr QColor borderColour(255, 217, 102, 170);
constexpr QColor paddingColour(147, 196, 125, 150);
constexpr QColor contentColour(111, 168, 220, 130);
constexpr QColor labelColour(32, 33, 36, 235);
constexpr int labelMargin = 4;

QMarginsF marginsOf(const QVariantList& numbers, double scale)
{
    return scale * QMarginsF(numbers.value(0).toDouble(), numbers.value(1).toDouble(),
                             numbers.value(2).toDouble(), numbers.value(3).toDouble());
}

/// The ring between a box and the one inside it.
void fillRing(QPainter& painter, const QRectF& outer, const QRectF& inner, const QColor& colour)
{
    QPainterPath ring;
    ring.addRect(outer);
    QPainterPath hole;
    hole.addRect(inner);
    painter.fillPath(ring.subtracted(hole), colour);
}

} // namespace

BoxOverlay::BoxOverlay(MyWebView& view) : QWidget(view.parentWidget()), m_view(view)
{
    setObjectName(QStringLiteral("boxOverlay"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::NoFocus);
    view.installEventFilter(this);
    hide();
}

void BoxOverlay::mark(const QString& path, Part part)
{
    ScriptCall::ask(m_view.page(), QStringLiteral("boxesOf(%1)").arg(path), this,
                    [this, part, question = ++m_questions](const QVariant& answer) {
                        if (question != m_questions)
                            return;
                        m_part = part;
                        take(answer);
                    });
}

void BoxOverlay::clear()
{
    ++m_questions;
    m_border = QRectF();
    m_label.clear();
    hide();
}

// The page gives its own pixels: place and size, then the widths of margins, borders and paddings.
void BoxOverlay::take(const QVariant& answer)
{
    const QVariantMap boxes = answer.toMap();
    const QVariantList place = boxes.value(QStringLiteral("place")).toList();
    if (place.size() != 4) {
        clear();
        return;
    }
    const double scale = m_view.zoomFactor() * boxes.value(QStringLiteral("scale")).toDouble();
    m_border = QRectF(place[0].toDouble() * scale, place[1].toDouble() * scale, place[2].toDouble() * scale,
                      place[3].toDouble() * scale);
    m_margins = marginsOf(boxes.value(QStringLiteral("margins")).toList(), scale);
    m_borders = marginsOf(boxes.value(QStringLiteral("borders")).toList(), scale);
    m_paddings = marginsOf(boxes.value(QStringLiteral("paddings")).toList(), scale);
    m_label = boxes.value(QStringLiteral("label")).toString();
    setGeometry(m_view.geometry());
    raise();
    show();
    update();
}

bool BoxOverlay::eventFilter(QObject*, QEvent* event)
{
    if (event->type() == QEvent::Resize)
        clear();
    return false;
}

void BoxOverlay::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QRectF padding = m_border - m_borders;
    const QRectF content = padding - m_paddings;
    const auto isMarked = [this](Part part) { return m_part == Part::All || m_part == part; };
    if (isMarked(Part::Margin))
        fillRing(painter, m_border + m_margins, m_border, marginColour);
    if (isMarked(Part::Border))
        fillRing(painter, m_border, padding, borderColour);
    if (isMarked(Part::Padding))
        fillRing(painter, padding, content, paddingColour);
    if (isMarked(Part::Content))
        painter.fillRect(content, contentColour);
    paintLabel(painter);
}

// Above the element, below it where there is no room, and always in sight.
void BoxOverlay::paintLabel(QPainter& painter) const
{
    const QString text = fontMetrics().elidedText(m_label, Qt::ElideMiddle, width() - 2 * labelMargin);
    QRectF area = fontMetrics().boundingRect(text);
    area = area.marginsAdded(QMarginsF(labelMargin, labelMargin, labelMargin, labelMargin));
    const QRectF outer = m_border + m_margins;
    const double above = outer.top() - area.height();
    area.moveTopLeft({std::clamp(outer.left(), 0.0, std::max(0.0, width() - area.width())),
                      above >= 0 ? above : std::min(outer.bottom(), height() - area.height())});
    painter.fillRect(area, labelColour);
    painter.setPen(Qt::white);
    painter.drawText(area, Qt::AlignCenter | Qt::TextSingleLine, text);
}

} // namespace luma
