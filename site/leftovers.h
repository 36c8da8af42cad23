// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/filedescriptor.h"

namespace luma {

/// Removes from an open folder the temporary files that killed transfers have left there. Those of a running
/// one are locked and stay. A share (`isOnFuse`) does not show the locks of other computers, so there only a
/// file of yesterday counts as left. Failures are ignored.
void removeLeftovers(const FileDescriptor& folder, bool isOnFuse);

} // namespace luma
