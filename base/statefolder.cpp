// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/statefolder.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

namespace luma {

namespace fs = std::filesystem;

fs::path stateFolder()
{
    const char* const state = std::getenv("XDG_STATE_HOME");
    if (state && *state == '/')
        return fs::path(state) / "luma";
    const char* home = std::getenv("HOME");
    if (!home || !*home) {
        const passwd* const user = ::getpwuid(::getuid());
        home = user ? user->pw_dir : "/";
    }
    return fs::path(home) / ".local/state/luma";
}

} // namespace luma
