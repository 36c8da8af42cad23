// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "lumactl/commandarguments.h"
#include "lumactl/lumactlcommands.h"
#include "site/syncrow.h"

namespace luma {

/// The two folders that `lumactl changed` and `lumactl publish` are given, in the direction of the transfer;
/// nothing, with a complaint, when they are of no use.
std::optional<SyncFolders> syncFolders(const LumactlCommand& command, const CommandArguments& arguments);

} // namespace luma
