// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/stillwanted.h"

#include <filesystem>

/// The file operations behind the pane's menu. Any thread.
namespace luma::fileoperations {

/// Creates a folder in `parent` and gives its path: "untitled folder", or with the first number from 2 on whose name
/// is free.
Result<std::filesystem::path> newFolder(const std::filesystem::path& parent);

/// The path of an item's copy: beside it, with " copy" before the extension.
std::filesystem::path duplicatePath(const std::filesystem::path& item);
/// Copies an item, a folder with its contents, to that path. Fails and leaves no copy if the name is taken
/// or the copy is no longer wanted.
Result<void> duplicate(const std::filesystem::path& item, const StillWanted& stillWanted = {});

} // namespace luma::fileoperations
