// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/browsersite.h"
#include "links/linkchecker.h"
#include "links/linkplaces.h"
#include "links/sitepagereader.h"
#include "links/sitepaths.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
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
    std::string value;                  // as a browser takes it from the page
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

/// Checks the links of pages and style sheets as a browser reads them. It keeps buffers, so use one for many pages,
/// and one for each thread.
class BrowserChecker final
{
public:
    BrowserChecker(BrowserSite& site, FindingsKept kept) : m_site(&site), m_kept(kept) {}

    /// Checks the page or style sheet `id` of the tree.
    WebPage check(SiteTree::Id id);
    /// The same for one that the tree does not know.
    WebPage check(const std::string& subpath);

private:
    struct Guess
    {
        SiteTree::Id item = SiteTree::none;
        bool isOtherCase = false;
    };

    WebPage check(SiteTree::Id id, const std::string& subpath);
    void judge(WebLink& link, const LinkReference& reference, const SiteAddresses::Page& page,
               SiteTree::Id id);
    void judgeInside(WebLink& link, const LinkTarget& target, const SiteAddresses::Page& page,
                     SiteTree::Id id);
    [[nodiscard]] bool isPlaceThere(SiteTree::Id page, const LinkTarget& target);
    void suggest(WebLink& link, const LinkTarget& target, const SiteAddresses::Page& page);
    const Guess& guessFor(const std::string& path);

    BrowserSite* m_site;
    FindingsKept m_kept;
    SitePageReader m_reader;
    SitePageReader m_spare; // for the anchors of other pages
    std::unordered_map<std::string, Guess> m_guesses;
};

} // namespace luma
