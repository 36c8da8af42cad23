// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "page/csstidy.h"

namespace luma {

/// Runs the formatting command, the last of `arguments`, in the resource folder (see TaskWrapper; it blocks).
/// Where nothing can be run at tidyInterpreter, the php of the search path stands in.
std::optional<std::string> runTidyCommand(std::vector<std::string> arguments);

} // namespace luma
