// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"

#include "base/filecalls.h"
#include "base/filereader.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <system_error>
#include <utility>

namespace luma {

namespace fs = std::filesystem;

namespace {

Result<void> writeAll(int descriptor, std::string_view bytes, const fs::path& path)
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return systemError(path, errno);
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return {};
}

// A file under a temporary name beside its target; removed again unless it takes the target's place.
class TemporaryFile final
{
public:
    explicit TemporaryFile(const fs::path& target) : m_target(target), m_path(temporaryTemplate(target))
    {
        m_descriptor.reset(::mkostemp(m_path.data(), O_CLOEXEC));
        checkMade();
    }
    // With `mode` less the umask, which only the system can tell without changing it.
    TemporaryFile(const fs::path& target, mode_t mode) : TemporaryFile(target)
    {
        if (!m_exists)
            return;
        // The first file only found a free name.
        ::unlink(m_path.c_str());
        create(mode);
    }
    TemporaryFile(fs::path target, const fs::path& path) : m_target(std::move(target)), m_path(path.string())
    {
        create(S_IRUSR | S_IWUSR);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile()
    {
        if (m_exists)
            ::unlink(m_path.c_str());
    }

    [[nodiscard]] const Result<void>& made() const { return m_made; }
    [[nodiscard]] int descriptor() const { return m_descriptor.get(); }

    Result<void> setTimes(const Times& times)
    {
        m_times = times;
        return keepTimes(m_descriptor.get(), times, m_target);
    }

    Result<void> takePlace(Existing existing, Durability durability)
    {
        if (durability == Durability::Synced && ::fsync(m_descriptor.get()) != 0)
            return systemError(m_target, errno);
        if (const int code = m_descriptor.close(); code != 0)
            return systemError(m_target, code);
        // An smb server stamps a written file when it is closed, so the times are set once more.
        if (m_times && ::utimensat(AT_FDCWD, m_path.c_str(), m_times->data(), 0) != 0 &&
            !isUnsupported(errno))
            return systemError(m_target, errno);
        Result<void> placed;
        if (existing == Existing::Keep)
            placed = renameToFreePlace(m_path, m_target);
        else if (::rename(m_path.c_str(), m_target.c_str()) != 0)
            placed = systemError(m_target, errno);
        m_exists = !placed;
        if (placed)
            keepTime();
        return placed;
    }

private:
    // On FUSE a file is closed some time after close() has returned, and may be stamped only then.
    void keepTime() const
    {
        struct stat status = {};
        if (m_times && ::lstat(m_target.c_str(), &status) == 0 &&
            status.st_mtim.tv_sec != m_times->back().tv_sec)
            (void)::utimensat(AT_FDCWD, m_target.c_str(), m_times->data(), AT_SYMLINK_NOFOLLOW);
    }
    void create(mode_t mode)
    {
        m_descriptor.reset(::open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
        checkMade();
    }
    void checkMade()
    {
        m_exists = bool(m_descriptor);
        if (!m_exists) {
            m_made = systemError(m_target, errno);
            return;
        }
        // Tells a file that is being written from one that a killed program has left.
        (void)::flock(m_descriptor.get(), LOCK_EX | LOCK_NB);
    }

    fs::path m_target;
    std::string m_path;
    FileDescriptor m_descriptor;
    Result<void> m_made;
    bool m_exists = false;
    std::optional<Times> m_times;
};

Result<void> copyBytes(int from, int to, const fs::path& source, const fs::path& target,
                       const StillWanted& stillWanted)
{
    // copy_file_range lets the file system share or copy the bytes itself; it does not work everywhere, and
    // not for files that claim to be empty but are not (those of /proc).
    constexpr std::size_t chunk = std::size_t{16} * 1024 * 1024;
    for (;;) {
        if (!isWanted(stillWanted))
            return stoppedError(source);
        const ssize_t copied = ::copy_file_range(from, nullptr, to, nullptr, chunk, 0);
        if (copied > 0)
            continue;
        if (copied == 0)
            break;
        if (errno == EINTR)
            continue;
        if (errno == ENOSPC || errno == EDQUOT || errno == EFBIG || errno == EIO)
            return systemError(target, errno);
        break;
    }
    std::array<char, std::size_t{256} * 1024> buffer;
    for (;;) {
        if (!isWanted(stillWanted))
            return stoppedError(source);
        const ssize_t got = ::read(from, buffer.data(), buffer.size());
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return systemError(source, errno);
        if (got == 0)
            return {};
        if (auto written = writeAll(to, {buffer.data(), static_cast<std::size_t>(got)}, target); !written)
            return written;
    }
}

Result<void> copyLink(const fs::path& source, const fs::path& target, Existing existing)
{
    std::error_code error;
    const fs::path destination = fs::read_symlink(source, error);
    if (error)
        return systemError(source, error.value());
    if (existing == Existing::Keep) {
        if (::symlink(destination.c_str(), target.c_str()) != 0)
            return systemError(target, errno);
        return {};
    }
    // mkostemp only finds a free name.
    std::string temporary = temporaryTemplate(target);
    const FileDescriptor placeholder(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!placeholder)
        return systemError(target, errno);
    ::unlink(temporary.c_str());
    if (::symlink(destination.c_str(), temporary.c_str()) != 0)
        return systemError(target, errno);
    if (::rename(temporary.c_str(), target.c_str()) == 0)
        return {};
    auto failed = systemError(target, errno);
    ::unlink(temporary.c_str());
    return failed;
}

// Labels, access lists and the like; not those that the system alone sets.
Result<void> keepExtendedAttributes(const fs::path& source, int descriptor, const fs::path& target)
{
    const ssize_t length = ::listxattr(source.c_str(), nullptr, 0);
    if (length <= 0)
        return {};
    std::string names(static_cast<std::size_t>(length), '\0');
    const ssize_t got = ::listxattr(source.c_str(), names.data(), names.size());
    names.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    std::string value;
    for (std::size_t at = 0; at < names.size(); at += std::char_traits<char>::length(names.data() + at) + 1) {
        const char* const name = names.data() + at;
        const ssize_t size = ::getxattr(source.c_str(), name, nullptr, 0);
        value.resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
        if (size < 0 || ::getxattr(source.c_str(), name, value.data(), value.size()) != size)
            continue;
        if (::fsetxattr(descriptor, name, value.data(), value.size(), 0) != 0 && errno != EPERM &&
            errno != EACCES && !isUnsupported(errno))
            return systemError(target, errno);
    }
    return {};
}

// Writes a file anew with the owner, mode and extended attributes of the old one, by way of the path `way`, or of a free one
// without it.
Result<void> replace(const fs::path& path, const fs::path& target, const struct stat& old,
                     std::string_view bytes, const fs::path& way, const std::optional<timespec>& modified,
                     ReadOnly readOnly)
{
    if (!S_ISREG(old.st_mode))
        return systemError(path, S_ISDIR(old.st_mode) ? EISDIR : EINVAL);
    // Renaming over a read-only file would succeed, but its owner protected it.
    if (readOnly == ReadOnly::Kept && ::access(target.c_str(), W_OK) != 0)
        return systemError(path, errno);
    TemporaryFile temporary = way.empty() ? TemporaryFile(target) : TemporaryFile(target, way);
    if (!temporary.made())
        return temporary.made();
    if (auto written = writeAll(temporary.descriptor(), bytes, path); !written)
        return written;
    if (::fchown(temporary.descriptor(), old.st_uid, old.st_gid) != 0 && errno != EPERM &&
        !isUnsupported(errno))
        return systemError(path, errno);
    if (auto kept = keepExtendedAttributes(target, temporary.descriptor(), path); !kept)
        return kept;
    if (auto kept = keepMode(temporary.descriptor(), old.st_mode, path); !kept)
        return kept;
    if (modified) {
        if (auto kept = temporary.setTimes({old.st_atim, *modified}); !kept)
            return kept;
    }
    return temporary.takePlace(Existing::Replace, Durability::Synced);
}

// A file without a name leaves nothing behind, and nobody who watches the folder sees it. Not all file systems have it.
Result<void> checkTakesFile(const fs::path& folder, const fs::path& path)
{
    const FileDescriptor unnamed(::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (unnamed)
        return {};
    if (errno == EACCES || errno == EPERM || errno == EROFS)
        return systemError(path, errno);
    return TemporaryFile(path).made();
}

} // namespace

fs::path realFile(const fs::path& path)
{
    std::error_code error;
    return fs::is_symlink(path, error) ? fs::weakly_canonical(path, error) : path;
}

Result<void> checkReplaceable(const fs::path& path)
{
    struct stat status = {};
    if (::lstat(path.c_str(), &status) != 0)
        return systemError(path, errno);
    if (!S_ISREG(status.st_mode) && !S_ISLNK(status.st_mode))
        return systemError(path, S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
    if (S_ISREG(status.st_mode) && ::access(path.c_str(), W_OK) != 0)
        return systemError(path, errno);
    // Never removes a file. Linux looks first whether the folder would let the name go: a sticky one, or one that may only
    // grow, would not.
    if (::rmdir(path.c_str()) != 0 && errno != ENOTDIR)
        return systemError(path, errno);
    return checkTakesFile(path.parent_path(), path);
}

bool itemExists(const fs::path& path)
{
    struct stat status = {};
    return ::lstat(path.c_str(), &status) == 0;
}

Result<std::string_view> FileReader::read(const std::string& path)
{
    const auto file = openFile(path, O_RDONLY | O_NONBLOCK);
    if (!file)
        return file.error();
    struct stat status = {};
    if (::fstat(file->get(), &status) != 0)
        return systemError(path, errno);
    if (!S_ISREG(status.st_mode))
        return systemError(path, S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
    std::size_t size = 0;
    // With one byte more than it should hold, the first read shows the end.
    std::size_t wanted = static_cast<std::size_t>(status.st_size) + 1;
    for (;;) {
        if (wanted > m_capacity) {
            auto larger = std::make_unique_for_overwrite<char[]>(wanted);
            std::copy_n(m_buffer.get(), size, larger.get());
            m_buffer = std::move(larger);
            m_capacity = wanted;
        }
        const ssize_t got = ::read(file->get(), m_buffer.get() + size, m_capacity - size);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return systemError(path, errno);
        size += static_cast<std::size_t>(got);
        if (got == 0 || size == static_cast<std::size_t>(status.st_size))
            return std::string_view(m_buffer.get(), size);
        if (size == m_capacity)
            wanted = m_capacity * 2;
    }
}

Result<std::string> readFile(const fs::path& path)
{
    FileReader reader;
    auto bytes = reader.read(path.native());
    if (!bytes)
        return bytes.error();
    return std::string(*bytes);
}

Result<void> writeFile(const fs::path& path, std::string_view bytes, unsigned newMode)
{
    const fs::path target = realFile(path);
    struct stat old = {};
    if (::stat(target.c_str(), &old) == 0)
        return replace(path, target, old, bytes, {}, {}, ReadOnly::Kept);
    TemporaryFile temporary(target, static_cast<mode_t>(newMode));
    if (!temporary.made())
        return temporary.made();
    if (auto written = writeAll(temporary.descriptor(), bytes, path); !written)
        return written;
    return temporary.takePlace(Existing::Replace, Durability::Synced);
}

Result<void> replaceFile(const fs::path& path, std::string_view bytes, const fs::path& temporary,
                         const std::optional<timespec>& modified, ReadOnly readOnly)
{
    struct stat old = {};
    if (::stat(path.c_str(), &old) != 0)
        return systemError(path, errno);
    return replace(path, path, old, bytes, temporary, modified, readOnly);
}

Result<void> copyFile(const fs::path& source, const fs::path& target, Existing existing,
                      Durability durability, const StillWanted& stillWanted)
{
    struct stat status = {};
    if (::lstat(source.c_str(), &status) != 0)
        return systemError(source, errno);
    if (S_ISLNK(status.st_mode))
        return copyLink(source, target, existing);
    if (!S_ISREG(status.st_mode))
        return systemError(source, EINVAL);
    const auto from = openFile(source.native(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    if (!from)
        return from.error();
    if (::fstat(from->get(), &status) != 0)
        return systemError(source, errno);
    TemporaryFile temporary(target);
    if (!temporary.made())
        return temporary.made();
    if (auto copied = copyBytes(from->get(), temporary.descriptor(), source, target, stillWanted); !copied)
        return copied;
    if (auto kept = keepExtendedAttributes(source, temporary.descriptor(), target); !kept)
        return kept;
    if (auto kept = keepMode(temporary.descriptor(), status.st_mode, target); !kept)
        return kept;
    if (auto kept = temporary.setTimes(timesOf(status)); !kept)
        return kept;
    return temporary.takePlace(existing, durability);
}

Result<void> removeItem(const fs::path& path)
{
    std::error_code error;
    if (!itemExists(path))
        return systemError(path, ENOENT);
    fs::remove_all(path, error);
    if (error)
        return systemError(path, error.value());
    return {};
}

} // namespace luma
