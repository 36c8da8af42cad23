// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/watcherkill.h"

namespace luma {

void endStrayWatchers(const ShellRunner& run)
{
    (void)run({QStringLiteral("-c"),
               QStringLiteral("ps aux | grep -v grep | grep LUMAWatcher | awk '{print $2}' | xargs kill")});
}

} // namespace luma
