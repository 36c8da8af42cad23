// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace luma {

/// Asked by a long job between two files: false means stop. Called on any of the job's threads, so it must be
/// safe there, as WorkItem::isCancelled is. An empty one means always.
using StillWanted = std::function<bool()>;

inline bool isWanted(const StillWanted& stillWanted)
{
    return !stillWanted || stillWanted();
}

} // namespace luma
