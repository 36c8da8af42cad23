// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <sys/stat.h>

#include <array>
#include <filesystem>

namespace luma {

/// The system's calls on files with this house's errors, for the functions of base/files.h alone.

/// Names the path and the system's reason, an errno.
Error systemError(const std::filesystem::path& path, int code);
/// Somebody has stopped the work on `path`.
Error stoppedError(const std::filesystem::path& path);

/// Network file systems without owners, modes or times that can be set say so; nobody's file is lost by that.
bool isUnsupported(int code);

using Times = std::array<timespec, 2>; // of the last reading and writing, as futimens takes them
Times timesOf(const struct stat& status);

/// Sets mode or times of an open file; `target` is for the error.
Result<void> keepMode(int descriptor, mode_t mode, const std::filesystem::path& target);
Result<void> keepTimes(int descriptor, const Times& times, const std::filesystem::path& target);

/// Renames, but for an error where something stands at `to`. It may have appeared only now.
Result<void> renameToFreePlace(const std::filesystem::path& from, const std::filesystem::path& to);

} // namespace luma
