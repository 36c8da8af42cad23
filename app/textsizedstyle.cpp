// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/textsizedstyle.h"

#include <QApplication>
#include <QFontMetrics>
#include <QWidget>

#include <algorithm>

namespace luma {

namespace {

// An icon looks as high as the text that it stands beside when it leaves out some of the line's height.
int sideFor(const QFontMetrics& text)
{
    return text.height() * 9 / 10;
}

} // namespace

void TextSizedStyle::useForLargeText()
{
    if (sideFor(QFontMetrics(QApplication::font())) > QApplication::style()->pixelMetric(PM_SmallIconSize))
        QApplication::setStyle(new TextSizedStyle);
}

int TextSizedStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const
{
    const int usual = QProxyStyle::pixelMetric(metric, option, widget);
    switch (metric) {
    case PM_SmallIconSize:
    case PM_ButtonIconSize:
    case PM_ToolBarIconSize:
    case PM_ListViewIconSize:
    case PM_TabBarIconSize:
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return std::max(usual, sideFor(widget ? widget->fontMetrics() : QFontMetrics(QApplication::font())));
    default:
        return usual;
    }
}

} // namespace luma
