// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/document.h"
#include "page/markupdifference.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace luma {

/// A change of a page, as its tree and its rendering tell each other: a run of an element's children gives way to
/// markup. Only elements are counted, as texts may be split differently on the two sides; so the run begins right
/// behind one element child, or at the start, and ends right before another, or at the end.
struct SubtreeChange
{
    std::vector<int> path; ///< of the parent: positions among element children, down from the root element
    std::string name;      ///< the parent's tag name
    int before = 0;        ///< element children in front of the run
    int after = 0;         ///< and behind it
    std::string markup;    ///< UTF-8
    int elements = 0;      ///< in the markup, at all depths outside templates
};

/// The element at the path; null if there is none. What is in a template has no path.
html::Element* elementAtPath(const html::Document& document, const std::vector<int>& path);
/// The path of an element; none for what is in a template or not below the root element.
std::optional<std::vector<int>> pathOf(const html::Element& element);
/// The same as the page's scripts take it: "[1,0]".
std::optional<QString> pathForScript(const html::Element& element);

/// What makes the tree follow a change of the rendering, which is not trusted. Nothing if the change does not fit the
/// tree, or if its markup parses to other elements than it says.
std::optional<MarkupDifference> differenceOf(const html::Document& document, const SubtreeChange& change);

/// The change that tells the rendering what stands between `previous` and `next` (null: the ends) in `parent` now.
/// Nothing where no path leads.
std::optional<SubtreeChange> changeBetween(const html::ParentNode& parent, const html::Node* previous,
                                           const html::Node* next);

/// A hash of everything below the root element and of itself. The page-side function of that name computes the same,
/// over UTF-16 code units, so the two sides compare without sending the page.
std::uint32_t fingerprint(const html::Document& document);

} // namespace luma
