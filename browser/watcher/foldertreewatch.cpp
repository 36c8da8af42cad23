// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/watcher/foldertreewatch.h"

#include "base/folderreader.h"
#include "base/pathbelow.h"

#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstdio>

namespace luma {

namespace {

// A file that is being written is a change when it is closed; until then, the folder is only noted.
constexpr std::uint32_t interesting = IN_CREATE | IN_DELETE | IN_MODIFY | IN_CLOSE_WRITE | IN_ATTRIB |
                                      IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF |
                                      IN_EXCL_UNLINK | IN_ONLYDIR;
constexpr int lookAroundEvery = 2000;

bool operator<(const timespec& a, const timespec& b)
{
    return a.tv_sec != b.tv_sec ? a.tv_sec < b.tv_sec : a.tv_nsec < b.tv_nsec;
}

timespec changeTime(const std::string& path)
{
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_ctim : timespec{};
}

std::vector<std::string> foldersIn(const std::string& parent)
{
    std::vector<std::string> folders;
    auto reader = FolderReader::open(parent);
    if (!reader)
        return folders;
    while (const auto entry = reader->next()) {
        if (entry->type() == FolderReader::Type::Folder)
            folders.push_back(parent + '/' + entry->name());
    }
    return folders;
}

} // namespace

FolderTreeWatch::FolderTreeWatch(std::filesystem::path root, const timespec& since)
    : m_root(std::move(root)), m_since(since)
{
    setUp();
}

void FolderTreeWatch::setUp()
{
    m_pathByWatch.clear();
    m_watchByPath.clear();
    m_lookedAt.clear();
    m_inotify.reset(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    struct stat status = {};
    m_rootGone = ::stat(m_root.c_str(), &status) != 0;
    m_device = status.st_dev;
    m_hasOtherDevice = false;
    if (!m_rootGone)
        addTree(m_root.native());
}

/// Watches first and lists then, so that an item created in between is seen twice rather than missed.
void FolderTreeWatch::addTree(const std::string& folder)
{
    std::vector<std::string> waiting = {folder};
    while (!waiting.empty()) {
        const std::string next = std::move(waiting.back());
        waiting.pop_back();
        if (!addFolder(next))
            continue;
        noteState(next);
        for (std::string& below : foldersIn(next))
            waiting.push_back(std::move(below));
    }
}

/// False if the folder does not exist or can't be read.
bool FolderTreeWatch::addFolder(const std::string& folder)
{
    const std::uint32_t follow = folder == m_root.native() ? 0U : IN_DONT_FOLLOW;
    const int watch = ::inotify_add_watch(m_inotify.get(), folder.c_str(), interesting | follow);
    if (watch >= 0) {
        forget(watch);
        m_pathByWatch[watch] = folder;
        m_watchByPath[folder] = watch;
        return true;
    }
    if (errno != ENOSPC && errno != ENOMEM && errno != EBADF)
        return false;
    if (m_lookedAt.empty())
        (void)std::fprintf(stderr,
                           "LUMAWatcher: no watches left; some folders are looked at from time to time\n");
    m_lookedAt[folder] = changeTime(folder);
    return true;
}

/// Detects changes made before the folder was watched.
void FolderTreeWatch::noteState(const std::string& folder)
{
    struct stat status = {};
    if (::stat(folder.c_str(), &status) != 0)
        return;
    if (m_since < status.st_ctim)
        m_changedMeanwhile = true;
    if (status.st_dev != m_device)
        m_hasOtherDevice = true;
}

void FolderTreeWatch::forget(int watch)
{
    const auto found = m_pathByWatch.find(watch);
    if (found == m_pathByWatch.end())
        return;
    if (const auto path = m_watchByPath.find(found->second);
        path != m_watchByPath.end() && path->second == watch)
        m_watchByPath.erase(path);
    m_pathByWatch.erase(found);
}

/// A folder that was moved away would keep its watches.
void FolderTreeWatch::removeTree(const std::string& folder)
{
    for (auto entry = m_watchByPath.lower_bound(folder);
         entry != m_watchByPath.end() && entry->first.starts_with(folder);) {
        if (!isAtOrBelow(entry->first, folder)) {
            ++entry;
            continue;
        }
        ::inotify_rm_watch(m_inotify.get(), entry->second);
        m_pathByWatch.erase(entry->second);
        entry = m_watchByPath.erase(entry);
    }
    std::erase_if(m_lookedAt, [&](const auto& entry) { return isAtOrBelow(entry.first, folder); });
}

void FolderTreeWatch::handle(const inotify_event& event)
{
    const auto found = m_pathByWatch.find(event.wd);
    if (found == m_pathByWatch.end())
        return;
    const std::string folder = found->second;
    if (m_changedFolders)
        m_changedFolders->insert(folder);
    if ((event.mask & (IN_IGNORED | IN_UNMOUNT)) != 0)
        forget(event.wd);
    if (folder == m_root.native() && (event.mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT)) != 0)
        m_rootGone = true;
    if ((event.mask & IN_ISDIR) == 0 || event.len == 0)
        return;
    const std::string item = folder + '/' + event.name;
    if ((event.mask & (IN_CREATE | IN_MOVED_TO)) != 0)
        addTree(item);
    else if ((event.mask & (IN_DELETE | IN_MOVED_FROM)) != 0)
        removeTree(item);
}

bool FolderTreeWatch::readEvents()
{
    alignas(inotify_event) std::array<char, 65536> buffer;
    bool changed = std::exchange(m_changedMeanwhile, false);
    bool overflowed = false;
    for (;;) {
        const ssize_t length = ::read(m_inotify.get(), buffer.data(), buffer.size());
        if (length <= 0)
            break;
        for (ssize_t at = 0; at < length;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + at);
            overflowed = overflowed || (event->mask & IN_Q_OVERFLOW) != 0;
            changed = changed || (event->mask & IN_MODIFY) == 0;
            if (!overflowed)
                handle(*event);
            at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
    }
    if (overflowed || m_rootGone) {
        m_changedFolders.reset();
        setUp();
    }
    if (m_changedMeanwhile)
        m_changedFolders.reset();
    return std::exchange(m_changedMeanwhile, false) || changed;
}

std::optional<std::set<std::string>> FolderTreeWatch::takeChangedFolders()
{
    return std::exchange(m_changedFolders, std::set<std::string>());
}

int FolderTreeWatch::patience() const
{
    if (m_changedMeanwhile)
        return 0;
    return m_rootGone || !m_lookedAt.empty() ? lookAroundEvery : -1;
}

bool FolderTreeWatch::lookAround()
{
    m_changedFolders.reset();
    bool changed = std::exchange(m_changedMeanwhile, false);
    if (m_rootGone) {
        setUp();
        return changed || !m_rootGone;
    }
    std::vector<std::string> changedFolders;
    for (auto& [folder, time] : m_lookedAt) {
        const timespec now = changeTime(folder);
        if (now.tv_sec == time.tv_sec && now.tv_nsec == time.tv_nsec)
            continue;
        time = now;
        changedFolders.push_back(folder);
    }
    for (const std::string& folder : changedFolders) {
        removeTree(folder);
        addTree(folder);
    }
    return changed || !changedFolders.empty() || std::exchange(m_changedMeanwhile, false);
}

} // namespace luma
