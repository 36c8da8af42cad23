// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <filesystem>

namespace luma {

/// An item in the trash.
struct TrashedItem
{
    std::filesystem::path original; // where it was
    std::filesystem::path file;     // where it is now
    std::filesystem::path info;     // the record of where it was
};

/// Moves an item to the desktop's trash (freedesktop.org, Trash specification 1.0): the user's own one, or that at the
/// top of the item's volume. A folder goes with everything in it. Blocks; any thread. Error: the item is gone or may not
/// be moved, or its volume has no trash, as those of servers have none.
Result<TrashedItem> moveToTrash(const std::filesystem::path& item);

/// Moves an item back to where it was and makes the folders above it again. Error: its place is taken, or it is no
/// longer in the trash.
Result<void> putBack(const TrashedItem& item);

} // namespace luma
