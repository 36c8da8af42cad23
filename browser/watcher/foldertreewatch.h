// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/filedescriptor.h"

#include <sys/inotify.h>
#include <time.h>

#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace luma {

/// Watches a folder recursively through inotify(7). Follows folders as they come and go; never follows a
/// symbolic link, except for the root itself. When the kernel's queue overflows, everything is set up again;
/// folders for which the kernel has no watch left are polled; a root that disappears is waited for. Not
/// thread-safe.
class FolderTreeWatch final
{
public:
    /// Changes after `since`, as clock_gettime(2) gives CLOCK_REALTIME_COARSE, count too.
    FolderTreeWatch(std::filesystem::path root, const timespec& since);

    /// Readable when there are events; -1 if inotify is not available.
    [[nodiscard]] int descriptor() const { return m_inotify.get(); }
    /// Milliseconds until lookAround() should be called; -1 for never.
    [[nodiscard]] int patience() const;
    /// Reads the pending events. True if something has changed.
    bool readEvents();
    /// The folders in which something has changed since the last call; nothing where that can't be told.
    std::optional<std::set<std::string>> takeChangedFolders();
    /// Polls what inotify does not report. True if something has changed.
    bool lookAround();
    /// Whether no change can be missed: every folder has a watch, and none is on another file system, perhaps a network's.
    [[nodiscard]] bool isComplete() const { return !m_rootGone && m_lookedAt.empty() && !m_hasOtherDevice; }
    [[nodiscard]] std::size_t watchCount() const { return m_pathByWatch.size(); }

private:
    std::filesystem::path m_root;
    FileDescriptor m_inotify;
    std::unordered_map<int, std::string> m_pathByWatch;
    std::map<std::string, int> m_watchByPath;
    /// Folders without a watch, with the time of their last change.
    std::map<std::string, timespec> m_lookedAt;
    timespec m_since;
    std::optional<std::set<std::string>> m_changedFolders;
    dev_t m_device = 0; // of the root
    bool m_hasOtherDevice = false;
    bool m_rootGone = false;
    bool m_changedMeanwhile = false;

    void setUp();
    void addTree(const std::string& folder);
    bool addFolder(const std::string& folder);
    void removeTree(const std::string& folder);
    void forget(int watch);
    void handle(const inotify_event& event);
    void noteState(const std::string& folder);
};

} // namespace luma
