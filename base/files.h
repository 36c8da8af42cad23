// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/stillwanted.h"

#include <ctime>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace luma {

/// Reads, writes, copies, moves and removes files. Paths are bytes. A file is written beside its target under
/// a temporary name (".luma-" and six letters) and then renamed over it, so a failure at any point leaves the
/// old file. Safe on any thread. Errors name the path and the system's reason.

/// The whole file as bytes. Anything but a regular file is an error; a FIFO does not block.
Result<std::string> readFile(const std::filesystem::path& path);

/// Replaces or creates `path`. A symbolic link at `path` stays and its target is written. An existing file
/// keeps its mode, owner and extended attributes; a new one gets `newMode` less the umask. Synced to the disk before the
/// rename.
Result<void> writeFile(const std::filesystem::path& path, std::string_view bytes, unsigned newMode = 0666);

/// A file whose mode forbids writing, where its folder would let it be replaced all the same.
enum class ReadOnly { Kept, Replaced };

/// The same for an existing file, which must not be a symbolic link, by way of `temporary`: a path beside it where nothing
/// is. With `modified`, that becomes its modification time.
Result<void> replaceFile(const std::filesystem::path& path, std::string_view bytes,
                         const std::filesystem::path& temporary, const std::optional<timespec>& modified = {},
                         ReadOnly readOnly = ReadOnly::Kept);

/// Whether replaceFile() or, for a symbolic link, a new one in its place can be expected to work; the error says what is in
/// the way. Tries what that needs: its folder takes a new file and lets this one go. Changes nothing, so that a full disk
/// shows only later.
Result<void> checkReplaceable(const std::filesystem::path& path);

/// The file that is replaced when `path` is written: behind a symbolic link.
std::filesystem::path realFile(const std::filesystem::path& path);

enum class Existing { Keep, Replace };
enum class Durability { Synced, Unsynced };

/// Copies one regular file, or a symbolic link as a link, with modification time, mode and extended attributes. If `target`
/// exists, Existing::Keep is an error and leaves it; Existing::Replace replaces a file or link in one step.
/// `stillWanted` is asked every few megabytes. A stopped copy is an error (isStopped()) and leaves nothing.
Result<void> copyFile(const std::filesystem::path& source, const std::filesystem::path& target,
                      Existing existing, Durability durability = Durability::Synced,
                      const StillWanted& stillWanted = {});

/// Copies a file, link or whole folder to `target`, which must not exist. Links are copied as links, times
/// and modes are kept. A folder is copied under a temporary name beside its target and renamed once it is
/// complete; a copy that fails or is stopped (also an error) is removed. Copying a folder into itself is an
/// error.
Result<void> copyItem(const std::filesystem::path& source, const std::filesystem::path& target,
                      const StillWanted& stillWanted = {});

/// Moves an item to `target`, which must not exist. Across file systems it is copied, then removed.
Result<void> moveItem(const std::filesystem::path& source, const std::filesystem::path& target);

/// Removes an item, a folder with everything below it. Links are not followed.
Result<void> removeItem(const std::filesystem::path& path);

/// True when there is an item at `path`, even a broken link.
bool itemExists(const std::filesystem::path& path);

} // namespace luma
