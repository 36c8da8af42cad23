// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/resources.h"

#include <cstdlib>
#include <system_error>

namespace luma {

namespace fs = std::filesystem;

namespace {

// Where `name` is below the folder that holds bin: installed as in the build tree, whose tests are in tests/bin.
// Empty if it isn't there.
fs::path installed(const fs::path& name)
{
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    const fs::path prefix = program.parent_path().parent_path();
    for (const fs::path& place : {prefix / name, prefix.parent_path() / name}) {
        if (!error && fs::exists(place, error))
            return place;
    }
    return {};
}

} // namespace

fs::path resourceFolder()
{
    if (const char* chosen = std::getenv("LUMA_RESOURCES"))
        return chosen;
    return installed(LUMA_SHARE);
}

fs::path helperProgram(const char* name)
{
    return installed(fs::path(LUMA_HELPERS) / name);
}

fs::path applicationProgram()
{
    return installed(LUMA_PROGRAM);
}

} // namespace luma
