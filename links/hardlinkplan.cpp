// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/hardlinkplan.h"

#include "base/files.h"
#include "base/pathbelow.h"
#include "base/usertext.h"
#include "links/movedlinks.h"

#include <sys/stat.h>

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <utility>

namespace luma {

namespace fs = std::filesystem;

namespace {

using FileNumber = std::pair<dev_t, ino_t>;

/// A file with several names, some of which are pages of the plan.
struct SharedFile
{
    std::size_t nameCount = 0;
    std::vector<std::size_t> pages; // indices
    std::vector<std::string> names; // of the site that are no pages of the plan
};

std::optional<struct stat> statusOf(const fs::path& path)
{
    struct stat status = {};
    const bool isShared =
        ::lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink > 1;
    return isShared ? std::optional(status) : std::nullopt;
}

std::map<FileNumber, SharedFile> sharedFilesIn(const std::vector<PageRewrite>& pages)
{
    std::map<FileNumber, SharedFile> found;
    for (std::size_t i = 0; i < pages.size(); ++i) {
        const auto status = statusOf(itemExists(pages[i].oldPage) ? pages[i].oldPage : pages[i].page);
        if (!status)
            continue;
        SharedFile& file = found[{status->st_dev, status->st_ino}];
        file.nameCount = status->st_nlink;
        file.pages.push_back(i);
    }
    return found;
}

// Whether all names get the same bytes; sets the pages' twins.
bool staysWhole(const SharedFile& file, std::vector<PageRewrite>& pages)
{
    std::map<std::string, std::size_t> firstByHash;
    for (const std::size_t i : file.pages) {
        const auto [first, isNew] = firstByHash.try_emplace(pages[i].newHash, i);
        if (!isNew)
            pages[i].twin = first->second;
    }
    return firstByHash.size() == 1 && file.pages.size() == file.nameCount;
}

// Looks for the names that are no pages of the plan.
void findNames(std::map<FileNumber, SharedFile>& files, const LinkPlan& plan)
{
    const SiteTree* const tree = plan.links->tree();
    std::set<std::string> planned;
    for (const auto& [number, file] : files) {
        for (const std::size_t i : file.pages)
            planned.insert(plan.pages[i].oldPage.native());
    }
    for (std::size_t i = 0; tree && i < tree->files().size(); ++i) {
        const SiteTree::Id id = tree->files()[i];
        const std::string path = tree->path(id);
        const std::string subpath = tree->subpath(id);
        const auto moved = plan.links->places().movedPath(subpath);
        const bool isAway = plan.request.isRenamedAlready && moved;
        const auto status = statusOf(isAway ? plan.request.site / *moved : fs::path(path));
        const auto file = status ? files.find({status->st_dev, status->st_ino}) : files.end();
        if (file != files.end() && !planned.contains(path))
            file->second.names.push_back(subpath);
    }
}

// The first page, and the names that part from it.
PlanNote noteOn(const SharedFile& file, const LinkPlan& plan)
{
    const PageRewrite& first = plan.pages[file.pages.front()];
    std::vector<std::string> others;
    std::size_t known = file.names.size();
    for (const std::size_t i : file.pages) {
        ++known;
        const fs::path& page = plan.pages[i].oldPage;
        if (plan.pages[i].newHash != first.newHash)
            others.emplace_back(
                pathBelow(page.native(), plan.request.sourceRoot.native()).value_or(page.native()));
    }
    others.insert(others.end(), file.names.begin(), file.names.end());
    if (file.nameCount > known)
        others.push_back(userText(QT_TRANSLATE_NOOP("luma::Engines", "a name elsewhere")));
    std::string names = others.front();
    for (std::size_t i = 1; i + 1 < others.size(); ++i)
        names.append(", ").append(others[i]);
    if (others.size() > 1)
        names = userText(QT_TRANSLATE_NOOP("luma::Engines", "%1 and %2"), {names, others.back()});
    if (plan.text)
        return {first.oldPage,
                userText(QT_TRANSLATE_NOOP("luma::Engines",
                                           "No longer the same file as %1, because their text will differ"),
                         {names})};
    return {first.oldPage,
            userText(QT_TRANSLATE_NOOP("luma::Engines",
                                       "No longer the same file as %1, because their links will differ"),
                     {names})};
}

} // namespace

void planHardLinks(LinkPlan& plan)
{
    // Copies are files of their own.
    if (plan.request.operation == MoveOperation::Copy)
        return;
    std::map<FileNumber, SharedFile> files = sharedFilesIn(plan.pages);
    std::erase_if(files, [&plan](const auto& file) { return staysWhole(file.second, plan.pages); });
    if (files.empty())
        return;
    findNames(files, plan);
    for (const auto& [number, file] : files)
        plan.notes.push_back(noteOn(file, plan));
}

} // namespace luma
