// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace luma {

/// Prints `line`, bytes as they are, and a line end on standard output, at once: somebody may watch. Any
/// thread. A failure has nobody to be told to.
void printLine(std::string_view line);

} // namespace luma
