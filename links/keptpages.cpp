// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/keptpages.h"

#include "base/filecalls.h"
#include "base/orderedwork.h"
#include "base/pathbelow.h"
#include "html/servercode.h"
#include "links/freshdigest.h"

#include <algorithm>
#include <numeric>

namespace luma {

namespace {

using Id = SiteTree::Id;

bool hasLinks(const SiteTree& tree)
{
    using Type = SiteTree::Type;
    for (Id id = 1; id < tree.size(); ++id) {
        const Type type = tree.type(id);
        if (type != Type::File && type != Type::Folder)
            return true;
    }
    return false;
}

const PagePlaces& placesOf(const KeptPage& page)
{
    static const PagePlaces unknown{true, {}};
    return page.digest ? page.digest->places : unknown;
}

} // namespace

bool KeptPage::leadsTo(Id file) const
{
    const auto found = std::lower_bound(targets.begin(), targets.end(), file * 2);
    return found != targets.end() && *found / 2 == file;
}

/// A page just read, and where its links lead.
struct KeptPages::Fresh
{
    FileStamp stamp;
    std::string unreadable;
    std::optional<FreshDigest> digest;
    std::vector<std::uint32_t> targets;
    std::vector<WebLink> missing;
    bool dependsOnDisk = false;
    bool hasOpenLinks = false;

    static Fresh read(const std::string& path, SitePageReader& reader, std::int64_t clockStep)
    {
        Fresh fresh;
        fresh.stamp = FileStamp::of(path, clockStep);
        if (const auto read = reader.read(path); !read)
            fresh.unreadable = read.error().text;
        else
            fresh.digest.emplace(reader, namePart(path));
        return fresh;
    }
};

/// Judges the links of one page after another; each thread has its own. Within a folder most addresses occur again and again,
/// so verdicts are remembered by the texts' numbers.
class KeptPages::Judging final
{
public:
    explicit Judging(BrowserSite& site) : m_site(&site), m_judge(site, site.rules().fragmentsAreChecked) {}

    // Judges the links of a page just read.
    void judge(Fresh& fresh, Id id)
    {
        const FreshDigest& digest = *fresh.digest;
        start(id, digest.base());
        for (const DigestLink& link : digest.links())
            add(fresh, link, digest.text(link.text), false);
        finish(fresh);
    }

    void judge(Fresh& fresh, Id id, const PageDigest& digest, const AddressTexts& texts)
    {
        start(id, digest.base);
        m_remembered.resize(texts.size());
        for (const DigestLink& link : digest.links.links())
            add(fresh, link, texts.text(link.text), !m_page.hasBase);
        finish(fresh);
    }

private:
    struct Verdict
    {
        Id folder = SiteTree::none; // of the page
        Id file = SiteTree::none;   // that the link leads to
        bool isOpen = false;
    };

    void start(Id id, std::string_view base)
    {
        m_id = id;
        m_page = m_site->addresses().page(m_site->tree().subpath(id), base);
    }

    void add(Fresh& fresh, const DigestLink& digest, std::string_view value, bool isRemembered)
    {
        const Id folder = m_site->tree().parent(m_id);
        const bool hasFragment = value.find('#') != std::string_view::npos;
        isRemembered = isRemembered && digest.place != LinkPlace::UseMap;
        if (isRemembered && m_remembered[digest.text].folder == folder) {
            const Verdict& verdict = m_remembered[digest.text];
            addTarget(fresh, verdict.file, hasFragment);
            fresh.hasOpenLinks = fresh.hasOpenLinks || verdict.isOpen;
            return;
        }
        WebLink link = m_judge.judged(value, digest.place, m_page, m_id);
        const bool hasAskedDisk = m_judge.takeHasAskedDisk();
        fresh.dependsOnDisk = fresh.dependsOnDisk || hasAskedDisk;
        const bool isOpen = link.state == LinkState::NotJudged && value.find_first_of("?#") > 0;
        fresh.hasOpenLinks = fresh.hasOpenLinks || isOpen;
        if (isRemembered && !hasAskedDisk && isPresentInFolder(link, value))
            m_remembered[digest.text] = {folder, link.file, isOpen};
        addTarget(fresh, link.file, hasFragment);
        if (link.state != LinkState::Missing)
            return;
        link.value = value;
        link.line = digest.line;
        link.column = digest.column;
        fresh.missing.push_back(std::move(link));
    }

    static void addTarget(Fresh& fresh, Id file, bool hasFragment)
    {
        if (file != SiteTree::none)
            fresh.targets.push_back(file * 2 + (hasFragment ? 1 : 0));
    }

    static void finish(Fresh& fresh)
    {
        std::sort(fresh.targets.begin(), fresh.targets.end());
        fresh.targets.erase(std::unique(fresh.targets.begin(), fresh.targets.end()), fresh.targets.end());
        fresh.targets.shrink_to_fit();
    }

    BrowserSite* m_site;
    LinkJudge m_judge;
    std::vector<Verdict> m_remembered; // by text, for links that are not missing
    SiteAddresses::Page m_page;
    Id m_id = SiteTree::none;
};

Result<bool> KeptPages::update(const WebRules& rules, const std::optional<Folders>& changedFolders,
                               const StillWanted& stillWanted, const PageSink& read)
{
    if (const auto stale = mayTrust(changedFolders) ? staleIn(*changedFolders) : std::nullopt)
        return bringUp(*stale, rules, stillWanted, read);
    auto tree = SiteTree::read(m_site, stillWanted);
    if (tree)
        return update(*std::move(tree), rules, stillWanted, read);
    m_judged.reset();
    return tree.error().isStopped() ? Result<bool>(false) : Result<bool>(tree.error());
}

bool KeptPages::update(SiteTree tree, const WebRules& rules, const StillWanted& stillWanted,
                       const PageSink& read)
{
    takeTree(std::move(tree));
    if (const auto stale = findStale(stillWanted))
        return bringUp(*stale, rules, stillWanted, read);
    m_judged.reset();
    return false;
}

bool KeptPages::readChanged(SiteTree tree, const StillWanted& stillWanted)
{
    takeTree(std::move(tree));
    const auto stale = findStale(stillWanted);
    if (stale && readAndJudge(*stale, stillWanted))
        return true;
    m_judged.reset();
    return false;
}

bool KeptPages::updateContents(const Folders& changedFolders, const SiteTree::Renamed& renamed,
                               const WebRules& rules, const StillWanted& stillWanted)
{
    if (!mayTrust(changedFolders) || m_judged->rules() != rules)
        return false;
    const auto stale = staleIn(changedFolders, renamed);
    return stale && bringUp(*stale, rules, stillWanted, {});
}

bool KeptPages::bringUp(const Numbers& stale, const WebRules& rules, const StillWanted& stillWanted,
                        const PageSink& read)
{
    const bool isNew = !m_judged || m_judged->rules() != rules;
    if (isNew)
        m_judged = std::make_unique<BrowserSite>(*m_tree, rules);
    bool isComplete = false;
    if (isNew && stale.size() == m_pages.size()) {
        isComplete = readAll(stillWanted, read);
        m_judged->anchors().clear();
        lendPlaces();
    } else if (isNew) {
        lendPlaces();
        Numbers withOtherPlaces;
        isComplete = readStale(stale, withOtherPlaces, stillWanted) && judge(all(), stillWanted);
    } else {
        isComplete = readAndJudge(stale, stillWanted);
    }
    if (!isComplete)
        m_judged.reset();
    return isComplete;
}

// What symbolic links lead to can change without a notice.
bool KeptPages::mayTrust(const std::optional<Folders>& changedFolders) const
{
    return changedFolders && m_judged && !hasLinks(*m_tree);
}

// Nothing where items have come or gone.
std::optional<KeptPages::Numbers> KeptPages::staleIn(const Folders& folders,
                                                     const SiteTree::Renamed& renamed) const
{
    constexpr std::size_t mostFolders = 64;
    if (folders.size() > mostFolders)
        return std::nullopt;
    std::vector<bool> mayHaveChanged(m_tree->size());
    for (const std::string& path : folders) {
        const auto below = pathBelow(path, m_site.native());
        const Id folder = below ? m_tree->find(*below) : SiteTree::none;
        if (folder == SiteTree::none || !m_tree->isAsOnDisk(folder, renamed))
            return std::nullopt;
        mayHaveChanged[folder] = true;
    }
    Numbers stale;
    for (std::uint32_t number = 0; number < m_pages.size(); ++number) {
        const KeptPage& page = m_pages[number];
        // A file can be changed by a name of its that is elsewhere.
        const bool isLookedAt = mayHaveChanged[m_tree->parent(page.id)] || page.stamp.isShared;
        const bool isStale =
            !page.unreadable.empty() ||
            (isLookedAt &&
             (!page.stamp.isKnown() || page.stamp != FileStamp::of(m_tree->path(page.id), m_clockStep)));
        if (isStale && page.id != renamed.id)
            stale.push_back(number);
    }
    return stale;
}

// Looks at every page. Nothing when it was stopped.
std::optional<KeptPages::Numbers> KeptPages::findStale(const StillWanted& stillWanted) const
{
    constexpr std::size_t batch = 256;
    using Work = OrderedWork<Numbers>;
    Numbers stale;
    const auto lookAt = [&](std::size_t index, std::size_t) {
        Numbers found;
        const std::size_t end = std::min((index + 1) * batch, m_pages.size());
        for (std::size_t number = index * batch; number < end; ++number) {
            const KeptPage& page = m_pages[number];
            if (!page.digest || !page.stamp.isKnown() ||
                page.stamp != FileStamp::of(m_tree->path(page.id), m_clockStep))
                found.push_back(static_cast<std::uint32_t>(number));
        }
        return found;
    };
    const bool isComplete = Work((m_pages.size() + batch - 1) / batch, stillWanted)
                                .run(lookAt, [&stale](std::size_t, const Numbers& found) {
                                    stale.insert(stale.end(), found.begin(), found.end());
                                });
    return isComplete ? std::optional(std::move(stale)) : std::nullopt;
}

// Pages that stay keep what they say; both lists are in the order of the subpaths.
void KeptPages::takeTree(SiteTree tree)
{
    if (m_tree && m_tree->hasSameItems(tree))
        return;
    m_judged.reset();
    std::vector<StoredPage> old = takePages();
    m_tree = std::make_shared<const SiteTree>(std::move(tree));
    auto next = old.begin();
    for (const Id id : m_tree->webPages()) {
        const std::string subpath = m_tree->subpath(id);
        while (next != old.end() && next->subpath < subpath)
            ++next;
        KeptPage& page = m_pages.emplace_back();
        page.id = id;
        if (next == old.end() || next->subpath != subpath)
            continue;
        page.stamp = next->stamp;
        page.digest = std::move(next->digest);
    }
}

std::vector<StoredPage> KeptPages::takePages()
{
    std::vector<StoredPage> taken = std::exchange(m_stored, {});
    for (KeptPage& page : std::exchange(m_pages, {})) {
        if (page.digest)
            taken.push_back({m_tree->subpath(page.id), page.stamp, *std::move(page.digest)});
    }
    return taken;
}

void KeptPages::begin(LinkStore::Content content)
{
    m_stored = std::move(content.pages);
    m_texts = std::move(content.texts);
}

Result<void> KeptPages::save(const LinkStore& store) const
{
    return store.save(m_texts, [this](const LinkStore::PageSink& sink) {
        for (const KeptPage& page : m_pages) {
            if (page.digest && page.stamp.isKnown())
                sink(m_tree->subpath(page.id), page.stamp, *page.digest);
        }
    });
}

// Reads and judges every page at once, so that the first report has something to show early.
bool KeptPages::readAll(const StillWanted& stillWanted, const PageSink& read)
{
    using Work = OrderedWork<Fresh>;
    std::vector<std::unique_ptr<Judging>> workers;
    for (std::size_t worker = 0; worker < Work::workerCount(); ++worker)
        workers.push_back(std::make_unique<Judging>(*m_judged));
    std::vector<SitePageReader> readers(Work::workerCount());
    for (KeptPage& page : m_pages)
        page.digest.reset();
    m_texts = {};
    return Work(m_pages.size(), stillWanted)
        .run(
            [&](std::size_t number, std::size_t worker) {
                const Id id = m_pages[number].id;
                Fresh fresh = Fresh::read(m_tree->path(id), readers[worker], m_clockStep);
                if (fresh.digest)
                    workers[worker]->judge(fresh, id);
                return fresh;
            },
            [&](std::size_t number, Fresh&& fresh) {
                KeptPage& page = m_pages[number];
                page.targets = std::move(fresh.targets);
                page.missing = std::move(fresh.missing);
                page.dependsOnDisk = fresh.dependsOnDisk;
                page.hasOpenLinks = fresh.hasOpenLinks;
                keep(page, std::move(fresh));
                m_judged->anchors().lend(page.id, placesOf(page));
                if (read)
                    read(page);
            });
}

bool KeptPages::readStale(const Numbers& stale, Numbers& withOtherPlaces, const StillWanted& stillWanted)
{
    using Work = OrderedWork<Fresh>;
    std::vector<SitePageReader> readers(Work::workerCount());
    return Work(stale.size(), stillWanted)
        .run(
            [&](std::size_t index, std::size_t worker) {
                const std::string path = m_tree->path(m_pages[stale[index]].id);
                return Fresh::read(path, readers[worker], m_clockStep);
            },
            [&](std::size_t index, Fresh&& fresh) {
                KeptPage& page = m_pages[stale[index]];
                const bool isSame =
                    page.digest && fresh.digest && page.digest->places == fresh.digest->places();
                if (!isSame)
                    withOtherPlaces.push_back(stale[index]);
                keep(page, std::move(fresh));
                if (m_judged)
                    m_judged->anchors().replace(page.id, placesOf(page));
            });
}

// Judges only what the pages that are read again concern, if the others are judged.
bool KeptPages::readAndJudge(const Numbers& stale, const StillWanted& stillWanted)
{
    Numbers withOtherPlaces;
    return readStale(stale, withOtherPlaces, stillWanted) &&
           (!m_judged || judge(concerned(stale, withOtherPlaces), stillWanted));
}

void KeptPages::keep(KeptPage& page, Fresh&& fresh)
{
    ++m_readCount;
    page.stamp = fresh.stamp;
    page.unreadable = std::move(fresh.unreadable);
    page.digest.reset();
    if (fresh.digest)
        page.digest = std::move(*fresh.digest).packed(m_texts);
}

bool KeptPages::judge(const Numbers& numbers, const StillWanted& stillWanted)
{
    using Work = OrderedWork<std::vector<Fresh>>;
    constexpr std::size_t batch = 64;
    std::vector<std::unique_ptr<Judging>> workers;
    for (std::size_t worker = 0; worker < Work::workerCount(); ++worker)
        workers.push_back(std::make_unique<Judging>(*m_judged));
    const auto end = [&](std::size_t index) { return std::min((index + 1) * batch, numbers.size()); };
    return Work((numbers.size() + batch - 1) / batch, stillWanted)
        .run(
            [&](std::size_t index, std::size_t worker) {
                std::vector<Fresh> judged;
                for (std::size_t i = index * batch; i < end(index); ++i) {
                    const KeptPage& page = m_pages[numbers[i]];
                    Fresh& fresh = judged.emplace_back();
                    if (page.digest)
                        workers[worker]->judge(fresh, page.id, *page.digest, m_texts);
                }
                return judged;
            },
            [&](std::size_t index, std::vector<Fresh>&& judged) {
                for (std::size_t i = index * batch; i < end(index); ++i) {
                    KeptPage& page = m_pages[numbers[i]];
                    Fresh& fresh = judged[i - index * batch];
                    page.targets = std::move(fresh.targets);
                    page.missing = std::move(fresh.missing);
                    page.dependsOnDisk = fresh.dependsOnDisk;
                    page.hasOpenLinks = fresh.hasOpenLinks;
                }
            });
}

// The pages to judge again: those read, those with links to places in pages whose places are others now, and those whose
// links the tree can't tell about.
KeptPages::Numbers KeptPages::concerned(const Numbers& stale, const Numbers& withOtherPlaces) const
{
    std::vector<bool> isOther(m_tree->size() * 2); // by target
    for (const std::uint32_t number : withOtherPlaces)
        isOther[m_pages[number].id * 2 + 1] = true;
    Numbers numbers;
    for (std::uint32_t number = 0; number < m_pages.size(); ++number) {
        const KeptPage& page = m_pages[number];
        const bool isConcerned =
            page.dependsOnDisk || (!withOtherPlaces.empty() &&
                                   std::any_of(page.targets.begin(), page.targets.end(),
                                               [&isOther](std::uint32_t target) { return isOther[target]; }));
        if (isConcerned || std::binary_search(stale.begin(), stale.end(), number))
            numbers.push_back(number);
    }
    return numbers;
}

KeptPages::Numbers KeptPages::all() const
{
    Numbers numbers(m_pages.size());
    std::iota(numbers.begin(), numbers.end(), 0U);
    return numbers;
}

void KeptPages::lendPlaces()
{
    for (const KeptPage& page : m_pages)
        m_judged->anchors().lend(page.id, placesOf(page));
}

const KeptPage* KeptPages::find(Id id) const
{
    const auto found = std::lower_bound(m_pages.begin(), m_pages.end(), id,
                                        [](const KeptPage& page, Id wanted) { return page.id < wanted; });
    return found != m_pages.end() && found->id == id ? &*found : nullptr;
}

WebPage KeptPages::allLinks(const KeptPage& page, LinkJudge& judge) const
{
    WebPage found{m_tree->subpath(page.id), page.unreadable, {}};
    if (!page.digest)
        return found;
    const SiteAddresses::Page from = m_judged->addresses().page(found.path, page.digest->base);
    for (const DigestLink& digest : page.digest->links.links()) {
        const std::string_view value = m_texts.text(digest.text);
        WebLink& link = found.links.emplace_back(judge.judged(value, digest.place, from, page.id));
        link.value = withEllipses(value);
        link.line = digest.line;
        link.column = digest.column;
    }
    return found;
}

} // namespace luma
