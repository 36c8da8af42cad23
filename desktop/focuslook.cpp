// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/focuslook.h"

#include <QApplication>
#include <QStyleOptionViewItem>
#include <QWidget>

namespace luma {

bool showFocus(QStyleOptionViewItem& option)
{
    const QWidget* const focused = QApplication::focusWidget();
    if (!option.state.testFlag(QStyle::State_Selected) || !option.widget || option.widget == focused ||
        option.widget->isAncestorOf(focused) || option.widget->window()->windowType() == Qt::Popup)
        return false;
    const QColor base = option.palette.color(QPalette::Base);
    const QColor text = option.palette.color(QPalette::Text);
    constexpr float share = 0.2F;
    const auto mixed = [](float one, float other) { return one + (other - one) * share; };
    option.state &= ~QStyle::State_Active;
    option.palette.setColor(QPalette::Highlight, QColor::fromRgbF(mixed(base.redF(), text.redF()),
                                                                  mixed(base.greenF(), text.greenF()),
                                                                  mixed(base.blueF(), text.blueF())));
    option.palette.setColor(QPalette::HighlightedText, text);
    return true;
}

} // namespace luma
