// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/console.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace luma {

void printLine(std::string_view line)
{
    // One write, so that lines of two threads do not mix.
    const std::string text = std::string(line) + '\n';
    (void)std::fwrite(text.data(), 1, text.size(), stdout);
    (void)std::fflush(stdout);
}

void printDiagnostic(std::string_view line)
{
    static const bool isWanted = std::getenv("LUMA_DIAGNOSTICS") != nullptr; // NOLINT(concurrency-mt-unsafe)
    if (isWanted)
        printLine(line);
}

} // namespace luma
