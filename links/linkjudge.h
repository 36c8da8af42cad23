// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/browsersite.h"
#include "links/sitepagereader.h"
#include "links/weblink.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace luma {

/// Says of one address after another where it leads and whether something is there, as a browser reads it. It remembers what
/// it guessed, so use one for many pages, and one for each thread.
class LinkJudge final
{
public:
    LinkJudge(BrowserSite& site, bool checksFragments) : m_site(&site), m_checksFragments(checksFragments) {}

    /// The address `value` of `page`, which is the page `id` of the tree or none that the tree knows. Without line and column;
    /// its value is there only if it has a suggestion.
    WebLink judged(std::string_view value, LinkPlace linkPlace, const SiteAddresses::Page& page,
                   SiteTree::Id id);

    /// Whether `fragment`, without "#", leads to a place in the page `id`. True where fragments are not checked, and for a file
    /// that is no page.
    [[nodiscard]] bool isPlaceThere(SiteTree::Id id, std::string_view fragment);

    /// Whether the disk was asked since the last call, because the tree does not know what is behind symbolic links.
    bool takeHasAskedDisk() { return std::exchange(m_hasAskedDisk, false); }

private:
    struct Guess
    {
        SiteTree::Id item = SiteTree::none;
        bool isOtherCase = false;
    };

    void judge(WebLink& link, std::string_view value, const SiteAddresses::Page& page, SiteTree::Id id);
    void judgeInside(WebLink& link, const LinkTarget& target, const SiteAddresses::Page& page,
                     SiteTree::Id id);
    void suggest(WebLink& link, const LinkTarget& target, const SiteAddresses::Page& page);
    const Guess& guessFor(const std::string& path);

    BrowserSite* m_site;
    bool m_checksFragments;
    bool m_hasAskedDisk = false;
    SitePageReader m_spare; // for the anchors of other pages
    std::unordered_map<std::string, Guess> m_guesses;
};

/// Whether `link`, which is not a usemap, is not missing, and `value` is not in any other page of its folder either.
bool isPresentInFolder(const WebLink& link, std::string_view value);

} // namespace luma
