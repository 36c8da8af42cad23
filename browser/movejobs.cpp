// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/movejobs.h"

#include "base/console.h"
#include "base/filecalls.h"
#include "base/files.h"
#include "base/mainhop.h"
#include "base/pathbelow.h"
#include "browser/displaytext.h"
#include "browser/joblog.h"
#include "browser/movenotices.h"
#include "browser/panehost.h"
#include "browser/planpreview.h"
#include "links/sitelinks.h"
#include "links/sitemoves.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

#include <algorithm>
#include <memory>
#include <optional>

namespace luma {

namespace fs = std::filesystem;

namespace {

using Notices = QPointer<MoveNotices>;

QString updateStatus()
{
    return MoveJobs::tr("Please wait while links in all possible files are being updated...");
}

constexpr std::string_view stoppedAtOnce = "\nStopped before anything was moved or copied.";
constexpr std::string_view stoppedInPages =
    "\nStopped before all pages were looked at; links in the others are as they were.";

void addProblem(JobLog& log, const MoveProblem& problem)
{
    if (problem.kind == MoveProblem::Kind::Clash)
        printLine(problem.text);
    log.addLine(problem.text, problem.path);
}

// A move is short and must be complete before the columns are drawn again; a copy may take long and would block the
// window, and so does a server that is silent.
std::function<void(const std::function<void()>&)> fileOperations(MoveOperation operation,
                                                                 const fs::path& site)
{
    if (operation == MoveOperation::Copy || isOnServer(site))
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
    /// `moves` are open before the job where an item is renamed already.
    MoveRun(fs::path site, MoveJobs* jobs, Notices notices, std::shared_ptr<SiteMoves> moves = {})
        : m_site(std::move(site)), m_jobs(jobs), m_notices(std::move(notices)), m_moves(std::move(moves))
    {}

    /// To be called first. `done` when the job has ended.
    void begin(std::shared_ptr<JobLog> log, StillWanted stillWanted, std::function<void()> done)
    {
        m_log = std::move(log);
        m_stillWanted = std::move(stillWanted);
        m_done = std::move(done);
    }
    /// Plans the move, and carries it out at once or, where more than `askAbove` pages change, after the user has looked at the
    /// plan. Where only links change, the user always looks at it.
    void move(const MoveRequest& request, std::optional<int> askAbove);
    void undo(const WebRules& rules);
    /// Shows what became of jobs that were interrupted.
    void showEnded(const std::vector<MoveReport>& reports);

private:
    Result<void> open(MoveOperation operation);
    void fail(const Error& error, const MoveRequest& request);
    void ask(LinkPlan plan, std::optional<int> askAbove);
    void answer(bool isAccepted);
    void skip(bool isAccepted);
    void carryOut();
    void end();
    [[nodiscard]] bool takeRenameBack(const MoveRequest& request) const;
    void showRecovered(const std::vector<MoveReport>& reports) const;
    void show(const MoveReport& report) const;

    const fs::path m_site;
    const QPointer<MoveJobs> m_jobs;
    const Notices m_notices;
    std::shared_ptr<JobLog> m_log;
    StillWanted m_stillWanted;
    std::function<void()> m_done;
    // Open while the user looks at the plan, so that no other job changes the site.
    std::shared_ptr<SiteMoves> m_moves;
    std::shared_ptr<const LinkPlan> m_plan;
};

Result<void> MoveRun::open(MoveOperation operation)
{
    MoveRunner::Callbacks callbacks;
    callbacks.fileOperation = fileOperations(operation, m_site);
    callbacks.itemMoved = [notices = m_notices, site = m_site](const MovedItem& item) {
        tellOfMove(notices, item, site);
    };
    callbacks.stillWanted = m_stillWanted;
    if (m_moves) {
        m_moves->setCallbacks(std::move(callbacks));
    } else {
        auto moves = SiteMoves::open(m_site, std::move(callbacks));
        if (!moves)
            return moves.error();
        m_moves = std::make_shared<SiteMoves>(*std::move(moves));
    }
    showRecovered(m_moves->recovered());
    return {};
}

void MoveRun::move(const MoveRequest& request, std::optional<int> askAbove)
{
    if (auto opened = open(request.operation); !opened) {
        fail(opened.error(), request);
        return;
    }
    auto plan = planMove(request, m_stillWanted);
    if (!plan) {
        fail(plan.error(), request);
        return;
    }
    const bool isMany = askAbove && plan->pages.size() > static_cast<std::size_t>(*askAbove);
    const bool isOfLinks = request.itemsStay();
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

void MoveRun::fail(const Error& error, const MoveRequest& request)
{
    m_log->addText(error.isStopped() ? std::string(stoppedAtOnce) : error.text);
    (void)takeRenameBack(request);
    end();
}

// The site is free before the user can begin another job.
void MoveRun::end()
{
    m_moves.reset();
    m_done();
}

// Whatever happens while the user looks at the plan, a renamed item has its old name.
void MoveRun::ask(LinkPlan plan, std::optional<int> askAbove)
{
    m_plan = std::make_shared<const LinkPlan>(std::move(plan));
    const auto answered = [self = shared_from_this()](bool isAccepted) {
        start(std::make_shared<WorkItem>(),
              [self, isAccepted](const WorkItem&) { self->answer(isAccepted); });
    };
    onMain(m_jobs, [&](MoveJobs& jobs) { jobs.showPlan(m_plan, askAbove, answered); });
}

void MoveRun::answer(bool isAccepted)
{
    if (isAccepted) {
        carryOut();
        return;
    }
    m_log->addText("Cancelled; everything is as it was before.");
    end();
}

void MoveRun::carryOut()
{
    for (const MoveProblem& problem : m_plan->problems)
        addProblem(*m_log, problem);
    for (const PlanNote& note : m_plan->notes)
        m_log->addLine(note.page.lexically_relative(m_site).native() + ": " + note.text, note.page);
    const MoveReport report = m_moves->carryOut(*m_plan);
    for (const MovedItem& item : report.items)
        m_log->addText("Updating links to: " + item.from.filename().native() + "\n\n");
    show(report);
    if (report.isDone)
        onMain(m_jobs, [this](MoveJobs& jobs) { emit jobs.moved(PlanPreview::actionName(*m_plan), m_site); });
    end();
}

// The columns had renamed the item, which gets its old name again. False if it can't.
bool MoveRun::takeRenameBack(const MoveRequest& request) const
{
    if (!request.isRenamedAlready || request.isMovedOutside || !m_moves)
        return true;
    const MoveReport report = m_moves->takeRenameBack();
    for (const MoveProblem& problem : report.problems)
        m_log->addLine(problem.text);
    tellOfLinks(m_notices, std::make_shared<const LinksUpdate>(LinksUpdate{request.items, {}, {}}));
    return report.problems.empty();
}

void MoveRun::undo(const WebRules& rules)
{
    if (auto opened = open(MoveOperation::Move); !opened) {
        m_log->addLine(opened.error().text);
        end();
        return;
    }
    const MoveReport report = m_moves->undo(rules);
    if (report.isDone)
        m_log->addText("Took back: " + report.title + "\n\n");
    show(report);
    if (report.isDone || report.isStopped || report.problems.empty() || !m_moves->undoTitle()) {
        end();
        return;
    }
    const QString reason =
        displayText(*m_moves->undoTitle()) + u'\n' + displayText(report.problems.front().text);
    const auto answered = [self = shared_from_this()](bool isAccepted) {
        start(std::make_shared<WorkItem>(), [self, isAccepted](const WorkItem&) { self->skip(isAccepted); });
    };
    onMain(m_jobs, [&](MoveJobs& jobs) { jobs.offerSkip(reason, answered); });
}

void MoveRun::skip(bool isAccepted)
{
    const auto skipped = isAccepted ? m_moves->skipUndo() : std::nullopt;
    if (skipped)
        m_log->addText("\nLeft as it is: " + *skipped);
    end();
}

void MoveRun::showEnded(const std::vector<MoveReport>& reports)
{
    showRecovered(reports);
    end();
}

void MoveRun::showRecovered(const std::vector<MoveReport>& reports) const
{
    for (const MoveReport& report : reports) {
        if (!report.title.empty())
            m_log->addText(std::string(report.isDone ? "Finished" : "Took back") +
                           " what was interrupted: " + report.title + "\n\n");
        show(report);
    }
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

Result<void> MoveJobs::prepareRename(const fs::path& site, const fs::path& oldPath, const fs::path& newPath,
                                     const ReportChoices& choices)
{
    m_renaming.reset();
    if (choices.linkRules == LinkRules::Letter)
        return {};
    auto moves = SiteMoves::open(site);
    if (!moves)
        return moves.error();
    if (auto noted = moves->noteRename({oldPath, newPath}); !noted)
        return noted;
    m_renaming = std::make_shared<SiteMoves>(*std::move(moves));
    return {};
}

void MoveJobs::dropRename()
{
    if (m_renaming)
        (void)m_renaming->takeRenameBack();
    m_renaming.reset();
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
                  choices.askAbove, std::exchange(m_renaming, nullptr));
}

void MoveJobs::replaceLinks(const fs::path& site, const fs::path& target, const fs::path& file,
                            const ReportChoices& choices)
{
    MoveRequest request{site, {}, MoveOperation::Move, {{target, file}}, choices.webRules};
    request.changesLinksOnly = true;
    beginMove(std::move(request), {});
}

void MoveJobs::followItems(const fs::path& site, const std::vector<MovedItem>& items,
                           const ReportChoices& choices)
{
    MoveRequest request{site, {}, MoveOperation::Move, items, choices.webRules, true};
    request.isMovedOutside = true;
    beginMove(std::move(request), {});
}

void MoveJobs::beginMove(MoveRequest request, std::optional<int> askAbove, std::shared_ptr<SiteMoves> moves)
{
    request.keptLinks = m_keptLinks;
    const auto run = std::make_shared<MoveRun>(request.site, this, m_notices, std::move(moves));
    beginLong(updateStatus(),
              [run, request = std::move(request),
               askAbove](const WorkItemPointer& item, const std::shared_ptr<JobLog>& log, const Done& done) {
                  run->begin(log, wantedAs(item), [done, links = request.keptLinks, rules = request.rules] {
                      done();
                      if (links)
                          keepLinks(links, rules);
                  });
                  run->move(request, askAbove);
              });
}

void MoveJobs::undoMove(const fs::path& site, const ReportChoices& choices)
{
    const auto run = std::make_shared<MoveRun>(site, this, m_notices);
    beginLong(updateStatus(),
              [run, rules = choices.webRules](const WorkItemPointer& item, const std::shared_ptr<JobLog>& log,
                                              const Done& done) {
                  run->begin(log, wantedAs(item), done);
                  run->undo(rules);
              });
}

void MoveJobs::endInterrupted(const fs::path& site)
{
    const auto run = std::make_shared<MoveRun>(site, this, m_notices);
    start(std::make_shared<WorkItem>(), [guard = QPointer(this), run, site](const WorkItem&) {
        const std::vector<MoveReport> reports = SiteMoves::recover(site);
        const auto show = [run, reports](const WorkItemPointer& item, const std::shared_ptr<JobLog>& log,
                                         const Done& done) {
            run->begin(log, wantedAs(item), done);
            run->showEnded(reports);
        };
        if (!reports.empty())
            onMain(guard, [&show](MoveJobs& self) {
                self.beginLong(tr("An interrupted move was finished or taken back."), show);
            });
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

void MoveJobs::offerSkip(const QString& reason, const Answered& answered)
{
    QWidget* const sheet = QApplication::activeModalWidget();
    QWidget* const window = m_pane->window();
    const bool isOnSheet = sheet && sheet->parentWidget() == window;
    auto* const question = new QMessageBox(QMessageBox::Question, tr("Undo"), tr("This can't be taken back."),
                                           QMessageBox::NoButton, isOnSheet ? sheet : window);
    question->setObjectName(QStringLiteral("skipUndoAlert"));
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setTextFormat(Qt::PlainText);
    question->setInformativeText(
        reason + QStringLiteral("\n\n") +
        tr("Leave it as it is for good? Edit > Undo then takes back what was done before it."));
    QPushButton* const skip = question->addButton(tr("Leave It"), QMessageBox::AcceptRole);
    QPushButton* const cancel = question->addButton(tr("Cancel"), QMessageBox::RejectRole);
    question->setDefaultButton(cancel);
    question->setEscapeButton(cancel);
    connect(question, &QDialog::finished, this,
            [answered, question, skip] { answered(question->clickedButton() == skip); });
    question->open();
}

void MoveJobs::beginUpdate(const fs::path& site, std::function<MoveOutcome(LinkUpdatingMove&)> update,
                           MoveOperation operation)
{
    begin(updateStatus(), [notices = m_notices, site, update = std::move(update),
                           operation](const WorkItemPointer& item, const std::shared_ptr<JobLog>& log) {
        LinkUpdatingMove::Callbacks callbacks;
        callbacks.log = [&log](const std::string& text) { log->addText(text); };
        callbacks.problem = [&log](const MoveProblem& problem) { addProblem(*log, problem); };
        callbacks.fileOperation = fileOperations(operation, site);
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
