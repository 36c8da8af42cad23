// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/outlineview.h"

#include "editor/outlinedelegate.h"
#include "editor/outlinemodel.h"
#include "html/element.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDrag>
#include <QHeaderView>
#include <QMimeData>
#include <QScrollBar>

#include <algorithm>

namespace luma {

namespace {

constexpr int narrowIndentation = 12;
constexpr int readableCharacters = 16;

} // namespace

OutlineView::OutlineView(QWidget* parent) : QTreeView(parent)
{
    setItemDelegate(new OutlineDelegate(this));
    setUniformRowHeights(true);
    setHeaderHidden(true);
    setIndentation(narrowIndentation);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setTextElideMode(Qt::ElideRight);
    setHorizontalScrollMode(ScrollPerPixel);
    header()->setStretchLastSection(false);
    header()->setMinimumSectionSize(0);
    setDragEnabled(true);
    setAcceptDrops(true);
    setDragDropMode(DragDrop);
    setDropIndicatorShown(true);
    setDefaultDropAction(Qt::MoveAction);
    viewport()->setMouseTracking(true);
}

void OutlineView::setModel(QAbstractItemModel* model)
{
    QTreeView::setModel(model);
    connect(model, &QAbstractItemModel::modelReset, this, &OutlineView::expandAll);
    // Each expanded row is an index that the model would have to follow.
    connect(model, &QAbstractItemModel::layoutAboutToBeChanged, this, [this] {
        m_top = indexAt({});
        collapseAll();
    });
    // In an event of its own, as each of the two takes its time with a large page. Nothing is drawn in between.
    connect(model, &QAbstractItemModel::layoutChanged, this, [this] {
        viewport()->setUpdatesEnabled(false);
        QMetaObject::invokeMethod(this, &OutlineView::expandAgain, Qt::QueuedConnection);
    });
    expandAll();
}

void OutlineView::expandAgain()
{
    expandAll();
    if (m_top.isValid())
        scrollTo(m_top, PositionAtTop);
    viewport()->setUpdatesEnabled(true);
}

int OutlineView::readableWidth() const
{
    return readableCharacters * fontMetrics().averageCharWidth();
}

void OutlineView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected)
{
    QTreeView::selectionChanged(selected, deselected);
    // Qt leaves the branches of mirrored rows as they were painted.
    if (isRightToLeft())
        viewport()->update();
}

// The base class closes a row first that has nothing below it.
QModelIndex OutlineView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    const QModelIndex current = currentIndex();
    const bool isOutwards = action == (isRightToLeft() ? MoveRight : MoveLeft);
    if (isOutwards && current.parent().isValid() && !model()->hasChildren(current))
        return current.parent();
    return QTreeView::moveCursor(action, modifiers);
}

void OutlineView::updateGeometries()
{
    const auto* outline = qobject_cast<const OutlineModel*>(model());
    const int levels = outline ? outline->deepestLevel() + 1 : 1;
    const int width = std::max(viewport()->width(), levels * indentation() + readableWidth());
    if (header()->count() > 0 && header()->sectionSize(0) != width)
        header()->resizeSection(0, width);
    QTreeView::updateGeometries();
}

// The base class would scroll to the start of the column, where a deep row shows only branch lines.
void OutlineView::scrollTo(const QModelIndex& index, ScrollHint hint)
{
    QScrollBar& bar = *horizontalScrollBar();
    const int before = bar.value();
    QTreeView::scrollTo(index, hint);
    bar.setValue(before);
    const int left = visualRect(index).left();
    const int width = std::min(readableWidth(), sizeHintForIndex(index).width());
    if (left - indentation() < 0)
        bar.setValue(before + left - indentation());
    else if (left + width > viewport()->width())
        bar.setValue(before + left + width - viewport()->width());
}

bool OutlineView::isTypingName() const
{
    return m_sinceTyped.isValid() && !m_sinceTyped.hasExpired(QApplication::keyboardInputInterval());
}

// The base class looks at the rows' texts, which begin with "<".
void OutlineView::keyboardSearch(const QString& typed)
{
    const auto* const outline = qobject_cast<const OutlineModel*>(model());
    const html::Node* const current = OutlineModel::nodeAt(currentIndex());
    // An asterisk has opened all rows below.
    if (!outline || !current || typed.isEmpty() || !typed.front().isLetterOrNumber())
        return;
    const std::string letters = typed.toLower().toStdString();
    const bool goesOn = isTypingName() && m_typedName != letters;
    m_typedName = goesOn ? m_typedName + letters : letters;
    const auto isNamed = [this](const html::Node& node) {
        return node.asElement() && node.asElement()->tagName().starts_with(m_typedName);
    };
    const html::Node& page = current->root();
    const html::Node* node = current;
    if (!goesOn || !isNamed(*current)) {
        do {
            const html::Node* const following = node->following(page);
            node = following ? following : &page;
        } while (node != current && !isNamed(*node));
    }
    setCurrentIndex(outline->indexOf(node));
    m_sinceTyped.start();
}

void OutlineView::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    QTreeView::currentChanged(current, previous);
    m_sinceTyped.invalidate();
}

void OutlineView::rowsInserted(const QModelIndex& parent, int start, int end)
{
    QTreeView::rowsInserted(parent, start, end);
    expand(parent);
    for (int row = start; row <= end; ++row)
        expandRecursively(model()->index(row, 0, parent));
}

// The document moves the dragged element; the view must not remove it from the model.
void OutlineView::startDrag(Qt::DropActions supportedActions)
{
    const QModelIndex index = currentIndex();
    QMimeData* const record = model()->mimeData({index});
    if (!record)
        return;
    auto* const drag = new QDrag(this);
    drag->setMimeData(record);
    const QRect row = visualRect(index).intersected(viewport()->rect());
    QPixmap picture(viewport()->grab(row));
    picture.setDevicePixelRatio(devicePixelRatioF());
    drag->setPixmap(picture);
    drag->exec(supportedActions | Qt::MoveAction | Qt::CopyAction, Qt::MoveAction);
}

void OutlineView::take(Qt::DropAction action)
{
    m_taken = currentIndex();
    m_takenFor = action;
}

void OutlineView::paste()
{
    const QModelIndex current = currentIndex();
    const bool isInPlace = m_takenFor == Qt::MoveAction && m_taken == current;
    if (!m_taken.isValid() || isInPlace)
        return;
    if (OutlineModel::elementAt(current))
        emit pasteRequested(m_taken, current, -1, m_takenFor);
    else // Behind a text or comment.
        emit pasteRequested(m_taken, current.parent(), current.row() + 1, m_takenFor);
}

// The record refers to a row of this outline, so a drag from another window is refused.
void OutlineView::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->source() == this)
        QTreeView::dragEnterEvent(event);
    else
        event->ignore();
}

void OutlineView::dragMoveEvent(QDragMoveEvent* event)
{
    if (event->source() == this)
        QTreeView::dragMoveEvent(event);
    else
        event->ignore();
}

void OutlineView::dropEvent(QDropEvent* event)
{
    if (event->source() == this)
        QTreeView::dropEvent(event);
    else
        event->ignore();
}

void OutlineView::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        emit deleteRequested();
        return;
    case Qt::Key_F2:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        emit editRequested(currentIndex());
        return;
    case Qt::Key_H:
        if (event->modifiers() == Qt::NoModifier && !isTypingName()) {
            emit hideRequested();
            return;
        }
        break;
    default:
        break;
    }
    QTreeView::keyPressEvent(event);
}

bool OutlineView::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::Leave)
        hover({});
    else if (event->type() == QEvent::MouseMove &&
             static_cast<QMouseEvent*>(event)->buttons() == Qt::NoButton)
        hover(indexAt(static_cast<QMouseEvent*>(event)->position().toPoint()));
    return QTreeView::viewportEvent(event);
}

void OutlineView::hover(const QModelIndex& index)
{
    if (m_hovered == index)
        return;
    m_hovered = index;
    emit hovered(index);
}

void OutlineView::contextMenuEvent(QContextMenuEvent* event)
{
    const bool byKeyboard = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = byKeyboard ? currentIndex() : indexAt(event->pos());
    if (!index.isValid())
        return;
    setCurrentIndex(index);
    const QPoint below = viewport()->mapToGlobal(visualRect(index).bottomLeft());
    emit menuRequested(byKeyboard ? below : event->globalPos());
}

} // namespace luma
