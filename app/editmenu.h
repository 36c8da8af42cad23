// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QMenu;

namespace luma {

/// Appends Cut, Copy, Paste and Select All to an Edit menu. They act on what has the focus and are off where that knows
/// no such command. Main thread only.
void addTextActions(QMenu& menu);

} // namespace luma
