// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/linkjobs.h"

#include "base/console.h"
#include "base/mainhop.h"
#include "browser/displaytext.h"
#include "browser/joblog.h"
#include "browser/panehost.h"
#include "links/linkreports.h"

#include <system_error>

namespace luma {

namespace fs = std::filesystem;

namespace {

constexpr int showInterval = 30; // milliseconds

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

void addError(JobLog& log, const Result<bool>& done)
{
    if (!done)
        log.addLine(done.error().text);
}

/// What a link's line of a report leads to from `page`; empty when that is nothing.
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

LinkJobs::LinkJobs(std::function<ProgressReporter*()> reporter, QObject* parent)
    : QObject(parent), m_reporter(std::move(reporter))
{
    m_showTimer.setInterval(showInterval);
    connect(&m_showTimer, &QTimer::timeout, this, &LinkJobs::showText);
}

LinkJobs::~LinkJobs()
{
    if (m_isRunning && m_kind == Kind::Report)
        linksWorkItem->cancel();
}

/// Runs `work` in the background. When another job has the panel, an update runs unseen and a report not at
/// all.
void LinkJobs::begin(Kind kind, const QString& status, Work work)
{
    ProgressReporter* const progress = m_reporter();
    const bool isSeen = progress && !progress->isRunning() && !m_isRunning;
    if (!isSeen && kind == Kind::Report)
        return;
    const QPointer<LinkJobs> guard(this);
    const auto log = std::make_shared<JobLog>([guard](JobLog& full) {
        onMain(guard, [&](LinkJobs& self) {
            // A report that was stopped has written its last line, wherever in a page it still is.
            if (self.m_log.get() == &full && self.m_isRunning)
                self.showText();
        });
    });
    const auto item = std::make_shared<WorkItem>();
    if (isSeen) {
        takePanel(*progress, status);
        linksWorkItem = item;
        m_log = log;
        m_kind = kind;
    }
    // Under an item of its own: one that is stopped before its turn has to end in the panel too.
    start(std::make_shared<WorkItem>(), [guard, item, log, work = std::move(work)](const WorkItem&) {
        work(item, *log);
        onMain(guard, [&](LinkJobs& self) { self.end(log.get()); });
    });
}

void LinkJobs::takePanel(ProgressReporter& progress, const QString& status)
{
    m_progress = &progress;
    m_isRunning = true;
    progress.begin(status);
    connect(&progress, &ProgressReporter::stopRequested, this, &LinkJobs::stop);
    connect(&progress, &ProgressReporter::lineActivated, this, &LinkJobs::activateLine);
    // From the next job on, whosever it is, the lines are not ours.
    connect(&progress, &ProgressReporter::began, this, [this] {
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

/// The job with this log has ended by itself.
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

void LinkJobs::acceptDrop(const fs::path& site, const Drop& drop)
{
    beginUpdate(
        site, [drop](LinkUpdatingMove& move) { return move.run(drop.operation, drop.items, drop.folder); },
        drop.operation);
}

void LinkJobs::updateAfterRename(const fs::path& site, const fs::path& oldPath, const fs::path& newPath)
{
    beginUpdate(
        site, [oldPath, newPath](LinkUpdatingMove& move) { return move.updateAfterRename(oldPath, newPath); },
        MoveOperation::Move);
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
              // A move is done before anybody looks at the columns; a copy may take long and would make the
              // window stand still.
              if (operation == MoveOperation::Move)
                  callbacks.fileOperation = [](const std::function<void()>& move) { onMain(move); };
              callbacks.stillWanted = wantedAs(item);
              LinkUpdatingMove move(site, callbacks);
              const MoveOutcome outcome = update(move);
              if (!outcome.complete)
                  log.addText(outcome.moved.empty() ? stoppedAtOnce : stoppedInPages);
          });
}

void LinkJobs::showLinks(const fs::path& site, const fs::path& item, Direction direction)
{
    const bool isFrom = direction == Direction::From;
    const QString status =
        isFrom ? QStringLiteral("Listing all links from: ") : QStringLiteral("Listing all links to: ");
    begin(Kind::Report, status + displayText(item.native()),
          [site, item, isFrom](const WorkItemPointer& token, JobLog& log) {
              if (isFrom) {
                  if (const PageFindings page = findLinksFrom(item); page.isPage)
                      addFindings(log, page);
                  return;
              }
              const auto add = [&](const std::string& subpath) { log.addLine(subpath, site / subpath); };
              addError(log, findLinksTo(site, item, add, wantedAs(token)));
          });
}

void LinkJobs::findMissingLinks(const fs::path& site)
{
    begin(Kind::Report, QStringLiteral("Checking source files for missing links (*** MISSING ***)"),
          [site](const WorkItemPointer& token, JobLog& log) {
              const auto add = [&log](const PageFindings& page) { addFindings(log, page); };
              addError(log, luma::findMissingLinks(site, FindingsKept::All, add, wantedAs(token)));
          });
}

} // namespace luma
