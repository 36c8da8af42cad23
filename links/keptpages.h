// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/stillwanted.h"
#include "links/browsersite.h"
#include "links/filestamp.h"
#include "links/linkjudge.h"
#include "links/linkstore.h"
#include "links/pagedigest.h"
#include "links/weblink.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace luma {

/// A page or style sheet of a site: what it says, and where that leads.
struct KeptPage
{
    SiteTree::Id id = SiteTree::none;
    FileStamp stamp;        // of the file that was read
    std::string unreadable; // why there is no digest
    std::optional<PageDigest> digest;
    /// The files that its links lead to, each once, ascending: the number twice, and 1 more where a link names a place in it.
    std::vector<std::uint32_t> targets;
    std::vector<WebLink> missing;
    bool dependsOnDisk =
        false; // its links lead through symbolic links to folders, of which the tree knows nothing
    bool hasOpenLinks = false; // to a known path, but with server code in the query or fragment

    [[nodiscard]] bool leadsTo(SiteTree::Id file) const;
};

/// The pages of one site, each read once and judged against the tree of the site. update() brings them up to date; it reads
/// only pages whose stamp has changed, and judges again what that concerns. One thread at a time; update() uses all cores.
class KeptPages final
{
public:
    using Id = SiteTree::Id;
    using Folders = std::set<std::string>;
    using PageSink = std::function<void(const KeptPage& page)>;

    /// `clockStep` as for FileStamp::of().
    KeptPages(std::filesystem::path site, std::int64_t clockStep)
        : m_site(std::move(site)), m_clockStep(clockStep)
    {}

    /// Nothing but the items in `changedFolders` can have changed since the last time; without these, every page is looked at.
    /// Where all pages are read, `read` is called with each, in order. False when it was stopped; what was read is kept.
    /// Error: the site's folder can't be read.
    Result<bool> update(const WebRules& rules, const std::optional<Folders>& changedFolders,
                        const StillWanted& stillWanted, const PageSink& read = {});
    /// Looks at every page of `tree`, the site's, just read.
    bool update(SiteTree tree, const WebRules& rules, const StillWanted& stillWanted,
                const PageSink& read = {});
    /// Reads what has changed in the pages of `tree`. Where items have come or gone, links are judged no sooner than by the next
    /// update: of pages() only what they say is valid.
    bool readChanged(SiteTree tree, const StillWanted& stillWanted);
    /// Brings up to date what is kept if that takes no look at all files: only these folders can have changed, and in them
    /// nothing but the contents of files, and `renamed`, which keeps its old place in tree(). False where it takes one, or when
    /// it was stopped.
    bool updateContents(const Folders& changedFolders, const SiteTree::Renamed& renamed,
                        const WebRules& rules, const StillWanted& stillWanted);

    /// Whether nothing is kept or stored.
    [[nodiscard]] bool isEmpty() const { return m_pages.empty() && m_stored.empty(); }

    /// Begins with what was stored; before the first update.
    void begin(LinkStore::Content content);
    /// Stores every page that can be recognised again. Error: the file can't be written.
    Result<void> save(const LinkStore& store) const;

    /// In the order of the tree's files; valid after an update.
    [[nodiscard]] const std::vector<KeptPage>& pages() const { return m_pages; }
    [[nodiscard]] const KeptPage* find(Id id) const;
    [[nodiscard]] const SiteTree& tree() const { return *m_tree; }
    [[nodiscard]] const std::shared_ptr<const SiteTree>& sharedTree() const { return m_tree; }
    [[nodiscard]] BrowserSite& judgedSite() { return *m_judged; }
    [[nodiscard]] const AddressTexts& texts() const { return m_texts; }

    /// All links of a page, judged anew.
    [[nodiscard]] WebPage allLinks(const KeptPage& page, LinkJudge& judge) const;

    /// How many files have been read so far.
    [[nodiscard]] std::size_t readCount() const { return m_readCount; }

private:
    struct Fresh;
    class Judging;
    using Numbers = std::vector<std::uint32_t>; // of pages, ascending

    [[nodiscard]] bool mayTrust(const std::optional<Folders>& changedFolders) const;
    [[nodiscard]] std::optional<Numbers> staleIn(const Folders& folders,
                                                 const SiteTree::Renamed& renamed = {}) const;
    [[nodiscard]] std::optional<Numbers> findStale(const StillWanted& stillWanted) const;
    bool bringUp(const Numbers& stale, const WebRules& rules, const StillWanted& stillWanted,
                 const PageSink& read);
    void takeTree(SiteTree tree);
    [[nodiscard]] std::vector<StoredPage> takePages();
    bool readAll(const StillWanted& stillWanted, const PageSink& read);
    bool readStale(const Numbers& stale, Numbers& withOtherPlaces, const StillWanted& stillWanted);
    bool readAndJudge(const Numbers& stale, const StillWanted& stillWanted);
    bool judge(const Numbers& pages, const StillWanted& stillWanted);
    [[nodiscard]] Numbers concerned(const Numbers& stale, const Numbers& withOtherPlaces) const;
    [[nodiscard]] Numbers all() const;
    void keep(KeptPage& page, Fresh&& fresh);
    void lendPlaces();

    const std::filesystem::path m_site;
    const std::int64_t m_clockStep;
    std::shared_ptr<const SiteTree> m_tree;
    std::unique_ptr<BrowserSite> m_judged; // none while judgements are missing
    std::vector<KeptPage> m_pages;
    std::vector<StoredPage> m_stored; // before the first update
    AddressTexts m_texts;
    std::size_t m_readCount = 0;
};

} // namespace luma
