// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

namespace luma {

/// The application's resource folder: the installed share/luma next to the program, or the build tree's copy.
/// It has the page-side scripts, the template page, the icons, the sample site and the folder watcher. The
/// environment variable LUMA_RESOURCES overrides it. Empty if there is none. Any thread.
std::filesystem::path resourceFolder();

} // namespace luma
