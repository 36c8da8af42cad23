// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/stillwanted.h"
#include "links/linkrules.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// A path without slashes at its end, but for that of "/".
std::filesystem::path withoutEndSlashes(const std::filesystem::path& path);

/// Everything below a site's folder at the time it was read, with hidden items but without ".DS_Store";
/// symbolic links are not followed. Reports use it instead of the disk. Once it is made, any thread may use
/// it.
class SiteTree final
{
public:
    using Id = std::uint32_t;
    static constexpr Id root = 0;
    static constexpr Id none = ~Id(0);

    enum class Type : std::uint8_t { File, Folder, LinkToFile, LinkToFolder, BrokenLink, UnreadableFolder };

    /// Error: the site's folder can't be read, or the job was stopped (isStopped()). An unreadable folder below it
    /// counts as empty.
    static Result<SiteTree> read(const std::filesystem::path& root, const StillWanted& stillWanted = {});

    /// A tree of which nothing has been read: its root counts as an unreadable folder.
    static SiteTree unread(const std::filesystem::path& root);

    /// Gives an item the place that it had before the disk was changed, and makes folders that it needs. files() keeps its
    /// order.
    void putBack(Id id, std::string_view subpath);

    /// All items but folders and symbolic links to folders, in the byte order of the subpaths.
    [[nodiscard]] const std::vector<Id>& files() const { return m_files; }
    /// Those that are pages.
    [[nodiscard]] std::vector<Id> pages() const;
    /// Those that are pages or style sheets to a browser.
    [[nodiscard]] std::vector<Id> webPages() const;
    [[nodiscard]] std::size_t size() const { return m_entries.size(); }

    [[nodiscard]] const std::string& rootPath() const { return m_rootPath; }
    /// The path relative to the site's folder.
    [[nodiscard]] std::string subpath(Id id) const;
    [[nodiscard]] std::string path(Id id) const;
    [[nodiscard]] std::string_view name(Id id) const;
    [[nodiscard]] Id parent(Id id) const { return m_entries[id].parent; }
    [[nodiscard]] Type type(Id id) const { return m_entries[id].type; }
    [[nodiscard]] FileKind kind(Id id) const { return m_entries[id].kind; }
    /// Whether the item, which is at `file` on the disk now, is a symbolic link to a file of the site.
    [[nodiscard]] bool isLinkIntoSite(Id id, const std::string& file) const;
    /// The item with this name in `folder`, or none.
    [[nodiscard]] Id child(Id folder, std::string_view name) const;
    /// The item at `subpath`, or none.
    [[nodiscard]] Id find(std::string_view subpath) const;
    /// An item that has another place on the disk already.
    struct Renamed
    {
        Id id = none;
        Id newFolder = none;
        std::string newName;
    };
    /// Whether the folder on the disk holds the items that it has here, but for that one.
    [[nodiscard]] bool isAsOnDisk(Id folder, const Renamed& renamed) const;
    /// Whether the other tree has the same items with the same numbers.
    [[nodiscard]] bool hasSameItems(const SiteTree& other) const
    {
        return m_entries == other.m_entries && m_names == other.m_names;
    }

private:
    struct Entry
    {
        Id parent;
        std::uint32_t nameBegin;
        std::uint16_t nameLength;
        Type type;
        FileKind kind;

        bool operator==(const Entry&) const = default;
    };

    Result<void> addFolder(Id folder, const std::string& path, const StillWanted& stillWanted);
    Id add(Id parent, std::string_view name, Type type);
    void buildTable();

    std::string m_rootPath;
    std::vector<Entry> m_entries;
    std::string m_names;
    std::vector<Id> m_files;
    std::vector<Id> m_table; // open addressing by (parent, name)
};

} // namespace luma
