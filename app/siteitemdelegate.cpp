// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/siteitemdelegate.h"

#include "app/sitelist.h"
#include "desktop/focuslook.h"

#include <QApplication>
#include <QPainter>

namespace luma {

namespace {

constexpr int margin = 6;

QFont smallFont(QFont font)
{
    font.setPointSizeF(font.pointSizeF() * 0.9);
    return font;
}

bool isFolder(const QModelIndex& index)
{
    return (index.flags() & Qt::ItemNeverHasChildren) == 0;
}

} // namespace

void SiteItemDelegate::paint(QPainter* painter, const QStyleOptionViewItem& given,
                             const QModelIndex& index) const
{
    QStyleOptionViewItem option = given;
    showFocus(option);
    QStyleOptionViewItem background = option;
    initStyleOption(&background, index);
    const QStyle* style = option.widget ? option.widget->style() : QApplication::style();
    if (isFolder(index)) {
        style->drawControl(QStyle::CE_ItemViewItem, &background, painter, option.widget);
        return;
    }
    background.text.clear();
    style->drawControl(QStyle::CE_ItemViewItem, &background, painter, option.widget);

    const bool selected = (option.state & QStyle::State_Selected) != 0;
    const QPalette::ColorGroup group =
        (option.state & QStyle::State_Active) != 0 ? QPalette::Active : QPalette::Inactive;
    QColor color = option.palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text);
    const QRect inner = option.rect.adjusted(margin, margin - 2, -margin, -margin + 2);
    const QString name = index.data().toString();
    const QFont small = smallFont(option.font);

    painter->save();
    painter->setPen(color);
    painter->setFont(option.font);
    painter->drawText(inner, Qt::AlignTop | Qt::AlignLeft,
                      option.fontMetrics.elidedText(name.isEmpty() ? tr("Unnamed site") : name,
                                                    Qt::ElideRight, inner.width()));
    color.setAlphaF(selected ? 0.85F : 0.62F);
    painter->setPen(color);
    painter->setFont(small);
    painter->drawText(inner, Qt::AlignBottom | Qt::AlignLeft,
                      QFontMetrics(small).elidedText(index.data(SiteList::DestinationRole).toString(),
                                                     Qt::ElideMiddle, inner.width()));
    painter->restore();
}

QSize SiteItemDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    if (isFolder(index))
        return QStyledItemDelegate::sizeHint(option, index)
            .expandedTo({120, option.fontMetrics.height() + margin});
    const int text = option.fontMetrics.height() + QFontMetrics(smallFont(option.font)).height();
    return {120, text + 2 * margin - 2};
}

} // namespace luma
