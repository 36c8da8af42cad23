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
    std::string root;                 ///< the folder of the file system that is mounted, "/" for all of it
    std::filesystem::path mountPoint; ///< where it is mounted
};

/// Reads a text of the form of /proc/self/mountinfo (man 5 proc_pid_mountinfo). Lines of another form are
/// passed over.
std::vector<KernelMount> parseMountTable(std::string_view mountinfo);

/// The mounts of this process; empty where there is no /proc. Any thread.
std::vector<KernelMount> readMountTable();

/// The local folder of the share URL on one of `mounts` (cifs for smb, nfs for nfs, sshfs for sftp), or
/// nothing. Host (letter case ignored) and path must be the mount's; a path below the mounted one gives the
/// folder below the mount point, and the mount that reaches furthest wins. The share's name is compared
/// without letter case, as servers do. A mount that names another user than a non-empty `user` is not the
/// same share. The port is not compared: the table does not tell it.
std::optional<std::filesystem::path> findKernelMount(const std::vector<KernelMount>& mounts,
                                                     std::string_view shareUrl, std::string_view user);

/// True when `path` is `mountPoint` or below it.
bool liesOnMount(const std::filesystem::path& path, const std::filesystem::path& mountPoint);

} // namespace luma
