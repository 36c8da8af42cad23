// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commandrunner.h"

#include "shell/childprocess.h"

namespace luma {

ProgramResult runProgram(const std::vector<std::string>& words, std::string_view input,
                         const StillWanted& stillWanted)
{
    // env(1) searches PATH.
    ChildProcess child({"/usr/bin/env", words, {}, Collected::Both, input, stillWanted});
    ProgramResult result = {.status = child.waitForExit(), .output = {}, .errors = {}};
    result.output = child.takeCollected();
    result.errors = child.takeErrors();
    return result;
}

} // namespace luma
