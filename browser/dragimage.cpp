// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/dragimage.h"

#include <QAbstractItemDelegate>
#include <QAbstractItemView>
#include <QCoreApplication>
#include <QLocale>
#include <QPainter>

#include <algorithm>

namespace luma {

namespace {

constexpr int mostRows = 5;
constexpr int widest = 260;
constexpr int margin = 2;

QStyleOptionViewItem optionFor(const QAbstractItemView& view)
{
    QStyleOptionViewItem option;
    option.initFrom(&view);
    option.state = QStyle::State_Enabled | QStyle::State_Active;
    option.font = view.font();
    option.widget = &view;
    return option;
}

} // namespace

QPixmap dragImage(const QAbstractItemView& view, const QModelIndexList& rows)
{
    QModelIndexList shown = rows;
    std::sort(shown.begin(), shown.end());
    const qsizetype more = std::max<qsizetype>(0, shown.size() - mostRows);
    shown.resize(shown.size() - more);
    QStyleOptionViewItem option = optionFor(view);
    QSize cell(0, option.fontMetrics.height() + 4);
    for (const QModelIndex& row : shown)
        cell = cell.expandedTo(view.itemDelegate()->sizeHint(option, row));
    cell.setWidth(std::min(cell.width(), widest));
    const int lines = static_cast<int>(shown.size()) + (more > 0 ? 1 : 0);
    const QSize size(cell.width() + 2 * margin, cell.height() * lines + 2 * margin);
    QPixmap picture(size * view.devicePixelRatioF());
    picture.setDevicePixelRatio(view.devicePixelRatioF());
    picture.fill(view.palette().color(QPalette::Base));
    QPainter painter(&picture);
    option.rect = QRect(QPoint(margin, margin), cell);
    for (const QModelIndex& row : shown) {
        view.itemDelegate()->paint(&painter, option, row);
        option.rect.translate(0, cell.height());
    }
    painter.setFont(option.font);
    painter.setPen(view.palette().color(QPalette::PlaceholderText));
    if (more > 0)
        painter.drawText(option.rect.adjusted(6, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter,
                         QCoreApplication::translate("luma::BrowserListView", "and %1 more")
                             .arg(QLocale().toString(more)));
    painter.drawRect(QRect(QPoint(0, 0), size - QSize(1, 1)));
    return picture;
}

} // namespace luma
