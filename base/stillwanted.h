// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace luma {

/// A long job asks it between files; false means stop. Called on any of the job's threads, so it must be
/// thread-safe, as WorkItem::isCancelled is. An empty function means "always".
using StillWanted = std::function<bool()>;

inline bool isWanted(const StillWanted& stillWanted)
{
    return !stillWanted || stillWanted();
}

} // namespace luma
