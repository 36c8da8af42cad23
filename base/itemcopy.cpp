// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/filecalls.h"
#include "base/files.h"
#include "base/folderreader.h"
#include "base/pathbelow.h"

#include <fcntl.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace luma {

namespace fs = std::filesystem;

namespace {

// A folder under a temporary name beside its target; removed again unless it takes the target's place.
class TemporaryFolder final
{
public:
    explicit TemporaryFolder(const fs::path& target) : m_target(target)
    {
        std::string name = temporaryTemplate(target);
        m_exists = ::mkdtemp(name.data()) != nullptr;
        if (!m_exists)
            m_made = systemError(target, errno);
        m_path = name;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder()
    {
        if (m_exists)
            discard(m_path);
    }

    [[nodiscard]] const Result<void>& made() const { return m_made; }
    [[nodiscard]] const fs::path& path() const { return m_path; }

    Result<void> takePlace()
    {
        auto placed = renameToFreePlace(m_path, m_target);
        m_exists = !placed;
        return placed;
    }

private:
    // Folders in it may already be read-only, as their originals are.
    static void discard(const fs::path& folder)
    {
        std::error_code error;
        fs::permissions(folder, fs::perms::owner_all, error);
        if (auto reader = FolderReader::open(folder.native())) {
            while (const auto entry = reader->next()) {
                if (entry->type() == FolderReader::Type::Folder)
                    discard(folder / entry->name());
            }
        }
        fs::remove_all(folder, error);
    }

    fs::path m_target;
    fs::path m_path;
    Result<void> m_made;
    bool m_exists = false;
};

Result<void> copyInto(const fs::path& source, const fs::path& target, const StillWanted& stillWanted);

Result<void> copyEntry(const fs::path& source, const fs::path& target, const StillWanted& stillWanted)
{
    struct stat status = {};
    if (::lstat(source.c_str(), &status) != 0)
        return systemError(source, errno);
    if (!S_ISDIR(status.st_mode))
        return copyFile(source, target, Existing::Keep, Durability::Synced, stillWanted);
    if (::mkdir(target.c_str(), 0700) != 0)
        return systemError(target, errno);
    return copyInto(source, target, stillWanted);
}

// Copies the content of the folder `source` into the empty folder `target`, then its mode and times.
Result<void> copyInto(const fs::path& source, const fs::path& target, const StillWanted& stillWanted)
{
    struct stat status = {};
    if (::stat(source.c_str(), &status) != 0)
        return systemError(source, errno);
    auto entries = FolderReader::open(source.native());
    if (!entries)
        return entries.error();
    while (const auto entry = entries->next()) {
        if (!isWanted(stillWanted))
            return stoppedError(source);
        if (auto copied = copyEntry(source / entry->name(), target / entry->name(), stillWanted); !copied)
            return copied;
    }
    if (entries->error())
        return *entries->error();
    const auto folder = openFile(target.native(), O_RDONLY | O_DIRECTORY);
    if (!folder)
        return folder.error();
    if (auto kept = keepMode(folder->get(), status.st_mode, target); !kept)
        return kept;
    return keepTimes(folder->get(), timesOf(status), target);
}

Result<void> checkOutside(const fs::path& target, const fs::path& folder)
{
    std::error_code error;
    const fs::path realFolder = fs::canonical(folder, error);
    const fs::path realTarget = error ? fs::path() : fs::weakly_canonical(target, error);
    if (error)
        return systemError(target, error.value());
    if (isAtOrBelow(realTarget.native(), realFolder.native()))
        return systemError(target, EINVAL);
    return {};
}

} // namespace

Result<void> copyItem(const fs::path& source, const fs::path& target, const StillWanted& stillWanted)
{
    if (itemExists(target))
        return systemError(target, EEXIST);
    std::error_code error;
    if (!fs::is_directory(fs::symlink_status(source, error)))
        return copyFile(source, target, Existing::Keep, Durability::Synced, stillWanted);
    if (auto outside = checkOutside(target, source); !outside)
        return outside;
    TemporaryFolder temporary(target);
    if (!temporary.made())
        return temporary.made();
    if (auto copied = copyInto(source, temporary.path(), stillWanted); !copied)
        return copied;
    return temporary.takePlace();
}

Result<void> moveItem(const fs::path& source, const fs::path& target)
{
    if (::renameat2(AT_FDCWD, source.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0)
        return {};
    int code = errno;
    if (code != EXDEV && code != EINVAL && code != ENOSYS)
        return systemError(code == EEXIST ? target : source, code);
    if (itemExists(target))
        return systemError(target, EEXIST);
    // A file system without the flag; moving a folder into itself gives EINVAL, too.
    if (code != EXDEV) {
        if (::rename(source.c_str(), target.c_str()) == 0)
            return {};
        code = errno;
    }
    if (code != EXDEV)
        return systemError(source, code);
    if (auto copied = copyItem(source, target); !copied)
        return copied;
    return removeItem(source);
}

} // namespace luma
