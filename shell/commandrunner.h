// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/stillwanted.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// Runs a command, blocks until it is done, and gives what it printed on standard output: UTF-8, empty if it
/// failed or printed nothing. Safe on any thread. Whoever asks for one says what the words are: a program and
/// its arguments (SSHController::unixShellWithResultAndArguments), or the arguments of a shell (shellRunner).
using CommandRunner = std::function<std::string(const std::vector<std::string>& words)>;

/// How a program ended, and what it printed: bytes.
struct ProgramResult
{
    std::optional<int> status; ///< none if it did not start, was ended or died of a signal
    std::string output;
    std::string errors;
};

/// Runs the program that the first of `words` names, found through PATH, with the others as its arguments and
/// `input` on its standard input; no shell reads them. Blocks until it has ended. Once `stillWanted` says no,
/// its process group is ended. Safe on any thread.
using ProgramRunner = std::function<ProgramResult(const std::vector<std::string>& words,
                                                  std::string_view input, const StillWanted& stillWanted)>;

/// The ProgramRunner that really runs it.
ProgramResult runProgram(const std::vector<std::string>& words, std::string_view input,
                         const StillWanted& stillWanted);

} // namespace luma
