// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/filedescriptor.h"
#include "base/folderreader.h"
#include "base/result.h"
#include "mounts/sharefolders.h"
#include "site/filefacts.h"

#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <unordered_map>

namespace luma {

/// One of the two folders that are compared. Any thread.
struct ComparedSide
{
    FileDescriptor root;
    std::filesystem::path path;
    ShareLister shareLister = nullptr; ///< set for a folder on a share: items come with their attributes

    static Result<ComparedSide> open(const std::filesystem::path& path);

    /// By name; bytes.
    using Items = std::unordered_map<std::string, FileFacts>;
    /// All items of the folder at `relativePath`. Errors carry the system's code.
    [[nodiscard]] Result<Items> items(const std::string& relativePath) const;
};

/// Opens the folder at `relativePath` below `root` for reading.
Result<FolderReader> readFolderBelow(const FileDescriptor& root, const std::string& relativePath);

/// The facts of `name` in the open folder, whose status is known.
FileFacts factsOf(int folder, const char* name, const struct stat& status);

} // namespace luma
