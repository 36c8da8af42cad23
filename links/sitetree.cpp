// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/sitetree.h"

#include "base/filecalls.h"
#include "base/folderreader.h"
#include "base/pathbelow.h"
#include "links/bytehash.h"
#include "links/webrules.h"

#include <algorithm>
#include <bit>

namespace luma {

namespace {

struct Item
{
    std::string sortKey; // the name; a folder's has the slash that follows it in subpaths
    SiteTree::Type type;

    [[nodiscard]] bool isFolder() const { return type == SiteTree::Type::Folder; }
    [[nodiscard]] std::string_view name() const
    {
        return std::string_view(sortKey).substr(0, sortKey.size() - (isFolder() ? 1 : 0));
    }
};

SiteTree::Type typeOf(const FolderReader::Entry& entry)
{
    const FolderReader::Type type = entry.type();
    if (type != FolderReader::Type::Link)
        return type == FolderReader::Type::Folder ? SiteTree::Type::Folder : SiteTree::Type::File;
    const auto target = entry.targetType();
    if (!target)
        return SiteTree::Type::BrokenLink;
    return target == FolderReader::Type::Folder ? SiteTree::Type::LinkToFolder : SiteTree::Type::LinkToFile;
}

// The folder is closed before the recursion, so that a deep site does not use up the file descriptors.
Result<std::vector<Item>> itemsIn(const std::string& path)
{
    auto folder = FolderReader::open(path);
    if (!folder)
        return folder.error();
    std::vector<Item> items;
    while (const auto entry = folder->next()) {
        const std::string_view name = entry->name();
        if (name == folderSettingsName)
            continue;
        const SiteTree::Type type = typeOf(*entry);
        items.push_back({std::string(name) + (type == SiteTree::Type::Folder ? "/" : ""), type});
    }
    std::sort(items.begin(), items.end(), [](const Item& a, const Item& b) { return a.sortKey < b.sortKey; });
    return items;
}

} // namespace

std::filesystem::path withoutEndSlashes(const std::filesystem::path& path)
{
    std::string text = path.native();
    while (text.size() > 1 && text.ends_with('/'))
        text.pop_back();
    return text;
}

Result<SiteTree> SiteTree::read(const std::filesystem::path& root, const StillWanted& stillWanted)
{
    SiteTree tree;
    tree.m_rootPath = withoutEndSlashes(root).native();
    tree.add(none, {}, Type::Folder);
    if (const auto added = tree.addFolder(SiteTree::root, tree.m_rootPath, stillWanted); !added)
        return added.error();
    if (!isWanted(stillWanted))
        return stoppedError(tree.m_rootPath);
    tree.buildTable();
    return tree;
}

SiteTree SiteTree::unread(const std::filesystem::path& root)
{
    SiteTree tree;
    tree.m_rootPath = root.native();
    tree.add(none, {}, Type::UnreadableFolder);
    tree.buildTable();
    return tree;
}

SiteTree::Id SiteTree::add(Id parent, std::string_view name, Type type)
{
    m_entries.push_back({parent, static_cast<std::uint32_t>(m_names.size()),
                         static_cast<std::uint16_t>(name.size()), type,
                         type == Type::Folder ? FileKind::Other : fileKind(name)});
    m_names += name;
    return static_cast<Id>(m_entries.size() - 1);
}

Result<void> SiteTree::addFolder(Id folder, const std::string& path, const StillWanted& stillWanted)
{
    if (!isWanted(stillWanted))
        return stoppedError(path);
    const auto items = itemsIn(path);
    if (!items) {
        m_entries[folder].type = Type::UnreadableFolder;
        return items.error();
    }
    for (const Item& item : *items) {
        const Id id = add(folder, item.name(), item.type);
        if (item.isFolder())
            (void)addFolder(id, path + "/" + std::string(item.name()), stillWanted);
        else if (item.type != Type::LinkToFolder)
            m_files.push_back(id);
    }
    return {};
}

void SiteTree::putBack(Id id, std::string_view subpath)
{
    if (id == none)
        return;
    // Its old folder may have the name that it has now.
    m_entries[id].parent = none;
    buildTable();
    Id folder = root;
    for (std::size_t slash = subpath.find('/'); slash != std::string_view::npos; slash = subpath.find('/')) {
        const std::string_view name = subpath.substr(0, slash);
        Id next = child(folder, name);
        if (next == none) {
            next = add(folder, name, Type::Folder);
            buildTable();
        }
        folder = next;
        subpath.remove_prefix(slash + 1);
    }
    Entry& entry = m_entries[id];
    entry.parent = folder;
    entry.nameBegin = static_cast<std::uint32_t>(m_names.size());
    entry.nameLength = static_cast<std::uint16_t>(subpath.size());
    if (entry.type != Type::Folder)
        entry.kind = fileKind(subpath);
    m_names += subpath;
    buildTable();
}

void SiteTree::buildTable()
{
    m_table.assign(std::bit_ceil(m_entries.size() * 2), none);
    const std::size_t mask = m_table.size() - 1;
    for (Id id = 1; id < m_entries.size(); ++id) {
        std::size_t slot = hashBytes(name(id), m_entries[id].parent) & mask;
        while (m_table[slot] != none)
            slot = (slot + 1) & mask;
        m_table[slot] = id;
    }
}

SiteTree::Id SiteTree::child(Id folder, std::string_view wanted) const
{
    const std::size_t mask = m_table.size() - 1;
    for (std::size_t slot = hashBytes(wanted, folder) & mask; m_table[slot] != none;
         slot = (slot + 1) & mask) {
        const Id id = m_table[slot];
        if (m_entries[id].parent == folder && name(id) == wanted)
            return id;
    }
    return none;
}

bool SiteTree::isAsOnDisk(Id folder, const Renamed& renamed) const
{
    auto items = itemsIn(path(folder));
    if (!items || m_entries[folder].type != Type::Folder)
        return false;
    if (folder == renamed.newFolder)
        std::erase_if(*items, [&renamed](const Item& item) { return item.name() == renamed.newName; });
    auto item = items->begin();
    for (Id id = folder + 1; id < m_entries.size(); ++id) {
        if (m_entries[id].parent != folder || id == renamed.id)
            continue;
        const bool isSame =
            item != items->end() && item->name() == name(id) && (item->type == m_entries[id].type);
        if (!isSame)
            return false;
        ++item;
    }
    return item == items->end();
}

SiteTree::Id SiteTree::find(std::string_view subpath) const
{
    Id id = root;
    while (!subpath.empty() && id != none) {
        const std::size_t slash = std::min(subpath.find('/'), subpath.size());
        if (slash > 0)
            id = child(id, subpath.substr(0, slash));
        subpath.remove_prefix(std::min(slash + 1, subpath.size()));
    }
    return id;
}

std::string_view SiteTree::name(Id id) const
{
    return std::string_view(m_names).substr(m_entries[id].nameBegin, m_entries[id].nameLength);
}

std::string SiteTree::subpath(Id id) const
{
    std::string text;
    for (; id != root; id = m_entries[id].parent) {
        text.insert(0, name(id));
        if (m_entries[id].parent != root)
            text.insert(0, 1, '/');
    }
    return text;
}

std::string SiteTree::path(Id id) const
{
    if (id == root)
        return m_rootPath;
    return m_rootPath + (m_rootPath.ends_with('/') ? "" : "/") + subpath(id);
}

std::vector<SiteTree::Id> SiteTree::pages() const
{
    std::vector<Id> pages;
    std::copy_if(m_files.begin(), m_files.end(), std::back_inserter(pages),
                 [this](Id id) { return m_entries[id].kind == FileKind::Page; });
    return pages;
}

bool SiteTree::isLinkIntoSite(Id id, const std::string& file) const
{
    if (type(id) != Type::LinkToFile)
        return false;
    std::error_code error;
    const std::filesystem::path real = std::filesystem::canonical(file, error);
    const std::filesystem::path realRoot = std::filesystem::canonical(m_rootPath, error);
    return !error && isAtOrBelow(real.native(), realRoot.native());
}

std::vector<SiteTree::Id> SiteTree::webPages() const
{
    std::vector<Id> pages;
    std::copy_if(m_files.begin(), m_files.end(), std::back_inserter(pages),
                 [this](Id id) { return webFileKind(name(id)) != WebFileKind::Other; });
    return pages;
}

} // namespace luma
