// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/filecalls.h"
#include "base/filedescriptor.h"
#include "base/files.h"

#include <fcntl.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace luma {

namespace fs = std::filesystem;

namespace {

// A folder under a temporary name beside its target; gone again unless it takes the target's place.
class TemporaryFolder final
{
public:
    explicit TemporaryFolder(const fs::path& target) : m_target(target)
    {
        std::string name = (target.parent_path() / ".luma-XXXXXX").string();
        m_exists = ::mkdtemp(name.data()) != nullptr;
        m_openError = errno;
        m_path = name;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder()
    {
        if (m_exists)
            discard(m_path);
    }

    [[nodiscard]] Result<void> isMade() const
    {
        return m_exists ? Result<void>() : systemError(m_target, m_openError);
    }
    [[nodiscard]] const fs::path& path() const { return m_path; }

    Result<void> takePlace()
    {
        auto placed = renameToFreePlace(m_path, m_target);
        m_exists = !placed;
        return placed;
    }

private:
    // Folders in it may have been made read-only already, as their originals are.
    static void discard(const fs::path& folder)
    {
        std::error_code error;
        fs::permissions(folder, fs::perms::owner_all, error);
        for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
            if (!entry.is_symlink(error) && entry.is_directory(error))
                discard(entry.path());
        }
        fs::remove_all(folder, error);
    }

    fs::path m_target;
    fs::path m_path;
    int m_openError = 0;
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

// What is in the folder `source`, and then its mode and times, goes into the empty folder `target`.
Result<void> copyInto(const fs::path& source, const fs::path& target, const StillWanted& stillWanted)
{
    struct stat status = {};
    if (::stat(source.c_str(), &status) != 0)
        return systemError(source, errno);
    std::error_code error;
    fs::directory_iterator entries(source, error);
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
        if (!isWanted(stillWanted))
            return stoppedError(source);
        if (auto copied = copyEntry(entries->path(), target / entries->path().filename(), stillWanted);
            !copied)
            return copied;
    }
    if (error)
        return systemError(source, error.value());
    const FileDescriptor folder(::open(target.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder)
        return systemError(target, errno);
    if (auto kept = keepMode(folder.get(), status.st_mode, target); !kept)
        return kept;
    return keepTimes(folder.get(), timesOf(status), target);
}

bool isInside(const fs::path& path, const fs::path& folder)
{
    std::error_code error;
    const fs::path relative =
        fs::weakly_canonical(path, error).lexically_relative(fs::weakly_canonical(folder, error));
    return !relative.empty() && *relative.begin() != "..";
}

} // namespace

Result<void> copyItem(const fs::path& source, const fs::path& target, const StillWanted& stillWanted)
{
    if (itemExists(target))
        return systemError(target, EEXIST);
    std::error_code error;
    if (!fs::is_directory(fs::symlink_status(source, error)))
        return copyFile(source, target, Existing::Keep, Durability::Synced, stillWanted);
    if (isInside(target, source))
        return systemError(target, EINVAL);
    TemporaryFolder temporary(target);
    if (auto made = temporary.isMade(); !made)
        return made;
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
    // A file system that does not know the flag; moving a folder into itself is EINVAL here too.
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
