// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace luma::html {
class Element;
}

namespace luma {

/// An element's row in the outline: its tag with all attributes, and its own text.
QString outlineText(const html::Element& element);

} // namespace luma
