// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/foundplacesview.h"

#include "browser/foundplaces.h"
#include "desktop/focuslook.h"

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QTextLayout>

#include <algorithm>

namespace luma {

namespace {

/// Rows with some space between their texts, and a mark behind what was found.
class PlaceDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(0, 6);
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const QVariant start = index.data(FoundPlaces::MatchStartRole);
        if (!start.isValid()) {
            QStyledItemDelegate::paint(painter, option, index);
            return;
        }
        QStyleOptionViewItem item = option;
        initStyleOption(&item, index);
        QString text = item.text;
        text.replace(u'\n', u' ');
        item.text.clear();
        showFocus(item);
        const QStyle* const style = item.widget ? item.widget->style() : QApplication::style();
        style->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);
        const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, item.widget) + 1;
        paintText(painter, item, item.rect.adjusted(margin, 0, -margin, 0), text, start.toInt(),
                  index.data(FoundPlaces::MatchLengthRole).toInt());
    }

private:
    static void paintText(QPainter* painter, const QStyleOptionViewItem& item, const QRect& rect,
                          const QString& text, int start, int length)
    {
        const bool isSelected = item.state.testFlag(QStyle::State_Selected);
        const bool isActive = item.state.testFlag(QStyle::State_Active);
        const QPalette::ColorGroup group = isActive ? QPalette::Active : QPalette::Inactive;
        QTextCharFormat mark;
        mark.setFontWeight(QFont::Bold);
        if (!isSelected) {
            QColor behind = item.palette.color(group, QPalette::Highlight);
            behind.setAlpha(70);
            mark.setBackground(behind);
        }
        // What was found is never cut off for what stands before it.
        QFont bold = item.font;
        bold.setBold(true);
        const QString found = text.mid(start, length);
        const int spare = std::max(0, rect.width() - QFontMetrics(bold).horizontalAdvance(found));
        QString before = text.left(start);
        if (item.fontMetrics.horizontalAdvance(before) > spare)
            before = item.fontMetrics.elidedText(before, Qt::ElideLeft, spare / 2);
        QTextLayout layout(
            item.fontMetrics.elidedText(before + text.mid(start), Qt::ElideRight, rect.width()), item.font);
        layout.setFormats({{static_cast<int>(before.size()), length, mark}});
        layout.beginLayout();
        QTextLine line = layout.createLine();
        line.setLineWidth(rect.width());
        layout.endLayout();
        painter->save();
        painter->setClipRect(rect);
        painter->setPen(item.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text));
        layout.draw(painter, QPointF(rect.left(), rect.top() + (rect.height() - line.height()) / 2));
        painter->restore();
    }
};

} // namespace

FoundPlacesView::FoundPlacesView(QWidget* parent) : QTreeView(parent)
{
    setUniformRowHeights(true);
    setItemDelegate(new PlaceDelegate(this));
    setAlternatingRowColors(true);
    setAllColumnsShowFocus(true);
    setSelectionMode(ExtendedSelection);
    setTextElideMode(Qt::ElideMiddle);
    setExpandsOnDoubleClick(false);
    header()->setSectionsMovable(false);
    header()->setStretchLastSection(false);
    header()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header()->setSortIndicatorClearable(true);
    header()->setSortIndicator(-1, Qt::AscendingOrder);
    connect(this, &QTreeView::doubleClicked, this, &FoundPlacesView::rowActivated);
}

void FoundPlacesView::setPlaces(FoundPlaces& places)
{
    m_places = &places;
    setModel(m_places);
    connect(m_places, &QAbstractItemModel::modelReset, this, &QTreeView::expandAll);
    connect(m_places, &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex& /*parent*/, int first, int last) {
                for (int row = first; row <= last; ++row)
                    expand(m_places->index(row, 0));
            });
    setSortingEnabled(true);
    const auto widthOf = [this](int characters) {
        return fontMetrics().averageCharWidth() * characters + 24;
    };
    setColumnWidth(FoundPlaces::Place, widthOf(30));
    header()->setSectionResizeMode(FoundPlaces::Text, QHeaderView::Stretch);
    header()->setSectionResizeMode(FoundPlaces::NewText, QHeaderView::Stretch);
}

void FoundPlacesView::keyPressEvent(QKeyEvent* event)
{
    const QModelIndex current = currentIndex();
    if (event->key() == Qt::Key_Space && current.isValid()) {
        const QVariant tick = current.siblingAtColumn(FoundPlaces::Place).data(Qt::CheckStateRole);
        if (tick.isValid())
            m_places->tick(selectionModel()->selectedRows(), tick.toInt() != Qt::Checked);
        return;
    }
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && current.isValid()) {
        emit rowActivated(current);
        return;
    }
    QTreeView::keyPressEvent(event);
}

} // namespace luma
