// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/linkplan.h"

#include <vector>

namespace luma {

/// Plans new targets for symbolic links, so that each that works leads to the same item after the move: those that lead to what
/// moves, and relative ones that move themselves. A relative target stays relative. Links whose target is spelled by way of
/// other symbolic links stay as they are. `request` has paths as checked by planMove(); the disk is as planMove() finds it.
std::vector<SymlinkChange> planSymlinks(const MoveRequest& request, const MovedLinks& links);

} // namespace luma
