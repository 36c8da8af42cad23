// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/sshcontroller.h"
#include "shell/taskwrapper.h"

#include <string>

namespace luma::test {

/// The three ways to run something, each with its usual command: a command line, or a script for expect.
inline std::string sh(const std::string& command)
{
    return SSHController::unixShellWithResultAndArguments({"/bin/sh", "-c", command});
}

/// "nothing" if there is no result.
inline std::string zsh(const std::string& command)
{
    TaskWrapper task;
    task.arguments = {"-c", command};
    return task.run().value_or("nothing");
}

inline std::string expect(const std::string& script)
{
    return SSHController::runExpectScript(script, {});
}

} // namespace luma::test
