// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/linkrules.h"
#include "links/namesearch.h"
#include "links/parsedpage.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace luma {

/// Where an item was and where it is now; absolute paths with the same spelling up to the site's folder.
struct MovedItem
{
    std::filesystem::path from;
    std::filesystem::path to;

    bool operator==(const MovedItem&) const = default;
};

/// The value that a link needs to lead to the same file when its page moves from one folder to the other; the
/// old value where that still does, is external or is no path.
std::string rebasedLink(const std::string& value, const std::filesystem::path& oldFolder,
                        const std::filesystem::path& newFolder);

/// How links change when items have been moved, copied or renamed. The items must be in their new places
/// already, because whether a link leads to something is looked up on the disk. Any thread, once made.
class LinkMapping final
{
public:
    explicit LinkMapping(const std::vector<MovedItem>& items);

    /// Whether a page with this source may have a link to one of the items: a quick search for their names.
    [[nodiscard]] bool mayConcern(std::string_view source) const;

    /// The folder that the page now at `path` was in before it moved with an item; nothing if it did not move.
    [[nodiscard]] std::optional<std::filesystem::path> oldFolderOf(const std::filesystem::path& path) const;

    /// The changes to a page in `folder` that did not move: its links to the items.
    [[nodiscard]] std::vector<LinkChange> changesOf(const ParsedPage& page,
                                                    const std::filesystem::path& folder) const;
    /// The changes to a page that moved from `oldFolder` with an item: its links to the items, and all others
    /// that would lead elsewhere now.
    [[nodiscard]] std::vector<LinkChange> changesOfMoved(const ParsedPage& page,
                                                         const std::filesystem::path& oldFolder,
                                                         const std::filesystem::path& folder) const;

private:
    // MovedItem with comparable paths.
    struct Item
    {
        std::string from;
        std::string to;
    };
    // How pages in one folder wrote links to the items: old text to index of the item, and all lengths.
    struct WrittenItems
    {
        std::unordered_map<std::string, std::size_t> byText;
        std::vector<std::size_t> lengths; // longest first
    };

    [[nodiscard]] WrittenItems writtenFrom(const std::filesystem::path& folder) const;
    [[nodiscard]] const Item* itemAt(const std::string& place) const;
    [[nodiscard]] std::optional<std::string>
    updated(const std::string& value, const std::filesystem::path& folder, const WrittenItems& written) const;
    [[nodiscard]] bool isGuarded(const std::string& value, const std::filesystem::path& folder,
                                 const Item& item) const;
    [[nodiscard]] std::string moved(const std::string& value, const std::filesystem::path& oldFolder,
                                    const std::filesystem::path& folder) const;

    std::vector<Item> m_items;
    std::unordered_map<std::string, std::size_t> m_byFrom;
    std::vector<std::size_t> m_fromLengths; // longest first
    NameSearch m_names;
    std::vector<std::string> m_references; // character references that may stand for a part of a name
    bool m_anyBytes = false;               // some name may be written in too many ways
};

} // namespace luma
