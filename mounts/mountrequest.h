// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <functional>
#include <string>

namespace luma {

/// How a successful mount request ended.
enum class MountOutcome { Mounted, MountedBefore };

/// Asks gvfs to mount the volume that encloses `url`. Its first question for a password is answered with
/// `user` and `password`, every other question is refused. Blocks the calling thread, on a main context of its
/// own. `isWanted` as in mountShare.
Result<MountOutcome> requestMount(const std::string& url, const std::string& user,
                                  const std::string& password, const std::function<bool()>& isWanted);

/// Asks gvfs to unmount the volume that encloses the local folder `path` and waits at most ten seconds for
/// the answer. A volume in use stays mounted. Errors are ignored.
void requestUnmount(const std::string& path);

} // namespace luma
