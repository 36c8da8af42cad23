// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/workitem.h"
#include "site/syncrow.h"

#include <string>
#include <vector>

namespace luma {

/// What a comparison found. A problem is a line for a reader: the shown name of what could not be compared,
/// and why.
struct ComparisonReport
{
    std::vector<SyncRow> rows;         ///< in byte order of their paths
    std::vector<std::string> problems; ///< sorted
};

/// Finds the files of one folder that are missing in another, or older there by whole seconds.
///
/// Symbolic links are compared as links, by what they hold, and never followed. What is neither file, link
/// nor folder is left out, and so are ".DS_Store" and files that are being written under their temporary
/// name; other hidden files are files. A file or link where the other side needs a folder counts as "nothing
/// there", a folder where the other side needs a file is listed for replacement: it is the transfer that
/// refuses.
class FolderComparison final
{
public:
    FolderComparison(std::filesystem::path sending, std::filesystem::path receiving);

    /// Runs on the calling thread and one helper, until done or until `item` is cancelled: then the report
    /// holds what was found so far. An error when one of the two folders itself cannot be read.
    [[nodiscard]] Result<ComparisonReport> run(const WorkItem& item) const;

private:
    std::shared_ptr<const SyncFolders> m_folders;
};

} // namespace luma
