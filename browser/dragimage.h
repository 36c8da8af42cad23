// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QModelIndexList>
#include <QPixmap>

class QAbstractItemView;

namespace luma {

/// The picture of dragged rows: the first few as the view draws them, and how many more there are. It is
/// opaque, for without a compositor nothing shines through, so it belongs beside the pointer and not over
/// what is below it. Main thread only.
QPixmap dragImage(const QAbstractItemView& view, const QModelIndexList& rows);

} // namespace luma
