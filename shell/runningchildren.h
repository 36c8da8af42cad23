// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace luma {

/// For quitting: every ChildProcess that is waited for gets SIGTERM, its whole process group, and SIGKILL two
/// seconds later, so that the threads blocked on them return with a failure. From now on no ChildProcess
/// starts. Returns immediately; any thread. Call it after the application's last command and before waiting
/// for the thread pool.
void terminateRunningChildren();

/// Lets children start again after a quit that was called off.
void acceptNewChildren();

/// A descriptor for poll() that is readable after terminateRunningChildren(). Owned by the process.
int terminationEvent();

} // namespace luma
