// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/browserreports.h"

#include "base/folderreader.h"
#include "base/orderedwork.h"
#include "base/pathbelow.h"
#include "base/usertext.h"
#include "links/targetreader.h"

#include <deque>
#include <set>
#include <vector>

namespace luma {

namespace fs = std::filesystem;

namespace {

using Id = SiteTree::Id;

Result<bool> stoppedOrError(const Error& error)
{
    return error.isStopped() ? Result<bool>(false) : Result<bool>(error);
}

std::string subpathOf(const fs::path& item, const fs::path& site)
{
    return item.lexically_relative(site).native();
}

// For the page that holds the link.
bool isNeeded(LinkPlace place, std::string_view path)
{
    switch (place) {
    case LinkPlace::Href:
    case LinkPlace::XlinkHref:
    case LinkPlace::Action:
    case LinkPlace::FormAction:
    case LinkPlace::Cite:
    case LinkPlace::LongDesc:
    case LinkPlace::Ping:
        break;
    default:
        return true;
    }
    const WebFileKind kind = webFileKind(path);
    return kind == WebFileKind::Other || kind == WebFileKind::StyleSheet || path.ends_with(".svg");
}

} // namespace

Result<bool> checkWebLinks(const fs::path& site, const WebRules& rules, FindingsKept kept,
                           const WebPageSink& page, const StillWanted& stillWanted)
{
    const auto tree = SiteTree::read(site, stillWanted);
    if (!tree)
        return stoppedOrError(tree.error());
    const std::vector<Id> pages = tree->webPages();
    BrowserSite shared(*tree, rules);
    using Work = OrderedWork<WebPage>;
    std::vector<BrowserChecker> checkers;
    for (std::size_t worker = 0; worker < Work::workerCount(); ++worker)
        checkers.emplace_back(shared, kept);
    const bool done =
        Work(pages.size(), stillWanted)
            .run([&](std::size_t index, std::size_t worker) { return checkers[worker].check(pages[index]); },
                 [&](std::size_t, const WebPage& found) {
                     if (kept == FindingsKept::All || !found.links.empty() || !found.unreadable.empty())
                         page(found);
                 });
    if (done)
        tellUnreadableFolders(*tree, page);
    return done;
}

void tellUnreadableFolders(const SiteTree& tree, const WebPageSink& page)
{
    for (Id id = 1; id < tree.size(); ++id) {
        if (tree.type(id) != SiteTree::Type::UnreadableFolder)
            continue;
        // One that has gone meanwhile hides nothing.
        const auto opened = FolderReader::open(tree.path(id));
        if (!opened && opened.error().code != std::errc::no_such_file_or_directory)
            page({tree.subpath(id), opened.error().text, {}});
    }
}

Result<WebPage> checkWebPage(const fs::path& site, const fs::path& page, const WebRules& rules)
{
    if (webFileKind(page.filename().native()) == WebFileKind::Other)
        return Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "%1: Not a page"), {page.native()})};
    const fs::path root = site.empty() ? fs::path("/") : site;
    const std::string subpath = subpathOf(fs::absolute(page).lexically_normal(), root);
    if (subpath.starts_with("../"))
        return Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "%1: Not in the site"), {page.native()})};
    const Result<SiteTree> tree = site.empty() ? SiteTree::unread(root) : SiteTree::read(root);
    if (!tree)
        return tree.error();
    BrowserSite shared(*tree, rules);
    BrowserChecker checker(shared, FindingsKept::All);
    const Id id = shared.paths().find(subpath);
    WebPage found = id == SiteTree::none ? checker.check(subpath) : checker.check(id);
    if (!found.unreadable.empty())
        return Error{found.unreadable};
    return found;
}

Result<std::vector<std::string>> findNeededFiles(const fs::path& site, const fs::path& page,
                                                 const WebRules& rules)
{
    const auto tree = SiteTree::read(site);
    if (!tree)
        return tree.error();
    WebRules withoutFragments = rules;
    withoutFragments.fragmentsAreChecked = false;
    BrowserSite shared(*tree, withoutFragments);
    const std::string subpath = subpathOf(page, site);
    const Id first = shared.paths().find(subpath);
    if (first == SiteTree::none)
        return Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "%1: Not in the site"), {page.native()})};
    BrowserChecker checker(shared, FindingsKept::All);
    std::set<std::string> needed = {subpath};
    std::vector<Id> unread = {first};
    while (!unread.empty()) {
        const Id reading = unread.back();
        unread.pop_back();
        for (const WebLink& link : checker.check(reading).links) {
            if (link.file == SiteTree::none)
                continue;
            const std::string path = tree->subpath(link.file);
            if (isNeeded(link.place, path) && needed.insert(path).second &&
                webFileKind(path) == WebFileKind::StyleSheet)
                unread.push_back(link.file);
        }
    }
    return std::vector<std::string>(needed.begin(), needed.end());
}

Result<bool> findWebLinksTo(const fs::path& site, const fs::path& target, const WebRules& rules,
                            const WebPageSink& page, const StillWanted& stillWanted)
{
    const auto tree = SiteTree::read(site, stillWanted);
    if (!tree)
        return stoppedOrError(tree.error());
    WebRules withoutFragments = rules;
    withoutFragments.fragmentsAreChecked = false;
    BrowserSite shared(*tree, withoutFragments);
    const std::string subpath = subpathOf(target, site);
    const Id id = shared.paths().find(subpath == "." ? std::string() : subpath);
    if (id == SiteTree::none)
        return Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "%1: Not in the site"), {target.native()})};
    const NameSearch name({target.filename().native()});
    using Work = OrderedWork<std::optional<WebPage>>;
    std::deque<BrowserChecker> checkers;
    std::deque<TargetReader> readers;
    for (std::size_t worker = 0; worker < Work::workerCount(); ++worker) {
        BrowserChecker& checker = checkers.emplace_back(shared, FindingsKept::All);
        readers.emplace_back(
            *tree, id, name, [&checker](Id file) { return checker.check(file); },
            [&checker](Id file) { return checker.mentionedBy(file); });
    }
    const std::vector<Id>& files = tree->files();
    return Work(files.size(), stillWanted)
        .run([&](std::size_t index, std::size_t worker) { return readers[worker].read(files[index]); },
             [&](std::size_t, const std::optional<WebPage>& found) {
                 if (found)
                     page(*found);
             });
}

} // namespace luma
