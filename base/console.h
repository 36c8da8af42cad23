// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace luma {

/// Prints the bytes of `line`, which names a problem, and a line end to standard output and flushes it. Any thread; lines of
/// two threads do not mix. Failures are ignored.
void printLine(std::string_view line);

/// The same for what is no problem, and only where the environment sets LUMA_DIAGNOSTICS.
void printDiagnostic(std::string_view line);

} // namespace luma
