// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/workitem.h"
#include "shell/commandrunner.h"
#include "site/foldercomparison.h"
#include "site/rsynccommand.h"

#include <optional>
#include <string>
#include <vector>

namespace luma {

/// The rows that a transfer by rsync has done, ascending, and what went wrong in rsync's words.
struct RsyncReport
{
    std::vector<std::size_t> done;
    std::vector<FileFacts> received = {}; ///< what the receiving side has now, for each of `done`
    std::vector<std::string> problems;
};

/// Compares and transfers with rsync. Both calls block the calling thread, which may be any, until rsync has
/// ended; it is ended, with its process group, once it is no longer wanted.
class RsyncJob final
{
public:
    RsyncJob(RsyncArguments arguments, ProgramRunner runProgram);

    /// Walks the local side and lets rsync list the remote one; for an upload without deletions, only the
    /// folders that the local side has. An error when rsync could not list it at all; the reason is in its words.
    [[nodiscard]] Result<ComparisonReport> compare(const IgnoredNames& ignored, Deletions deletions,
                                                   const WorkItem& item,
                                                   PublishedFiles before = PublishedFiles()) const;

    /// Sends the ticked rows, first the files that pages need, then the pages. Then deletes the ticked
    /// deletions, unless something failed, and those of `foldersOnlyThere` that this has emptied. A file that
    /// has become newer on the receiving side since the comparison is kept, unless its row says that it
    /// replaces one that is not older.
    ///
    /// After a failure or a stop (`stillWanted`), rsync is asked which of the files it named are still to be
    /// done, because those it had sent last may not have arrived; `mayCheck` ends this question, and so does, after a
    /// stop, a server that doesn't answer at once. `progress`, if
    /// any, is called several times a second; it needs the site of `leftovers`. With `kept`, what is replaced or
    /// deleted is kept there; what can't be kept stays. `leftovers`, those of the comparison, are removed first.
    [[nodiscard]] RsyncReport
    transfer(const std::vector<SyncRow>& rows, const std::vector<std::string>& foldersOnlyThere,
             const StillWanted& stillWanted, const StillWanted& mayCheck, const OnProgress& progress = {},
             const std::optional<KeptPublish>& kept = {}, const RsyncLeftovers& leftovers = {}) const;

private:
    [[nodiscard]] Result<ComparisonReport> compareWith(FoundFiles local, const IgnoredNames& ignored,
                                                       Deletions deletions, const WorkItem& item,
                                                       PublishedFiles before) const;
    [[nodiscard]] std::optional<std::int64_t> freeBytes(const FoundFiles& found, const WorkItem& item) const;

    RsyncCommand m_command;
    ProgramRunner m_runProgram;
};

} // namespace luma
