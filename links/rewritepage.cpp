// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/rewritepage.h"

#include "base/files.h"
#include "base/usertext.h"

#include <sys/stat.h>

#include <optional>

namespace luma {

namespace fs = std::filesystem;

namespace {

// Differs when the file was written or replaced in between.
struct FileState
{
    dev_t device;
    ino_t inode;
    off_t size;
    timespec modified;

    bool operator==(const FileState& other) const
    {
        return device == other.device && inode == other.inode && size == other.size &&
               modified.tv_sec == other.modified.tv_sec && modified.tv_nsec == other.modified.tv_nsec;
    }
};

std::optional<FileState> stateOf(const fs::path& path)
{
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0)
        return std::nullopt;
    return FileState{status.st_dev, status.st_ino, status.st_size, status.st_mtim};
}

} // namespace

Result<bool> rewritePage(const fs::path& page, const PageChanges& changes)
{
    constexpr int mostAttempts = 3;
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        const auto before = stateOf(page);
        const auto source = readFile(page);
        if (!before || !source)
            return false;
        const std::string result = changes(*source);
        if (result == *source)
            return false;
        const auto now = stateOf(page);
        if (!now)
            return false;
        if (!(*now == *before))
            continue;
        if (auto written = writeFile(page, result); !written)
            return written.error();
        return true;
    }
    return Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "%1: keeps being changed by another program"),
                          {page.native()})};
}

} // namespace luma
