// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/sitelinks.h"

#include "base/filecalls.h"
#include "base/orderedwork.h"
#include "base/pathbelow.h"
#include "base/usertext.h"
#include "links/linkjudge.h"
#include "links/mentionednames.h"
#include "links/namesearch.h"
#include "links/percentencoding.h"
#include "links/targetreader.h"
#include "links/unlinkedfiles.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <utility>
#include <vector>

namespace luma {

namespace fs = std::filesystem;

namespace {

using Id = SiteTree::Id;

// The files that a link to `target` may get: an index page in the place of a folder.
std::vector<Id> filesFor(Id target, const SiteTree& tree, const WebRules& rules)
{
    std::vector<Id> files = {target};
    if (tree.type(target) == SiteTree::Type::Folder) {
        for (const std::string& name : rules.indexNames)
            files.push_back(tree.child(target, name));
    }
    return files;
}

// Whether an address, as a browser takes it from a page, writes one of the names.
bool writesName(std::string_view address, const NameSearch& names)
{
    // Browsers drop line ends and tabs, and decode once.
    std::string plain;
    if (address.find_first_of("\t\n\r") != std::string_view::npos) {
        plain = address;
        std::erase_if(plain, [](char c) { return c == '\t' || c == '\n' || c == '\r'; });
        address = plain;
    }
    return names.holdsAny(address) ||
           (address.find('%') != std::string_view::npos && names.holdsAny(percentDecoded(address)));
}

/// Tells whether a page may link to one of some items, or to something below one.
class ItemLinks final
{
public:
    explicit ItemLinks(const SiteTree& tree) : m_tree(tree), m_isMeant(tree.size()) {}

    /// False where links to the item can't be told from the tree, which does not have it any more.
    bool add(const std::string& item, const WebRules& rules)
    {
        m_items.push_back(item);
        const Id id = m_tree.find(item);
        if (id == SiteTree::none) {
            // A link to its folder leads to another index page now.
            const std::string_view name = namePart(item);
            const std::vector<std::string>& names = rules.indexNames;
            return !rules.extensionsMayBeLeftOut &&
                   std::find(names.begin(), names.end(), name) == names.end();
        }
        m_isMeant[id] = true;
        // What is in a folder follows it in the tree.
        for (Id below = id + 1; below < m_tree.size() && m_isMeant[m_tree.parent(below)]; ++below)
            m_isMeant[below] = true;
        return true;
    }

    [[nodiscard]] bool isMoved(Id id) const { return m_isMeant[id]; }

    [[nodiscard]] bool mayBeIn(const KeptPage& page) const
    {
        // A base is no link, but leads somewhere, too.
        if (!page.digest || !page.digest->base.empty() || page.dependsOnDisk || page.hasOpenLinks)
            return true;
        const auto isMeant = [this](std::uint32_t target) { return bool(m_isMeant[target / 2]); };
        return std::any_of(page.targets.begin(), page.targets.end(), isMeant) ||
               std::any_of(page.missing.begin(), page.missing.end(),
                           [this](const WebLink& link) { return isBelowItem(link.target); });
    }

private:
    [[nodiscard]] bool isBelowItem(const std::string& target) const
    {
        return std::any_of(m_items.begin(), m_items.end(),
                           [&target](const std::string& item) { return isAtOrBelow(target, item); });
    }

    const SiteTree& m_tree;
    std::vector<bool> m_isMeant; // by Id
    std::vector<std::string> m_items;
};

} // namespace

SiteLinks::SiteLinks(const fs::path& site, Keeping keeping, std::int64_t clockStep)
    : m_site(withoutEndSlashes(site)), m_pages(m_site, clockStep)
{
    if (keeping == Keeping::Stored)
        m_store.emplace(m_site);
}

void SiteLinks::noteChanges(const std::optional<KeptPages::Folders>& folders)
{
    const std::scoped_lock lock(m_changesMutex);
    if (!m_isWatched || !folders)
        m_changes.reset();
    else if (m_changes)
        m_changes->insert(folders->begin(), folders->end());
    m_isWatched = true;
}

void SiteLinks::endWatch()
{
    const std::scoped_lock lock(m_changesMutex);
    m_isWatched = false;
    m_watcher = {};
}

void SiteLinks::setWatcher(Watcher watcher)
{
    const std::scoped_lock lock(m_changesMutex);
    m_watcher = std::move(watcher);
}

// A watcher that is slow to answer counts as silent.
SiteLinks::Watch SiteLinks::askWatcher()
{
    constexpr std::chrono::milliseconds patience(500);
    struct Answer
    {
        std::mutex mutex;
        std::condition_variable isThere;
        std::optional<bool> isAll;
    };
    Watcher watcher;
    {
        const std::scoped_lock lock(m_changesMutex);
        watcher = m_watcher;
    }
    if (!watcher)
        return Watch::Unasked;
    const auto answer = std::make_shared<Answer>();
    watcher([answer](bool isAll) {
        const std::scoped_lock lock(answer->mutex);
        answer->isAll = isAll;
        answer->isThere.notify_all();
    });
    std::unique_lock lock(answer->mutex);
    answer->isThere.wait_for(lock, patience, [&answer] { return answer->isAll.has_value(); });
    return answer->isAll.value_or(false) ? Watch::Complete : Watch::Silent;
}

std::optional<KeptPages::Folders> SiteLinks::takeChanges()
{
    if (!m_isLocal)
        m_isLocal = !isOnServer(m_site);
    const std::scoped_lock lock(m_changesMutex);
    if (!m_isWatched || !*m_isLocal)
        return std::nullopt;
    return std::exchange(m_changes, KeptPages::Folders());
}

void SiteLinks::putChangesBack(const std::optional<KeptPages::Folders>& changes)
{
    const std::scoped_lock lock(m_changesMutex);
    if (changes && m_changes)
        m_changes->insert(changes->begin(), changes->end());
    else
        m_changes.reset();
}

std::size_t SiteLinks::readCount() const
{
    const std::scoped_lock lock(m_mutex);
    return m_pages.readCount();
}

Result<bool> SiteLinks::update(Watch watch, const WebRules& rules, const StillWanted& stillWanted,
                               const KeptPages::PageSink& read)
{
    auto changes = takeChanges();
    if (watch == Watch::Silent)
        changes.reset();
    load();
    return m_pages.update(rules, changes, stillWanted, read);
}

std::optional<SiteLinks::KnownSite> SiteLinks::knownSite(const std::vector<MovedItem>& items, bool isRenamed,
                                                         const WebRules& rules,
                                                         const StillWanted& stillWanted)
{
    if ((isRenamed && items.size() != 1) || askWatcher() != Watch::Complete)
        return std::nullopt;
    const std::unique_lock lock(m_mutex, std::try_to_lock);
    if (!lock || m_pages.pages().empty())
        return std::nullopt;
    const auto subpathOf = [this](const fs::path& path) {
        return std::string(pathBelow(path.native(), m_site.native()).value_or(""));
    };
    SiteTree::Renamed renamed;
    if (isRenamed) {
        const std::string place = subpathOf(items.front().to);
        renamed = {m_pages.tree().find(subpathOf(items.front().from)), m_pages.tree().find(folderPart(place)),
                   std::string(namePart(place))};
        if (renamed.id == SiteTree::none || renamed.newFolder == SiteTree::none)
            return std::nullopt;
    }
    const auto changes = takeChanges();
    const bool isKnown = changes && m_pages.updateContents(*changes, renamed, rules, stillWanted);
    // The item has its old place in the tree.
    if (!isKnown || isRenamed)
        putChangesBack(changes);
    if (!isKnown)
        return std::nullopt;
    ItemLinks links(m_pages.tree());
    for (const MovedItem& item : items) {
        const std::string subpath = subpathOf(item.from);
        if (!subpath.empty() && !links.add(subpath, rules))
            return std::nullopt;
    }
    KnownSite known{m_pages.sharedTree(), {}};
    for (const KeptPage& page : m_pages.pages()) {
        if (links.isMoved(page.id) || links.mayBeIn(page))
            known.pages.push_back(page.id);
    }
    return known;
}

void SiteLinks::load()
{
    if (!m_store || std::exchange(m_isLoaded, true))
        return;
    if (auto content = m_store->load())
        m_pages.begin(*std::move(content));
}

std::set<std::string> SiteLinks::pagesWriting(const std::vector<std::string>& names) const
{
    const NameSearch search(names);
    const AddressTexts& texts = m_pages.texts();
    std::vector<bool> isWanted(texts.size());
    for (AddressTexts::Number number = 0; number < texts.size(); ++number)
        isWanted[number] = writesName(texts.text(number), search);
    std::set<std::string> found;
    for (const KeptPage& page : m_pages.pages()) {
        // A base is no link, but leads somewhere, too.
        if (!page.digest || !page.digest->base.empty() || page.digest->links.hasAnyOf(isWanted))
            found.insert(m_pages.tree().subpath(page.id));
    }
    return found;
}

Result<std::optional<std::set<std::string>>> SiteLinks::pagesLeadingTo(const Wanted& wanted, SiteTree tree,
                                                                       const WebRules& rules,
                                                                       const StillWanted& stillWanted)
{
    // A move does not wait until all pages have been read for what is kept.
    const std::unique_lock lock(m_mutex, std::try_to_lock);
    if (lock)
        load();
    if (!lock || m_pages.isEmpty())
        return std::optional<std::set<std::string>>();
    const bool haveNames =
        std::none_of(wanted.names.begin(), wanted.names.end(), [](const auto& name) { return name.empty(); });
    if (haveNames) {
        if (!m_pages.readChanged(std::move(tree), stillWanted))
            return stoppedError(m_site);
        return std::optional(pagesWriting(wanted.names));
    }
    if (!m_pages.update(std::move(tree), rules, stillWanted))
        return stoppedError(m_site);
    ItemLinks links(m_pages.tree());
    for (const std::string& item : wanted.items) {
        if (!links.add(item, rules))
            return std::optional<std::set<std::string>>();
    }
    std::set<std::string> found;
    for (const KeptPage& page : m_pages.pages()) {
        if (links.mayBeIn(page))
            found.insert(m_pages.tree().subpath(page.id));
    }
    return std::optional(std::move(found));
}

void SiteLinks::store()
{
    const std::scoped_lock lock(m_mutex);
    // A few pages are read again sooner than all are written.
    constexpr std::size_t leastPart = 50;
    const std::size_t unsaved = m_pages.readCount() - m_savedCount;
    if (!m_store || unsaved == 0 || unsaved * leastPart < m_pages.pages().size())
        return;
    m_savedCount = m_pages.readCount();
    // Without the file all pages are read again.
    (void)m_pages.save(*m_store);
}

Result<bool> SiteLinks::findMissing(const WebRules& rules, const WebPageSink& sink,
                                    const StillWanted& stillWanted)
{
    const Watch watch = askWatcher();
    const std::scoped_lock lock(m_mutex);
    const auto deliver = [&](const KeptPage& page) {
        if (!page.missing.empty() || !page.unreadable.empty())
            sink({m_pages.tree().subpath(page.id), page.unreadable, page.missing});
    };
    bool isDelivered = false;
    auto done = update(watch, rules, stillWanted, [&](const KeptPage& page) {
        isDelivered = true;
        deliver(page);
    });
    if (!done || !*done)
        return done;
    for (const KeptPage& page : m_pages.pages()) {
        if (isDelivered)
            break;
        if (!isWanted(stillWanted))
            return false;
        deliver(page);
    }
    tellUnreadableFolders(m_pages.tree(), sink);
    return true;
}

Result<WebPage> SiteLinks::findFrom(const fs::path& page, const WebRules& rules,
                                    const StillWanted& stillWanted)
{
    const Watch watch = askWatcher();
    // One page alone is read sooner than all.
    const std::unique_lock lock(m_mutex, std::try_to_lock);
    if (lock)
        load();
    if (!lock || m_pages.isEmpty())
        return checkWebPage(m_site, page, rules);
    const auto done = update(watch, rules, stillWanted);
    if (!done)
        return done.error();
    if (!*done)
        return stoppedError(m_site);
    const fs::path subpath = fs::absolute(page).lexically_normal().lexically_relative(m_site);
    const KeptPage* const kept = m_pages.find(m_pages.judgedSite().paths().find(subpath.native()));
    if (!kept || !kept->digest)
        return checkWebPage(m_site, page, rules);
    LinkJudge judge(m_pages.judgedSite(), rules.fragmentsAreChecked);
    return m_pages.allLinks(*kept, judge);
}

Result<bool> SiteLinks::findTo(const fs::path& target, const WebRules& rules, const WebPageSink& sink,
                               const StillWanted& stillWanted)
{
    const Watch watch = askWatcher();
    const std::scoped_lock lock(m_mutex);
    if (auto done = update(watch, rules, stillWanted); !done || !*done)
        return done;
    const SiteTree& tree = m_pages.tree();
    const std::string subpath = target.lexically_relative(m_site).native();
    const Id id = m_pages.judgedSite().paths().find(subpath == "." ? std::string() : subpath);
    if (id == SiteTree::none)
        return Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "%1: Not in the site"), {target.native()})};
    const std::vector<Id> wanted = filesFor(id, tree, rules);
    const auto mayLead = [&wanted](const KeptPage& page) {
        return std::any_of(wanted.begin(), wanted.end(), [&page](Id file) { return page.leadsTo(file); });
    };
    const std::uint64_t wantedName = mentionedName(tree.name(id));
    const auto mentions = [wantedName](const KeptPage& page) {
        return page.digest &&
               std::binary_search(page.digest->mentioned.begin(), page.digest->mentioned.end(), wantedName);
    };
    std::vector<Id> files;
    for (const Id file : tree.files()) {
        const KeptPage* const page = m_pages.find(file);
        if ((page && (mayLead(*page) || mentions(*page))) || mentionsFiles(tree.name(file)))
            files.push_back(file);
    }
    const NameSearch name({target.filename().native()});
    using Work = OrderedWork<std::optional<WebPage>>;
    std::deque<LinkJudge> judges;
    std::deque<TargetReader> readers;
    for (std::size_t worker = 0; worker < Work::workerCount(); ++worker) {
        LinkJudge& judge = judges.emplace_back(m_pages.judgedSite(), false);
        readers.emplace_back(
            tree, id, name, [this, &judge](Id page) { return m_pages.allLinks(*m_pages.find(page), judge); },
            [this](Id page) {
                const std::optional<PageDigest>& digest = m_pages.find(page)->digest;
                return digest ? digest->mentioned : std::vector<std::uint64_t>();
            });
    }
    return Work(files.size(), stillWanted)
        .run([&](std::size_t index, std::size_t worker) { return readers[worker].read(files[index]); },
             [&](std::size_t, const std::optional<WebPage>& found) {
                 if (found)
                     sink(*found);
             });
}

Result<bool> SiteLinks::findUnlinked(const WebRules& rules, std::string_view excludedFolders,
                                     const UnlinkedItemsCallbacks& callbacks)
{
    const Watch watch = askWatcher();
    const std::scoped_lock lock(m_mutex);
    auto done = update(watch, rules, callbacks.stillWanted, [&](const KeptPage& page) {
        if (callbacks.examining)
            callbacks.examining(m_pages.tree().subpath(page.id));
    });
    if (!done || !*done)
        return done;
    UnlinkedFiles unlinked(m_pages.tree(), m_pages.judgedSite().paths(), rules, excludedFolders, callbacks);
    for (const KeptPage& page : m_pages.pages()) {
        if (page.digest)
            unlinked.addMentioned(page.digest->mentioned);
        for (const std::uint32_t target : page.targets) {
            // A page is not in use because it refers to itself.
            if (target / 2 != page.id)
                unlinked.setLinked(target / 2);
        }
    }
    return unlinked.finish();
}

} // namespace luma
