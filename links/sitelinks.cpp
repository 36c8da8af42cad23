// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/sitelinks.h"

#include "base/orderedwork.h"
#include "links/linkjudge.h"
#include "links/targetreader.h"
#include "links/unlinkedfiles.h"

#include <algorithm>
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

} // namespace

SiteLinks::SiteLinks(const fs::path& site, Keeping keeping, std::int64_t clockStep)
    : m_site(withoutEndSlashes(site)), m_pages(m_site, clockStep)
{
    if (keeping == Keeping::Stored)
        m_store.emplace(m_site);
}

void SiteLinks::setWatched(bool isWatched)
{
    const std::scoped_lock lock(m_changesMutex);
    m_isWatched = isWatched;
    m_changes.reset();
}

void SiteLinks::noteChangeIn(const fs::path& folder)
{
    const std::scoped_lock lock(m_changesMutex);
    if (m_changes)
        m_changes->insert(folder.native());
}

void SiteLinks::noteChanges()
{
    const std::scoped_lock lock(m_changesMutex);
    m_changes.reset();
}

std::size_t SiteLinks::readCount() const
{
    const std::scoped_lock lock(m_mutex);
    return m_pages.readCount();
}

Result<bool> SiteLinks::update(const WebRules& rules, const StillWanted& stillWanted,
                               const KeptPages::PageSink& read)
{
    std::optional<KeptPages::Folders> changes;
    {
        const std::scoped_lock lock(m_changesMutex);
        if (m_isWatched)
            changes = std::exchange(m_changes, KeptPages::Folders());
    }
    if (m_store && !std::exchange(m_isLoaded, true)) {
        if (auto content = m_store->load())
            m_pages.begin(*std::move(content));
    }
    return m_pages.update(rules, changes, stillWanted, read);
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
    const std::scoped_lock lock(m_mutex);
    const auto deliver = [&](const KeptPage& page) {
        if (!page.missing.empty() || !page.unreadable.empty())
            sink({m_pages.tree().subpath(page.id), page.unreadable, page.missing});
    };
    bool isDelivered = false;
    auto done = update(rules, stillWanted, [&](const KeptPage& page) {
        isDelivered = true;
        deliver(page);
    });
    if (!done || !*done || isDelivered)
        return done;
    for (const KeptPage& page : m_pages.pages()) {
        if (!isWanted(stillWanted))
            return false;
        deliver(page);
    }
    return true;
}

Result<WebPage> SiteLinks::findFrom(const fs::path& page, const WebRules& rules,
                                    const StillWanted& stillWanted)
{
    const std::scoped_lock lock(m_mutex);
    const auto done = update(rules, stillWanted);
    if (!done)
        return done.error();
    if (!*done)
        return Error{{}, std::errc::operation_canceled};
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
    const std::scoped_lock lock(m_mutex);
    if (const auto done = update(rules, stillWanted); !done || !*done)
        return done;
    const SiteTree& tree = m_pages.tree();
    const std::string subpath = target.lexically_relative(m_site).native();
    const Id id = m_pages.judgedSite().paths().find(subpath == "." ? std::string() : subpath);
    if (id == SiteTree::none)
        return Error{target.native() + ": Not in the site"};
    const std::vector<Id> wanted = filesFor(id, tree, rules);
    const auto mayLead = [&wanted](const KeptPage& page) {
        return std::any_of(wanted.begin(), wanted.end(), [&page](Id file) { return page.leadsTo(file); });
    };
    std::vector<Id> files;
    for (const Id file : tree.files()) {
        const KeptPage* const page = m_pages.find(file);
        if ((page && mayLead(*page)) || mentionsFiles(tree.name(file)))
            files.push_back(file);
    }
    const NameSearch name({target.filename().native()});
    using Work = OrderedWork<std::optional<WebPage>>;
    std::deque<LinkJudge> judges;
    std::deque<TargetReader> readers;
    for (std::size_t worker = 0; worker < Work::workerCount(); ++worker) {
        LinkJudge& judge = judges.emplace_back(m_pages.judgedSite(), false);
        readers.emplace_back(
            tree, id, name, [this, &judge](Id page) { return m_pages.allLinks(*m_pages.find(page), judge); });
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
    const std::scoped_lock lock(m_mutex);
    const auto done = update(rules, callbacks.stillWanted, [&](const KeptPage& page) {
        if (callbacks.examining)
            callbacks.examining(m_pages.tree().subpath(page.id));
    });
    if (!done || !*done)
        return done;
    UnlinkedFiles unlinked(m_pages.tree(), m_pages.judgedSite().paths(), rules, excludedFolders, callbacks);
    for (const KeptPage& page : m_pages.pages()) {
        for (const std::uint32_t target : page.targets) {
            // A page is not in use because it refers to itself.
            if (target / 2 != page.id)
                unlinked.setLinked(target / 2);
        }
    }
    return unlinked.finish();
}

} // namespace luma
