// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commandrunner.h"

namespace luma {

/// Ends every folder watcher left over from an earlier run, or still running at quit. It acts on whatever
/// process carries the watcher's name in its command line. Blocks until done.
void endStrayWatchers(const CommandRunner& run);

} // namespace luma
