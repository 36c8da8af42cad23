// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/orderedwork.h"
#include "links/browserreports.h"
#include "links/mentionednames.h"
#include "links/seenaddresses.h"
#include "links/unlinkedfiles.h"

#include <vector>

namespace luma {

namespace {

using Id = SiteTree::Id;

/// Reads one page after another and tells which files they link to; each thread has its own.
class LinkedFileReader final
{
public:
    LinkedFileReader(const SiteTree& tree, const SiteAddresses& addresses, const SitePaths& paths,
                     UnlinkedFiles& unlinked)
        : m_tree(&tree), m_addresses(&addresses), m_paths(&paths), m_unlinked(&unlinked)
    {}

    // The names that the page mentions beside its links.
    std::vector<std::uint64_t> read(Id id)
    {
        if (!m_reader.read(m_tree->path(id)))
            return {};
        const SiteAddresses::Page page = m_addresses->page(m_tree->subpath(id), m_reader.page().base());
        for (const LinkReference& reference : m_reader.page().references()) {
            const std::uint64_t key = SeenAddresses::keyOf(reference.value, m_tree->parent(id));
            if (reference.place == LinkPlace::UseMap || (!page.hasBase && m_linked.contains(key)))
                continue;
            const LinkTarget target = m_addresses->resolve(reference.value, page);
            if (target.kind != LinkTarget::Kind::Inside)
                continue;
            // A page is not in use because it refers to itself.
            const Id file = m_paths->at(target).file;
            if (file == SiteTree::none || file == id)
                continue;
            m_unlinked->setLinked(file);
            if (!page.hasBase)
                m_linked.insert(key);
        }
        return mentionedNames(m_reader, m_tree->name(id));
    }

private:
    const SiteTree* m_tree;
    const SiteAddresses* m_addresses;
    const SitePaths* m_paths;
    UnlinkedFiles* m_unlinked;
    SitePageReader m_reader;
    SeenAddresses m_linked; // whose files are known to be linked
};

bool readPages(const SiteTree& tree, const SitePaths& paths, const WebRules& rules, UnlinkedFiles& unlinked,
               const UnlinkedItemsCallbacks& callbacks)
{
    const SiteAddresses addresses(rules.webAddresses);
    const std::vector<Id> pages = tree.webPages();
    using Work = OrderedWork<std::vector<std::uint64_t>>;
    std::vector<LinkedFileReader> readers;
    for (std::size_t worker = 0; worker < Work::workerCount(); ++worker)
        readers.emplace_back(tree, addresses, paths, unlinked);
    return Work(pages.size(), callbacks.stillWanted)
        .run([&](std::size_t i, std::size_t worker) { return readers[worker].read(pages[i]); },
             [&](std::size_t i, const std::vector<std::uint64_t>& mentioned) {
                 unlinked.addMentioned(mentioned);
                 if (callbacks.examining)
                     callbacks.examining(tree.subpath(pages[i]));
             });
}

} // namespace

Result<bool> findWebUnlinked(const std::filesystem::path& site, const WebRules& rules,
                             std::string_view excludedFolders, const UnlinkedItemsCallbacks& callbacks)
{
    const auto tree = SiteTree::read(site, callbacks.stillWanted);
    if (!tree)
        return tree.error().isStopped() ? Result<bool>(false) : Result<bool>(tree.error());
    const SitePaths paths(*tree, rules);
    UnlinkedFiles unlinked(*tree, paths, rules, excludedFolders, callbacks);
    return readPages(*tree, paths, rules, unlinked, callbacks) && unlinked.finish();
}

} // namespace luma
