// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/addressspelling.h"
#include "links/folderlinks.h"
#include "links/sitepaths.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace luma {

/// Says where links have to lead when items of a site get new places. Unchanging once made; any thread. The site must
/// outlive it.
class MovedPlaces final
{
public:
    /// Subpaths of the site. No item lies in another one.
    struct Item
    {
        std::string from;
        std::string to;
    };

    /// `tree` is the site before the move; without it, links to a folder's index page are taken for links to the folder.
    MovedPlaces(std::vector<Item> items, const SiteTree* tree, WebRules rules);

    /// Links that lead to exactly `from` lead to `to` from now on; nothing has another path.
    static MovedPlaces ofTargets(std::vector<Item> items, const WebRules& rules);

    /// The new place of what was at `path`; nothing where that is not in an item.
    [[nodiscard]] std::optional<std::string> movedPath(std::string_view path) const;
    /// Where a link has to lead that led to `target`, which is inside the site; nothing where that did not move.
    [[nodiscard]] std::optional<NewPlace> newPlaceOf(const LinkTarget& target) const;
    /// Names of which each link to an item writes one; an empty one if that can't be told.
    [[nodiscard]] std::vector<std::string> namesInLinks() const;

private:
    [[nodiscard]] std::optional<NewPlace> newPlaceWithoutLinks(const LinkTarget& target) const;
    [[nodiscard]] std::optional<NewPlace> newPlaceOfFile(const LinkTarget& target,
                                                         const SitePlace& place) const;
    [[nodiscard]] bool isIndexOf(std::string_view path) const;
    [[nodiscard]] bool isIndexName(std::string_view name) const;

    std::vector<Item> m_items;
    std::unordered_map<std::string, std::size_t> m_byFrom;
    std::vector<std::size_t> m_lengths; // of `from`, each once
    const SiteTree* m_tree;
    WebRules m_rules;
    std::optional<FolderLinks> m_folderLinks; // only where there are some
    std::optional<SitePaths> m_paths; // only where a link to an item may lead along a path without its name
    bool m_areTargets = false;
};

} // namespace luma
