// SPDX-License-Identifier: GPL-3.0-or-later
#include "mounts/sharefolders.h"

#include "base/pathbelow.h"

#include <atomic>
#include <cstdlib>

namespace luma {

namespace {

std::atomic<ShareLister> knownLister = nullptr;

} // namespace

ShareLister shareListerFor(const std::filesystem::path& folder)
{
    const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
    const bool isOnShare =
        runtime && isAtOrBelow(folder.native(), (std::filesystem::path(runtime) / "gvfs").native());
    return isOnShare ? knownLister.load() : nullptr;
}

void setShareLister(ShareLister lister)
{
    knownLister = lister;
}

} // namespace luma
