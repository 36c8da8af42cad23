// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/folderaccess.h"

#include "base/filecalls.h"

#include <fcntl.h>
#include <linux/openat2.h>
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

int openStep(int folder, const char* path)
{
    open_how how = {};
    how.flags = static_cast<unsigned>(folderFlags);
    how.resolve = RESOLVE_NO_SYMLINKS | RESOLVE_BENEATH;
    return static_cast<int>(::syscall(SYS_openat2, folder, path, &how, sizeof how));
}

int openComponent(int folder, const char* name)
{
    return ::openat(folder, name, folderFlags | O_NOFOLLOW);
}

// As openat(2): a descriptor, or -1 with errno set.
using Opener = int (*)(int, const char*);

Result<FileDescriptor> openInSteps(const FileDescriptor& root, std::string_view path, std::size_t limit,
                                   Opener open)
{
    FileDescriptor current(::fcntl(root.get(), F_DUPFD_CLOEXEC, 0));
    for (std::string_view rest = path; current && !rest.empty();) {
        const std::string step = takeStep(rest, limit);
        FileDescriptor next(open(current.get(), step.c_str()));
        if (!next)
            return systemError(path, errno);
        current = std::move(next);
    }
    if (!current)
        return systemError(path, errno);
    return current;
}

} // namespace

Result<FileDescriptor> openSiteFolder(const std::filesystem::path& folder)
{
    return openFile(folder.native(), folderFlags);
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
