// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/paneljobs.h"

#include "base/mainhop.h"
#include "browser/joblog.h"
#include "browser/panehost.h"

#include <system_error>

namespace luma {

namespace fs = std::filesystem;

namespace {

constexpr int logInterval = 30; // milliseconds

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

PanelJobs::PanelJobs(Kind kind, ProgressReporter& reporter, QObject* parent)
    : QObject(parent), m_kind(kind), m_progress(&reporter)
{
    m_showTimer.setInterval(logInterval);
    connect(&m_showTimer, &QTimer::timeout, this, &PanelJobs::showText);
    connect(m_progress, &ProgressReporter::stopRequested, this, &PanelJobs::stop);
    connect(m_progress, &ProgressReporter::lineActivated, this, &PanelJobs::activateLine);
    // The panel's next job, ours or another's, replaces the lines.
    connect(m_progress, &ProgressReporter::began, this, [this] { m_log.reset(); });
    // Queued, for the job before has to end first.
    connect(m_progress, &ProgressReporter::ended, this, &PanelJobs::beginNext, Qt::QueuedConnection);
}

PanelJobs::~PanelJobs()
{
    if (m_kind == Kind::Report) {
        if (m_isRunning)
            m_item->cancel();
        return;
    }
    for (const Job& job : m_waiting)
        startUnseen(job.work);
}

StillWanted PanelJobs::wantedAs(const WorkItemPointer& item)
{
    return [item] { return !item->isCancelled() && !isMainHopClosed(); };
}

void PanelJobs::begin(const QString& status, Work work)
{
    beginLong(status,
              [work = std::move(work)](const WorkItemPointer& item, const std::shared_ptr<JobLog>& log,
                                       const Done& done) { done(work(item, log)); });
}

void PanelJobs::beginLong(const QString& status, LongWork work)
{
    m_waiting.push_back({status, std::move(work)});
    beginNext();
}

// Not under `item`: a job stopped before it starts must still reach end().
void PanelJobs::startWork(const LongWork& work, const WorkItemPointer& item,
                          const std::shared_ptr<JobLog>& log, const Done& done)
{
    start(std::make_shared<WorkItem>(), [item, log, done, work](const WorkItem&) { work(item, log, done); });
}

void PanelJobs::startUnseen(const LongWork& work)
{
    startWork(work, std::make_shared<WorkItem>(), std::make_shared<JobLog>([](JobLog&) {}),
              [](const JobEnd&) {});
}

void PanelJobs::beginNext()
{
    if (m_waiting.empty() || m_isRunning || !m_progress || m_progress->isRunning())
        return;
    m_job = std::move(m_waiting.front());
    m_waiting.pop_front();
    m_isRunning = true;
    m_progress->begin(m_job.status, m_kind == Kind::Update ? ProgressReporter::Place::Line
                                                           : ProgressReporter::Place::Panel);
    const QPointer<PanelJobs> guard(this);
    m_log = std::make_shared<JobLog>([guard](JobLog& full) {
        onMain(guard, [&](PanelJobs& self) {
            // A stopped report has already shown its last line, even if its job is still inside a page.
            if (self.m_log.get() == &full && self.m_isRunning)
                self.showText();
        });
    });
    m_item = std::make_shared<WorkItem>();
    m_showTimer.start();
    startWork(m_job.work, m_item, m_log, [guard, log = m_log](const JobEnd& end) {
        onMain(guard, [&](PanelJobs& self) { self.end(log.get(), end); });
    });
}

void PanelJobs::setStatus(const QString& status)
{
    if (m_isRunning && m_progress)
        m_progress->setStatus(status);
}

void PanelJobs::showText()
{
    if (!m_progress || !m_log)
        return;
    if (const QString text = m_log->take(); !text.isEmpty())
        m_progress->append(text);
}

/// Called when the job with this log has ended by itself.
void PanelJobs::end(const JobLog* log, const JobEnd& end)
{
    if (m_isRunning && m_log.get() == log)
        finish(end);
}

void PanelJobs::finish(const JobEnd& end)
{
    showText();
    m_isRunning = false;
    m_showTimer.stop();
    if (!m_progress)
        return;
    if (m_kind == Kind::Report && end.how != JobEnd::How::Failed)
        m_progress->append(u'\n' + (end.how == JobEnd::How::Done
                                        ? tr("Done")
                                        : tr("Stopped before all pages were looked at.")));
    m_progress->finish(end);
}

void PanelJobs::stop()
{
    if (m_kind == Kind::Report)
        m_waiting.clear();
    if (!m_isRunning)
        return;
    m_item->cancel();
    if (m_kind == Kind::Report)
        finish({.how = JobEnd::How::Stopped, .goOn = [guard = QPointer(this), job = m_job] {
                    if (guard)
                        guard->beginLong(job.status, job.work);
                }});
}

void PanelJobs::activateLine(int number)
{
    if (!m_log || !m_progress)
        return;
    const fs::path file = m_log->fileOfLine(number);
    if (file.empty())
        return;
    // In the background: the server of the files may be silent.
    start(std::make_shared<WorkItem>(), [guard = QPointer(this), line = m_progress->lineText(number),
                                         file](const WorkItem&) {
        const fs::path target = targetOfLine(line, file);
        onMain(guard, [&](PanelJobs& self) { emit self.fileActivated(target.empty() ? file : target); });
    });
}

} // namespace luma
