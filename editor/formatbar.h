// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace Ui {
class HTMLDocument;
}

namespace luma {

class ViewController;

/// Fills the formatting bar and the Format menu of a page's window with the commands of its rendering. The
/// window owns all of it.
void fillFormatBar(Ui::HTMLDocument& ui, ViewController& rendering);

} // namespace luma
