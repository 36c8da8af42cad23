// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/browsersite.h"

namespace luma {

BrowserSite::BrowserSite(const SiteTree& tree, const WebRules& rules)
    : m_tree(tree), m_rules(rules), m_addresses(rules.webAddresses), m_paths(tree, rules), m_anchors(tree)
{}

const LinkSuggestions& BrowserSite::suggestions()
{
    std::call_once(m_suggestionsMade, [this] { m_suggestions.emplace(m_tree); });
    return *m_suggestions;
}

} // namespace luma
