// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/sitesearch.h"

#include "base/filecalls.h"
#include "base/filereader.h"
#include "base/orderedwork.h"
#include "base/pathbelow.h"
#include "base/usertext.h"
#include "links/sitetree.h"
#include "links/textplan.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

namespace luma {

namespace fs = std::filesystem;

namespace {

using Id = SiteTree::Id;

bool isWantedKind(std::string_view name, const SiteQuery& query)
{
    switch (webFileKind(name)) {
    case WebFileKind::HtmlPage:
    case WebFileKind::XmlPage:
        return query.inPages;
    case WebFileKind::StyleSheet:
        return query.inStyleSheets && query.searched == SearchedText::Source;
    default:
        return query.inScripts && query.searched == SearchedText::Source && isScript(name);
    }
}

std::vector<std::string> searchedFiles(const SiteTree& tree, const SiteQuery& query)
{
    std::vector<std::string> files;
    for (const Id id : tree.files()) {
        const bool isFile =
            tree.type(id) == SiteTree::Type::File ||
            (tree.type(id) == SiteTree::Type::LinkToFile && !tree.isLinkIntoSite(id, tree.path(id)));
        if (!isFile || !isWantedKind(tree.name(id), query))
            continue;
        std::string path = tree.subpath(id);
        if (query.folder.empty() || isAtOrBelow(path, query.folder))
            files.push_back(std::move(path));
    }
    return files;
}

/// What a worker needs.
struct Worker
{
    FileReader reader;
    TextFinder finder;
};

Result<std::vector<Worker>> workersFor(const SiteQuery& query, std::size_t count)
{
    const auto expression = query.text.expression();
    if (!expression)
        return expression.error();
    std::vector<Worker> workers;
    for (std::size_t i = 0; i < count; ++i)
        workers.push_back({{}, TextFinder(query.text, *expression, query.searched)});
    return workers;
}

SearchedFile searched(const fs::path& site, const std::string& path, Worker& worker)
{
    SearchedFile file{path, {}, {}, {}};
    const auto bytes = worker.reader.read((site / path).native());
    if (!bytes) {
        file.problem = bytes.error().text;
        return file;
    }
    if (const auto read = worker.finder.read(*bytes, namePart(path)); !read) {
        file.problem = read.error().text;
        return file;
    }
    file.found = worker.finder.found();
    if (!file.found.empty())
        file.hash = hashOfFile(*bytes);
    return file;
}

Error changedSince(const fs::path& file)
{
    return Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "%1: has changed since, left as it is"),
                          {file.native()})};
}

// Leaves the file's places in the worker's finder.
Result<PageRewrite> rewriteOf(const fs::path& file, const WantedPlaces& places, const QString& replacement,
                              Worker& worker)
{
    const auto bytes = worker.reader.read(file.native());
    if (!bytes)
        return bytes.error();
    if (hashOfFile(*bytes) != places.hash)
        return changedSince(file);
    const auto read = worker.finder.read(*bytes, file.filename().native());
    if (!read || worker.finder.found().size() != places.isWanted.size())
        return changedSince(file);
    auto edits = worker.finder.edits(places.isWanted, replacement);
    if (!edits)
        return Error{file.native() + ": " + edits.error().text};
    return TextPlan::rewriteOf(file, *bytes, *std::move(edits));
}

// A place with what stands around it, by which it is known again in a text that has been edited.
using Surroundings = std::array<QString, 3>;

std::vector<Surroundings> surroundingsOf(const std::vector<FoundText>& found)
{
    std::vector<Surroundings> all;
    all.reserve(found.size());
    for (const FoundText& place : found)
        all.push_back({place.before, place.captured.front(), place.after});
    return all;
}

bool isAny(const std::vector<bool>& flags, std::size_t begin, std::size_t end, bool value)
{
    const auto from = flags.begin();
    return std::find(from + static_cast<std::ptrdiff_t>(begin), from + static_cast<std::ptrdiff_t>(end),
                     value) != from + static_cast<std::ptrdiff_t>(end);
}

/// Places between two that are alike in both texts.
struct Gap
{
    std::size_t oldBegin = 0;
    std::size_t oldEnd = 0;
    std::size_t newBegin = 0;
    std::size_t newEnd = 0;
};

// Of the places in an edited text, those that the user wants: a place whose surroundings have changed is known by the places
// around it. Nothing if that leaves open which one it is. New places are not wanted, as the user has not seen them.
std::optional<std::vector<bool>> wantedNow(const std::vector<Surroundings>& before,
                                           const std::vector<bool>& isWanted,
                                           const std::vector<Surroundings>& now)
{
    constexpr std::size_t mostPairs = std::size_t{4} << 20U;
    if (before.size() * now.size() > mostPairs)
        return {};
    // lengths[i][j] is that of the longest common sequence from places i and j on.
    const std::size_t width = now.size() + 1;
    std::vector<std::uint32_t> lengths((before.size() + 1) * width, 0);
    for (std::size_t i = before.size(); i-- > 0;) {
        for (std::size_t j = now.size(); j-- > 0;)
            lengths[i * width + j] = before[i] == now[j]
                                         ? lengths[(i + 1) * width + j + 1] + 1
                                         : std::max(lengths[(i + 1) * width + j], lengths[i * width + j + 1]);
    }
    std::vector<bool> wanted(now.size(), false);
    const auto close = [&](const Gap& gap) {
        const std::size_t oldCount = gap.oldEnd - gap.oldBegin;
        const std::size_t newCount = gap.newEnd - gap.newBegin;
        bool isPaired = oldCount == newCount;
        for (std::size_t i = 0; isPaired && i < oldCount; ++i)
            isPaired = before[gap.oldBegin + i][1] == now[gap.newBegin + i][1];
        const bool isAnyWanted = isAny(isWanted, gap.oldBegin, gap.oldEnd, true);
        for (std::size_t j = 0; j < newCount; ++j)
            wanted[gap.newBegin + j] = isPaired ? isWanted[gap.oldBegin + j] : isAnyWanted;
        const bool isSure = newCount <= oldCount && !isAny(isWanted, gap.oldBegin, gap.oldEnd, false);
        return isPaired || newCount == 0 || !isAnyWanted || isSure;
    };
    Gap gap;
    while (gap.oldEnd < before.size() && gap.newEnd < now.size()) {
        if (before[gap.oldEnd] == now[gap.newEnd]) {
            if (!close(gap))
                return {};
            wanted[gap.newEnd] = isWanted[gap.oldEnd];
            gap = {gap.oldEnd + 1, gap.oldEnd + 1, gap.newEnd + 1, gap.newEnd + 1};
        } else if (lengths[(gap.oldEnd + 1) * width + gap.newEnd] >=
                   lengths[gap.oldEnd * width + gap.newEnd + 1]) {
            ++gap.oldEnd;
        } else {
            ++gap.newEnd;
        }
    }
    gap.oldEnd = before.size();
    gap.newEnd = now.size();
    return close(gap) ? std::optional(wanted) : std::nullopt;
}

/// What a replacement does to files that are open with unsaved edits.
struct OpenFiles
{
    fs::path site;
    SiteQuery query;
    QString replacement;
    std::vector<WantedPlaces> places;
    std::vector<std::vector<Surroundings>> surroundings; // of all places of each file that changes in part

    // `source` is the file's text with the edits.
    Result<std::string> updated(std::string_view source, const fs::path& file) const
    {
        const auto entry = std::find_if(places.begin(), places.end(), [&](const WantedPlaces& each) {
            std::error_code error;
            return fs::equivalent(site / each.path, file, error);
        });
        if (entry == places.end())
            return std::string(source);
        auto workers = workersFor(query, 1);
        if (!workers)
            return workers.error();
        TextFinder& finder = workers->front().finder;
        return editedSource(source, [&](std::string_view bytes) -> Result<std::vector<LinkEdit>> {
            if (const auto read = finder.read(bytes, file.filename().native()); !read)
                return read.error();
            const auto wanted = wantedIn(static_cast<std::size_t>(entry - places.begin()), finder.found());
            if (!wanted)
                return Error{
                    userText(QT_TRANSLATE_NOOP("luma::Engines",
                                               "%1 was replaced in the file; this window keeps its own text, "
                                               "in which the ticked places can't be told from the others"),
                             {query.text.text.toStdString()})};
            return finder.edits(*wanted, replacement);
        });
    }

private:
    [[nodiscard]] std::optional<std::vector<bool>> wantedIn(std::size_t file,
                                                            const std::vector<FoundText>& found) const
    {
        const std::vector<bool>& isWanted = places[file].isWanted;
        if (!isAny(isWanted, 0, isWanted.size(), false))
            return std::vector<bool>(found.size(), true);
        return surroundings[file].size() == isWanted.size()
                   ? wantedNow(surroundings[file], isWanted, surroundingsOf(found))
                   : std::nullopt;
    }
};

} // namespace

Result<bool> searchSite(const fs::path& site, const SiteQuery& query, const SearchedFileSink& sink,
                        const StillWanted& stillWanted)
{
    using Work = OrderedWork<SearchedFile>;
    auto workers = workersFor(query, Work::workerCount());
    if (!workers)
        return workers.error();
    const auto tree = SiteTree::read(site, stillWanted);
    if (!tree)
        return tree.error().isStopped() ? Result<bool>(false) : Result<bool>(tree.error());
    const std::vector<std::string> files = searchedFiles(*tree, query);
    return Work(files.size(), stillWanted)
        .run([&](std::size_t i, std::size_t worker) { return searched(site, files[i], (*workers)[worker]); },
             [&](std::size_t, SearchedFile&& file) {
                 if (!file.found.empty() || !file.problem.empty())
                     sink(std::move(file));
             });
}

Result<LinkPlan> planReplacement(const fs::path& site, const SiteQuery& query, const QString& replacement,
                                 const std::vector<WantedPlaces>& places, const StillWanted& stillWanted)
{
    using Work = OrderedWork<Result<PageRewrite>>;
    auto workers = workersFor(query, Work::workerCount());
    if (!workers)
        return workers.error();
    TextPlan plan(site);
    const auto open = std::make_shared<OpenFiles>(OpenFiles{site, query, replacement, places, {}});
    open->surroundings.resize(places.size());
    const bool isComplete =
        Work(places.size(), stillWanted)
            .run(
                [&](std::size_t i, std::size_t worker) {
                    auto rewrite =
                        rewriteOf(site / places[i].path, places[i], replacement, (*workers)[worker]);
                    if (rewrite && isAny(places[i].isWanted, 0, places[i].isWanted.size(), false))
                        open->surroundings[i] = surroundingsOf((*workers)[worker].finder.found());
                    return rewrite;
                },
                [&](std::size_t i, Result<PageRewrite>&& page) {
                    const auto count = std::count(places[i].isWanted.begin(), places[i].isWanted.end(), true);
                    plan.add(site / places[i].path, std::move(page), static_cast<std::size_t>(count));
                });
    if (!isComplete)
        return stoppedError(site);
    TextChange change;
    change.title = userText(QT_TRANSLATE_NOOP("luma::Engines", "Replace \"%1\" by \"%2\""),
                            {query.text.text.toStdString(), replacement.toStdString()});
    change.action = userText(QT_TRANSLATE_NOOP("luma::Engines", "Replace"));
    change.anyway = userText(QT_TRANSLATE_NOOP("luma::Engines", "Replace Anyway"));
    change.updated = [open](std::string_view source, const fs::path& /*oldFile*/, const fs::path& file) {
        return open->updated(source, file);
    };
    return std::move(plan).finished(std::move(change));
}

} // namespace luma
