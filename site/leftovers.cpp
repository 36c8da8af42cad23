// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/leftovers.h"

#include "base/folderreader.h"
#include "site/folderaccess.h"

#include <fcntl.h>
#include <fnmatch.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <ctime>

namespace luma {

namespace {

// The lock of another computer isn't seen through a share, so there only age counts.
bool isLeftover(const FileDescriptor& folder, const char* name, bool isOnFuse)
{
    struct stat status = {};
    if (::fstatat(folder.get(), name, &status, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISREG(status.st_mode))
        return false;
    constexpr time_t longAgo = 86400;
    if (isOnFuse)
        return status.st_mtim.tv_sec < ::time(nullptr) - longAgo;
    const FileDescriptor file(::openat(folder.get(), name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    return file && ::flock(file.get(), LOCK_EX | LOCK_NB) == 0;
}

} // namespace

void removeLeftovers(const FileDescriptor& folder, bool isOnFuse)
{
    auto copy = openFolderBelow(folder, {});
    auto reader = copy ? FolderReader::open(*std::move(copy), {}) : Result<FolderReader>(copy.error());
    while (reader) {
        const auto entry = reader->next();
        if (!entry)
            break;
        if (::fnmatch(".luma-??????", entry->name(), 0) == 0 && isLeftover(folder, entry->name(), isOnFuse))
            (void)::unlinkat(folder.get(), entry->name(), 0);
    }
}

} // namespace luma
