// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// Where that command calls PHP. The set-up and the installation put a link to the system's php there.
inline constexpr std::string_view tidyInterpreter = "/opt/homebrew-palisan/bin/php";

/// The shell command that formats a style sheet: prints `text` into the formatting script, which stands in
/// LUMAHTMLCSSJS/bin of the working folder. First each double quote becomes a single one and each "&amp;" an
/// "&". Then the text stands between double quotes as it is but for what a shell would act on there (POSIX.1,
/// Shell Command Language, 2.2.3) and what zsh's echo would (its backslash escapes): those get the
/// backslashes that make the script read exactly the text. Texts without such signs stand there letter for
/// letter.
std::string tidyCommand(std::string_view text);

/// Formats CSS (UTF-8) with that command, or, when it would be too long for the system, with the same command
/// that reads the text from a temporary file. `runShell` runs the shell with its arguments and gives what it
/// printed, less the last character, or nothing (TaskWrapper). Empty when the command printed nothing.
using ShellRunner = std::function<std::optional<std::string>(std::vector<std::string> arguments)>;
std::string tidyCSS(std::string_view text, const ShellRunner& runShell);

} // namespace luma
