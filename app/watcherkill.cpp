// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/watcherkill.h"

namespace luma {

void endStrayWatchers(const CommandRunner& run)
{
    (void)run({"-c", "ps aux | grep -v grep | grep LUMAWatcher | awk '{print $2}' | xargs kill"});
}

} // namespace luma
