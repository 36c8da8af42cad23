#pragma once

#include "editor/csstidy.h"

namespace luma {

/// Runs the formatting command in the resource folder (see TaskWrapper; it blocks). Where the command's
/// interpreter is not installed at the place that the command names, the system's own stands in.
std::optional<std::string> runTidyCommand(std::vector<std::string> arguments);

} // namespace luma
