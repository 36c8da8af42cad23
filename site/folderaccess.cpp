// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/folderaccess.h"

#include "base/filecalls.h"

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>

#include <cerrno>
#include <climits>

namespace luma {

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

// One step of a path: as much as the system takes at once, or one component where links can only be refused
// one by one.
std::string takeStep(std::string_view& path, std::size_t limit)
{
    std::size_t end = path.size();
    if (end > limit)
        end = path.rfind('/', limit);
    if (end == std::string_view::npos || end == 0)
        end = path.find('/', 1);
    std::string step(path.substr(0, end));
    path.remove_prefix(step.size());
    while (!path.empty() && path.front() == '/')
        path.remove_prefix(1);
    return step;
}

Result<FileDescriptor> openStep(int folder, const std::string& path)
{
    open_how how = {};
    how.flags = static_cast<unsigned>(folderFlags);
    how.resolve = RESOLVE_NO_SYMLINKS | RESOLVE_BENEATH;
    FileDescriptor opened(static_cast<int>(::syscall(SYS_openat2, folder, path.c_str(), &how, sizeof how)));
    if (!opened)
        return systemError(path, errno);
    return opened;
}

Result<FileDescriptor> openComponent(int folder, const std::string& name)
{
    FileDescriptor opened(::openat(folder, name.c_str(), folderFlags | O_NOFOLLOW));
    if (!opened)
        return systemError(name, errno);
    return opened;
}

using Opener = Result<FileDescriptor> (*)(int, const std::string&);

Result<FileDescriptor> openInSteps(const FileDescriptor& root, std::string_view path, std::size_t limit,
                                   Opener open)
{
    FileDescriptor copy(::fcntl(root.get(), F_DUPFD_CLOEXEC, 0));
    if (!copy)
        return systemError(path, errno);
    Result<FileDescriptor> current = std::move(copy);
    while (current && !path.empty())
        current = open(current->get(), takeStep(path, limit));
    return current;
}

} // namespace

Result<FileDescriptor> openSiteFolder(const std::filesystem::path& folder)
{
    return openFile(folder.native(), folderFlags);
}

std::optional<std::int64_t> freeBytesAt(const FileDescriptor& folder)
{
    struct statvfs status = {};
    if (::fstatvfs(folder.get(), &status) != 0 || status.f_blocks == 0)
        return std::nullopt;
    return static_cast<std::int64_t>(status.f_bavail * status.f_frsize);
}

std::filesystem::path entryOf(const FileDescriptor& folder, const std::string& name)
{
    return std::filesystem::path("/proc/self/fd") / std::to_string(folder.get()) / name;
}

Result<FileDescriptor> openFolderBelow(const FileDescriptor& root, std::string_view relativePath)
{
    if (relativePath.empty())
        relativePath = ".";
    auto opened = openInSteps(root, relativePath, PATH_MAX - 1, openStep);
    if (opened)
        return opened;
    // Kernels before 5.6, and sandboxes without openat2: component by component.
    const std::errc code = opened.error().code;
    if (code == std::errc::function_not_supported || code == std::errc::operation_not_permitted)
        return openInSteps(root, relativePath, 0, openComponent);
    return opened;
}

} // namespace luma
