// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/browsersite.h"
#include "links/linkjudge.h"
#include "links/mentionednames.h"
#include "links/seenaddresses.h"
#include "links/sitepagereader.h"
#include "links/weblink.h"

#include <cstdint>
#include <string>
#include <vector>

namespace luma {

/// Checks the links of pages and style sheets as a browser reads them. It keeps buffers, so use one for many pages,
/// and one for each thread.
class BrowserChecker final
{
public:
    BrowserChecker(BrowserSite& site, FindingsKept kept)
        : m_site(&site), m_kept(kept), m_judge(site, site.rules().fragmentsAreChecked)
    {}

    /// Checks the page or style sheet `id` of the tree.
    WebPage check(SiteTree::Id id);
    /// The same for one that the tree does not know.
    WebPage check(const std::string& subpath);
    /// The names that the page `id`, the last one checked, mentions beside its links, as mentionedNames() gives them.
    [[nodiscard]] std::vector<std::uint64_t> mentionedBy(SiteTree::Id id) const
    {
        return mentionedNames(m_reader, m_site->tree().name(id));
    }

private:
    [[nodiscard]] std::string_view seenPart(std::string_view address) const;
    [[nodiscard]] bool leadsIntoSeenFile(std::string_view address, SiteTree::Id folder);
    void keepPresent(const WebLink& link, std::string_view address, SiteTree::Id folder);
    WebPage check(SiteTree::Id id, const std::string& subpath);

    BrowserSite* m_site;
    FindingsKept m_kept;
    LinkJudge m_judge;
    SitePageReader m_reader;
    SeenAddresses m_present; // that are present in the pages of a folder
};

} // namespace luma
