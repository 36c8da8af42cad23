// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSize>

class QWidget;

namespace luma {

/// How large a window on the screen of `window` can be so that its frame and the desktop's bars stay visible, in device-independent
/// pixels. Main thread only.
QSize screenRoom(const QWidget& window);

/// Makes a window that has no size from the user yet low enough for its screen. Main thread only.
void fitHeightToScreen(QWidget& window);

/// By how much the text of `widget` is larger than the 10 pt that our layouts are drawn for; 1 if it isn't. Main thread only.
double textGrowth(const QWidget& widget);

} // namespace luma
