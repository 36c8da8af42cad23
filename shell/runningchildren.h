// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace luma {

/// Quitting: every child that a runner waits for gets SIGTERM, its whole process group, and SIGKILL two
/// seconds later, so that the threads blocked in runners come back with that runner's failure. Runners called
/// from now on fail at once and start nothing. Returns immediately; any thread. Call it after the
/// application's own last command and before waiting for the thread pool.
void terminateRunningChildren();

/// Takes terminateRunningChildren() back, for a quit that was called off.
void acceptNewChildren();

/// A descriptor that is readable from terminateRunningChildren() on, for poll(). Owned by the process.
int terminationEvent();

} // namespace luma
