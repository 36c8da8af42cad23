// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace luma {

/// A word for a shell command line that the shell reads as exactly `name` (POSIX.1-2017, Shell Command
/// Language, 2.2): every ASCII character except letters, digits and "._-/" is escaped by a backslash, a
/// newline by single quotes; other bytes stay. An empty name becomes ''. `name` must not contain NUL.
std::string quotedForShell(std::string_view name);

} // namespace luma
