// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/desktopstyle.h"

#include "desktop/focuslook.h"
#include "desktop/icons.h"
#include "desktop/screenroom.h"
#include "desktop/themeiconengine.h"

#include <QApplication>
#include <QDialog>
#include <QFontMetrics>
#include <QPainter>
#include <QStyleOption>
#include <QWidget>

#include <algorithm>
#include <optional>

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

// In degrees from an arrow that points down; less than 0 if it is none.
double turnOfArrow(QStyle::PrimitiveElement element, const QStyleOption& option)
{
    switch (element) {
    case QStyle::PE_IndicatorArrowDown:
        return 0;
    case QStyle::PE_IndicatorArrowLeft:
        return 90;
    case QStyle::PE_IndicatorArrowUp:
        return 180;
    case QStyle::PE_IndicatorArrowRight:
        return 270;
    case QStyle::PE_IndicatorBranch:
        if (!option.state.testFlag(QStyle::State_Children))
            return -1;
        return option.state.testFlag(QStyle::State_Open) ? 0 : option.direction == Qt::RightToLeft ? 90 : 270;
    default:
        return -1;
    }
}

void drawArrow(const QStyleOption& option, double turn, QPainter& painter)
{
    const double side =
        std::min({sideFor(option.fontMetrics) / 2, option.rect.width(), option.rect.height()});
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(QRectF(option.rect).center());
    painter.rotate(turn);
    painter.setPen(Qt::NoPen);
    painter.setBrush(option.palette.color(QPalette::ButtonText));
    const double half = side / 2;
    painter.drawPolygon(QPolygonF{{-half, -half / 2}, {half, -half / 2}, {0, half / 2}});
    painter.restore();
}

/// The selected item as a view without the focus shows it; nothing for any other one.
std::optional<QStyleOptionViewItem> paleItem(const QStyleOption& option)
{
    const auto* const item = qstyleoption_cast<const QStyleOptionViewItem*>(&option);
    if (!item || !item->state.testFlag(QStyle::State_Selected))
        return {};
    QStyleOptionViewItem pale = *item;
    return showFocus(pale) ? std::optional(pale) : std::nullopt;
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
    const bool isTextDark = isDark(palette.color(QPalette::Active, QPalette::Text));
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        QColor hint = palette.color(group, QPalette::Text);
        if (isDark(palette.color(group, QPalette::PlaceholderText)) == isTextDark)
            continue;
        if (group != QPalette::Disabled) // which is pale itself
            hint.setAlpha(128);
        palette.setColor(group, QPalette::PlaceholderText, hint);
    }
}

// The layouts of our dialogs have a size. One that the user gave is set later.
void DesktopStyle::polish(QWidget* widget)
{
    QProxyStyle::polish(widget);
    if (!qobject_cast<QDialog*>(widget) || !widget->testAttribute(Qt::WA_Resized) ||
        !QLatin1StringView(widget->metaObject()->className()).startsWith(QLatin1StringView("luma::")))
        return;
    const QSize room = screenRoom(*widget).expandedTo(widget->size());
    widget->resize((widget->size() * textGrowth(*widget)).boundedTo(room));
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

void DesktopStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const
{
    auto pale = element == CE_ItemViewItem ? paleItem(*option) : std::nullopt;
    // On a pale selection an icon looks as it does without one.
    if (pale && !pale->icon.isNull())
        pale->icon = pale->icon.pixmap(pale->decorationSize, painter->device()->devicePixelRatioF());
    QProxyStyle::drawControl(element, pale ? &*pale : option, painter, widget);
}

// Qt's own style draws arrows of one size, and the frame of a box darker than the window, which can't be seen on a dark one.
void DesktopStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const
{
    const double turn = turnOfArrow(element, *option);
    const bool isLargeArrow = turn >= 0 && sideFor(option->fontMetrics) > 20;
    const bool isDarkBox = element == PE_IndicatorCheckBox && isDark(option->palette.color(QPalette::Base));
    const bool isOurs = (isLargeArrow || isDarkBox) && baseStyle()->name() == QLatin1String("fusion");
    if (isLargeArrow && isOurs) {
        drawArrow(*option, turn, *painter);
        return;
    }
    // The row is what lies beside the item of drawControl().
    const auto pale = element == PE_PanelItemViewRow ? paleItem(*option) : std::nullopt;
    QProxyStyle::drawPrimitive(element, pale ? &*pale : option, painter, widget);
    if (!isOurs)
        return;
    QColor frame = option->palette.color(QPalette::Text);
    frame.setAlpha(110);
    painter->save();
    painter->setPen(frame);
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
    painter->restore();
}

// The style's own mark of a tool bar that hides buttons is black, and so may be the theme's icons of a dialog's buttons.
QIcon DesktopStyle::standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const
{
    if (icon == SP_ToolBarHorizontalExtensionButton)
        return icons::symbol(QStringLiteral("more"));
    const QIcon standard = QProxyStyle::standardIcon(icon, option, widget);
    const bool isOfButton = icon >= SP_DialogOkButton && icon <= SP_DialogNoButton;
    return isOfButton && !standard.isNull() ? QIcon(new ThemeIconEngine(standard)) : standard;
}

} // namespace luma
