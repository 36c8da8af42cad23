// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <ctime>
#include <string>

namespace luma {

/// By what a file is recognised as unchanged, without reading it. The time of the last change of its record (ctime) is among
/// it, which programs that set a file's time back can't set.
struct FileStamp
{
    std::uint64_t inode = 0;
    std::uint64_t size = 0;
    std::int64_t modified = 0; // in nanoseconds
    std::int64_t changed = 0;  // in nanoseconds; 0 for no stamp
    bool isShared = false;     // has other names (hard links), by which it can change

    bool operator==(const FileStamp&) const = default;

    /// The step of the coarsest file systems' clocks, in nanoseconds.
    static constexpr std::int64_t coarsestStep = 2'000'000'000;

    /// Of the file at `path`, links followed. No stamp where there is none, and for a file that has changed less than
    /// `clockStep` ago, so that another change might not show: it has to be read again the next time.
    static FileStamp of(const std::string& path, std::int64_t clockStep = coarsestStep)
    {
        struct stat status = {};
        timespec now = {};
        ::clock_gettime(CLOCK_REALTIME, &now);
        if (::stat(path.c_str(), &status) != 0)
            return {};
        FileStamp stamp;
        stamp.isShared = status.st_nlink > 1;
        if (nanoseconds(now) - nanoseconds(status.st_ctim) < clockStep)
            return stamp;
        stamp.inode = status.st_ino;
        stamp.size = static_cast<std::uint64_t>(status.st_size);
        stamp.modified = nanoseconds(status.st_mtim);
        stamp.changed = nanoseconds(status.st_ctim);
        return stamp;
    }

    [[nodiscard]] bool isKnown() const { return changed != 0; }

private:
    static std::int64_t nanoseconds(const timespec& time)
    {
        return time.tv_sec * 1'000'000'000 + time.tv_nsec;
    }
};

} // namespace luma
