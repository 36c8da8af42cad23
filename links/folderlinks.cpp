// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/folderlinks.h"

#include "base/pathbelow.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace luma {

namespace fs = std::filesystem;

FolderLinks::FolderLinks(const SiteTree& tree,
                         const std::function<std::string(const std::string& subpath)>& placeNow)
{
    const fs::path root(tree.rootPath());
    std::error_code error;
    fs::path realRoot; // made when it is needed
    for (SiteTree::Id id = 1; id < tree.size(); ++id) {
        if (tree.type(id) != SiteTree::Type::LinkToFolder)
            continue;
        const std::string subpath = tree.subpath(id);
        std::string target = fs::read_symlink(root / placeNow(subpath), error).native();
        if (error)
            continue;
        if (target.starts_with('/')) {
            if (realRoot.empty())
                realRoot = fs::weakly_canonical(root, error);
            auto below = pathBelow(target, root.native());
            if (!below)
                below = pathBelow(target, realRoot.native());
            // One that leads out of the site is kept, so that a path through it leads nowhere.
            target = below ? "/" + std::string(*below) : "/..";
        }
        m_targets.emplace(subpath, std::move(target));
    }
}

// Goes from `place` along `path`. False if that leads out of the site, or in circles.
bool FolderLinks::follow(std::string& place, std::string_view path, int& linkCount) const
{
    if (path.starts_with('/'))
        place.clear();
    while (!path.empty()) {
        const std::size_t slash = std::min(path.find('/'), path.size());
        if (!enter(place, path.substr(0, slash), linkCount))
            return false;
        path.remove_prefix(std::min(slash + 1, path.size()));
    }
    return true;
}

bool FolderLinks::enter(std::string& place, std::string_view name, int& linkCount) const
{
    constexpr int mostLinks = 40; // as the kernel's (path_resolution(7))
    if (name.empty() || name == ".")
        return true;
    if (name == "..") {
        const bool isInSite = !place.empty();
        place = folderPart(place);
        return isInSite;
    }
    std::string folder = place;
    place.append(place.empty() ? "" : "/").append(name);
    const auto link = m_targets.find(place);
    if (link == m_targets.end())
        return true;
    place = std::move(folder);
    return ++linkCount <= mostLinks && follow(place, link->second, linkCount);
}

std::optional<FolderLinks::Way> FolderLinks::wayOf(std::string_view path) const
{
    Way way;
    int linkCount = 0;
    for (std::size_t begin = 0; begin < path.size();) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        const int before = linkCount;
        if (!enter(way.path, path.substr(begin, end - begin), linkCount))
            return std::nullopt;
        if (linkCount > before) {
            way.linked = path.substr(0, end);
            way.folder = way.path;
        }
        begin = end + 1;
    }
    return linkCount > 0 ? std::optional(std::move(way)) : std::nullopt;
}

} // namespace luma
