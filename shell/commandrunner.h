// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace luma {

/// Runs a command, blocks until it is done, and gives what it printed on standard output: UTF-8, empty if it
/// failed or printed nothing. Safe on any thread. Whoever asks for one says what the words are: a program and
/// its arguments (SSHController::unixShellWithResultAndArguments), or the arguments of a shell (shellRunner).
using CommandRunner = std::function<std::string(const std::vector<std::string>& words)>;

} // namespace luma
