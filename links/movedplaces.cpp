// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/movedplaces.h"

#include "base/pathbelow.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <system_error>

namespace luma {

namespace {

bool hasLinkedFolders(const SiteTree& tree)
{
    for (SiteTree::Id id = 0; id < tree.size(); ++id) {
        if (tree.type(id) == SiteTree::Type::LinkToFolder)
            return true;
    }
    return false;
}

} // namespace

MovedPlaces::MovedPlaces(std::vector<Item> items, const SiteTree* tree, WebRules rules)
    : m_items(std::move(items)), m_tree(tree), m_rules(std::move(rules))
{
    std::set<std::size_t> lengths;
    bool anyIndex = false;
    for (std::size_t i = 0; i < m_items.size(); ++i) {
        m_byFrom.try_emplace(m_items[i].from, i);
        lengths.insert(m_items[i].from.size());
        anyIndex = anyIndex || isIndexName(namePart(m_items[i].from));
    }
    m_lengths.assign(lengths.begin(), lengths.end());
    if (m_tree && hasLinkedFolders(*m_tree))
        m_folderLinks.emplace(*m_tree, [this, tree](const std::string& subpath) {
            const std::string place = movedPath(subpath).value_or(subpath);
            std::error_code error;
            const bool isThere = std::filesystem::is_symlink(tree->rootPath() + "/" + place, error);
            return isThere ? place : subpath;
        });
    if (m_tree && (anyIndex || m_rules.extensionsMayBeLeftOut || m_folderLinks))
        m_paths.emplace(*m_tree, m_rules);
}

MovedPlaces MovedPlaces::ofTargets(std::vector<Item> items, const WebRules& rules)
{
    MovedPlaces places(std::move(items), nullptr, rules);
    places.m_areTargets = true;
    return places;
}

bool MovedPlaces::isIndexName(std::string_view name) const
{
    return std::find(m_rules.indexNames.begin(), m_rules.indexNames.end(), name) != m_rules.indexNames.end();
}

std::optional<std::string> MovedPlaces::movedPath(std::string_view path) const
{
    if (m_areTargets)
        return std::nullopt;
    // Tries the lengths that occur, not every folder above: a hostile path may have a million.
    for (const std::size_t length : m_lengths) {
        if (length > path.size() || (length < path.size() && path[length] != '/'))
            continue;
        if (const auto found = m_byFrom.find(std::string(path.substr(0, length))); found != m_byFrom.end())
            return m_items[found->second].to + std::string(path.substr(length));
    }
    return std::nullopt;
}

std::optional<NewPlace> MovedPlaces::newPlaceOf(const LinkTarget& target) const
{
    if (m_areTargets) {
        const auto found = m_byFrom.find(target.path);
        return found == m_byFrom.end() ? std::nullopt
                                       : std::optional(NewPlace{m_items[found->second].to, false});
    }
    const auto way = m_folderLinks ? m_folderLinks->wayOf(target.path) : std::nullopt;
    if (!way || movedPath(target.path))
        return newPlaceWithoutLinks(target);
    LinkTarget real = target;
    real.path = way->path;
    std::optional<NewPlace> place = newPlaceWithoutLinks(real);
    if (!place)
        return std::nullopt;
    // The symbolic link follows its folder, so what stays in that is reached as before.
    const std::string folder = movedPath(way->folder).value_or(way->folder);
    const auto below =
        folder.empty() ? std::optional<std::string_view>(place->path) : pathBelow(place->path, folder);
    if (below)
        place->path = way->linked + (below->empty() ? "" : "/") + std::string(*below);
    return place;
}

std::optional<NewPlace> MovedPlaces::newPlaceWithoutLinks(const LinkTarget& target) const
{
    if (auto path = movedPath(target.path))
        return NewPlace{*std::move(path), target.isFolderForm};
    if (!m_paths)
        return std::nullopt;
    return newPlaceOfFile(target, m_paths->at(target));
}

std::optional<NewPlace> MovedPlaces::newPlaceOfFile(const LinkTarget& target, const SitePlace& place) const
{
    if (place.file == SiteTree::none)
        return std::nullopt;
    const std::string oldPath = m_tree->subpath(place.file);
    std::optional<std::string> path = movedPath(oldPath);
    if (!path)
        return std::nullopt;
    if (place.folder != SiteTree::none) {
        if (isIndexOf(*path)) {
            const std::string folder(folderPart(*path));
            return NewPlace{folder, target.isFolderForm || folder.empty()};
        }
        return NewPlace{*std::move(path), false};
    }
    // Without its extension, which is kept out if it stays.
    if (oldPath.starts_with(target.path) && oldPath.size() > target.path.size()) {
        const std::string_view extension = std::string_view(oldPath).substr(target.path.size());
        if (extension.starts_with('.') && path->ends_with(extension))
            path->resize(path->size() - extension.size());
    }
    return NewPlace{*std::move(path), false};
}

// Whether its folder's address leads to the page at its new place.
bool MovedPlaces::isIndexOf(std::string_view path) const
{
    const std::string folder(folderPart(path));
    for (const std::string& name : m_rules.indexNames) {
        std::string other = folder;
        other.append(folder.empty() ? "" : "/").append(name);
        if (other == path)
            return true;
        if (m_paths->find(other) != SiteTree::none && !movedPath(other))
            return false;
    }
    return false;
}

std::vector<std::string> MovedPlaces::namesInLinks() const
{
    std::set<std::string> names;
    for (const Item& item : m_items)
        names.emplace(m_paths ? std::string_view() : namePart(item.from));
    return {names.begin(), names.end()};
}

} // namespace luma
