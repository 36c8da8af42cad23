// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/stillwanted.h"

#include <filesystem>

/// What the pane's menu does to files, without a screen. Any thread.
namespace luma::fileoperations {

/// Where a new folder of `parent` goes: "New Folder" in it.
std::filesystem::path newFolderPath(const std::filesystem::path& parent);
/// Creates that folder; an error, and nothing changed, when the name is taken.
Result<void> newFolder(const std::filesystem::path& parent);

/// Where the copy of an item goes: beside it, " copy" put before the extension.
std::filesystem::path duplicatePath(const std::filesystem::path& item);
/// Copies an item, a folder whole, to that place; an error, and nothing changed, when the name is taken or
/// the copy is no longer wanted.
Result<void> duplicate(const std::filesystem::path& item, const StillWanted& stillWanted = {});

} // namespace luma::fileoperations
