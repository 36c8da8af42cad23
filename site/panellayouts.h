// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QDataStream;
class QWidget;

namespace luma {

/// The sizes of the panels of a window, open or not, and the widths of their tables' columns. Reading applies them to the
/// panels of the same names; a damaged layout is applied up to its damage and does no harm. Main thread only.
void writePanelLayouts(QDataStream& stream, const QWidget& window);
void readPanelLayouts(QDataStream& stream, const QWidget& window);

} // namespace luma
