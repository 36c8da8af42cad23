// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// One line of the kernel's table of mounts, its escapes decoded; all texts are bytes.
struct KernelMount
{
    std::string type;                 ///< "cifs", "nfs4", "fuse.sshfs", ...
    std::string source;               ///< "//host/share", "host:/export", "user@host:/folder"
    std::string root;                 ///< the mounted folder of the file system, "/" for all of it
    std::filesystem::path mountPoint; ///< where it is mounted
};

/// Parses a text in the format of /proc/self/mountinfo (man 5 proc_pid_mountinfo). Malformed lines are
/// skipped.
std::vector<KernelMount> parseMountTable(std::string_view mountinfo);

/// The mounts of this process; empty without /proc. Any thread.
std::vector<KernelMount> readMountTable();

/// The local folder of the share URL on one of `mounts` (cifs for smb, nfs for nfs, sshfs for sftp), or
/// nothing. The host (letter case ignored) must be the mount's, and the path at or below the mounted one; the
/// mount with the longest path wins. The letter case of an smb share's name is ignored, as servers do. A mount
/// of another user than a non-empty `user` does not match. The port is not compared, because the table does
/// not contain it.
std::optional<std::filesystem::path> findKernelMount(const std::vector<KernelMount>& mounts,
                                                     std::string_view shareUrl, std::string_view user);

} // namespace luma
