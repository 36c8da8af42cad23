// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QStyleOptionViewItem;

namespace luma {

/// Makes the selection pale in an item of a view that doesn't have the focus, so that the accent colour shows where keys go. A field
/// in the view counts as the view; lists that pop up keep the colour. Whether it was made pale. Main thread only.
bool showFocus(QStyleOptionViewItem& option);

} // namespace luma
