// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <functional>
#include <string>

namespace luma {

/// How a mount request ended when it did not fail.
enum class MountOutcome { Mounted, MountedBefore };

/// Asks gvfs to mount the volume that encloses `url` and answers its questions: the first one for a password
/// with `user` and `password`, every other with a refusal. Blocks the calling thread, on a main context of
/// its own. `isWanted` as in mountShare.
Result<MountOutcome> requestMount(const std::string& url, const std::string& user,
                                  const std::string& password, const std::function<bool()>& isWanted);

/// Asks gvfs to unmount the volume that encloses the local folder `path` and waits for the answer, ten
/// seconds at most. Whatever still uses it keeps it. Errors are ignored.
void requestUnmount(const std::string& path);

} // namespace luma
