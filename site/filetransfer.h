// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"
#include "site/keptplace.h"
#include "site/syncrow.h"

#include <optional>
#include <vector>

namespace luma {

/// A row that could not be transferred. `text` is for the user: the row's shown name and the reason.
struct TransferProblem
{
    std::size_t row = 0;
    std::string text;
};

struct TransferReport
{
    std::vector<std::size_t> done;        ///< the rows that were copied or deleted, ascending
    std::vector<FileFacts> received = {}; ///< what the receiving side has now, for each of `done`
    std::vector<TransferProblem> problems;
};

/// Copies the ticked rows of one comparison to the receiving folder, and deletes its ticked deletions there.
///
/// A file keeps its modification time and mode, a link is copied as a link, and missing folders are created
/// with the mode and time of their originals. A file is replaced only by the finished copy. Both sides are
/// checked again first: what has changed on the receiving side since the comparison is kept, and no link below
/// the receiving folder is followed. All copies are synced together before anything is deleted; nothing is if
/// a copy failed. What a killed transfer has left of temporary files is removed from the folders it visits (removeLeftovers).
class FileTransfer final
{
public:
    /// `rows` come from one FolderComparison, and so do `foldersOnlyThere`, of which those are deleted that the
    /// deletions have emptied.
    /// With `kept`, what is replaced or deleted is kept there; what can't be kept stays and is a problem.
    explicit FileTransfer(std::vector<SyncRow> rows, std::vector<std::string> foldersOnlyThere = {},
                          std::optional<KeptPublish> kept = {});

    /// Runs on the calling thread until done or until `item` is cancelled, which is checked between files and
    /// every few megabytes; what was done by then stays. Pages come after all other files.
    /// `progress`, if any, is called after each ticked row.
    [[nodiscard]] TransferReport run(const WorkItem& item, const OnProgress& progress = {}) const;

private:
    std::vector<SyncRow> m_rows;
    std::vector<std::string> m_foldersOnlyThere;
    std::optional<KeptPublish> m_kept;
};

} // namespace luma
