// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/movejobs.h"

#include "base/console.h"
#include "base/files.h"
#include "base/mainhop.h"
#include "base/pathbelow.h"
#include "browser/joblog.h"
#include "browser/movenotices.h"
#include "browser/panehost.h"
#include "links/sitemoves.h"

#include <algorithm>

namespace luma {

namespace fs = std::filesystem;

namespace {

using Notices = QPointer<MoveNotices>;

const QString updateStatus =
    QStringLiteral("Please wait while links in all possible files are being updated...");

constexpr std::string_view stoppedAtOnce = "\nStopped before anything was moved or copied.";
constexpr std::string_view stoppedInPages =
    "\nStopped before all pages were looked at; links in the others are as they were.";

void addProblem(JobLog& log, const MoveProblem& problem)
{
    if (problem.kind == MoveProblem::Kind::Clash)
        printLine(problem.text);
    log.addLine(problem.text, problem.path);
}

// A move is short and must be complete before the columns are drawn again; a copy may take long and would block the window.
std::function<void(const std::function<void()>&)> fileOperations(MoveOperation operation)
{
    if (operation == MoveOperation::Copy)
        return {};
    return [](const std::function<void()>& move) { onMain(move); };
}

void tellOfMove(const Notices& notices, const MovedItem& item, const fs::path& site)
{
    onMain(notices, [&](MoveNotices& all) { emit all.itemMoved(item, site); });
}

void tellOfLinks(const Notices& notices, const std::shared_ptr<const LinksUpdate>& update)
{
    if (update)
        onMain(notices, [&](MoveNotices& all) { emit all.linksUpdated(update); });
}

/// One job that moves, renames or copies as a browser reads links, or takes such a one back. Background thread.
class MoveRun final
{
public:
    MoveRun(fs::path site, Notices notices, std::shared_ptr<JobLog> log, StillWanted stillWanted)
        : m_site(std::move(site)),
          m_notices(std::move(notices)),
          m_log(std::move(log)),
          m_stillWanted(std::move(stillWanted))
    {}

    void move(const MoveRequest& request);
    void undo(const WebRules& rules);

private:
    [[nodiscard]] Result<SiteMoves> open(MoveOperation operation) const;
    Result<MoveReport> moved(const MoveRequest& request) const;
    void takeRenameBack(const MoveRequest& request) const;
    void show(const MoveReport& report) const;

    fs::path m_site;
    Notices m_notices;
    std::shared_ptr<JobLog> m_log;
    StillWanted m_stillWanted;
};

Result<SiteMoves> MoveRun::open(MoveOperation operation) const
{
    MoveRunner::Callbacks callbacks;
    callbacks.fileOperation = fileOperations(operation);
    callbacks.itemMoved = [notices = m_notices, site = m_site](const MovedItem& item) {
        tellOfMove(notices, item, site);
    };
    callbacks.stillWanted = m_stillWanted;
    auto moves = SiteMoves::open(m_site, std::move(callbacks));
    if (moves) {
        for (const MoveReport& report : moves->recovered())
            show(report);
    }
    return moves;
}

void MoveRun::move(const MoveRequest& request)
{
    const auto report = moved(request);
    if (report) {
        for (const MovedItem& item : report->items)
            m_log->addText("Updating links to: " + item.from.filename().native() + "\n\n");
        show(*report);
    } else {
        m_log->addText(report.error().isStopped() ? std::string(stoppedAtOnce) : report.error().text);
        takeRenameBack(request);
    }
}

Result<MoveReport> MoveRun::moved(const MoveRequest& request) const
{
    auto moves = open(request.operation);
    if (!moves)
        return moves.error();
    const auto plan = planMove(request, m_stillWanted);
    if (!plan)
        return plan.error();
    for (const MoveProblem& problem : plan->problems)
        addProblem(*m_log, problem);
    return moves->carryOut(*plan);
}

// The columns had renamed the item, which gets its old name again.
void MoveRun::takeRenameBack(const MoveRequest& request) const
{
    if (!request.isRenamedAlready)
        return;
    for (const MovedItem& item : request.items) {
        if (const auto back = moveItem(item.to, item.from); !back)
            m_log->addLine(back.error().text);
        else
            tellOfMove(m_notices, {item.to, item.from}, m_site);
    }
    tellOfLinks(m_notices, std::make_shared<const LinksUpdate>(LinksUpdate{request.items, {}, {}}));
}

void MoveRun::undo(const WebRules& rules)
{
    auto moves = open(MoveOperation::Move);
    if (!moves) {
        m_log->addLine(moves.error().text);
        return;
    }
    const MoveReport report = moves->undo(rules);
    if (report.isDone)
        m_log->addText("Took back: " + report.title + "\n\n");
    show(report);
}

/// Shows what a job did, and passes it on to what is open.
void MoveRun::show(const MoveReport& report) const
{
    for (const fs::path& page : report.rewritten) {
        const fs::path subpath = page.lexically_relative(m_site);
        m_log->addLine(subpath.native(), page);
    }
    for (const MoveProblem& problem : report.problems)
        addProblem(*m_log, problem);
    if (report.isDone || report.problems.empty())
        m_log->addText(report.isStopped ? "\nStopped; everything is as it was before." : "\nDone");
    else
        m_log->addText("\nEverything is as it was before.");
    tellOfLinks(m_notices, report.links);
}

} // namespace

MoveJobs::MoveJobs(ProgressReporter& reporter, MoveNotices& notices, QObject* parent)
    : PanelJobs(Kind::Update, reporter, parent), m_notices(&notices)
{}

void MoveJobs::acceptDrop(const fs::path& site, const Drop& drop, const std::vector<fs::path>& siteFolders,
                          const ReportChoices& choices)
{
    if (choices.linkRules == LinkRules::Letter) {
        beginUpdate(
            site,
            [drop](LinkUpdatingMove& move) { return move.run(drop.operation, drop.items, drop.folder); },
            drop.operation);
        return;
    }
    MoveRequest request{site, {}, drop.operation, {}, choices.webRules};
    for (const fs::path& item : drop.items)
        request.items.push_back({item, drop.folder / item.filename()});
    const auto holdsAll = [&drop](const fs::path& folder) {
        return std::all_of(drop.items.begin(), drop.items.end(), [&folder](const fs::path& item) {
            return isAtOrBelow(item.native(), folder.native());
        });
    };
    if (const auto root = std::find_if(siteFolders.begin(), siteFolders.end(), holdsAll);
        root != siteFolders.end() && !holdsAll(site))
        request.sourceRoot = *root;
    beginMove(request);
}

void MoveJobs::updateAfterRename(const fs::path& site, const fs::path& oldPath, const fs::path& newPath,
                                 const ReportChoices& choices)
{
    if (choices.linkRules == LinkRules::Letter)
        beginUpdate(
            site,
            [oldPath, newPath](LinkUpdatingMove& move) { return move.updateAfterRename(oldPath, newPath); },
            MoveOperation::Move);
    else
        beginMove({site, {}, MoveOperation::Move, {{oldPath, newPath}}, choices.webRules, true});
}

void MoveJobs::beginMove(const MoveRequest& request)
{
    begin(updateStatus,
          [notices = m_notices, request](const WorkItemPointer& item, const std::shared_ptr<JobLog>& log) {
              MoveRun(request.site, notices, log, wantedAs(item)).move(request);
          });
}

void MoveJobs::undoMove(const fs::path& site, const ReportChoices& choices)
{
    begin(updateStatus, [notices = m_notices, site, rules = choices.webRules](
                            const WorkItemPointer& item, const std::shared_ptr<JobLog>& log) {
        MoveRun(site, notices, log, wantedAs(item)).undo(rules);
    });
}

void MoveJobs::beginUpdate(const fs::path& site, std::function<MoveOutcome(LinkUpdatingMove&)> update,
                           MoveOperation operation)
{
    begin(updateStatus, [notices = m_notices, site, update = std::move(update),
                         operation](const WorkItemPointer& item, const std::shared_ptr<JobLog>& log) {
        LinkUpdatingMove::Callbacks callbacks;
        callbacks.log = [&log](const std::string& text) { log->addText(text); };
        callbacks.problem = [&log](const MoveProblem& problem) { addProblem(*log, problem); };
        callbacks.fileOperation = fileOperations(operation);
        callbacks.itemMoved = [&](const MovedItem& moved) { tellOfMove(notices, moved, site); };
        callbacks.stillWanted = wantedAs(item);
        LinkUpdatingMove move(site, callbacks);
        const MoveOutcome outcome = update(move);
        if (!outcome.complete)
            log->addText(outcome.moved.empty() ? stoppedAtOnce : stoppedInPages);
        tellOfLinks(notices, outcome.links);
    });
}

} // namespace luma
