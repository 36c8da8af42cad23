// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/linkupdatingmove.h"
#include "lumactl/standardoutput.h"

namespace luma {

/// Shows a move's log on standard output and its problems on standard error.
class MoveReport final
{
public:
    [[nodiscard]] LinkUpdatingMove::Callbacks callbacks();

    /// Ok when there was no problem.
    ExitCode finish(const MoveOutcome& outcome);

private:
    StandardOutput m_output;
};

} // namespace luma
