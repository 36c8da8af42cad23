// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/linksuggestions.h"
#include "links/pageanchors.h"
#include "links/siteaddresses.h"
#include "links/sitepaths.h"
#include "links/webrules.h"

#include <mutex>
#include <optional>

namespace luma {

/// What all threads of a report on a site share. The tree must outlive it.
class BrowserSite final
{
public:
    BrowserSite(const SiteTree& tree, const WebRules& rules);

    [[nodiscard]] const SiteTree& tree() const { return m_tree; }
    [[nodiscard]] const WebRules& rules() const { return m_rules; }
    [[nodiscard]] const SiteAddresses& addresses() const { return m_addresses; }
    [[nodiscard]] const SitePaths& paths() const { return m_paths; }
    [[nodiscard]] PageAnchors& anchors() { return m_anchors; }
    /// Made when first asked for.
    [[nodiscard]] const LinkSuggestions& suggestions();

private:
    const SiteTree& m_tree;
    WebRules m_rules;
    SiteAddresses m_addresses;
    SitePaths m_paths;
    PageAnchors m_anchors;
    std::once_flag m_suggestionsMade;
    std::optional<LinkSuggestions> m_suggestions;
};

} // namespace luma
