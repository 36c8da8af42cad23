// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "links/linkplan.h"
#include "links/movejournal.h"
#include "links/moverunner.h"

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace luma {

/// Moves, renames and copies in one site, as plans that are carried out whole or not at all, and undo. While it exists, no other
/// job runs on the site, in this program or another. Background thread.
///
///     auto moves = SiteMoves::open(site);
///     if (!moves)
///         return moves.error();
///     const auto plan = planMove(request);
///     const MoveReport report = moves->carryOut(*plan);
class SiteMoves final
{
public:
    /// Ends what was interrupted in this site before anything else. Error: another job is running, or the journal can't be
    /// written.
    static Result<SiteMoves> open(const std::filesystem::path& site, MoveRunner::Callbacks callbacks = {});
    /// The same, only where a job was interrupted: what became of it. Nothing where another program is at it.
    static std::vector<MoveReport> recover(const std::filesystem::path& site);

    /// Whether undo() would find a job of this site. Doesn't wait for one that is running.
    static bool hasUndo(const std::filesystem::path& site) { return MoveJournal::hasDone(site); }

    /// What became of jobs that were interrupted.
    [[nodiscard]] const std::vector<MoveReport>& recovered() const { return m_recovered; }

    /// For the jobs from now on.
    void setCallbacks(MoveRunner::Callbacks callbacks) { m_callbacks = std::move(callbacks); }

    /// To be called before the caller renames an item. From then on, an interruption gives it its old name back, until the plan
    /// with MoveRequest::isRenamedAlready is carried out. Error: the journal can't be written.
    Result<void> noteRename(const MovedItem& item);
    /// Gives the item its old name back, if it has the new one.
    MoveReport takeRenameBack();

    /// Carries the plan out. If a page has changed since the plan was made, or something fails, or the job is stopped,
    /// everything is taken back. The plan's own problems are not repeated.
    MoveReport carryOut(const LinkPlan& plan);

    /// What undo() would take back, for the user; nothing where there is nothing.
    [[nodiscard]] std::optional<std::string> undoTitle() const;
    /// Takes the last job back, files and links. Files that have changed since are left alone and named. Where items can't go
    /// back to their places, nothing is done. `rules` say how links in documents that are open are read.
    MoveReport undo(const WebRules& rules = {});
    /// Forgets the last job, which perhaps can't be taken back, so that undo() goes on with the one before. Touches no file of
    /// the site. Its title; nothing where there is none.
    std::optional<std::string> skipUndo();

private:
    SiteMoves(std::filesystem::path site, MoveJournal journal, MoveRunner::Callbacks callbacks)
        : m_site(std::move(site)), m_journal(std::move(journal)), m_callbacks(std::move(callbacks))
    {}

    void endInterrupted();
    MoveReport runJob(MoveJob job, MoveRunner::ChangedPages changedPages);

    std::filesystem::path m_site;
    MoveJournal m_journal;
    MoveRunner::Callbacks m_callbacks;
    std::vector<MoveReport> m_recovered;
    std::optional<MoveJournal::Entry> m_rename; // by the caller, whose links have not been planned yet
};

} // namespace luma
