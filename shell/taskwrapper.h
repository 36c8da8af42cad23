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

/// Runs zsh once and collects what it prints. Blocks the calling thread, which may be any, until every
/// process that holds the shell's standard output has closed it; the exit status is ignored. Standard input
/// is an empty pipe.
class TaskWrapper final
{
public:
    enum class Errors { Inherited, Ignored }; // what becomes of standard error

    /// The shell runs in `workingFolder`; empty means ours.
    explicit TaskWrapper(std::filesystem::path workingFolder = {}, Errors errors = Errors::Inherited);
    TaskWrapper(const TaskWrapper&) = delete;
    TaskWrapper& operator=(const TaskWrapper&) = delete;
    ~TaskWrapper();

    /// The shell's arguments as bytes, usually "-c" and a command line.
    std::vector<std::string> arguments;

    /// The output without its last character (usually the line end). Nothing if there is no output, it is not
    /// UTF-8, the shell could not be started, or this is not the first run.
    std::optional<std::string> run();

private:
    std::filesystem::path m_workingFolder;
    Errors m_errors;
    std::unique_ptr<ChildProcess> m_task;
};

/// A runner of zsh in `workingFolder`: each call is a TaskWrapper with the words as its arguments. What the commands print
/// about themselves, such as how kill is used, is ignored.
CommandRunner shellRunner(std::filesystem::path workingFolder = {});

} // namespace luma
