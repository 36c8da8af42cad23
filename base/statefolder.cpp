// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/statefolder.h"

#include "base/filecalls.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace luma {

namespace fs = std::filesystem;

namespace {

fs::path baseFolder(const char* variable, const char* belowHome)
{
    const char* const folder = std::getenv(variable);
    if (folder && *folder == '/')
        return folder;
    const char* home = std::getenv("HOME");
    if (!home || !*home) {
        const passwd* const user = ::getpwuid(::getuid());
        home = user ? user->pw_dir : "/";
    }
    return fs::path(home) / belowHome;
}

} // namespace

fs::path stateFolder()
{
    return baseFolder("XDG_STATE_HOME", ".local/state") / "luma";
}

fs::path cacheFolder()
{
    return baseFolder("XDG_CACHE_HOME", ".cache") / "luma";
}

Result<void> makePrivateFolder(const fs::path& folder)
{
    if (::mkdir(folder.c_str(), S_IRWXU) == 0 || errno == EEXIST)
        return {};
    if (errno != ENOENT || folder == folder.parent_path())
        return systemError(folder, errno);
    if (auto above = makePrivateFolder(folder.parent_path()); !above)
        return above;
    if (::mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST)
        return systemError(folder, errno);
    return {};
}

} // namespace luma
