// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace luma {

/// Runs `worker` on `threads` threads at once, the caller's being one of them, and returns when all have
/// returned. For jobs that share out a list of work by themselves; `worker` must not throw. Where the system
/// gives no further thread, fewer run.
void runInParallel(unsigned threads, const std::function<void()>& worker);

} // namespace luma
