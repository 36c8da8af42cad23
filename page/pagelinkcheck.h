// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/linkplaces.h"
#include "links/webrules.h"
#include "page/pagecheck.h"
#include "page/sitefolder.h"

#include <string>
#include <unordered_set>
#include <vector>

namespace luma {

/// The links of a page as its tree has them, unsaved edits included, and which of them lead nowhere. Made on the tree's
/// thread; missing() may then run on any other.
class PageLinkCheck final
{
public:
    PageLinkCheck(const html::Document& page, SiteFolder place, WebRules rules = {});

    /// The links to what is not on the disk, and those to a place of this page that it doesn't have, in document order,
    /// as the rules say. Places in other pages are not looked up. The tree may have changed since, so check that
    /// before using the elements.
    [[nodiscard]] std::vector<PageFinding> missing() const;

private:
    struct Link
    {
        const html::Element* element;
        LinkPlace place;
        std::string value;
    };

    void addLinksOf(const html::Element& element);
    [[nodiscard]] bool hasPlace(const std::string& fragment) const;

    SiteFolder m_place;
    WebRules m_rules;
    std::string m_base;
    std::vector<Link> m_links;
    std::unordered_set<std::string> m_places; // ids and names
    bool m_mayHaveOtherPlaces = false;        // which server code writes
};

} // namespace luma
