// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/linkreports.h"

#include "base/orderedwork.h"
#include "links/linkedfile.h"

#include <memory>
#include <vector>

namespace luma {

namespace fs = std::filesystem;

PageFindings findLinksFrom(const fs::path& page)
{
    PageFindings none;
    none.path = page.native();
    const std::string name = page.filename().native();
    if (name == folderSettingsName || fileKind(name) != FileKind::Page)
        return none;
    const fs::path folder = page.parent_path();
    return LinkChecker(nullptr, FindingsKept::All)
        .check(page.native(), folder.empty() ? std::string(".") : folder.native());
}

Result<bool> findMissingLinks(const fs::path& site, FindingsKept kept, const FindingsSink& page,
                              const StillWanted& stillWanted)
{
    const auto tree = SiteTree::read(site, stillWanted);
    if (!tree)
        return tree.error().isStopped() ? Result<bool>(false) : Result<bool>(tree.error());
    const std::vector<SiteTree::Id> pages = tree->pages();
    using Work = OrderedWork<PageFindings>;
    std::vector<LinkChecker> checkers;
    for (std::size_t worker = 0; worker < Work::workerCount(); ++worker)
        checkers.emplace_back(&*tree, kept);
    return Work(pages.size(), stillWanted)
        .run([&](std::size_t index, std::size_t worker) { return checkers[worker].check(pages[index]); },
             [&](std::size_t, PageFindings&& findings) {
                 if (findings.isPage && (kept == FindingsKept::All || !findings.links.empty()))
                     page(findings);
             });
}

Result<bool> findLinksTo(const fs::path& site, const fs::path& target, const SubpathSink& subpath,
                         const StillWanted& stillWanted)
{
    const auto tree = SiteTree::read(site, stillWanted);
    if (!tree)
        return tree.error().isStopped() ? Result<bool>(false) : Result<bool>(tree.error());
    const std::vector<SiteTree::Id>& files = tree->files();
    using Work = OrderedWork<bool>;
    std::vector<std::unique_ptr<LinkedFile>> targets;
    for (std::size_t worker = 0; worker < Work::workerCount(); ++worker)
        targets.push_back(std::make_unique<LinkedFile>(target));
    return Work(files.size(), stillWanted)
        .run([&](std::size_t index,
                 std::size_t worker) { return targets[worker]->isLinkedFrom(tree->path(files[index])); },
             [&](std::size_t index, bool linked) {
                 if (linked)
                     subpath(tree->subpath(files[index]));
             });
}

} // namespace luma
