// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/folderaccess.h"

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/syscall.h>

#include <cerrno>
#include <climits>
#include <system_error>

namespace luma {

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

// One step of a path: as much of it as the system takes at once, or one component where links can only be
// refused one by one.
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

FileDescriptor openStep(int folder, const char* path)
{
    open_how how = {};
    how.flags = static_cast<unsigned>(folderFlags);
    how.resolve = RESOLVE_NO_SYMLINKS | RESOLVE_BENEATH;
    return FileDescriptor(static_cast<int>(::syscall(SYS_openat2, folder, path, &how, sizeof how)));
}

FileDescriptor openComponent(int folder, const char* name)
{
    FileDescriptor opened(::openat(folder, name, folderFlags | O_NOFOLLOW));
    return opened;
}

using Opener = FileDescriptor (*)(int, const char*);

FileDescriptor openInSteps(const FileDescriptor& root, std::string_view path, std::size_t limit, Opener open)
{
    FileDescriptor current(::fcntl(root.get(), F_DUPFD_CLOEXEC, 0));
    while (current && !path.empty())
        current = open(current.get(), takeStep(path, limit).c_str());
    return current;
}

} // namespace

FileDescriptor openSiteFolder(const std::filesystem::path& folder)
{
    return FileDescriptor(::open(folder.c_str(), folderFlags));
}

FileDescriptor openFolderBelow(const FileDescriptor& root, std::string_view relativePath)
{
    if (relativePath.empty())
        relativePath = ".";
    FileDescriptor opened = openInSteps(root, relativePath, PATH_MAX - 1, openStep);
    // Kernels before 5.6, and sandboxes that know no openat2: component by component.
    if (!opened && (errno == ENOSYS || errno == EPERM))
        opened = openInSteps(root, relativePath, 0, openComponent);
    return opened;
}

std::string systemReason(int code)
{
    return std::generic_category().message(code);
}

} // namespace luma
