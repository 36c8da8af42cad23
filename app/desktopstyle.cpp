// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/desktopstyle.h"

#include "desktop/icons.h"

#include <QApplication>
#include <QFontMetrics>
#include <QPainter>
#include <QStyleOption>
#include <QWidget>

#include <algorithm>

namespace luma {

namespace {

bool isDark(const QColor& colour)
{
    return colour.lightness() < 128;
}

// An icon looks as high as the text that it stands beside when it leaves out some of the line's height.
int sideFor(const QFontMetrics& text)
{
    return text.height() * 9 / 10;
}

} // namespace

void DesktopStyle::use()
{
    QApplication::setStyle(new DesktopStyle);
}

// A dark desktop may name no colour for hints, and gets that of a light one (seen with the colours of KDE Plasma 5).
void DesktopStyle::polish(QPalette& palette)
{
    QProxyStyle::polish(palette);
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        QColor hint = palette.color(group, QPalette::Text);
        if (isDark(palette.color(group, QPalette::PlaceholderText)) == isDark(hint))
            continue;
        hint.setAlpha(128);
        palette.setColor(group, QPalette::PlaceholderText, hint);
    }
}

int DesktopStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const
{
    const int usual = QProxyStyle::pixelMetric(metric, option, widget);
    switch (metric) {
    case PM_SmallIconSize:
    case PM_ButtonIconSize:
    case PM_ToolBarIconSize:
    case PM_ListViewIconSize:
    case PM_TabBarIconSize:
    case PM_ToolBarExtensionExtent:
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return std::max(usual, sideFor(widget ? widget->fontMetrics() : QFontMetrics(QApplication::font())));
    default:
        return usual;
    }
}

// The style's room between an entry and its key is the same for all sizes of text, and the column of icons takes of it.
QSize DesktopStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                                     const QWidget* widget) const
{
    const QSize usual = QProxyStyle::sizeFromContents(type, option, contents, widget);
    return type == CT_MenuItem && option ? usual + QSize(option->fontMetrics.height() / 2, 0) : usual;
}

// Qt's own style draws the frame of a box darker than the window, which can't be seen on a dark one.
void DesktopStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const
{
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element != PE_IndicatorCheckBox || !isDark(option->palette.color(QPalette::Base)) ||
        baseStyle()->name() != QLatin1String("fusion"))
        return;
    QColor frame = option->palette.color(QPalette::Text);
    frame.setAlpha(110);
    painter->save();
    painter->setPen(frame);
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
    painter->restore();
}

// The style's own mark of a tool bar that hides buttons is black.
QIcon DesktopStyle::standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const
{
    return icon == SP_ToolBarHorizontalExtensionButton ? icons::symbol(QStringLiteral("more"))
                                                       : QProxyStyle::standardIcon(icon, option, widget);
}

} // namespace luma
