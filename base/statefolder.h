// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <filesystem>

namespace luma {

/// The folder for what LUMA remembers between its runs: $XDG_STATE_HOME/luma or ~/.local/state/luma (XDG Base
/// Directory Specification). It may not exist. Any thread.
std::filesystem::path stateFolder();

/// The folder for what can be made again at any time: $XDG_CACHE_HOME/luma or ~/.cache/luma. It may not exist. Any thread.
std::filesystem::path cacheFolder();

/// Creates a folder and those above it, readable by the user alone, where they don't exist.
Result<void> makePrivateFolder(const std::filesystem::path& folder);

} // namespace luma
