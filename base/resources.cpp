// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/resources.h"

#include <cstdlib>
#include <system_error>

namespace luma {

std::filesystem::path resourceFolder()
{
    namespace fs = std::filesystem;
    std::error_code error;
    if (const char* chosen = std::getenv("LUMA_RESOURCES"))
        return chosen;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    if (error)
        return {};
    // bin/luma is next to share/luma, installed as in the build tree.
    for (const fs::path& folder : {program.parent_path().parent_path() / "share/luma",
                                   program.parent_path().parent_path().parent_path() / "share/luma"}) {
        if (fs::is_directory(folder, error))
            return folder;
    }
    return {};
}

} // namespace luma
