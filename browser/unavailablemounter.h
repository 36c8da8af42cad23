// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "mounts/volumemounter.h"

namespace luma {

/// Stands in where no network client is: no share can be mounted, local folders alone can be shown.
class UnavailableMounter final : public VolumeMounter
{
    Q_OBJECT

public:
    using VolumeMounter::VolumeMounter;

    std::optional<std::filesystem::path> mount(const QString& /*shareURL*/, const QString& /*user*/,
                                               const QString& /*password*/,
                                               const std::function<bool()>& /*isWanted*/) override
    {
        return {};
    }
    std::optional<std::filesystem::path> existingMount(const QString& /*shareURL*/) override { return {}; }
    void unmount(const std::filesystem::path& /*mountPoint*/) override {}
};

} // namespace luma
