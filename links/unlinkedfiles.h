// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/sitepaths.h"
#include "links/sitetree.h"
#include "links/unlinkeditems.h"
#include "links/webrules.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace luma {

/// The report on unlinked files as a browser reads links, once it is known which files the pages link to. `callbacks` and
/// the rest must outlive it.
class UnlinkedFiles final
{
public:
    using Id = SiteTree::Id;

    /// `excludedFolders` as for findUnlinkedItems().
    UnlinkedFiles(const SiteTree& tree, const SitePaths& paths, const WebRules& rules,
                  std::string_view excludedFolders, const UnlinkedItemsCallbacks& callbacks);

    /// A page links to the file; any thread.
    void setLinked(Id file) { m_linked[file].store(true, std::memory_order_relaxed); }
    /// A page mentions files with these names beside its links; one thread at a time.
    void addMentioned(const std::vector<std::uint64_t>& names)
    {
        m_mentioned.insert(names.begin(), names.end());
    }
    /// Looks for the other files' names in scripts, data and texts and delivers the rows. False when it was stopped.
    bool finish();

private:
    bool searchTexts();
    void markTargetsOfLinks();
    bool deliverRows();

    const SiteTree& m_tree;
    const SitePaths& m_paths;
    const UnlinkedItemsCallbacks& m_callbacks;
    std::unique_ptr<std::atomic<bool>[]> m_linked; // by Id
    std::unordered_set<std::uint64_t> m_mentioned;
    std::vector<Id> m_candidates; // files that the report may list
};

} // namespace luma
