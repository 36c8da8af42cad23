// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/movejobs.h"

#include "base/console.h"
#include "base/files.h"
#include "base/mainhop.h"
#include "base/pathbelow.h"
#include "browser/joblog.h"
#include "browser/movenotices.h"
#include "browser/panehost.h"
#include "browser/planpreview.h"
#include "links/sitelinks.h"
#include "links/sitemoves.h"

#include <QApplication>

#include <algorithm>
#include <memory>
#include <optional>

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

// For the next move, in the background.
void keepLinks(const std::shared_ptr<SiteLinks>& links, const WebRules& rules)
{
    start(std::make_shared<WorkItem>(), [links, rules](const WorkItem&) {
        (void)links->findMissing(
            rules, [](const WebPage&) {}, [] { return !isMainHopClosed(); });
        links->store();
    });
}

/// One job that moves, renames or copies as a browser reads links, or takes such a one back. Background thread, but for the
/// user's answer.
class MoveRun final : public std::enable_shared_from_this<MoveRun>
{
public:
    struct Context
    {
        fs::path site;
        QPointer<MoveJobs> jobs;
        Notices notices;
        std::shared_ptr<JobLog> log;
        StillWanted stillWanted;
        std::function<void()> done;
    };

    explicit MoveRun(Context context) : m(std::move(context)) {}

    /// Plans the move, and carries it out at once or, where more than `askAbove` pages change, after the user has looked at the
    /// plan. Where only links change, the user always looks at it.
    void move(const MoveRequest& request, std::optional<int> askAbove);
    void undo(const WebRules& rules);

private:
    [[nodiscard]] Result<SiteMoves> open(MoveOperation operation) const;
    void fail(const Error& error, const MoveRequest& request) const;
    void ask(LinkPlan plan, std::optional<int> askAbove);
    void answer(bool isAccepted);
    void carryOut();
    [[nodiscard]] bool takeRenameBack(const MoveRequest& request) const;
    void show(const MoveReport& report) const;

    Context m;
    std::optional<SiteMoves>
        m_moves; // open while the user looks at the plan, so that no other job changes the site
    std::shared_ptr<const LinkPlan> m_plan;
};

Result<SiteMoves> MoveRun::open(MoveOperation operation) const
{
    MoveRunner::Callbacks callbacks;
    callbacks.fileOperation = fileOperations(operation);
    callbacks.itemMoved = [notices = m.notices, site = m.site](const MovedItem& item) {
        tellOfMove(notices, item, site);
    };
    callbacks.stillWanted = m.stillWanted;
    auto moves = SiteMoves::open(m.site, std::move(callbacks));
    if (moves) {
        for (const MoveReport& report : moves->recovered())
            show(report);
    }
    return moves;
}

void MoveRun::move(const MoveRequest& request, std::optional<int> askAbove)
{
    auto moves = open(request.operation);
    if (!moves) {
        fail(moves.error(), request);
        return;
    }
    auto plan = planMove(request, m.stillWanted);
    if (!plan) {
        fail(plan.error(), request);
        return;
    }
    m_moves = *std::move(moves);
    const bool isMany = askAbove && plan->pages.size() > static_cast<std::size_t>(*askAbove);
    const bool isOfLinks = request.changesLinksOnly;
    if (isOfLinks && !plan->problems.empty() && plan->request.items.empty()) {
        fail(Error{plan->problems.front().text}, request);
    } else if ((isMany || isOfLinks) && takeRenameBack(plan->request)) {
        plan->request.isRenamedAlready = false;
        ask(*std::move(plan), isOfLinks ? std::nullopt : askAbove);
    } else {
        m_plan = std::make_shared<const LinkPlan>(*std::move(plan));
        carryOut();
    }
}

void MoveRun::fail(const Error& error, const MoveRequest& request) const
{
    m.log->addText(error.isStopped() ? std::string(stoppedAtOnce) : error.text);
    (void)takeRenameBack(request);
    m.done();
}

// Whatever happens while the user looks at the plan, a renamed item has its old name.
void MoveRun::ask(LinkPlan plan, std::optional<int> askAbove)
{
    m_plan = std::make_shared<const LinkPlan>(std::move(plan));
    const auto answered = [self = shared_from_this()](bool isAccepted) {
        start(std::make_shared<WorkItem>(),
              [self, isAccepted](const WorkItem&) { self->answer(isAccepted); });
    };
    onMain(m.jobs, [&](MoveJobs& jobs) { jobs.showPlan(m_plan, askAbove, answered); });
}

void MoveRun::answer(bool isAccepted)
{
    if (isAccepted) {
        carryOut();
        return;
    }
    m_moves.reset();
    m.log->addText("Cancelled; everything is as it was before.");
    m.done();
}

void MoveRun::carryOut()
{
    for (const MoveProblem& problem : m_plan->problems)
        addProblem(*m.log, problem);
    const MoveReport report = m_moves->carryOut(*m_plan);
    m_moves.reset();
    for (const MovedItem& item : report.items)
        m.log->addText("Updating links to: " + item.from.filename().native() + "\n\n");
    show(report);
    if (report.isDone)
        onMain(m.jobs, [this](MoveJobs& jobs) { emit jobs.moved(PlanPreview::actionName(*m_plan), m.site); });
    m.done();
}

// The columns had renamed the item, which gets its old name again. False if it can't.
bool MoveRun::takeRenameBack(const MoveRequest& request) const
{
    if (!request.isRenamedAlready)
        return true;
    bool isBack = true;
    for (const MovedItem& item : request.items) {
        if (const auto back = moveItem(item.to, item.from); !back) {
            m.log->addLine(back.error().text);
            isBack = false;
        } else {
            tellOfMove(m.notices, {item.to, item.from}, m.site);
        }
    }
    tellOfLinks(m.notices, std::make_shared<const LinksUpdate>(LinksUpdate{request.items, {}, {}}));
    return isBack;
}

void MoveRun::undo(const WebRules& rules)
{
    auto moves = open(MoveOperation::Move);
    if (!moves) {
        m.log->addLine(moves.error().text);
        m.done();
        return;
    }
    const MoveReport report = moves->undo(rules);
    if (report.isDone)
        m.log->addText("Took back: " + report.title + "\n\n");
    show(report);
    m.done();
}

/// Shows what a job did, and passes it on to what is open.
void MoveRun::show(const MoveReport& report) const
{
    for (const fs::path& page : report.rewritten) {
        const fs::path subpath = page.lexically_relative(m.site);
        m.log->addLine(subpath.native(), page);
    }
    for (const MoveProblem& problem : report.problems)
        addProblem(*m.log, problem);
    if (report.isDone || report.problems.empty())
        m.log->addText(report.isStopped ? "\nStopped; everything is as it was before." : "\nDone");
    else
        m.log->addText("\nEverything is as it was before.");
    tellOfLinks(m.notices, report.links);
}

} // namespace

MoveJobs::MoveJobs(ProgressReporter& reporter, MoveNotices& notices, QWidget* pane)
    : PanelJobs(Kind::Update, reporter, pane), m_notices(&notices), m_pane(pane)
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
    beginMove(std::move(request), choices.askAbove);
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
        beginMove({site, {}, MoveOperation::Move, {{oldPath, newPath}}, choices.webRules, true},
                  choices.askAbove);
}

void MoveJobs::replaceLinks(const fs::path& site, const fs::path& target, const fs::path& file,
                            const ReportChoices& choices)
{
    MoveRequest request{site, {}, MoveOperation::Move, {{target, file}}, choices.webRules};
    request.changesLinksOnly = true;
    beginMove(std::move(request), {});
}

void MoveJobs::beginMove(MoveRequest request, std::optional<int> askAbove)
{
    request.keptLinks = m_keptLinks;
    beginLong(updateStatus, [jobs = QPointer(this), notices = m_notices, request = std::move(request),
                             askAbove](const WorkItemPointer& item, const std::shared_ptr<JobLog>& log,
                                       const Done& done) {
        const auto keepAndEnd = [done, links = request.keptLinks, rules = request.rules] {
            done();
            if (links)
                keepLinks(links, rules);
        };
        const MoveRun::Context context{request.site, jobs, notices, log, wantedAs(item), keepAndEnd};
        std::make_shared<MoveRun>(context)->move(request, askAbove);
    });
}

void MoveJobs::undoMove(const fs::path& site, const ReportChoices& choices)
{
    beginLong(updateStatus,
              [jobs = QPointer(this), notices = m_notices, site, rules = choices.webRules](
                  const WorkItemPointer& item, const std::shared_ptr<JobLog>& log, const Done& done) {
                  const MoveRun::Context context{site, jobs, notices, log, wantedAs(item), done};
                  std::make_shared<MoveRun>(context)->undo(rules);
              });
}

void MoveJobs::showPlan(const std::shared_ptr<const LinkPlan>& plan, std::optional<int> askAbove,
                        const Answered& answered)
{
    QWidget* const sheet = QApplication::activeModalWidget();
    QWidget* const window = m_pane->window();
    const bool isOnSheet = sheet && sheet->parentWidget() == window;
    auto* const preview = new PlanPreview(plan, askAbove, isOnSheet ? sheet : window);
    connect(preview, &PlanPreview::askingStopped, this, &MoveJobs::askingStopped);
    connect(preview, &QDialog::finished, this,
            [answered](int result) { answered(result == QDialog::Accepted); });
    preview->open();
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
