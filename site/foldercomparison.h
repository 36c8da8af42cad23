// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/workitem.h"
#include "site/ignorednames.h"
#include "site/syncrow.h"

namespace luma {

/// Finds the files of one folder that are missing in another, or older there by whole seconds.
///
/// Symbolic links are compared by their targets and never followed. Anything but files, links and folders is
/// left out, and so is what is ignored; other hidden files are compared.
/// A file or link in the place of a folder counts as missing. A folder in the place of a file is listed for
/// replacement, which the transfer then refuses.
class FolderComparison final
{
public:
    FolderComparison(std::filesystem::path sending, std::filesystem::path receiving,
                     IgnoredNames ignored = IgnoredNames());

    /// Runs on the calling thread and a second one until done or until `item` is cancelled; then the report
    /// holds what was found so far. Rows come in byte order of their paths, problems sorted. An error when
    /// one of the two folders itself can't be opened.
    [[nodiscard]] Result<ComparisonReport> run(const WorkItem& item) const;

private:
    std::shared_ptr<const SyncFolders> m_folders;
    IgnoredNames m_ignored;
};

} // namespace luma
