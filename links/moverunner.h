// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/stillwanted.h"
#include "links/linksupdate.h"
#include "links/movejournal.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// What became of a job.
struct MoveReport
{
    bool isDone = false; // false: everything is as it was before, but for what `problems` names
    bool isStopped = false;
    bool isMove = false; // the items have other paths now, where it is done
    std::string title;   // of the job, for the user
    std::vector<MovedItem> items;
    /// Pages at their new places, in the order of the plan, behind symbolic links that have other targets.
    std::vector<std::filesystem::path> rewritten;
    /// Why the job failed, and files that were left alone because they have changed since.
    std::vector<MoveProblem> problems;
    /// For the documents that are open: what has become of their links. Null where no item and no link has changed.
    std::shared_ptr<const LinksUpdate> links;
};

/// Carries out one job of a journal. Every step may be repeated, so a job that was interrupted anywhere is run again from its
/// beginning. A job that fails or is stopped is taken back. Background thread; uses all cores.
class MoveRunner final
{
public:
    struct Callbacks
    {
        /// Runs a rename of an item, for example on the main thread. If it is empty, renames run in place.
        std::function<void(const std::function<void()>& operation)> fileOperation;
        /// An item that moves has got another path; where it is taken back, its old one. Called inside the file operation, or
        /// on the thread that runs the job. May be empty.
        std::function<void(const MovedItem& item)> itemMoved;
        StillWanted stillWanted;
        /// How many pages are written, of how many; on the thread that runs the job. May be empty.
        std::function<void(std::size_t done, std::size_t all)> progress;
    };

    /// The note of a job that is being taken back.
    static constexpr std::string_view backNote = "back";

    enum class ChangedPages : std::uint8_t {
        Refused,  // a page that another program has changed since the plan was made stops the job
        LeftAlone // it stays as it is and is named
    };

    MoveRunner(MoveJournal& journal, MoveJournal::Entry entry, Callbacks callbacks, ChangedPages changedPages)
        : m_journal(journal),
          m_entry(std::move(entry)),
          m_callbacks(std::move(callbacks)),
          m_changedPages(changedPages)
    {}

    /// Runs a job that has just begun.
    MoveReport run();
    /// Ends a job that was interrupted: finishes it, or takes it back where that was its way or it can't be finished.
    MoveReport resume();

private:
    enum class Direction : std::uint8_t { Forward, Back };
    enum class PageState : std::uint8_t { Written, WasWritten, Gone, Changed };

    using Twins = std::map<std::size_t, std::vector<std::size_t>>; // numbers of pages

    [[nodiscard]] const MoveJob& job() const { return m_entry.job; }
    [[nodiscard]] bool isNoted(std::string_view text) const;
    Result<void> note(std::string_view text);
    [[nodiscard]] std::filesystem::path temporaryBeside(const std::filesystem::path& path,
                                                        std::size_t index) const;

    Result<void> forward();
    void back();
    Result<void> place(std::size_t index);
    Result<void> placeCopy(std::size_t index);
    void takeBack(std::size_t index);
    Result<void> rename(const std::filesystem::path& from, std::size_t index);
    void tellOfMove(const std::filesystem::path& from, const std::filesystem::path& to) const;
    Result<void> writePages(const std::vector<PageRewrite>& pages, Direction direction);
    Result<PageState> writePage(const std::vector<PageRewrite>& pages, std::size_t index, const Twins& twins,
                                bool restoresTime) const;
    static Twins twinsIn(const std::vector<PageRewrite>& pages);
    [[nodiscard]] bool linkToTwin(const std::filesystem::path& file, const PageRewrite& twin,
                                  std::size_t index) const;
    Result<void> changeSymlinks(const std::vector<SymlinkChange>& changes, Direction direction);
    Result<PageState> changeSymlink(const SymlinkChange& change, std::size_t index) const;
    static std::string textOf(PageState state, const std::filesystem::path& file, bool isRefused);
    Result<void> judge(const Result<PageState>& state, const std::filesystem::path& file,
                       Direction direction);
    [[nodiscard]] bool needsCommit() const;
    void commit();
    void removeSource(std::size_t index);
    void removeCopies();
    void removeTemporaries() const;
    void syncFolders() const;
    void report(MoveProblem::Kind kind, const std::filesystem::path& path, const std::string& text);

    MoveJournal& m_journal;
    MoveJournal::Entry m_entry;
    Callbacks m_callbacks;
    ChangedPages m_changedPages;
    MoveReport m_report;
    bool m_arePagesBegun = false;
};

} // namespace luma
