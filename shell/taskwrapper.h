// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commandrunner.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace luma {

class ChildProcess;

/// Runs zsh once and takes what it prints. It blocks the calling thread, any one, until everybody who holds
/// the shell's standard output has closed it; the exit status counts for nothing. Standard input is a pipe
/// that carries nothing, standard error is ours.
class TaskWrapper final
{
public:
    /// The shell runs in `workingFolder`, the application's resource folder; an empty path means ours.
    explicit TaskWrapper(std::filesystem::path workingFolder = {});
    TaskWrapper(const TaskWrapper&) = delete;
    TaskWrapper& operator=(const TaskWrapper&) = delete;
    ~TaskWrapper();

    /// The shell's arguments, as bytes; mostly "-c" and a command line.
    std::vector<std::string> arguments;

    /// The output, UTF-8, without its last character, whatever that is. Nothing when nothing was printed, it
    /// is not UTF-8, the shell could not be started, or this is not the first run.
    std::optional<std::string> run();

private:
    std::filesystem::path m_workingFolder;
    std::unique_ptr<ChildProcess> m_task;
};

/// A runner of zsh in `workingFolder`: each call is a TaskWrapper with the words as its arguments.
CommandRunner shellRunner(std::filesystem::path workingFolder = {});

} // namespace luma
