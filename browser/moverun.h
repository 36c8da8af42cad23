// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/stillwanted.h"
#include "browser/panehost.h"
#include "links/linkupdatingmove.h"

#include <QCoreApplication>
#include <QPointer>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace luma {

class JobLog;
class MoveJobs;
class MoveNotices;
class SiteMoves;
struct LinkPlan;
struct MoveReport;
struct MoveRequest;

/// One job that moves, renames or copies items and updates the links, or takes such a one back. It writes its log, tells the
/// notices what has moved, asks the user through the jobs, and says how it ended. Background thread, but for the user's
/// answer; the jobs may be gone by then.
class MoveRun final : public std::enable_shared_from_this<MoveRun>
{
    Q_DECLARE_TR_FUNCTIONS(MoveRun)

public:
    using Done = std::function<void(const JobEnd& end)>;
    using Update = std::function<MoveOutcome(LinkUpdatingMove& move)>;

    /// `moves` are open before the job where an item is renamed already.
    MoveRun(std::filesystem::path site, MoveJobs* jobs, QPointer<MoveNotices> notices,
            std::shared_ptr<SiteMoves> moves = {});
    ~MoveRun();
    MoveRun(const MoveRun&) = delete;
    MoveRun& operator=(const MoveRun&) = delete;

    /// What begins the job once more after a stop; to be called before begin().
    void setGoOn(std::function<void()> goOn) { m_goOn = std::move(goOn); }
    /// To be called first. `done` when the job has ended.
    void begin(std::shared_ptr<JobLog> log, StillWanted stillWanted, Done done);
    /// Plans the move, and carries it out at once or, where more than `askAbove` pages change, after the user has looked at the
    /// plan. Where links would break or only links change, the user always looks at it.
    void move(const MoveRequest& request, std::optional<int> askAbove);
    /// Makes and carries out a plan that changes text. With Shown::First, or if files can't be changed, the user looks at it
    /// before.
    enum class Shown : std::uint8_t { Not, First };
    using TextPlan = std::function<Result<LinkPlan>(const StillWanted& stillWanted)>;
    void changeText(const TextPlan& makePlan, Shown shown);
    /// `title` is what the window's Undo calls it; empty where that does not know the job.
    void undo(const WebRules& rules, const QString& title);
    /// Shows what became of jobs that were interrupted.
    void showEnded(const std::vector<MoveReport>& reports);
    /// Moves, renames or copies by the letter.
    void update(const Update& update, MoveOperation operation);

private:
    Result<void> open(MoveOperation operation);
    void fail(const Error& error, const MoveRequest& request);
    void ask(LinkPlan plan, std::optional<int> askAbove);
    void answer(bool isAccepted);
    void skip(bool isAccepted, const QString& title);
    void carryOut();
    void end(const JobEnd& end);
    void keepUndo(const QString& title);
    [[nodiscard]] bool takeRenameBack(const MoveRequest& request) const;
    void showRecovered(const std::vector<MoveReport>& reports) const;
    void show(const MoveReport& report) const;
    [[nodiscard]] JobEnd endOf(const MoveReport& report, const QString& done,
                               const std::vector<MoveProblem>& problems) const;

    const std::filesystem::path m_site;
    const QPointer<MoveJobs> m_jobs;
    const QPointer<MoveNotices> m_notices;
    std::shared_ptr<JobLog> m_log;
    StillWanted m_stillWanted;
    Done m_done;
    std::function<void()> m_goOn;
    // Open while the user looks at the plan, so that no other job changes the site.
    std::shared_ptr<SiteMoves> m_moves;
    std::shared_ptr<const LinkPlan> m_plan;
};

} // namespace luma
