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

} // namespace luma
