// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace luma {

/// Mounts server volumes through the desktop's network file systems (gvfs with its FUSE folder): smb, sftp,
/// dav, davs, ftp, afp and nfs. Never shows a dialog; no error text contains the password. Share URLs are
/// percent-encoded and contain neither user nor password; paths are local. Every function may be called on
/// any thread at any time.

/// Mounts the share and returns the local folder of the URL's path on it, which exists. Blocks, so call it on
/// a background thread. `isWanted` is asked on the calling thread a few times a second; once it is false, the
/// call soon ends with an error (isStopped()). A server that does not answer ends it after a minute.
///
/// `user` and `password` are given once, as an account's and never as a guest's; a server that asks again has
/// refused them. A server of unknown identity (an ssh host key not seen before, an unverifiable certificate)
/// is refused before a password is sent: host keys are accepted in the remote-login set-up. When mounting
/// fails, for instance because the share is already mounted, an existing mount of it is used.
Result<std::filesystem::path> mountShare(const std::string& shareUrl, const std::string& user,
                                         const std::string& password, const std::function<bool()>& isWanted);

/// The local folder of a share that is already mounted by us, by the desktop or by the kernel (cifs, nfs,
/// sshfs). Mounts known to belong to another user than a non-empty `user` are ignored.
std::optional<std::filesystem::path> findExistingMount(const std::string& shareUrl, const std::string& user);

/// Releases `folder`, a path returned by mountShare; call it once for each time it was returned. When
/// mountShare mounted the share itself and no other folder on it is in use, it is unmounted in the background;
/// what others mounted stays. Returns at once; errors are ignored.
void unmount(const std::filesystem::path& folder);

} // namespace luma
