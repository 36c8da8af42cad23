// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

namespace luma {

/// The folder for what LUMA remembers between its runs: $XDG_STATE_HOME/luma or ~/.local/state/luma (XDG Base
/// Directory Specification). It may not exist. Any thread.
std::filesystem::path stateFolder();

} // namespace luma
