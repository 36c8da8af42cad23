// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "mounts/volumemounter.h"

namespace luma::test {

/// Mounts nothing: only local folders can be shown.
class UnavailableMounter final : public VolumeMounter
{
public:
    Result<std::filesystem::path> mount(const QString& /*shareURL*/, const QString& /*user*/,
                                        const QString& /*password*/,
                                        const std::function<bool()>& /*isWanted*/) override
    {
        return Error{"<b>no</b> server"};
    }
    std::optional<std::filesystem::path> existingMount(const QString& /*shareURL*/) override { return {}; }
    void unmount(const std::filesystem::path& /*mountPoint*/) override {}
};

} // namespace luma::test
