// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "shell/commandrunner.h"
#include "site/rsynccommand.h"

#include <string>
#include <vector>

namespace luma {

/// The rows that a transfer by rsync has done, ascending, and what went wrong in rsync's words.
struct RsyncReport
{
    std::vector<std::size_t> done;
    std::vector<std::string> problems;
};

/// Compares and transfers with rsync. Both calls block the calling thread, which may be any, until rsync has
/// ended; it is ended, with its process group, once it is no longer wanted.
class RsyncJob final
{
public:
    RsyncJob(RsyncArguments arguments, ProgramRunner runProgram);

    /// An error when rsync could not compare the two folders at all; the reason is in its words.
    [[nodiscard]] Result<ComparisonReport> compare(const IgnoredNames& ignored,
                                                   const StillWanted& stillWanted) const;

    /// Sends the ticked rows, first the files that pages need, then the pages. Then deletes the ticked
    /// deletions, unless something failed, and those of `deletedFolders` that this has emptied.
    ///
    /// After a failure or a stop (`stillWanted`), rsync is asked which of the files it named are still to be
    /// done, because those it had sent last may not have arrived; `mayCheck` ends this question.
    [[nodiscard]] RsyncReport transfer(const std::vector<SyncRow>& rows,
                                       const std::vector<std::string>& deletedFolders,
                                       const StillWanted& stillWanted, const StillWanted& mayCheck) const;

private:
    RsyncCommand m_command;
    ProgramRunner m_runProgram;
};

} // namespace luma
