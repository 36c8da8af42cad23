// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVariantMap>

#include <filesystem>
#include <functional>
#include <optional>

namespace luma {

class VolumeMounter;

/// What a mount step came to.
struct MountResult
{
    /// The folder to show, or nothing.
    std::optional<std::filesystem::path> folder;
    /// The mount point, or the local folder; kept even when the local folder does not exist.
    std::filesystem::path mountPath;
};

/// Makes the folder of a connection request reachable: a local folder must exist, a share is mounted, or
/// found where it is mounted already. A share that is neither is named on standard output. Blocks, but not
/// for long once `isWanted` answers false; any thread.
MountResult mountStep(const QVariantMap& request, VolumeMounter& mounter,
                      const std::function<bool()>& isWanted);

} // namespace luma
