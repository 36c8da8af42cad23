// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/outlineview.h"

#include "base/ascii.h"
#include "editor/outlinedelegate.h"
#include "editor/outlinemodel.h"
#include "html/characterdata.h"
#include "html/element.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDrag>
#include <QHeaderView>
#include <QMimeData>
#include <QScrollBar>
#include <QTimer>

#include <algorithm>

namespace luma {

namespace {

constexpr int narrowIndentation = 12;
constexpr int readableCharacters = 16;
constexpr std::size_t longestTyped = 200;

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
    connect(model, &QAbstractItemModel::rowsMoved, this,
            [this](const QModelIndex&, int, int, const QModelIndex& target) { expand(target); });
    // Each expanded row is an index that the model would have to follow.
    connect(model, &QAbstractItemModel::layoutAboutToBeChanged, this, [this] {
        m_top = indexAt({});
        m_kept = OutlineModel::nodeAt(currentIndex());
        collapseAll();
    });
    // Each of the three takes its time with a large page. Input comes in between, which it would not with 0 ms; nothing is drawn.
    connect(model, &QAbstractItemModel::layoutChanged, this, [this] {
        viewport()->setUpdatesEnabled(false);
        if (!currentIndex().isValid() && m_kept)
            setCurrentIndex(static_cast<const OutlineModel*>(this->model())->indexOf(m_kept->parent()));
        QTimer::singleShot(1, this, &OutlineView::expandAgain);
    });
    expandAll();
}

void OutlineView::expandAgain()
{
    expandAll();
    if (m_top.isValid())
        scrollTo(m_top, PositionAtTop);
    QTimer::singleShot(1, viewport(), [this] { viewport()->setUpdatesEnabled(true); });
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

bool OutlineView::isTyped(const html::Node& node) const
{
    const auto begins = [this](std::string_view text, qsizetype skipped) {
        const auto name = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
        return name.startsWith(m_typedName.mid(skipped), Qt::CaseInsensitive);
    };
    const html::Element* const element = node.asElement();
    if (!element) {
        using Kind = html::Node::Kind;
        const bool isText = node.kind() == Kind::Text || node.kind() == Kind::Comment;
        if (!isText || !static_cast<const OutlineModel*>(model())->hasRow(node))
            return false;
        const std::string_view text = static_cast<const html::CharacterData&>(node).data();
        return begins(simplified(text.substr(0, longestTyped)), 0);
    }
    if (m_typedName.startsWith(u'#'))
        return element->hasAttr("id") && begins(element->attr("id"), 1);
    if (!m_typedName.startsWith(u'.'))
        return begins(element->tagName(), 0);
    const auto names = words(element->attr("class"));
    return std::any_of(names.begin(), names.end(), [&begins](auto name) { return begins(name, 1); });
}

// The base class looks at the rows' texts, which begin with "<".
void OutlineView::keyboardSearch(const QString& typed)
{
    const auto* const outline = qobject_cast<const OutlineModel*>(model());
    const html::Node* const current = OutlineModel::nodeAt(currentIndex());
    const QString letters = typed.toLower();
    const bool goesOn = isTypingName() && m_typedName != letters;
    // Other signs open and close rows.
    const bool isBeginning = !typed.isEmpty() && (typed.front().isLetterOrNumber() || typed.front() == u'#' ||
                                                  typed.front() == u'.');
    if (!outline || !current || !(goesOn || isBeginning))
        return;
    m_typedName = goesOn ? m_typedName + letters : letters;
    const html::Node& page = current->root();
    const html::Node* node = current;
    if (!goesOn || !isTyped(*current)) {
        do {
            const html::Node* const following = node->following(page);
            node = following ? following : &page;
        } while (node != current && !isTyped(*node));
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
    const bool isLetter = !event->text().isEmpty() && event->text().front().isPrint() &&
                          !(event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier));
    // An asterisk opens all rows below.
    if (isTypingName() && isLetter && event->key() != Qt::Key_Asterisk) {
        keyboardSearch(event->text());
        return;
    }
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
        if (event->modifiers() == Qt::NoModifier) {
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
