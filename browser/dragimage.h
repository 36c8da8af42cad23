// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QModelIndexList>
#include <QPixmap>

class QAbstractItemView;

namespace luma {

/// The picture of dragged rows: the first few as the view draws them, and the number of further ones. It is
/// opaque, for without a compositor nothing would show through, so place it beside the pointer. Main thread
/// only.
QPixmap dragImage(const QAbstractItemView& view, const QModelIndexList& rows);

} // namespace luma
