// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/linkchecker.h"
#include "links/linkplaces.h"
#include "links/sitepaths.h"

#include <cstdint>
#include <string>
#include <vector>

namespace luma {

/// One link of a page in a report.
struct WebLink
{
    LinkPlace place = LinkPlace::Href;
    LinkState state = LinkState::Present;
    MissingReason why = MissingReason::None;
    std::uint32_t line = 1;             // where the address begins
    std::uint32_t column = 1;           // in characters
    std::string value;                  // as a browser takes it from the page; an ellipsis for server code
    std::string suggestion;             // an address to write instead; only of missing links, and often empty
    std::string target;                 // the place of the site that a missing link leads to; else empty
    SiteTree::Id file = SiteTree::none; // the file it leads to, none for what is not in the tree
    SiteTree::Id folder = SiteTree::none; // the folder, where the file is its index page
};

/// What a report found in one page or style sheet. Links are in document order.
struct WebPage
{
    std::string path;       // relative to the site's folder
    std::string unreadable; // why the file can't be read; empty if it can
    std::vector<WebLink> links;
};

} // namespace luma
