// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

#include <filesystem>
#include <functional>
#include <optional>

namespace luma {

/// Mounts shares of servers. A mounter never asks the user anything: what it is given must do. mount(),
/// existingMount() and unmount() are called on any thread and may block there for as long as the server
/// takes; unmounted() comes on the main thread.
class VolumeMounter : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Mounts the share at `shareURL` as that user; the mount point, or nothing on any failure (the share
    /// being mounted already is one). `isWanted` is asked on the calling thread while the server is waited
    /// for; when it turns false the call ends soon, with nothing.
    virtual std::optional<std::filesystem::path> mount(const QString& shareURL, const QString& user,
                                                       const QString& password,
                                                       const std::function<bool()>& isWanted) = 0;
    /// Where a share of the same host and path is mounted already.
    virtual std::optional<std::filesystem::path> existingMount(const QString& shareURL) = 0;
    /// Asks for the volume at `mountPoint` to be unmounted, without waiting for it; errors are ignored.
    virtual void unmount(const std::filesystem::path& mountPoint) = 0;

signals:
    /// A volume was unmounted, by whomever.
    void unmounted(const std::filesystem::path& mountPoint);
};

} // namespace luma
