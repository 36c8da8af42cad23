// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"
#include "site/syncrow.h"

#include <functional>
#include <vector>

namespace luma {

/// What a transfer did not manage. `text` is for a reader: the row's shown name and the reason.
struct TransferProblem
{
    std::size_t row = 0;
    std::string text;
};

struct TransferReport
{
    std::vector<std::size_t> copied; ///< the rows that stand on the receiving side now, ascending
    std::vector<TransferProblem> problems;
};

/// Copies the ticked rows of one comparison to the receiving folder.
///
/// A file keeps its modification time and mode; a link is copied as a link; missing folders are made with the
/// mode and time of their originals. What is replaced gives way only to the finished copy. The two sides are
/// looked at again: what has since appeared or become newer on the receiving side, and what turned into a
/// folder there, stays, and no link below the receiving folder is followed. At the end all is synced at once.
class FileTransfer final
{
public:
    /// `rows` come from one FolderComparison.
    explicit FileTransfer(std::vector<SyncRow> rows);

    /// Runs on the calling thread until done or until `item` is cancelled, which is asked between files.
    /// `progress`, if any, hears after each ticked row how many are dealt with.
    [[nodiscard]] TransferReport run(const WorkItem& item,
                                     const std::function<void(std::size_t)>& progress = {}) const;

private:
    std::vector<SyncRow> m_rows;
};

} // namespace luma
