// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <QObject>
#include <QString>

#include <filesystem>
#include <functional>
#include <optional>

namespace luma {

/// Mounts shares of servers, without ever asking the user anything. mount(), existingMount() and unmount()
/// may be called on any thread and block as long as the server takes; unmounted() is emitted on the main
/// thread.
class VolumeMounter : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Mounts the share at `shareURL` as `user` and returns the mount point, or why that failed; an already
    /// mounted share may fail. `isWanted` is asked on the calling thread while waiting for the server; once it
    /// is false, the call soon fails.
    virtual Result<std::filesystem::path> mount(const QString& shareURL, const QString& user,
                                                const QString& password,
                                                const std::function<bool()>& isWanted) = 0;
    /// The mount point of a share of the same host and path that is already mounted.
    virtual std::optional<std::filesystem::path> existingMount(const QString& shareURL) = 0;
    /// Starts unmounting the volume at `mountPoint` and returns at once; errors are ignored.
    virtual void unmount(const std::filesystem::path& mountPoint) = 0;

signals:
    /// A volume was unmounted, by this or any other program.
    void unmounted(const std::filesystem::path& mountPoint);
};

} // namespace luma
