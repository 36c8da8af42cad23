// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "lumactl/lumactlcommands.h"

#include <string>
#include <string_view>

namespace luma {

/// Writes "lumactl: text" to standard error.
void complain(std::string_view text);

/// The same; returns ExitCode::Unusable.
ExitCode unusable(std::string_view text);

/// The same for wrong arguments; also shows the command's usage.
ExitCode wrongUsage(const LumactlCommand& command, std::string_view text);

/// Standard output, written in large pieces. finish() reports the first write that failed.
class StandardOutput final
{
public:
    StandardOutput() = default;
    StandardOutput(const StandardOutput&) = delete;
    StandardOutput& operator=(const StandardOutput&) = delete;
    ~StandardOutput() { finish(); }

    /// Append here; flushIfLarge() and finish() write it.
    [[nodiscard]] std::string& text() { return m_text; }
    void flushIfLarge();
    /// Writes the rest. False, after a message on standard error, if anything could not be written.
    bool finish();

private:
    void flush();

    std::string m_text;
    int m_error = 0;
};

} // namespace luma
