// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace luma::html {
class Element;
}

namespace luma {

/// The whole text of an element's row in the outline: its tag with all attributes, and its own text. Server code is shown
/// as it is.
QString outlineRowText(const html::Element& element);

} // namespace luma
