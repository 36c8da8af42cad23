// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace luma {

/// Where that command calls PHP. The set-up and the installation put a link to the system's php there.
inline constexpr std::string_view tidyInterpreter = "/opt/homebrew-palisan/bin/php";

/// The shell command that formats a style sheet: prints `text` into the formatting script, which stands in
/// LUMAHTMLCSSJS/bin of the working folder. First each double quote becomes a single one, except in strings
/// that hold both kinds and after `@charset`, and each "&amp;" an "&". Then the text stands between double
/// quotes. What a shell would act on there (POSIX.1, Shell Command Language, 2.2.3) and what zsh's echo would
/// (its backslash escapes) get the backslashes that make the script read exactly the text. Texts without such
/// signs stand there letter for letter.
std::string tidyCommand(std::string_view text);

/// Formats CSS (UTF-8) with that command, run by the shell in the resource folder; it blocks. A command that
/// would be too long for the system reads the text from a temporary file instead. Where nothing can be run at
/// tidyInterpreter, the php of the search path stands in. Empty when nothing was printed.
std::string tidyCSS(std::string_view text);

} // namespace luma
