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

/// An item's place before and after; absolute paths, spelled alike up to the site's folder.
struct MovedItem
{
    std::filesystem::path from;
    std::filesystem::path to;
};

/// The link's value for a page that goes from one folder to another, so that it means the same file; the
/// value itself where it does already, is external, or is no path.
std::string rebasedLink(const std::string& value, const std::filesystem::path& oldFolder,
                        const std::filesystem::path& newFolder);

/// What a set of moved, copied or renamed items means for the links of pages. The items are at their new
/// places already: whether something stands where a link leads is looked up on the disk. Any thread, once
/// made.
class LinkMapping final
{
public:
    explicit LinkMapping(const std::vector<MovedItem>& items);

    /// Whether a page with this source may hold a link to one of the items. A quick look at the bytes.
    [[nodiscard]] bool mayConcern(std::string_view source) const;

    /// The folder that the page at `path` came from with one of the items; nothing for a page that stayed.
    [[nodiscard]] std::optional<std::filesystem::path> oldFolderOf(const std::filesystem::path& path) const;

    /// The changes of a page in `folder` that stayed there: links to the items.
    [[nodiscard]] std::vector<LinkChange> changesOf(const ParsedPage& page,
                                                    const std::filesystem::path& folder) const;
    /// The changes of a page that came from `oldFolder` with one of the items: links to items that moved, and
    /// all that would lead elsewhere now.
    [[nodiscard]] std::vector<LinkChange> changesOfMoved(const ParsedPage& page,
                                                         const std::filesystem::path& oldFolder,
                                                         const std::filesystem::path& folder) const;

private:
    // Its places as comparable paths.
    struct Item
    {
        std::string from;
        std::string to;
    };
    // How the pages of one folder write the items: old text to index, and the lengths that occur.
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
    std::vector<std::string> m_references; // named ones that may stand for a part of a name
    bool m_anyBytes = false;               // a name that may be written in too many ways
};

} // namespace luma
