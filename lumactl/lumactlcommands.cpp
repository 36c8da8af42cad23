// SPDX-License-Identifier: GPL-3.0-or-later
#include "lumactl/lumactlcommands.h"

#include <array>

namespace luma {

std::span<const LumactlCommand* const> lumactlCommands()
{
    static constexpr auto commands = std::to_array<const LumactlCommand*>(
        {&changedCommand, &publishCommand, &linksFromCommand, &checkCommand, &linksToCommand,
         &unlinkedCommand, &moveCommand, &copyCommand, &renameCommand});
    return commands;
}

} // namespace luma
