// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/fileplaces.h"

#include "base/filecalls.h"
#include "base/filedescriptor.h"
#include "base/files.h"
#include "base/folderreader.h"
#include "base/pathbelow.h"
#include "links/bytehash.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace luma {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t mostSeen = 200'000;
constexpr std::uint64_t mostRead = 128 * 1024 * 1024; // bytes of all files
constexpr std::size_t readAtEachEnd = 8192;           // bytes of a file

std::string joined(const std::string& folder, const std::string& name)
{
    return folder.empty() ? name : folder + "/" + name;
}

} // namespace

/// Finds the places of items that have gone among those that have come.
class FilePlaces::Matcher final
{
public:
    Matcher(const Names& gone, const Names& come) : m_gone(gone), m_come(come)
    {
        for (const auto& [path, identity] : come) {
            m_byInode.emplace(identity.inode, path);
            if (!identity.isFolder)
                m_byName.emplace(namePart(path), path);
            if (identity.content != 0)
                m_byContent.emplace(identity.content, path);
        }
    }

    [[nodiscard]] std::optional<std::string> placeOf(const std::string& path, const Identity& identity) const
    {
        const auto [first, last] = m_byInode.equal_range(identity.inode);
        for (auto found = first; found != last; ++found) {
            const auto come = m_come.find(found->second);
            if (come != m_come.end() && come->second.device == identity.device &&
                (identity.isFolder ? come->second.isFolder && haveSameFile(path, come->first)
                                   : looksAlike(identity, come->second)))
                return come->first;
        }
        if (identity.isFolder || identity.size == 0)
            return std::nullopt;
        const auto copy = copyOf(path, identity);
        return copy ? copy : sameContentAs(path, identity);
    }

private:
    // The number of an inode is given to the next file that is created, so it is not enough.
    static bool looksAlike(const Identity& a, const Identity& b)
    {
        return a.isFolder == b.isFolder && a.size == b.size && a.modified == b.modified;
    }

    // Moved across file systems. Nothing where several look alike.
    [[nodiscard]] std::optional<std::string> copyOf(const std::string& path, const Identity& identity) const
    {
        std::optional<std::string> copy;
        const auto [first, last] = m_byName.equal_range(std::string(namePart(path)));
        for (auto found = first; found != last; ++found) {
            const auto come = m_come.find(found->second);
            if (come == m_come.end() || !looksAlike(identity, come->second))
                continue;
            if (copy)
                return std::nullopt;
            copy = come->first;
        }
        return copy;
    }

    // Copied with a new time. Nothing where several are the same, unless one of them alone has the name.
    [[nodiscard]] std::optional<std::string> sameContentAs(const std::string& path,
                                                           const Identity& identity) const
    {
        std::vector<std::string> all;
        std::vector<std::string> named;
        const auto [first, last] = m_byContent.equal_range(identity.content);
        for (auto found = first; found != last && identity.content != 0; ++found) {
            const auto come = m_come.find(found->second);
            if (come == m_come.end() || come->second.size != identity.size)
                continue;
            all.push_back(come->first);
            if (namePart(come->first) == namePart(path))
                named.push_back(come->first);
        }
        if (named.size() == 1)
            return named.front();
        return all.size() == 1 ? std::optional(all.front()) : std::nullopt;
    }

    [[nodiscard]] bool haveSameFile(const std::string& oldFolder, const std::string& newFolder) const
    {
        const std::string below = oldFolder + "/";
        for (auto gone = m_gone.lower_bound(below); gone != m_gone.end() && gone->first.starts_with(below);
             ++gone) {
            const auto come = m_come.find(newFolder + gone->first.substr(oldFolder.size()));
            if (come != m_come.end() && !gone->second.isFolder && looksAlike(gone->second, come->second))
                return true;
        }
        return false;
    }

    const Names& m_gone;
    const Names& m_come;
    std::unordered_multimap<std::uint64_t, std::string> m_byInode;
    std::unordered_multimap<std::string, std::string> m_byName;
    std::unordered_multimap<std::uint64_t, std::string> m_byContent;
};

// Of its begin and its end.
std::uint64_t FilePlaces::contentOf(const fs::path& file, std::uint64_t size)
{
    if (size == 0 || m_read >= mostRead)
        return 0;
    const FileDescriptor opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (!opened)
        return 0;
    std::string bytes(std::min<std::size_t>(size, 2 * readAtEachEnd), '\0');
    m_read += bytes.size();
    const std::size_t begun = std::min(bytes.size(), readAtEachEnd);
    const std::size_t rest = bytes.size() - begun;
    const auto isRead = [&](std::size_t at, std::size_t count, std::uint64_t place) {
        return ::pread(opened.get(), bytes.data() + at, count, static_cast<off_t>(place)) ==
               static_cast<ssize_t>(count);
    };
    if (!isRead(0, begun, 0) || (rest > 0 && !isRead(begun, rest, size - rest)))
        return 0;
    return std::max<std::uint64_t>(hashBytes(bytes, size), 1);
}

// `before` is what was there the last time.
FilePlaces::Names FilePlaces::namesIn(const std::string& folder, const Names& before,
                                      const StillWanted& stillWanted)
{
    Names names;
    const fs::path path = folder.empty() ? m_site : m_site / folder;
    auto entries = FolderReader::open(path.native());
    while (entries) {
        const auto entry = entries->next();
        if (!entry || !isWanted(stillWanted))
            break;
        const std::string name(entry->name());
        struct stat status = {};
        if (name.starts_with('.') || ::lstat((path / name).c_str(), &status) != 0)
            continue;
        Identity now{status.st_dev,
                     status.st_ino,
                     static_cast<std::uint64_t>(status.st_size),
                     status.st_mtim.tv_sec * 1'000'000'000 + status.st_mtim.tv_nsec,
                     0,
                     S_ISDIR(status.st_mode)};
        const auto known = before.find(name);
        if (known != before.end() && known->second.inode == now.inode && known->second.size == now.size &&
            known->second.modified == now.modified)
            now.content = known->second.content;
        else if (S_ISREG(status.st_mode))
            now.content = contentOf(path / name, now.size);
        names[name] = now;
    }
    return names;
}

std::vector<MovedItem> FilePlaces::update(const std::optional<std::set<std::string>>& folders,
                                          const StillWanted& stillWanted)
{
    if (m_seen > mostSeen) {
        m_folders.clear();
        m_come.clear();
        m_gone.clear();
        return {};
    }
    std::set<std::string> subpaths;
    if (folders && m_isComplete) {
        for (const std::string& path : *folders) {
            if (const auto below = pathBelow(path, m_site.native()))
                subpaths.insert(std::string(*below));
        }
    } else {
        subpaths.insert(std::string());
        for (const auto& [folder, names] : m_folders)
            subpaths.insert(folder);
    }
    m_isComplete = false;
    for (const std::string& folder : subpaths) {
        // One that has gone with a folder above it has nothing more to tell.
        if ((folder.empty() || m_folders.contains(folder)) && !lookAt(folder, stillWanted))
            return {};
    }
    m_isComplete = true;
    if (!std::exchange(m_isKnown, true))
        m_come.clear();
    return takeMoves();
}

bool FilePlaces::lookAt(const std::string& folder, const StillWanted& stillWanted)
{
    if (!isWanted(stillWanted))
        return false;
    const Names now = namesIn(folder, m_folders[folder], stillWanted);
    if (!isWanted(stillWanted))
        return false;
    const Names before = std::exchange(m_folders[folder], now);
    const auto isFolderIn = [](const Names& names, const std::string& name, const Identity& known) {
        const auto found = names.find(name);
        return found != names.end() && found->second.isFolder && found->second.inode == known.inode;
    };
    for (const auto& [name, identity] : before) {
        const std::string path = joined(folder, name);
        if (!now.contains(name))
            m_gone[path] = identity;
        if (identity.isFolder && !isFolderIn(now, name, identity))
            forgetBelow(path);
    }
    for (const auto& [name, identity] : now) {
        const std::string path = joined(folder, name);
        if (!before.contains(name) || (identity.isFolder && !isFolderIn(before, name, identity)))
            m_come[path] = identity;
        if (identity.isFolder && !isFolderIn(before, name, identity) && !addBelow(path, stillWanted))
            return false;
    }
    return true;
}

bool FilePlaces::addBelow(const std::string& folder, const StillWanted& stillWanted)
{
    if (!isWanted(stillWanted))
        return false;
    const Names names = namesIn(folder, {}, stillWanted);
    if (!isWanted(stillWanted))
        return false;
    m_seen += names.size();
    if (m_seen > mostSeen)
        return false;
    m_folders[folder] = names;
    for (const auto& [name, identity] : names) {
        const std::string path = joined(folder, name);
        m_come[path] = identity;
        if (identity.isFolder && !addBelow(path, stillWanted))
            return false;
    }
    return true;
}

void FilePlaces::forgetBelow(const std::string& folder)
{
    auto entry = m_folders.lower_bound(folder);
    while (entry != m_folders.end() && entry->first.starts_with(folder)) {
        if (!isAtOrBelow(entry->first, folder)) {
            ++entry;
            continue;
        }
        for (const auto& [name, identity] : entry->second)
            m_gone[joined(entry->first, name)] = identity;
        m_seen -= std::min(m_seen, entry->second.size());
        entry = m_folders.erase(entry);
    }
}

// Folders come before what is in them, which moves with them.
std::vector<MovedItem> FilePlaces::takeMoves()
{
    constexpr std::size_t mostMoves = 100;
    constexpr std::size_t mostKept = 10'000;
    const auto eraseBelow = [](Names& names, const std::string& folder) {
        std::erase_if(names, [&folder](const auto& entry) { return isAtOrBelow(entry.first, folder); });
    };
    std::erase_if(m_gone, [this](const auto& entry) { return itemExists(m_site / entry.first); });
    std::vector<MovedItem> moved;
    const Matcher matcher(m_gone, m_come);
    for (auto gone = m_gone.begin(); gone != m_gone.end() && moved.size() < mostMoves;) {
        const std::string path = gone->first;
        const auto place = matcher.placeOf(path, gone->second);
        ++gone;
        if (!place || !itemExists(m_site / *place))
            continue;
        moved.push_back({m_site / path, m_site / *place});
        eraseBelow(m_gone, path);
        eraseBelow(m_come, *place);
        gone = m_gone.upper_bound(path);
    }
    for (Names* const names : {&m_gone, &m_come}) {
        if (names->size() > mostKept || moved.size() == mostMoves)
            names->clear();
    }
    return moved;
}

} // namespace luma
