// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/workitem.h"
#include "site/ignorednames.h"
#include "site/syncrow.h"

namespace luma {

struct ComparedSide;

/// Whether a comparison also lists what only the receiving side has.
enum class Deletions { Ignored, Listed };

/// Compares two folders file by file, in whole seconds and by size.
///
/// Symbolic links are compared by their targets and never followed. Anything but files, links and folders is
/// left out, and so is what is ignored; other hidden files are compared.
/// A file or link in the place of a folder counts as missing. A folder in the place of a file is listed for
/// replacement, which the transfer then refuses.
class FolderComparison final
{
public:
    explicit FolderComparison(SyncFolders folders, IgnoredNames ignored = IgnoredNames(),
                              Deletions deletions = Deletions::Ignored);

    /// Runs on the calling thread and a second one until done or until `item` is cancelled; then the result
    /// holds what was found so far. An error when one of the two folders itself can't be opened. What can't be
    /// read on one side is a problem, and nothing is said of it. Without a receiving folder, the files of the
    /// sending one.
    [[nodiscard]] Result<FoundFiles> find(const WorkItem& item) const;
    /// The rows of what find() finds, for FileTransfer.
    [[nodiscard]] Result<ComparisonReport> run(const WorkItem& item, PublishedFiles before = PublishedFiles(),
                                               Direction direction = Direction::Upload) const;

private:
    SyncFolders m_folders;
    IgnoredNames m_ignored;
    Deletions m_deletions;

    [[nodiscard]] FoundFiles findBelow(const ComparedSide& sending, const ComparedSide* receiving,
                                       const WorkItem& item) const;
};

} // namespace luma
