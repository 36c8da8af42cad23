// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/filedescriptor.h"
#include "base/result.h"
#include "links/movejob.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// The moves of one site as the user's state folder keeps them ($XDG_STATE_HOME/luma or ~/.local/state/luma), readable by the
/// user alone: one that is running, and the last ones that are done and can be taken back. While it is open, no other process
/// has it. One thread.
class MoveJournal final
{
public:
    /// A job that was running, with the notes that it made.
    struct Entry
    {
        std::uint64_t number = 0;
        MoveJob job;
        std::vector<std::string> notes;
    };

    /// Error: another program moves files in this site now, or the state folder can't be used.
    static Result<MoveJournal> open(const std::filesystem::path& site);
    /// Whether a job was interrupted, or is done and can be taken back. Both cost next to nothing.
    static bool isPending(const std::filesystem::path& site);
    static bool hasDone(const std::filesystem::path& site);

    /// The jobs that were interrupted; at most one, unless something went wrong before. What can't be read is put aside under a
    /// name that ends in ".damaged" and named in `damaged`.
    [[nodiscard]] std::vector<Entry> running(std::vector<std::filesystem::path>& damaged);
    /// The last job that is done and has not been taken back.
    [[nodiscard]] std::optional<Entry> lastDone() const;

    /// Writes the job down, with a first note if there is one; to be called before it begins. Gives its number.
    Result<std::uint64_t> begin(const MoveJob& job, std::string_view firstNote = {});
    /// Adds a note to a running job.
    Result<void> note(std::uint64_t number, std::string_view text);
    /// The running job is done and can be taken back from now on.
    Result<void> finish(std::uint64_t number);
    /// Forgets a running job, or one that is done.
    void forgetRunning(std::uint64_t number);
    void forgetDone(std::uint64_t number);

private:
    MoveJournal(std::filesystem::path folder, FileDescriptor lock)
        : m_folder(std::move(folder)), m_lock(std::move(lock))
    {}

    [[nodiscard]] std::filesystem::path fileOf(std::uint64_t number, std::string_view state) const;

    std::filesystem::path m_folder;
    FileDescriptor m_lock;
};

} // namespace luma
