// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/linkplan.h"

namespace luma {

/// Keeps pages of `plan` that are names of one file (hard links) names of one file where their bytes stay the same: sets
/// PageRewrite::twin. Where they don't, or where a name is not among the pages, the plan gets a note. Any thread.
void planHardLinks(LinkPlan& plan);

} // namespace luma
