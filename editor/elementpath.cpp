// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/elementpath.h"

#include "editor/outlinemodel.h"
#include "html/element.h"
#include "page/tagrules.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QStyleOptionFocusRect>

#include <algorithm>
#include <utility>

namespace luma {

namespace {

constexpr int siblingsEachWay = 15;
constexpr qsizetype longestEntry = 50;

QString separator()
{
    return QStringLiteral(" \u203a ");
}

QString nameOf(const html::Element& element)
{
    const QString id = QString::fromStdString(std::string(element.attr("id")));
    return id.isEmpty() ? tagNameOf(element) : tagNameOf(element) + u'#' + id;
}

QString entryFor(const QModelIndex& row)
{
    QString text = row.data().toString();
    if (text.size() > longestEntry)
        text = text.left(longestEntry) + QChar(0x2026);
    return text.replace(u'&', QStringLiteral("&&"));
}

} // namespace

ElementPath::ElementPath(QWidget* parent) : QLabel(parent)
{
    setMouseTracking(true);
    setFocusPolicy(Qt::TabFocus);
    setPath({});
}

void ElementPath::setPath(const QModelIndex& row)
{
    m_rows.clear();
    m_names.clear();
    for (QModelIndex each = row; each.isValid(); each = each.parent()) {
        const html::Element* const element = OutlineModel::elementAt(each);
        if (!element)
            continue;
        m_rows.prepend(each);
        m_names.prepend(nameOf(*element));
    }
    m_current = m_names.size() - 1;
    m_hovered = -1;
    setText(m_names.join(separator()));
    setAccessibleName(tr("Path of the element: %1").arg(text()));
    setToolTip(m_names.isEmpty() ? QString() : tr("Click selects, right click shows the siblings"));
    update();
}

QRect ElementPath::rectOf(qsizetype step) const
{
    const QFontMetrics metrics = fontMetrics();
    const QRect area = contentsRect();
    // The path of names reads from left to right, but begins where the window does.
    const int room = area.width() - metrics.horizontalAdvance(text());
    const int beginning = isRightToLeft() ? room : std::min(0, room);
    const QString before = m_names.first(step).join(separator()) + (step > 0 ? separator() : QString());
    const int left = area.left() + beginning + metrics.horizontalAdvance(before);
    return {left, area.top(), metrics.horizontalAdvance(m_names[step]), area.height()};
}

qsizetype ElementPath::stepAt(const QPoint& point) const
{
    for (qsizetype step = 0; step < m_names.size(); ++step) {
        if (rectOf(step).contains(point))
            return step;
    }
    return -1;
}

void ElementPath::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setLayoutDirection(Qt::LeftToRight);
    // No half names: dots stand for those that begin outside.
    const QString dots = QStringLiteral("\u2026");
    const int end = contentsRect().left();
    bool isCut = false;
    for (qsizetype step = 0; step < m_names.size(); ++step) {
        const QRect rect = rectOf(step);
        if (rect.left() < end && step + 1 < m_names.size()) {
            isCut = true;
            continue;
        }
        if (std::exchange(isCut, false) && rect.left() - end >= fontMetrics().horizontalAdvance(dots)) {
            painter.setPen(palette().color(QPalette::PlaceholderText));
            painter.drawText(QRect(end, rect.top(), rect.left() - end, rect.height()),
                             Qt::AlignVCenter | Qt::AlignRight | Qt::AlignAbsolute, dots + u' ');
        }
        QFont font = this->font();
        font.setUnderline(step == m_hovered);
        painter.setFont(font);
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(rect, Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextDontClip, m_names[step]);
        painter.setPen(palette().color(QPalette::PlaceholderText));
        if (step + 1 < m_names.size())
            painter.drawText(rect.translated(rect.width(), 0),
                             Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextDontClip, separator());
        if (hasFocus() && step == m_current) {
            QStyleOptionFocusRect focus;
            focus.initFrom(this);
            focus.rect = rect.adjusted(-2, 0, 2, 0);
            style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
        }
    }
}

void ElementPath::setHovered(qsizetype step)
{
    setCursor(step >= 0 ? Qt::PointingHandCursor : Qt::ArrowCursor);
    m_hovered = step;
    update();
}

void ElementPath::mouseMoveEvent(QMouseEvent* event)
{
    setHovered(stepAt(event->position().toPoint()));
}

void ElementPath::leaveEvent(QEvent*)
{
    setHovered(-1);
}

void ElementPath::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        choose(stepAt(event->position().toPoint()));
}

void ElementPath::contextMenuEvent(QContextMenuEvent* event)
{
    openMenu(event->reason() == QContextMenuEvent::Keyboard ? m_current : stepAt(event->pos()));
}

void ElementPath::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Left:
        m_current = std::max<qsizetype>(m_current - 1, std::min<qsizetype>(0, m_names.size() - 1));
        update();
        break;
    case Qt::Key_Right:
        m_current = std::min(m_current + 1, m_names.size() - 1);
        update();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        choose(m_current);
        break;
    case Qt::Key_Down:
        openMenu(m_current);
        break;
    default:
        QLabel::keyPressEvent(event);
    }
}

void ElementPath::choose(qsizetype step)
{
    if (step >= 0 && m_rows[step].isValid())
        emit chosen(m_rows[step]);
}

void ElementPath::openMenu(qsizetype step)
{
    if (step < 0 || !m_rows[step].isValid())
        return;
    const QModelIndex row = m_rows[step];
    auto* const menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("siblingMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const int last = std::min(row.row() + siblingsEachWay, row.model()->rowCount(row.parent()) - 1);
    for (int each = std::max(0, row.row() - siblingsEachWay); each <= last; ++each) {
        const QPersistentModelIndex sibling = row.siblingAtRow(each);
        QAction* const entry = menu->addAction(entryFor(sibling));
        entry->setCheckable(true);
        entry->setChecked(each == row.row());
        // Queued: the path changes after the menu has closed.
        connect(
            entry, &QAction::triggered, this,
            [this, sibling] {
                if (sibling.isValid())
                    emit chosen(sibling);
            },
            Qt::QueuedConnection);
    }
    menu->popup(mapToGlobal(rectOf(step).topLeft() - QPoint(0, menu->sizeHint().height())));
}

} // namespace luma
