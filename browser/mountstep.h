// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/filesystemnode.h"

#include <QString>

#include <filesystem>
#include <functional>
#include <optional>

namespace luma {

class VolumeMounter;

/// What a connection job is given, taken from the settings sheet when it starts. Values that are not set are
/// null strings.
struct ConnectionRequest
{
    QString protocol;
    QString server;
    QString volume;
    QString path;
    QString user;
    QString password;
    QString sshPort = {}; // for "sftp://", unless the server names one

    /// Whether it names a local folder.
    [[nodiscard]] bool isLocal() const;
};

/// The outcome of a mount step.
struct MountResult
{
    /// The folder to show; none on failure.
    std::optional<std::filesystem::path> folder;
    /// The mount point, or the local folder; set even when the local folder does not exist.
    std::filesystem::path mountPath;
    /// Why there is no folder.
    QString reason;
    /// Of the folder; null without one.
    FileSystemNodePointer root = {};
    /// Whether a file call on it may wait for another computer.
    bool isOnServer = false;
};

/// The URL of a share: the protocol text unchanged, the percent-encoded server, for "sftp://" an ssh port other than 22, "/", the percent-encoded
/// volume (omitted for the protocol text "FTP") and the percent-encoded path (omitted for "SMB"). Contains
/// neither user name nor password. Encodes what may not stand in the path of a URL (RFC 3986, section 3.3); a
/// part that is not valid Unicode becomes empty.
QString mountURL(const ConnectionRequest& request);

/// Makes the folder of a request reachable: a local folder must exist; a share is mounted, or found if it is
/// mounted already. A share that can't be mounted is reported on standard output. Blocks, but returns soon
/// after `isWanted` turns false. Any thread.
MountResult mountStep(const ConnectionRequest& request, VolumeMounter& mounter,
                      const std::function<bool()>& isWanted);

/// Tries a request as mountStep() does and lets go of the share again. Empty if it works, else the reason, for
/// the user. Blocks likewise. Any thread.
QString connectionProblem(const ConnectionRequest& request, VolumeMounter& mounter,
                          const std::function<bool()>& isWanted);

} // namespace luma
