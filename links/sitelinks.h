// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/browserreports.h"
#include "links/keptpages.h"
#include "links/linkmapping.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// The links of one site as a browser reads them, kept. Its reports are those of browserreports.h, but only pages that have
/// changed are read again (KeptPages); the first report reads every page.
///
/// With a store, what it keeps is there again the next time.
///
/// Any thread; a report waits until the one before has ended.
class SiteLinks final
{
public:
    enum class Keeping : std::uint8_t { InMemory, Stored };

    /// `clockStep` as for FileStamp::of().
    explicit SiteLinks(const std::filesystem::path& site, Keeping keeping = Keeping::InMemory,
                       std::int64_t clockStep = FileStamp::coarsestStep);

    [[nodiscard]] const std::filesystem::path& site() const { return m_site; }

    /// A watcher tells of every change from now on: this one is in these folders, or anywhere without them. Until endWatch(),
    /// reports look only at files of such folders. Neither waits. What other computers change is not seen by a watcher: on a
    /// network's file system each report still looks at every file.
    void noteChanges(const std::optional<KeptPages::Folders>& folders);
    void endWatch();

    using Told = std::function<void(bool isAll)>;
    using Watcher = std::function<void(const Told& told)>;
    /// How to ask the watcher, until endWatch(). It has to pass all that it has seen until then on to noteChanges() and then to
    /// call `told`, on any thread; with false where there is no watcher any more.
    void setWatcher(Watcher watcher);

    /// As checkWebLinks() with FindingsKept::Missing. The first time, pages come while others are still being read.
    Result<bool> findMissing(const WebRules& rules, const WebPageSink& page,
                             const StillWanted& stillWanted = {});
    /// As checkWebPage().
    Result<WebPage> findFrom(const std::filesystem::path& page, const WebRules& rules,
                             const StillWanted& stillWanted = {});
    /// As findWebLinksTo().
    Result<bool> findTo(const std::filesystem::path& target, const WebRules& rules, const WebPageSink& page,
                        const StillWanted& stillWanted = {});
    /// As findWebUnlinked().
    Result<bool> findUnlinked(const WebRules& rules, std::string_view excludedFolders,
                              const UnlinkedItemsCallbacks& callbacks);

    /// The site before a move.
    struct KnownSite
    {
        std::shared_ptr<const SiteTree> tree;
        /// The pages and style sheets that move or may have a link to what moves, in the order of the tree's files.
        std::vector<SiteTree::Id> pages;
    };
    /// What a plan for these items (absolute paths) needs to know, from what is kept and without a look at all files. That
    /// takes a watcher that has told of every change; it is asked for the last ones. `isRenamed`: the one item has its new
    /// place already. Nothing where that does not do: without a watcher, where items have come or gone that are not in the
    /// tree yet, with symbolic links in the site, or when it was stopped.
    std::optional<KnownSite> knownSite(const std::vector<MovedItem>& items, bool isRenamed,
                                       const WebRules& rules, const StillWanted& stillWanted);

    /// Items of the site and how links to them can be recognised.
    struct Wanted
    {
        std::vector<std::string> items; // subpaths, perhaps of items that have just been renamed
        std::vector<std::string>
            names; // each link to one or below it writes one of these; an empty one if that can't be told
    };
    /// The pages with a link to one of the items or to something below one, as subpaths; a few more may be among them. It looks
    /// at every file of `tree`, the site's, just read. Nothing where it can't tell. Error: it was stopped (isStopped()).
    Result<std::optional<std::set<std::string>>> pagesLeadingTo(const Wanted& wanted, SiteTree tree,
                                                                const WebRules& rules,
                                                                const StillWanted& stillWanted);

    /// Writes the store, if that is worthwhile after what was read since the last time. To be called when a report has ended.
    void store();

    /// How many pages have been read so far.
    [[nodiscard]] std::size_t readCount() const;

private:
    enum class Watch : std::uint8_t { Complete, Silent, Unasked };

    Watch askWatcher();
    std::optional<KeptPages::Folders> takeChanges();
    void putChangesBack(const std::optional<KeptPages::Folders>& changes);
    void load();
    [[nodiscard]] std::set<std::string> pagesWriting(const std::vector<std::string>& names) const;
    Result<bool> update(Watch watch, const WebRules& rules, const StillWanted& stillWanted,
                        const KeptPages::PageSink& read = {});

    const std::filesystem::path m_site;
    mutable std::mutex m_mutex; // of the pages
    KeptPages m_pages;
    std::optional<LinkStore> m_store;
    bool m_isLoaded = false;
    std::optional<bool> m_isLocal; // not yet known
    std::size_t m_savedCount = 0;  // of readCount(), when it was stored
    std::mutex m_changesMutex;
    bool m_isWatched = false;
    std::optional<KeptPages::Folders> m_changes; // since the last update; none: anything
    Watcher m_watcher;
};

} // namespace luma
