// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/filesystemnode.h"

#include <vector>

namespace luma {

/// The rows from `first` to `last`, both included.
struct RowRange
{
    int first = 0;
    int last = 0;
};

/// The changes that turn one listing of a folder into a later one: first remove `removed`, rows of the old
/// listing, last range first; then insert `inserted`, rows of the new listing, first range first. A file that
/// has become a folder, or the reverse, is a different item.
struct FolderDifference
{
    std::vector<RowRange> removed;
    std::vector<RowRange> inserted;
};

FolderDifference folderDifference(const std::vector<FileSystemNodePointer>& before,
                                  const std::vector<FileSystemNodePointer>& after);

} // namespace luma
