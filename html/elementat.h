// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/document.h"
#include "html/element.h"

#include <cstdint>

namespace luma::html {

/// The element whose start tag, or whose own text, stood at this place of the text that the page was parsed from (see
/// PageSource). Lines and columns count from 1, columns in characters. Null where no element stood, or none that is
/// still in the page.
Element* elementAt(Document& document, std::uint32_t line, std::uint32_t column);

} // namespace luma::html
