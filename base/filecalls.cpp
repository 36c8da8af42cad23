// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/filecalls.h"

#include "base/files.h"
#include "base/usertext.h"

#include <fcntl.h>
#include <sys/vfs.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <system_error>

namespace luma {

namespace fs = std::filesystem;

std::string systemReason(std::errc code)
{
    return std::make_error_code(code).message();
}

Error systemError(const fs::path& path, int code)
{
    const auto reason = static_cast<std::errc>(code);
    return {path.string() + ": " + systemReason(reason), reason};
}

Error stoppedError(const fs::path& path)
{
    return {userText(QT_TRANSLATE_NOOP("luma::Engines", "%1: stopped"), {path.native()}),
            std::errc::operation_canceled};
}

Result<FileDescriptor> openFile(const std::string& path, int flags)
{
    FileDescriptor file(::open(path.c_str(), flags | O_CLOEXEC));
    if (!file)
        return systemError(path, errno);
    return file;
}

bool isUnsupported(int code)
{
    return code == ENOTSUP || code == EOPNOTSUPP || code == ENOSYS;
}

Times timesOf(const struct stat& status)
{
    return {status.st_atim, status.st_mtim};
}

bool isOnServer(const fs::path& path)
{
    constexpr auto onServers = std::to_array<std::uint32_t>(
        {0x6969 /* NFS */, 0x517B /* SMB */, 0xFF534D42 /* CIFS */, 0xFE534D42 /* SMB 2 */,
         0x65735546 /* FUSE */, 0x5346414F /* AFS */, 0x6B414653 /* kAFS */, 0x73757245 /* Coda */,
         0x01021997 /* 9P */, 0x00C36400 /* Ceph */, 0x786F4256 /* VirtualBox */});
    struct statfs status = {};
    return ::statfs(path.c_str(), &status) != 0 ||
           std::find(onServers.begin(), onServers.end(), static_cast<std::uint32_t>(status.f_type)) !=
               onServers.end();
}

std::string temporaryTemplate(const fs::path& target)
{
    return (target.parent_path() / ".luma-XXXXXX").string();
}

Result<void> keepMode(int descriptor, mode_t mode, const fs::path& target)
{
    if (::fchmod(descriptor, mode & 07777U) != 0 && !isUnsupported(errno))
        return systemError(target, errno);
    return {};
}

Result<void> keepTimes(int descriptor, const Times& times, const fs::path& target)
{
    if (::futimens(descriptor, times.data()) != 0 && !isUnsupported(errno))
        return systemError(target, errno);
    return {};
}

void syncFolder(const fs::path& folder)
{
    if (const auto opened = openFile(folder.native(), O_RDONLY | O_DIRECTORY))
        (void)::fsync(opened->get());
}

Result<void> renameToFreePlace(const fs::path& from, const fs::path& to)
{
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return {};
    if (errno != EINVAL && errno != ENOSYS)
        return systemError(to, errno);
    // Some network file systems do not know the flag; there a check before the rename must do.
    if (itemExists(to))
        return systemError(to, EEXIST);
    if (::rename(from.c_str(), to.c_str()) != 0)
        return systemError(to, errno);
    return {};
}

} // namespace luma
