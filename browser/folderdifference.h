// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/filesystemnode.h"

#include <vector>

namespace luma {

/// Rows first to last, both in.
struct RowRange
{
    int first = 0;
    int last = 0;
};

/// What turns one listing of a folder into a later one: first `removed`, rows of the old listing from the
/// last range to the first; then `inserted`, rows of the new listing from the first range to the last. An
/// item that turned from a file into a folder, or back, is another item.
struct FolderDifference
{
    std::vector<RowRange> removed;
    std::vector<RowRange> inserted;
};

FolderDifference folderDifference(const std::vector<FileSystemNodePointer>& before,
                                  const std::vector<FileSystemNodePointer>& after);

} // namespace luma
