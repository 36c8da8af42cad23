// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/sizehandles.h"

#include "web/mywebview.h"
#include "web/scriptcall.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace luma {

namespace {

constexpr double handleSize = 9;
constexpr double roomForSides = 40; // of a side that has a handle in its middle
constexpr double roomForCorners = 24;
constexpr double shortest = 1;
constexpr double longest = 20'000;
constexpr int tipMargin = 4;
// They lie over a page, whose colours have nothing to do with the desktop's.
constexpr QColor handleColour(26, 115, 232);
constexpr QColor handleTipColour(32, 33, 36, 235);

QRectF squareAt(const QPointF& middle)
{
    return {middle.x() - handleSize / 2, middle.y() - handleSize / 2, handleSize, handleSize};
}

SizeHandles::Decider deciderNamed(const QString& name)
{
    return name == QLatin1String("style")   ? SizeHandles::Decider::Style
           : name == QLatin1String("sheet") ? SizeHandles::Decider::Sheet
           : name == QLatin1String("auto")  ? SizeHandles::Decider::Ratio
                                            : SizeHandles::Decider::Attribute;
}

QSizeF sizeIn(const QVariantMap& map, const char* name)
{
    const QVariantList lengths = map.value(QString::fromLatin1(name)).toList();
    return {lengths.value(0).toDouble(), lengths.value(1).toDouble()};
}

// The picture's own ratio, unless it is shown in another one.
double ratioOf(const QSizeF& shown, const QSizeF& natural)
{
    const double ratio = shown.width() / shown.height();
    const double own = natural.isEmpty() ? ratio : natural.width() / natural.height();
    return std::abs(own / ratio - 1) < 0.02 ? own : ratio;
}

Qt::CursorShape cursorOf(const QPoint& side)
{
    if (side.x() == 0)
        return Qt::SizeVerCursor;
    if (side.y() == 0)
        return Qt::SizeHorCursor;
    return side.x() == side.y() ? Qt::SizeFDiagCursor : Qt::SizeBDiagCursor;
}

} // namespace

SizeHandles::SizeHandles(MyWebView& view) : QWidget(view.parentWidget()), m_view(view)
{
    setObjectName(QStringLiteral("sizeHandles"));
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::NoFocus);
    setMouseTracking(true);
    view.installEventFilter(this);
    connect(&view.editorPage().bridge(), &PageBridge::boxMoved, this, &SizeHandles::moveWithElement,
            Qt::QueuedConnection);
    hide();
}

void SizeHandles::follow(const QString& path, Ratio ratio)
{
    giveUp();
    m_ratio = ratio;
    m_isFollowing = true;
    ScriptCall::ask(m_view.page(), QStringLiteral("handleElement(%1)").arg(path), this,
                    [this, question = ++m_questions](const QVariant& answer) {
                        if (question == m_questions)
                            place(answer);
                    });
}

void SizeHandles::clear()
{
    if (!m_isFollowing)
        return;
    giveUp();
    m_isFollowing = false;
    ++m_questions;
    m_box = {};
    hide();
    ScriptCall::run(m_view.page(), QStringLiteral("handleElement(null)"));
}

void SizeHandles::moveWithElement()
{
    if (!m_isFollowing || m_drag)
        return;
    ScriptCall::ask(m_view.page(), QStringLiteral("handledBox()"), this,
                    [this, question = ++m_questions](const QVariant& answer) {
                        if (question == m_questions)
                            place(answer);
                    });
}

void SizeHandles::place(const QVariant& answer)
{
    const QVariantMap map = answer.toMap();
    const QVariantList place = map.value(QStringLiteral("place")).toList();
    if (m_drag)
        return;
    if (place.size() != 4) {
        m_box = {};
        hide();
        return;
    }
    const double scale = m_view.zoomFactor() * map.value(QStringLiteral("scale")).toDouble();
    m_box = QRectF(place[0].toDouble() * scale, place[1].toDouble() * scale, place[2].toDouble() * scale,
                   place[3].toDouble() * scale);
    setGeometry(m_view.geometry());
    updateMask();
    raise();
    show();
    update();
}

// A small element keeps room for the caret and clicks.
std::vector<QPoint> SizeHandles::sides() const
{
    if (m_box.isEmpty())
        return {};
    if (std::min(m_box.width(), m_box.height()) < roomForCorners)
        return {{1, 1}};
    std::vector<QPoint> sides = {{-1, -1}, {1, -1}, {-1, 1}, {1, 1}};
    if (m_box.width() >= roomForSides)
        sides.insert(sides.end(), {{0, -1}, {0, 1}});
    if (m_box.height() >= roomForSides)
        sides.insert(sides.end(), {{-1, 0}, {1, 0}});
    return sides;
}

QPointF SizeHandles::handleAt(const QPoint& side) const
{
    const QRectF shown = box();
    return {shown.center().x() + side.x() * shown.width() / 2,
            shown.center().y() + side.y() * shown.height() / 2};
}

std::optional<QPoint> SizeHandles::sideAt(const QPointF& point) const
{
    for (const QPoint& side : sides()) {
        if (squareAt(handleAt(side)).contains(point))
            return side;
    }
    return std::nullopt;
}

// Without the handles, the mouse belongs to the page.
void SizeHandles::updateMask()
{
    QRegion region;
    for (const QPoint& side : sides())
        region += squareAt(handleAt(side)).toAlignedRect();
    if (m_drag)
        clearMask();
    else
        setMask(region);
}

bool SizeHandles::keepsRatio() const
{
    const bool isLeftToRatio = m_drag->width == Decider::Ratio || m_drag->height == Decider::Ratio;
    const bool isCorner = m_drag->side.x() != 0 && m_drag->side.y() != 0;
    return isLeftToRatio || (isCorner && (m_ratio == Ratio::Kept) != m_drag->isShift);
}

QSizeF SizeHandles::draggedSize() const
{
    const Drag& drag = *m_drag;
    const QPointF way = drag.to - drag.from;
    double width =
        std::clamp(drag.size.width() + drag.side.x() * way.x() / drag.scale.width(), shortest, longest);
    double height =
        std::clamp(drag.size.height() + drag.side.y() * way.y() / drag.scale.height(), shortest, longest);
    if (keepsRatio()) {
        const bool isWidthLeading =
            drag.side.y() == 0 ||
            (drag.side.x() != 0 && width / drag.size.width() >= height / drag.size.height());
        if (isWidthLeading)
            height = std::max(shortest, width / drag.ratio);
        else
            width = std::max(shortest, height * drag.ratio);
    }
    return {std::round(width), std::round(height)};
}

QRectF SizeHandles::box() const
{
    if (!m_drag || !m_drag->isKnown)
        return m_box;
    const QSizeF size = draggedSize();
    QRectF dragged = m_box;
    const double wider = (size.width() - m_drag->size.width()) * m_drag->scale.width();
    const double higher = (size.height() - m_drag->size.height()) * m_drag->scale.height();
    if (m_drag->side.x() < 0)
        dragged.setLeft(dragged.left() - wider);
    else
        dragged.setRight(dragged.right() + wider);
    if (m_drag->side.y() < 0)
        dragged.setTop(dragged.top() - higher);
    else
        dragged.setBottom(dragged.bottom() + higher);
    return dragged;
}

void SizeHandles::mousePressEvent(QMouseEvent* event)
{
    const auto side = event->button() == Qt::LeftButton ? sideAt(event->position()) : std::nullopt;
    if (!side || m_drag)
        return;
    m_drag = Drag{*side, event->position(), event->position()};
    m_drag->isShift = event->modifiers().testFlag(Qt::ShiftModifier);
    grabKeyboard();
    ScriptCall::ask(m_view.page(), QStringLiteral("handledSize()"), this,
                    [this, question = ++m_questions](const QVariant& answer) {
                        if (question == m_questions && m_drag)
                            takeSize(answer);
                    });
}

void SizeHandles::takeSize(const QVariant& answer)
{
    const QVariantMap map = answer.toMap();
    const QStringList deciders = map.value(QStringLiteral("by")).toStringList();
    Drag& drag = *m_drag;
    drag.size = sizeIn(map, "size");
    const QSizeF drawn = sizeIn(map, "drawn");
    if (drag.size.isEmpty() || drawn.isEmpty() || deciders.size() != 2) {
        giveUp();
        return;
    }
    drag.width = deciderNamed(deciders[0]);
    drag.height = deciderNamed(deciders[1]);
    const bool isHeldAcross = drag.side.x() != 0 && drag.width == Decider::Sheet;
    const bool isHeldDown = drag.side.y() != 0 && drag.height == Decider::Sheet;
    const bool isLeftAlone = drag.width == Decider::Ratio && drag.height == Decider::Ratio;
    const bool isHeldByRatio =
        keepsRatio() && (drag.width == Decider::Sheet || drag.height == Decider::Sheet);
    if (isHeldAcross || isHeldDown || isLeftAlone || isHeldByRatio) {
        giveUp();
        emit refused(
            tr("A style sheet sets the size of this element: %1. It can be changed in the style rules.")
                .arg(map.value(QStringLiteral("rule")).toString()));
        return;
    }
    drag.scale = {m_box.width() / drawn.width(), m_box.height() / drawn.height()};
    drag.ratio = ratioOf(drag.size, sizeIn(map, "natural"));
    drag.isKnown = true;
    if (drag.isReleased) {
        finish();
        return;
    }
    updateMask();
    update();
}

void SizeHandles::mouseMoveEvent(QMouseEvent* event)
{
    if (m_drag && !m_drag->isReleased) {
        m_drag->to = event->position();
        m_drag->isShift = event->modifiers().testFlag(Qt::ShiftModifier);
        update();
    } else if (const auto side = sideAt(event->position())) {
        setCursor(cursorOf(*side));
    }
}

void SizeHandles::mouseReleaseEvent(QMouseEvent* event)
{
    if (!m_drag || event->button() != Qt::LeftButton)
        return;
    m_drag->to = event->position();
    m_drag->isShift = event->modifiers().testFlag(Qt::ShiftModifier);
    m_drag->isReleased = true;
    if (m_drag->isKnown)
        finish();
}

// The frame stays until the page shows the new size.
void SizeHandles::finish()
{
    const QSizeF size = draggedSize();
    const bool isRatioKept = keepsRatio();
    const Drag drag = *m_drag;
    const QRectF dragged = box();
    giveUp();
    if (drag.to == drag.from || size == drag.size)
        return;
    m_box = dragged;
    updateMask();
    emit resized({static_cast<int>(size.width()), drag.width, drag.side.x() != 0 || isRatioKept},
                 {static_cast<int>(size.height()), drag.height, drag.side.y() != 0 || isRatioKept});
}

void SizeHandles::giveUp()
{
    if (!m_drag)
        return;
    m_drag.reset();
    releaseKeyboard();
    updateMask();
    // The engine's widget is not drawn anew where the mask lets it be seen.
    if (QWidget* const page = m_view.focusProxy())
        page->update();
    update();
}

// While an edge is dragged, Escape is no shortcut of the window.
bool SizeHandles::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride && m_drag)
        event->accept();
    return QWidget::event(event);
}

void SizeHandles::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        giveUp();
    else if (event->key() == Qt::Key_Shift && m_drag)
        m_drag->isShift = true;
    update();
}

void SizeHandles::keyReleaseEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Shift && m_drag)
        m_drag->isShift = false;
    update();
}

bool SizeHandles::eventFilter(QObject*, QEvent* event)
{
    if (event->type() == QEvent::Resize || event->type() == QEvent::Move)
        moveWithElement();
    return false;
}

void SizeHandles::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(handleColour);
    if (m_drag && m_drag->isKnown) {
        painter.drawRect(box());
        const QSizeF size = draggedSize();
        const QString text = QStringLiteral("%1 \u00d7 %2").arg(size.width()).arg(size.height());
        QRectF area = fontMetrics().boundingRect(text);
        area = area.marginsAdded(QMarginsF(tipMargin, tipMargin, tipMargin, tipMargin));
        area.moveTopLeft(
            {std::clamp(m_drag->to.x() + 2 * handleSize, 0.0, std::max(0.0, width() - area.width())),
             std::clamp(m_drag->to.y() + 2 * handleSize, 0.0, std::max(0.0, height() - area.height()))});
        painter.fillRect(area, handleTipColour);
        painter.setPen(Qt::white);
        painter.drawText(area, Qt::AlignCenter | Qt::TextSingleLine, text);
        painter.setPen(handleColour);
    }
    painter.setBrush(Qt::white);
    for (const QPoint& side : sides())
        painter.drawRect(squareAt(handleAt(side)).adjusted(0.5, 0.5, -1.5, -1.5));
}

} // namespace luma
