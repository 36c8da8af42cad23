// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/linkplan.h"

#include "base/filecalls.h"
#include "base/files.h"
#include "base/orderedwork.h"
#include "base/pathbelow.h"
#include "base/usertext.h"
#include "links/browserreports.h"
#include "links/hardlinkplan.h"
#include "links/movedlinks.h"
#include "links/namespellings.h"
#include "links/pageplanner.h"
#include "links/sitelinks.h"
#include "links/symlinkplan.h"

#include <QCryptographicHash>

#include <unistd.h>

#include <algorithm>
#include <memory>
#include <set>
#include <system_error>

namespace luma {

namespace fs = std::filesystem;

namespace {

using Id = SiteTree::Id;

bool isPageOrSheet(std::string_view name)
{
    return webFileKind(name) != WebFileKind::Other;
}

// `path` spelled with `root` in front where it is below it in truth: by way of symbolic links, dots or several slashes.
fs::path inRoot(const fs::path& path, const fs::path& root)
{
    std::error_code error;
    const fs::path trim = withoutEndSlashes(path);
    const fs::path realRoot = fs::canonical(root, error);
    const fs::path folder = error ? fs::path() : fs::canonical(trim.parent_path(), error);
    const auto below = error ? std::nullopt : pathBelow(folder.native(), realRoot.native());
    if (!below)
        return trim.lexically_normal();
    return (below->empty() ? root : root / *below) / trim.filename();
}

// Why an item can't get its new place; an empty text where it can.
MoveProblem problemOf(const MovedItem& item, const fs::path& site, std::set<std::string>& taken)
{
    using Kind = MoveProblem::Kind;
    const std::string name = item.to.filename().native();
    if (name.empty() || name == "." || name == "..")
        return {Kind::NotMoved, item.from,
                userText(QT_TRANSLATE_NOOP("luma::Engines", "\"%1\" is not a valid file name"), {name})};
    if (!itemExists(item.from))
        return {Kind::NotMoved, item.from, systemError(item.from, ENOENT).text};
    if (isAtOrBelow(site.native(), item.from.native()))
        return {Kind::NotMoved, item.from,
                userText(QT_TRANSLATE_NOOP("luma::Engines",
                                           "the site's folder itself can't be moved or renamed"))};
    if (itemExists(item.to) || !taken.insert(item.to.native()).second)
        return {Kind::Clash, item.to,
                userText(QT_TRANSLATE_NOOP("luma::Engines", "File %1 exists, not overwritten"), {name})};
    std::error_code error;
    const fs::path folder = fs::canonical(item.to.parent_path(), error);
    if (error)
        return {Kind::NotMoved, item.from, systemError(item.to.parent_path(), error.value()).text};
    const bool isFolder = fs::is_directory(fs::symlink_status(item.from, error));
    if (isFolder && isAtOrBelow(folder.native(), fs::canonical(item.from, error).native()))
        return {Kind::NotMoved, item.from,
                userText(QT_TRANSLATE_NOOP("luma::Engines", "%1: a folder can't go into itself"),
                         {item.from.native()})};
    return {Kind::NotMoved, {}, {}};
}

// Why links can't be led to an item; an empty text where they can.
MoveProblem problemOfTarget(const MovedItem& item, const fs::path& site)
{
    using Kind = MoveProblem::Kind;
    if (!isAtOrBelow(item.to.native(), site.native()))
        return {Kind::NotMoved, item.to,
                userText(QT_TRANSLATE_NOOP("luma::Engines", "%1: is outside the site"), {item.to.native()})};
    if (!itemExists(item.to))
        return {Kind::NotMoved, item.to, systemError(item.to, ENOENT).text};
    return {Kind::NotMoved, {}, {}};
}

// Leaves out items that can't be moved, and those that move with a folder above them.
void checkItems(LinkPlan& plan)
{
    std::vector<MovedItem> items = std::move(plan.request.items);
    for (MovedItem& item : items)
        item = {inRoot(item.from, plan.request.sourceRoot), inRoot(item.to, plan.request.site)};
    plan.request.items.clear();
    std::set<std::string> taken;
    for (const MovedItem& item : items) {
        const bool isInOther = std::any_of(items.begin(), items.end(), [&item](const MovedItem& other) {
            return &other != &item && isAtOrBelow(item.from.native(), other.from.native()) &&
                   (other.from != item.from || &other < &item);
        });
        if (isInOther)
            continue;
        MoveProblem problem;
        if (plan.request.changesLinksOnly)
            problem = problemOfTarget(item, plan.request.site);
        else if (!plan.request.isRenamedAlready)
            problem = problemOf(item, plan.request.site, taken);
        else if (!itemExists(item.to))
            problem = {MoveProblem::Kind::NotMoved, item.to, systemError(item.to, ENOENT).text};
        if (problem.text.empty())
            plan.request.items.push_back(item);
        else
            plan.problems.push_back(std::move(problem));
    }
}

// One page or sheet to be read.
struct Candidate
{
    std::string file; // its path now
    fs::path oldFile; // and before the move
    std::string oldPath;
    std::string newPath; // subpaths
    fs::path newFile;
    bool isMoved = false;
};

// Collects the pages and sheets that may have to change.
class Candidates final
{
public:
    Candidates(const MoveRequest& request, const MovedPlaces& places) : m_request(request), m_places(places)
    {}

    /// Of pages that don't move only those in `linking`, if there is such a list.
    void addSite(const SiteTree& tree, const std::optional<std::set<std::string>>& linking)
    {
        for (const Id id : tree.webPages()) {
            const std::string path = tree.subpath(id);
            const std::optional<std::string> moved = m_places.movedPath(path);
            if (moved || !linking || linking->contains(path))
                add(tree, id, path, moved);
        }
    }

    void addKnown(const SiteLinks::KnownSite& site)
    {
        for (const Id id : site.pages) {
            const std::string path = site.tree->subpath(id);
            add(*site.tree, id, path, m_places.movedPath(path));
        }
    }

    // An item of another root; its files are not in the site's tree.
    Result<void> addItem(const MovedItem& item, const std::string& oldPath, const std::string& newPath)
    {
        std::error_code error;
        if (!fs::is_directory(fs::symlink_status(item.from, error))) {
            if (isPageOrSheet(item.from.filename().native()) &&
                fs::is_regular_file(fs::symlink_status(item.from, error)))
                m_found.push_back({item.from.native(), item.from, oldPath, newPath, item.to, true});
            return {};
        }
        const auto tree = SiteTree::read(item.from);
        if (!tree)
            return tree.error();
        for (const Id file : tree->files()) {
            if (!isPageOrSheet(tree->name(file)) || tree->type(file) != SiteTree::Type::File)
                continue;
            const std::string below = "/" + tree->subpath(file);
            m_found.push_back({tree->path(file), tree->path(file), oldPath + below, newPath + below,
                               item.to.native() + below, true});
        }
        return {};
    }

    [[nodiscard]] std::vector<Candidate> take() { return std::move(m_found); }

private:
    void add(const SiteTree& tree, Id id, const std::string& path, const std::optional<std::string>& moved)
    {
        const std::string newPath = moved.value_or(path);
        const fs::path newFile = m_request.site / newPath;
        const std::string file = m_request.isRenamedAlready ? newFile.native() : tree.path(id);
        // A symbolic link into the site: the page is rewritten under its own path.
        if ((!moved && m_request.operation == MoveOperation::Copy) || tree.isLinkIntoSite(id, file))
            return;
        m_found.push_back({file, tree.path(id), path, newPath, newFile, moved.has_value()});
    }

    const MoveRequest& m_request;
    const MovedPlaces& m_places;
    std::vector<Candidate> m_found;
};

// What planning a page gives: its edits, or why it can't be changed, or neither.
struct PageResult
{
    PageRewrite edits;
    std::string problem;
};

timespec modificationOf(const std::string& file)
{
    struct stat status = {};
    return ::stat(file.c_str(), &status) == 0 ? status.st_mtim : timespec{};
}

PageResult planned(const Candidate& candidate, PagePlanner& planner, const NameSpellings& names,
                   bool isCopied)
{
    PageResult result;
    result.edits.modified = modificationOf(candidate.file);
    const auto bytes = planner.read(candidate.file);
    if (!bytes) {
        // A page that is gone by now has no links.
        if (candidate.isMoved || bytes.error().code != std::errc::no_such_file_or_directory)
            result.problem = bytes.error().text;
        return result;
    }
    if (!candidate.isMoved && !names.mayBeIn(*bytes))
        return result;
    auto edits = planner.editsOf(*bytes, candidate.oldPath, candidate.newPath);
    if (!edits) {
        result.problem = candidate.file + ": " + edits.error().text;
        return result;
    }
    if (edits->empty())
        return result;
    const auto writable = isCopied ? Result<void>() : checkReplaceable(realFile(candidate.file));
    if (!writable) {
        result.problem = systemError(candidate.oldFile, static_cast<int>(writable.error().code)).text;
        return result;
    }
    result.edits.page = candidate.newFile;
    result.edits.oldPage = candidate.oldFile;
    result.edits.oldHash = hashOfFile(*bytes);
    result.edits.newHash = hashOfFile(withEdits(*bytes, *edits));
    result.edits.edits = *std::move(edits);
    return result;
}

Result<void> planPages(LinkPlan& plan, const std::vector<Candidate>& candidates,
                       const StillWanted& stillWanted)
{
    const NameSpellings names(plan.links->places().namesInLinks());
    using Work = OrderedWork<PageResult>;
    std::vector<PagePlanner> planners;
    for (std::size_t worker = 0; worker < Work::workerCount(); ++worker)
        planners.emplace_back(plan.links->addresses(), plan.links->places());
    const bool isCopied = plan.request.operation == MoveOperation::Copy;
    const bool complete = Work(candidates.size(), stillWanted)
                              .run(
                                  [&](std::size_t i, std::size_t worker) {
                                      return planned(candidates[i], planners[worker], names, isCopied);
                                  },
                                  [&](std::size_t i, PageResult&& page) {
                                      if (!page.problem.empty())
                                          plan.problems.push_back({MoveProblem::Kind::NotRewritten,
                                                                   candidates[i].oldFile, page.problem});
                                      else if (!page.edits.edits.empty())
                                          plan.pages.push_back(std::move(page.edits));
                                  });
    return complete ? Result<void>() : stoppedError(plan.request.site);
}

bool areLinksKept(const MoveRequest& request)
{
    return request.keptLinks && request.keptLinks->site() == request.site;
}

// The pages that have to be read, as far as that is known.
Result<std::optional<std::set<std::string>>> linkingPages(const MoveRequest& request, const MovedLinks& links,
                                                          SiteTree now, const StillWanted& stillWanted)
{
    if (request.operation != MoveOperation::Move || !areLinksKept(request))
        return std::optional<std::set<std::string>>();
    SiteLinks::Wanted wanted{{}, links.places().namesInLinks()};
    for (const MovedPlaces::Item& item : links.items())
        wanted.items.push_back(item.from);
    return request.keptLinks->pagesLeadingTo(wanted, std::move(now), request.rules, stillWanted);
}

/// What is known of a site when a plan begins. Neither where its links don't need the tree.
struct SiteNow
{
    std::optional<SiteLinks::KnownSite> known;
    std::optional<SiteTree> tree; // just read
};

Result<SiteNow> siteNow(const MoveRequest& request, const StillWanted& stillWanted)
{
    SiteNow now;
    if (request.items.empty() || !MovedLinks::needsTree(request))
        return now;
    if (areLinksKept(request))
        now.known =
            request.keptLinks->knownSite(request.items, request.isRenamedAlready, request.rules, stillWanted);
    if (now.known)
        return now;
    auto tree = SiteTree::read(request.site, stillWanted);
    if (!tree)
        return tree.error();
    now.tree = *std::move(tree);
    return now;
}

Result<void> addCandidates(Candidates& candidates, const MoveRequest& request, const MovedLinks& links,
                           SiteNow site, const StillWanted& stillWanted)
{
    if (site.known) {
        candidates.addKnown(*site.known);
        return {};
    }
    if (site.tree) {
        const auto linking = linkingPages(request, links, *std::move(site.tree), stillWanted);
        if (!linking)
            return linking.error();
        candidates.addSite(*links.tree(), *linking);
        return {};
    }
    for (std::size_t i = 0; i < links.items().size(); ++i) {
        const MovedPlaces::Item& places = links.items()[i];
        if (auto added = candidates.addItem(links.movedItems()[i], places.from, places.to); !added)
            return added;
    }
    return {};
}

// Those that can be changed.
void addSymlinks(LinkPlan& plan)
{
    for (SymlinkChange& change : planSymlinks(plan.request, *plan.links)) {
        const fs::path& now = plan.request.isRenamedAlready ? change.link : change.oldLink;
        const auto writable =
            plan.request.operation == MoveOperation::Copy ? Result<void>() : checkReplaceable(now);
        if (writable)
            plan.symlinks.push_back(std::move(change));
        else
            plan.problems.push_back(
                {MoveProblem::Kind::NotRewritten, change.oldLink,
                 systemError(change.oldLink, static_cast<int>(writable.error().code)).text});
    }
}

// Links in them stay as they are.
void noteUnreadableFolders(LinkPlan& plan, const SiteTree& tree)
{
    tellUnreadableFolders(tree, [&](const WebPage& folder) {
        plan.problems.push_back(
            {MoveProblem::Kind::NotRewritten, plan.request.site / folder.path, folder.unreadable});
    });
}

// Links to items that leave their site will lead nowhere.
Result<void> noteLostLinks(LinkPlan& plan, const StillWanted& stillWanted)
{
    const MoveRequest& request = plan.request;
    if (request.operation != MoveOperation::Move || request.itemsStay() || request.isRenamedAlready)
        return {};
    std::vector<fs::path> leaving;
    for (const MovedItem& item : request.items) {
        const bool stays =
            MovedLinks::needsTree(request) && isAtOrBelow(item.to.native(), request.site.native());
        if (!stays && isAtOrBelow(item.from.native(), request.sourceRoot.native()))
            leaving.push_back(item.from);
    }
    if (leaving.empty())
        return {};
    const auto lost =
        countLinksTo(request.sourceRoot, leaving, request.rules, request.keptLinks, stillWanted);
    if (!lost)
        return lost.error();
    plan.lost = *lost;
    if (lost->links == 0)
        return {};
    const auto counted = [](std::size_t count, const char* one, const char* many) {
        return userText(count == 1 ? one : many, {std::to_string(count)});
    };
    const std::string links = counted(lost->links, QT_TRANSLATE_NOOP("luma::Engines", "%1 link"),
                                      QT_TRANSLATE_NOOP("luma::Engines", "%1 links"));
    const std::string pages = counted(lost->pages, QT_TRANSLATE_NOOP("luma::Engines", "%1 page"),
                                      QT_TRANSLATE_NOOP("luma::Engines", "%1 pages"));
    const std::string others =
        counted(leaving.size() - 1, QT_TRANSLATE_NOOP("luma::Engines", "%1 other item"),
                QT_TRANSLATE_NOOP("luma::Engines", "%1 other items"));
    plan.notes.push_back(
        {leaving.front(),
         leaving.size() == 1
             ? userText(QT_TRANSLATE_NOOP("luma::Engines", "leaves its site; %1 on %2 will be missing there"),
                        {links, pages})
             : userText(QT_TRANSLATE_NOOP("luma::Engines",
                                          "leaves its site with %1; %2 on %3 will be missing there"),
                        {others, links, pages})});
    return {};
}

} // namespace

std::vector<std::filesystem::path> LinkPlan::stayingPages() const
{
    std::vector<fs::path> staying;
    for (const MoveProblem& problem : problems) {
        if (problem.kind == MoveProblem::Kind::NotRewritten && (!request.items.empty() || text))
            staying.push_back(problem.path);
    }
    return staying;
}

std::size_t LinkPlan::linkCount() const
{
    std::size_t count = 0;
    for (const PageRewrite& page : pages)
        count += page.edits.size();
    return count;
}

std::string hashOfFile(std::string_view bytes)
{
    const QByteArrayView view(bytes.data(), static_cast<qsizetype>(bytes.size()));
    return QCryptographicHash::hash(view, QCryptographicHash::Blake2b_256).toHex().toStdString();
}

std::string withEdits(std::string_view bytes, const std::vector<LinkEdit>& edits)
{
    std::string changed;
    std::size_t done = 0;
    for (const LinkEdit& edit : edits) {
        changed.append(bytes.substr(done, edit.begin - done)).append(edit.after);
        done = edit.begin + edit.before.size();
    }
    return changed.append(bytes.substr(done));
}

Result<LinkPlan> planMove(const MoveRequest& request, const StillWanted& stillWanted)
{
    LinkPlan plan;
    plan.request = request;
    plan.request.site = withoutEndSlashes(request.site);
    plan.request.sourceRoot =
        request.sourceRoot.empty() ? plan.request.site : withoutEndSlashes(request.sourceRoot);
    checkItems(plan);
    if (auto noted = noteLostLinks(plan, stillWanted); !noted)
        return noted.error();
    auto site = siteNow(plan.request, stillWanted);
    if (!site)
        return site.error();
    plan.links = site->known ? MovedLinks::ofSite(plan.request, site->known->tree)
                             : MovedLinks::of(plan.request, site->tree);
    if (plan.links->items().empty())
        return plan;
    Candidates candidates(plan.request, plan.links->places());
    if (auto added = addCandidates(candidates, plan.request, *plan.links, *std::move(site), stillWanted);
        !added)
        return added.error();
    if (auto planned = planPages(plan, candidates.take(), stillWanted); !planned)
        return planned.error();
    if (plan.links->tree() && request.operation == MoveOperation::Move)
        noteUnreadableFolders(plan, *plan.links->tree());
    addSymlinks(plan);
    planHardLinks(plan);
    return plan;
}

} // namespace luma
