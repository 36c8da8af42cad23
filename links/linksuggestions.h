// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/sitetree.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace luma {

/// Guesses what a link that leads nowhere was meant to lead to. Unchanging once made; any thread. The tree must
/// outlive it.
class LinkSuggestions final
{
public:
    using Id = SiteTree::Id;

    explicit LinkSuggestions(const SiteTree& tree);

    /// The item whose subpath differs from `subpath` in letter case alone, or none.
    [[nodiscard]] Id withOtherCase(std::string_view subpath) const;
    /// The item with the most similar name in the folder of `subpath`; else a file of the same name elsewhere, the
    /// one with the most of its path in common. None where nothing is similar.
    [[nodiscard]] Id nearest(std::string_view subpath) const;

private:
    [[nodiscard]] Id mostSimilarIn(Id folder, std::string_view name) const;
    [[nodiscard]] Id ofSameName(std::string_view subpath, std::string_view name) const;

    const SiteTree* m_tree;
    std::unordered_multimap<std::uint64_t, Id> m_byFoldedPath;
    std::unordered_multimap<std::uint64_t, Id> m_byName;
    std::unordered_map<Id, std::vector<Id>> m_children; // by folder
    std::vector<std::uint64_t> m_letters;               // of each item's name, as bits
};

/// The address of the item at `target` as a page at `page` would write it; both are subpaths of the site, or absolute.
std::string addressFrom(std::string_view page, std::string_view target);

} // namespace luma
