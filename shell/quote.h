// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace luma {

/// A word of a shell command line that the shell reads as exactly `name`: blanks and everything else of ASCII
/// but letters, digits and "._-/" get a backslash before them, a newline goes in single quotes, other bytes
/// stay (POSIX.1-2017, Shell Command Language, 2.2). An empty name becomes ''. `name` holds no NUL.
std::string quotedForShell(std::string_view name);

} // namespace luma
