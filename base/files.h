// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/stillwanted.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace luma {

/// Files as the house reads, writes and copies them. Paths are bytes. Every file written is written beside
/// its target under a temporary name (".luma-" and six letters) and renamed over it, so that a failure at any
/// point leaves the old file. Safe on any thread. Errors name the path and the system's reason.

/// The whole file as bytes. Refuses what is not a regular file (a FIFO would block for ever).
Result<std::string> readFile(const std::filesystem::path& path);

/// Replaces or creates `path`. A symbolic link at `path` stays and its target is written; the mode of an
/// existing file stays; a new file gets `newMode` less the umask. Synced to the disk before the rename.
Result<void> writeFile(const std::filesystem::path& path, std::string_view bytes, unsigned newMode = 0666);

enum class Existing { Keep, Replace };
enum class Durability { Synced, Unsynced };

/// Copies one regular file or symbolic link (as a link) with modification time and mode. With Existing::Keep
/// a thing at `target` is an error and stays; with Existing::Replace a file or link there is replaced in one
/// step. `stillWanted` is asked every few megabytes; stopping is an error and leaves nothing behind.
Result<void> copyFile(const std::filesystem::path& source, const std::filesystem::path& target,
                      Existing existing, Durability durability = Durability::Synced,
                      const StillWanted& stillWanted = {});

/// Copies a file, link or whole folder to `target`, which must not exist. Links are copied as links, times
/// and modes kept. A folder grows under a temporary name beside its target and gets its own when it is whole;
/// after a failure, or when it is no longer wanted (an error too), nothing is left of it. A folder cannot be
/// copied into itself.
Result<void> copyItem(const std::filesystem::path& source, const std::filesystem::path& target,
                      const StillWanted& stillWanted = {});

/// Moves an item to `target`, which must not exist; across file systems by copying, then removing.
Result<void> moveItem(const std::filesystem::path& source, const std::filesystem::path& target);

/// Removes an item, a folder with all below it; never follows a link.
Result<void> removeItem(const std::filesystem::path& path);

/// True when something, a dangling link too, stands at `path`.
bool itemExists(const std::filesystem::path& path);

} // namespace luma
