// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "lumactl/lumactlcommands.h"

#include <string>
#include <string_view>

namespace luma {

/// Writes "lumactl: text" to standard error. The answer is ExitCode::Unusable.
ExitCode unusable(std::string_view text);
void complain(std::string_view text);

/// Unusable because of how the command was called: says so and shows its usage.
ExitCode wrongUsage(const LumactlCommand& command, std::string_view text);

/// Standard output, written in large pieces. A failed write is told once, by finish().
class StandardOutput final
{
public:
    StandardOutput() = default;
    StandardOutput(const StandardOutput&) = delete;
    StandardOutput& operator=(const StandardOutput&) = delete;
    ~StandardOutput() { finish(); }

    /// What is appended to this string is written by flushIfLarge() and finish().
    [[nodiscard]] std::string& text() { return m_text; }
    void flushIfLarge();
    /// False when something could not be written; says so on standard error.
    bool finish();

private:
    void flush();

    std::string m_text;
    int m_error = 0;
};

} // namespace luma
