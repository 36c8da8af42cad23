// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/document.h"

#include <cstdint>
#include <string>
#include <vector>

namespace luma {

/// What can be wrong with an element of a page.
enum class PageFault : std::uint8_t {
    NoTitle,
    NoLanguage,
    NoAlternative, // of an image
    RepeatedId,
    HeadingJump,
    EmptyLink,
    EmptyButton,
    MissingLink,
    LowContrast
};

/// A fault of one element.
struct PageFinding
{
    PageFault fault = PageFault::NoTitle;
    const html::Element* element = nullptr; ///< never null
    std::string detail;                     ///< the id, the levels ("h2 → h4"), the address; else empty
    double contrast = 0;                    ///< of LowContrast: the ratio (WCAG 2.1, 1.4.3)
    double neededContrast = 0;              ///< and the least that is enough
};

/// What the tree alone tells: title, language, alternative texts, ids, heading levels, empty links and buttons, in
/// document order. Contents of `template` elements don't count, what holds server code is not judged, and a part of a
/// page (no doctype, empty head) needs neither title nor language.
std::vector<PageFinding> checkPage(const html::Document& page);

/// The node after `node` and all below it in document order; null at the end.
const html::Node* nodeBehind(const html::Node& node);

} // namespace luma
