// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace luma {

/// Mounting of server volumes through the desktop's network file systems (gvfs with its FUSE folder), for the
/// protocols smb, sftp, dav, davs, ftp, afp and nfs. Nothing here ever shows a dialog, and no error text
/// holds the password. Share URLs are percent-encoded and carry neither user nor password; paths are local
/// ones. Every function may be called on any thread at any time.

/// Mounts the share and gives the local folder of the URL's path on it, which exists. Blocks: call it on a
/// background thread. `isWanted` is asked on the calling thread a few times a second; when it turns false the
/// call ends soon, with an error; a server that stays silent ends it after a minute.
///
/// `user` and `password` are given once, as an account's and never as a guest's; a server that asks again has
/// refused them. A server whose identity is not known (an ssh host key never seen, a certificate nobody
/// vouches for) is refused before a password is sent: the remote-login set-up is where a host key is
/// accepted. When mounting fails, because the share is mounted already or for another reason, an existing
/// mount of it is taken.
Result<std::filesystem::path> mountShare(const std::string& shareUrl, const std::string& user,
                                         const std::string& password, const std::function<bool()>& isWanted);

/// The local folder of a share that is mounted already: by us, by the desktop, or by the kernel (cifs, nfs,
/// sshfs). A mount known to be another user's than a non-empty `user` is not taken.
std::optional<std::filesystem::path> findExistingMount(const std::string& shareUrl, const std::string& user);

/// Says that `folder`, a path that mountShare gave, is not needed any more; to be called once for each time
/// that it was given. When mountShare mounted it (and did not find it mounted), and nobody else was given a
/// folder there that is still in use, the share is unmounted in the background; what others mounted stays.
/// Errors are ignored; returns at once.
void unmount(const std::filesystem::path& folder);

} // namespace luma
