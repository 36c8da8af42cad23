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

// For a file that is open with unsaved edits: replaces the same text there. If the user has left places out, nobody knows
// which they are in it.
Result<std::string> updatedText(std::string_view source, const fs::path& file, const SiteQuery& query,
                                const QString& replacement)
{
    auto workers = workersFor(query, 1);
    if (!workers)
        return workers.error();
    TextFinder& finder = workers->front().finder;
    return editedSource(source, [&](std::string_view bytes) -> Result<std::vector<LinkEdit>> {
        if (const auto read = finder.read(bytes, file.filename().native()); !read)
            return read.error();
        return finder.edits(std::vector<bool>(finder.found().size(), true), replacement);
    });
}

LinksUpdate::Updated updateOf(const std::vector<WantedPlaces>& places, const fs::path& site,
                              const SiteQuery& query, const QString& replacement)
{
    return [places, site, query, replacement](std::string_view source, const fs::path& /*oldFile*/,
                                              const fs::path& file) -> Result<std::string> {
        const auto found = std::find_if(places.begin(), places.end(), [&](const WantedPlaces& entry) {
            std::error_code error;
            return fs::equivalent(site / entry.path, file, error);
        });
        if (found == places.end())
            return std::string(source);
        if (std::find(found->isWanted.begin(), found->isWanted.end(), false) != found->isWanted.end())
            return Error{userText(
                QT_TRANSLATE_NOOP("luma::Engines",
                                  "%1 was replaced in part in the file; this window keeps its own text"),
                {query.text.text.toStdString()})};
        return updatedText(source, file, query, replacement);
    };
}

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
    const bool isComplete =
        Work(places.size(), stillWanted)
            .run(
                [&](std::size_t i, std::size_t worker) {
                    return rewriteOf(site / places[i].path, places[i], replacement, (*workers)[worker]);
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
    change.updated = updateOf(places, site, query, replacement);
    return std::move(plan).finished(std::move(change));
}

} // namespace luma
