// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/screenroom.h"

#include <QFontInfo>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace luma {

QSize screenRoom(const QWidget& window)
{
    return window.screen()->availableSize() * 0.95;
}

void fitHeightToScreen(QWidget& window)
{
    window.resize(window.width(), std::min(window.height(), screenRoom(window).height()));
}

double textGrowth(const QWidget& widget)
{
    constexpr double drawnFor = 13; // pixels
    return std::max(1.0, QFontInfo(widget.font()).pixelSize() / drawnFor);
}

} // namespace luma
