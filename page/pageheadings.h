// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

namespace luma::html {
class Document;
class Element;
} // namespace luma::html

namespace luma {

/// A heading of a page, `h1` to `h6`.
struct PageHeading
{
    const html::Element* element = nullptr;
    int level = 0;
    int levelBefore = 0; ///< of the heading in front of it; 0 for the first one

    /// Whether levels are left out in front of it.
    [[nodiscard]] bool jumps() const { return levelBefore > 0 && level > levelBefore + 1; }
};

/// Whether screen readers are told to skip the element.
bool isHiddenFromReaders(const html::Element& element);

/// The headings that are not hidden, in document order; those in templates are none.
std::vector<PageHeading> headingsOf(const html::Document& page);

} // namespace luma
