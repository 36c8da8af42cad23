// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/sitepaths.h"

#include "base/ascii.h"
#include "base/pathbelow.h"
#include "links/bytehash.h"

#include <QtGlobal>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <filesystem>
#include <system_error>

namespace luma {

namespace {

using Type = SiteTree::Type;

// Tried in this order where extensions may be left out.
constexpr auto leftOutExtensions = std::to_array<std::string_view>({".html", ".htm", ".xhtml", ".php"});

bool isFile(Type type)
{
    return type == Type::File || type == Type::LinkToFile;
}

std::string realPath(const std::string& path)
{
    std::error_code error;
    const std::filesystem::path real = std::filesystem::canonical(path, error);
    return error ? std::string() : real.native();
}

std::string joined(const std::string& folder, std::string_view name)
{
    std::string path = folder;
    return path.append("/").append(name);
}

SitePlace missing(MissingReason why = MissingReason::NoSuchFile)
{
    SitePlace place;
    place.why = why;
    return place;
}

bool isFileOnDisk(const std::string& path)
{
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
}

// A path that goes on behind a PHP file is an argument to it.
bool takesPathBehind(std::string_view file)
{
    return file.size() > 4 && equalIgnoringAsciiCase(file.substr(file.size() - 4), ".php");
}

} // namespace

std::string_view textOf(MissingReason reason)
{
    switch (reason) {
    case MissingReason::None:
        return {};
    case MissingReason::NoSuchFile:
        return QT_TRANSLATE_NOOP("luma::LinkFindings", "no such file");
    case MissingReason::OtherLetterCase:
        return QT_TRANSLATE_NOOP("luma::LinkFindings", "other letter case");
    case MissingReason::FolderWithoutIndex:
        return QT_TRANSLATE_NOOP("luma::LinkFindings", "folder without index page");
    case MissingReason::NoSuchPlace:
        return QT_TRANSLATE_NOOP("luma::LinkFindings", "no such place in the page");
    case MissingReason::OutsideSite:
        return QT_TRANSLATE_NOOP("luma::LinkFindings", "outside the site");
    }
    return {};
}

SitePaths::SitePaths(const SiteTree& tree, const WebRules& rules)
    : m_tree(&tree),
      m_realRoot(realPath(tree.rootPath())),
      m_indexNames(rules.indexNames),
      m_extensionsMayBeLeftOut(rules.extensionsMayBeLeftOut)
{
    m_table.resize(std::bit_ceil(tree.size() * 2));
    const std::size_t mask = m_table.size() - 1;
    std::string folderPath; // with a slash at its end
    Id folder = SiteTree::root;
    std::string path;
    for (Id id = 1; id < tree.size(); ++id) {
        if (tree.parent(id) != folder) {
            folder = tree.parent(id);
            folderPath = folder == SiteTree::root ? std::string() : tree.subpath(folder) + "/";
        }
        path.assign(folderPath).append(tree.name(id));
        const std::uint64_t hash = hashBytes(path);
        std::size_t slot = hash & mask;
        while (m_table[slot].id != SiteTree::none)
            slot = (slot + 1) & mask;
        m_table[slot] = {static_cast<std::uint32_t>(hash >> 32U), id};
    }
}

bool SitePaths::isAt(Id id, std::string_view subpath) const
{
    for (;;) {
        const std::string_view name = m_tree->name(id);
        if (!subpath.ends_with(name))
            return false;
        subpath.remove_suffix(name.size());
        id = m_tree->parent(id);
        if (id == SiteTree::root)
            return subpath.empty();
        if (!subpath.ends_with('/'))
            return false;
        subpath.remove_suffix(1);
    }
}

SitePaths::Id SitePaths::find(std::string_view subpath) const
{
    if (subpath.empty())
        return SiteTree::root;
    const std::uint64_t hash = hashBytes(subpath);
    const auto tag = static_cast<std::uint32_t>(hash >> 32U);
    const std::size_t mask = m_table.size() - 1;
    for (std::size_t slot = hash & mask; m_table[slot].id != SiteTree::none; slot = (slot + 1) & mask) {
        if (m_table[slot].hash == tag && isAt(m_table[slot].id, subpath))
            return m_table[slot].id;
    }
    return SiteTree::none;
}

SitePlace SitePaths::at(const LinkTarget& target) const
{
    const Id id = find(target.path);
    if (id == SiteTree::none)
        return notInTree(target);
    switch (m_tree->type(id)) {
    case Type::Folder:
        return inFolder(id, target.path);
    case Type::LinkToFolder:
    case Type::UnreadableFolder:
        return onDisk(target);
    case Type::BrokenLink:
        return missing();
    case Type::File:
    case Type::LinkToFile:
        break;
    }
    if (target.isFolderForm && !takesPathBehind(target.path))
        return missing();
    SitePlace place;
    place.file = id;
    return place;
}

SitePlace SitePaths::inFolder(Id folder, const std::string& path) const
{
    for (const std::string& name : m_indexNames) {
        const Id id = find(path.empty() ? name : joined(path, name));
        if (id != SiteTree::none && isFile(m_tree->type(id)))
            return {MissingReason::None, id, folder, false};
    }
    return missing(MissingReason::FolderWithoutIndex);
}

SitePlace SitePaths::notInTree(const LinkTarget& target) const
{
    if (m_extensionsMayBeLeftOut && !target.isFolderForm) {
        for (const std::string_view extension : leftOutExtensions) {
            const Id id = find(target.path + std::string(extension));
            if (id != SiteTree::none && isFile(m_tree->type(id)))
                return {MissingReason::None, id, SiteTree::none, false};
        }
    }
    std::string_view above = target.path;
    while (!above.empty()) {
        above = folderPart(above);
        const Id id = find(above);
        if (id == SiteTree::none)
            continue;
        const Type type = m_tree->type(id);
        if (type == Type::LinkToFolder || type == Type::UnreadableFolder)
            return onDisk(target);
        if (isFile(type) && takesPathBehind(above))
            return {MissingReason::None, id, SiteTree::none, false};
        break;
    }
    return target.path.ends_with(folderSettingsName) ? onDisk(target) : missing();
}

SitePlace SitePaths::onDisk(const LinkTarget& target) const
{
    SitePlace place = placeOnDisk(target);
    place.isFromDisk = true;
    return place;
}

SitePlace SitePaths::placeOnDisk(const LinkTarget& target) const
{
    if (target.path.find('\0') != std::string::npos)
        return missing();
    const std::string& root = m_tree->rootPath();
    const std::string path = root + (root.ends_with('/') ? "" : "/") + target.path;
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0) {
        // Nobody knows what is in a folder that can't be searched.
        return errno == EACCES ? SitePlace() : nearPathOnDisk(path, target.isFolderForm);
    }
    if (!S_ISDIR(status.st_mode))
        return target.isFolderForm ? missing() : behindLinks(path);
    for (const std::string& name : m_indexNames) {
        const std::string index = joined(path, name);
        if (isFileOnDisk(index))
            return behindLinks(index);
    }
    return ::access(path.c_str(), X_OK) == 0 ? missing(MissingReason::FolderWithoutIndex) : SitePlace();
}

// Where nothing is at `path`: a page whose extension may be left out, or a PHP file that takes the rest of the path.
SitePlace SitePaths::nearPathOnDisk(std::string path, bool isFolderForm) const
{
    for (const std::string_view extension : leftOutExtensions) {
        const std::string file = path + std::string(extension);
        if (m_extensionsMayBeLeftOut && !isFolderForm && isFileOnDisk(file))
            return behindLinks(file);
    }
    while (path.size() > m_tree->rootPath().size()) {
        path.resize(folderPart(path).size());
        if (takesPathBehind(path) && isFileOnDisk(path))
            return behindLinks(path);
    }
    return missing();
}

// What is reached through a symbolic link may be in the tree under its own path.
SitePlace SitePaths::behindLinks(const std::string& path) const
{
    const std::string real = realPath(path);
    const std::string start = m_realRoot.ends_with('/') ? m_realRoot : m_realRoot + "/";
    SitePlace place;
    if (!m_realRoot.empty() && real.starts_with(start))
        place.file = find(std::string_view(real).substr(start.size()));
    return place;
}

} // namespace luma
