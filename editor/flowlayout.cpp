// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/flowlayout.h"

#include <QStyle>
#include <QWidget>

#include <algorithm>

namespace luma {

namespace {

int heightOf(const std::vector<QLayoutItem*>& row)
{
    int height = 0;
    for (const QLayoutItem* const item : row)
        height = std::max(height, item->sizeHint().height());
    return height;
}

} // namespace

FlowLayout::FlowLayout(QWidget* parent) : QLayout(parent) {}

FlowLayout::~FlowLayout() = default;

void FlowLayout::addItem(QLayoutItem* item)
{
    m_items.emplace_back(item);
}

int FlowLayout::count() const
{
    return static_cast<int>(m_items.size());
}

QLayoutItem* FlowLayout::itemAt(int index) const
{
    return index >= 0 && index < count() ? m_items[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* FlowLayout::takeAt(int index)
{
    if (index < 0 || index >= count())
        return nullptr;
    const auto item = m_items.begin() + index;
    QLayoutItem* const taken = item->release();
    m_items.erase(item);
    return taken;
}

// The items that are shown.
std::vector<FlowLayout::Row> FlowLayout::rowsFor(int width) const
{
    std::vector<Row> rows;
    int left = 0;
    for (const auto& item : m_items) {
        if (item->isEmpty())
            continue;
        const int needed = item->sizeHint().width();
        if (rows.empty() || needed > left) {
            rows.emplace_back();
            left = width;
        }
        rows.back().push_back(item.get());
        left -= needed + spacing();
    }
    return rows;
}

int FlowLayout::heightForWidth(int width) const
{
    const QMargins margins = contentsMargins();
    int height = 0;
    for (const Row& row : rowsFor(width - margins.left() - margins.right()))
        height += heightOf(row) + (height > 0 ? spacing() : 0);
    return height + margins.top() + margins.bottom();
}

// All in a row.
QSize FlowLayout::sizeHint() const
{
    const QMargins margins = contentsMargins();
    int width = 0;
    for (const auto& item : m_items) {
        if (!item->isEmpty())
            width += item->sizeHint().width() + (width > 0 ? spacing() : 0);
    }
    width += margins.left() + margins.right();
    return {width, heightForWidth(width)};
}

// Each in a row of its own, though not the height of that.
QSize FlowLayout::minimumSize() const
{
    QSize size;
    for (const auto& item : m_items) {
        if (!item->isEmpty())
            size = size.expandedTo(item->minimumSize());
    }
    return size.grownBy(contentsMargins());
}

void FlowLayout::setGeometry(const QRect& area)
{
    QLayout::setGeometry(area);
    QRect left = area.marginsRemoved(contentsMargins());
    for (const Row& row : rowsFor(left.width())) {
        const int height = heightOf(row);
        place(row, left, height);
        left.setTop(left.top() + height + spacing());
    }
}

void FlowLayout::place(const Row& row, const QRect& area, int height) const
{
    int rest = area.width() + spacing();
    int expanding = 0;
    for (const QLayoutItem* const item : row) {
        rest -= std::min(item->sizeHint().width(), area.width()) + spacing();
        expanding += item->expandingDirections().testFlag(Qt::Horizontal) ? 1 : 0;
    }
    int x = area.left();
    for (QLayoutItem* const item : row) {
        QRect place(x, area.top(), std::min(item->sizeHint().width(), area.width()), height);
        if (item->expandingDirections().testFlag(Qt::Horizontal) && rest > 0)
            place.setWidth(place.width() + rest / expanding);
        x = place.right() + 1 + spacing();
        const QWidget* const parent = parentWidget();
        item->setGeometry(
            QStyle::visualRect(parent ? parent->layoutDirection() : Qt::LeftToRight, area, place));
    }
}

} // namespace luma
