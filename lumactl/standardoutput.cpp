// SPDX-License-Identifier: GPL-3.0-or-later
#include "lumactl/standardoutput.h"

#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace luma {

namespace {

void writeAll(int descriptor, std::string_view text, int& error)
{
    while (!text.empty() && error == 0) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written >= 0)
            text.remove_prefix(static_cast<std::size_t>(written));
        else if (errno != EINTR)
            error = errno;
    }
}

} // namespace

void complain(std::string_view text)
{
    int ignored = 0;
    writeAll(STDERR_FILENO, "lumactl: " + std::string(text) + "\n", ignored);
}

ExitCode unusable(std::string_view text)
{
    complain(text);
    return ExitCode::Unusable;
}

ExitCode wrongUsage(const LumactlCommand& command, std::string_view text)
{
    complain(text);
    int ignored = 0;
    writeAll(STDERR_FILENO,
             std::string("Usage: lumactl ").append(command.name).append(" ").append(command.usage) + "\n",
             ignored);
    return ExitCode::Unusable;
}

void StandardOutput::flush()
{
    writeAll(STDOUT_FILENO, m_text, m_error);
    m_text.clear();
}

void StandardOutput::flushIfLarge()
{
    constexpr std::size_t large = std::size_t{256} * 1024;
    if (m_text.size() >= large)
        flush();
}

bool StandardOutput::finish()
{
    flush();
    if (m_error == 0)
        return true;
    complain("standard output: " + std::generic_category().message(m_error));
    m_error = 0;
    return false;
}

} // namespace luma
