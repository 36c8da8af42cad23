// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/linkjobs.h"

#include "base/console.h"
#include "base/files.h"
#include "base/mainhop.h"
#include "base/pathbelow.h"
#include "browser/displaytext.h"
#include "browser/joblog.h"
#include "browser/panehost.h"
#include "links/browserreports.h"
#include "links/linkreports.h"
#include "links/sitemoves.h"

#include <algorithm>
#include <system_error>

namespace luma {

namespace fs = std::filesystem;

namespace {

constexpr int logInterval = 30; // milliseconds

const QString updateStatus =
    QStringLiteral("Please wait while links in all possible files are being updated...");

constexpr std::string_view stoppedAtOnce = "\nStopped before anything was moved or copied.";
constexpr std::string_view stoppedInPages =
    "\nStopped before all pages were looked at; links in the others are as they were.";

StillWanted wantedAs(const WorkItemPointer& item)
{
    return [item] { return !item->isCancelled() && !isMainHopClosed(); };
}

void addFindings(JobLog& log, const PageFindings& page)
{
    log.addLine(page.path, page.path);
    std::string line;
    for (const LinkFinding& link : page.links) {
        line.clear();
        appendLinkLine(line, page, link);
        line.pop_back();
        log.addLine(line);
    }
}

void addPage(JobLog& log, const fs::path& site, const WebPage& page)
{
    log.addLine((site / page.path).native(), site / page.path);
    if (!page.unreadable.empty())
        log.addLine("    *** UNREADABLE *** " + page.unreadable);
    std::string line;
    for (const WebLink& link : page.links) {
        line.assign("    ").append(nameOf(link.place)).append(" : ").append(link.value);
        if (link.state == LinkState::Missing)
            line += "    *** MISSING ***";
        log.addLine(line);
    }
}

void listLinksFrom(JobLog& log, const fs::path& site, const fs::path& item, const ReportChoices& choices)
{
    if (choices.linkRules == LinkRules::Letter) {
        if (const PageFindings page = findLinksFrom(item); page.isPage)
            addFindings(log, page);
    } else if (const auto page = checkWebPage(site, item, choices.webRules); page) {
        addPage(log, site, *page);
    } else {
        log.addLine(page.error().text);
    }
}

Result<bool> listLinksTo(JobLog& log, const fs::path& site, const fs::path& item,
                         const ReportChoices& choices, const StillWanted& stillWanted)
{
    const auto add = [&](const std::string& subpath) { log.addLine(subpath, site / subpath); };
    if (choices.linkRules == LinkRules::Letter)
        return findLinksTo(site, item, add, stillWanted);
    return findWebLinksTo(
        site, item, choices.webRules, [&](const WebPage& page) { add(page.path); }, stillWanted);
}

Result<bool> listAllLinks(JobLog& log, const fs::path& site, const ReportChoices& choices,
                          const StillWanted& stillWanted)
{
    if (choices.linkRules == LinkRules::Letter)
        return findMissingLinks(
            site, FindingsKept::All, [&](const PageFindings& page) { addFindings(log, page); }, stillWanted);
    return checkWebLinks(
        site, choices.webRules, FindingsKept::All, [&](const WebPage& page) { addPage(log, site, page); },
        stillWanted);
}

template <class Value>
void addError(JobLog& log, const Result<Value>& done)
{
    if (!done)
        log.addLine(done.error().text);
}

void addProblems(JobLog& log, const std::vector<MoveProblem>& problems)
{
    for (const MoveProblem& problem : problems) {
        if (problem.kind == MoveProblem::Kind::Clash)
            printLine(problem.text);
        log.addLine(problem.text, problem.path);
    }
}

// A move is short and must be complete before the columns are drawn again; a copy may take long and would block the window.
MoveRunner::Callbacks moveCallbacks(MoveOperation operation, const WorkItemPointer& item)
{
    MoveRunner::Callbacks callbacks;
    if (operation == MoveOperation::Move)
        callbacks.fileOperation = [](const std::function<void()>& move) { onMain(move); };
    callbacks.stillWanted = wantedAs(item);
    return callbacks;
}

/// The existing target of a link, given its line in a report on `page`; empty if there is none.
fs::path targetOfLine(const QString& line, const fs::path& page)
{
    const qsizetype value = line.startsWith(QLatin1String("    ")) ? line.indexOf(QLatin1String(" : ")) : -1;
    if (value < 0)
        return {};
    const fs::path target = (page.parent_path().native() + '/' + line.mid(value + 3).toStdString());
    std::error_code error;
    return fs::exists(target, error) ? target.lexically_normal() : fs::path();
}

} // namespace

LinkJobs::LinkJobs(ProgressReporter& reporter, QObject* parent) : QObject(parent), m_progress(&reporter)
{
    m_showTimer.setInterval(logInterval);
    connect(&m_showTimer, &QTimer::timeout, this, &LinkJobs::showText);
}

LinkJobs::~LinkJobs()
{
    if (m_isRunning && m_kind == Kind::Report)
        linksWorkItem->cancel();
}

/// Runs `work` in the background. While another job uses the panel, an update runs unseen and a report does
/// not run.
void LinkJobs::begin(Kind kind, const QString& status, Work work)
{
    const bool isSeen = m_progress && !m_progress->isRunning() && !m_isRunning;
    if (!isSeen && kind == Kind::Report)
        return;
    const QPointer<LinkJobs> guard(this);
    const auto log = std::make_shared<JobLog>([guard](JobLog& full) {
        onMain(guard, [&](LinkJobs& self) {
            // A stopped report has already shown its last line, even if its job is still inside a page.
            if (self.m_log.get() == &full && self.m_isRunning)
                self.showText();
        });
    });
    const auto item = std::make_shared<WorkItem>();
    if (isSeen) {
        takePanel(status);
        linksWorkItem = item;
        m_log = log;
        m_kind = kind;
    }
    // Not under `item`: a job stopped before it starts must still reach end().
    start(std::make_shared<WorkItem>(), [guard, item, log, work = std::move(work)](const WorkItem&) {
        work(item, *log);
        onMain(guard, [&](LinkJobs& self) { self.end(log.get()); });
    });
}

void LinkJobs::takePanel(const QString& status)
{
    m_isRunning = true;
    m_progress->begin(status);
    connect(m_progress, &ProgressReporter::stopRequested, this, &LinkJobs::stop);
    connect(m_progress, &ProgressReporter::lineActivated, this, &LinkJobs::activateLine);
    // The next job of the panel, ours or another's, replaces these lines.
    connect(m_progress, &ProgressReporter::began, this, [this] {
        m_progress->disconnect(this);
        m_log.reset();
    });
    m_showTimer.start();
}

void LinkJobs::showText()
{
    if (!m_progress || !m_log)
        return;
    if (const QString text = m_log->take(); !text.isEmpty())
        m_progress->append(text);
}

/// Called when the job with this log has ended by itself.
void LinkJobs::end(const JobLog* log)
{
    if (!m_isRunning || m_log.get() != log)
        return;
    finish();
}

void LinkJobs::finish()
{
    showText();
    m_isRunning = false;
    m_showTimer.stop();
    if (!m_progress)
        return;
    if (m_kind == Kind::Report)
        m_progress->append(QStringLiteral("\nDone"));
    m_progress->finish();
}

void LinkJobs::stop()
{
    if (!m_isRunning)
        return;
    linksWorkItem->cancel();
    if (m_kind == Kind::Report)
        finish();
}

void LinkJobs::stopReport()
{
    if (m_kind == Kind::Report)
        stop();
}

void LinkJobs::activateLine(int number)
{
    if (!m_log || !m_progress)
        return;
    const fs::path file = m_log->fileOfLine(number);
    if (file.empty())
        return;
    const fs::path target = targetOfLine(m_progress->lineText(number), file);
    emit fileActivated(target.empty() ? file : target);
}

void LinkJobs::acceptDrop(const fs::path& site, const Drop& drop, const std::vector<fs::path>& siteFolders,
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

void LinkJobs::updateAfterRename(const fs::path& site, const fs::path& oldPath, const fs::path& newPath,
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

void LinkJobs::beginMove(const MoveRequest& request)
{
    const QPointer<LinkJobs> guard(this);
    begin(Kind::Update, updateStatus, [guard, request](const WorkItemPointer& item, JobLog& log) {
        if (runMove(guard, log, request, item) || !request.isRenamedAlready)
            return;
        // The columns had renamed the item, which has its old name again.
        onMain(guard, [&request](LinkJobs& self) {
            for (const MovedItem& renamed : request.items)
                emit self.itemMoved(renamed.to, renamed.from);
        });
    });
}

/// True when the move is done; otherwise everything is as it was before, and the log says why.
bool LinkJobs::runMove(const QPointer<LinkJobs>& jobs, JobLog& log, const MoveRequest& request,
                       const WorkItemPointer& item)
{
    const auto fail = [&](const Error& error) {
        log.addText(error.isStopped() ? std::string(stoppedAtOnce) : error.text);
        for (const MovedItem& renamed : request.items) {
            if (request.isRenamedAlready)
                addError(log, moveItem(renamed.to, renamed.from));
        }
        return false;
    };
    auto moves = SiteMoves::open(request.site, moveCallbacks(request.operation, item));
    if (!moves)
        return fail(moves.error());
    for (const MoveReport& report : moves->recovered())
        showReport(jobs, log, request.site, report);
    const auto plan = planMove(request, wantedAs(item));
    if (!plan)
        return fail(plan.error());
    addProblems(log, plan->problems);
    const MoveReport report = moves->carryOut(*plan);
    for (const MovedItem& moved : report.items)
        log.addText("Updating links to: " + moved.from.filename().native() + "\n\n");
    showReport(request.isRenamedAlready ? QPointer<LinkJobs>() : jobs, log, request.site, report);
    return report.isDone;
}

void LinkJobs::undoMove(const fs::path& site)
{
    const QPointer<LinkJobs> guard(this);
    begin(Kind::Update, updateStatus, [guard, site](const WorkItemPointer& item, JobLog& log) {
        auto moves = SiteMoves::open(site, moveCallbacks(MoveOperation::Move, item));
        if (!moves) {
            log.addLine(moves.error().text);
            return;
        }
        const MoveReport report = moves->undo();
        if (report.isDone)
            log.addText("Took back: " + report.title + "\n\n");
        showReport(guard, log, site, report);
    });
}

/// Shows what a job did and tells the window about each item's new path.
void LinkJobs::showReport(const QPointer<LinkJobs>& jobs, JobLog& log, const fs::path& site,
                          const MoveReport& report)
{
    for (const fs::path& page : report.rewritten) {
        const fs::path subpath = page.lexically_relative(site);
        log.addLine(subpath.native(), page);
    }
    addProblems(log, report.problems);
    if (report.isDone || report.problems.empty())
        log.addText(report.isStopped ? "\nStopped; everything is as it was before." : "\nDone");
    else
        log.addText("\nEverything is as it was before.");
    if (report.isDone && report.isMove)
        onMain(jobs, [&report](LinkJobs& self) {
            for (const MovedItem& item : report.items)
                emit self.itemMoved(item.from, item.to);
        });
}

void LinkJobs::beginUpdate(const fs::path& site, std::function<MoveOutcome(LinkUpdatingMove&)> update,
                           MoveOperation operation)
{
    begin(Kind::Update, updateStatus,
          [site, update = std::move(update), operation](const WorkItemPointer& item, JobLog& log) {
              LinkUpdatingMove::Callbacks callbacks;
              callbacks.log = [&log](const std::string& text) { log.addText(text); };
              callbacks.problem = [&log](const MoveProblem& problem) {
                  if (problem.kind == MoveProblem::Kind::Clash)
                      printLine(problem.text);
                  log.addLine(problem.text, problem.path);
              };
              // A move is short and must be complete before the columns are drawn again; a copy may take
              // long and would block the window.
              if (operation == MoveOperation::Move)
                  callbacks.fileOperation = [](const std::function<void()>& move) { onMain(move); };
              callbacks.stillWanted = wantedAs(item);
              LinkUpdatingMove move(site, callbacks);
              const MoveOutcome outcome = update(move);
              if (!outcome.complete)
                  log.addText(outcome.moved.empty() ? stoppedAtOnce : stoppedInPages);
          });
}

void LinkJobs::showLinks(const fs::path& site, const fs::path& item, Direction direction,
                         const ReportChoices& choices)
{
    const bool isFrom = direction == Direction::From;
    const QString status =
        isFrom ? QStringLiteral("Listing all links from: ") : QStringLiteral("Listing all links to: ");
    begin(Kind::Report, status + displayText(item.native()),
          [site, item, isFrom, choices](const WorkItemPointer& token, JobLog& log) {
              if (isFrom)
                  listLinksFrom(log, site, item, choices);
              else
                  addError(log, listLinksTo(log, site, item, choices, wantedAs(token)));
          });
}

void LinkJobs::findMissingLinks(const fs::path& site, const ReportChoices& choices)
{
    begin(Kind::Report, QStringLiteral("Checking source files for missing links (*** MISSING ***)"),
          [site, choices](const WorkItemPointer& token, JobLog& log) {
              addError(log, listAllLinks(log, site, choices, wantedAs(token)));
          });
}

} // namespace luma
