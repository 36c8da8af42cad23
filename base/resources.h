// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

namespace luma {

/// The application's resource folder: the installed share/luma next to the program, or the build tree's copy.
/// It has the page-side scripts, the template page, the icons, the sample site, the manual and the translations. The
/// environment variable LUMA_RESOURCES overrides it. Empty if there is none. Any thread.
std::filesystem::path resourceFolder();

/// A program that only LUMA starts, such as the folder watcher, in the installed libexec/luma or the build tree's copy.
/// Empty if there is none. Any thread.
std::filesystem::path helperProgram(const char* name);

/// LUMA itself: the installed program or the build tree's, also where another program asks. Empty if there is none. Any thread.
std::filesystem::path applicationProgram();

} // namespace luma
