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
}

PanelJobs::~PanelJobs()
{
    if (m_isRunning && m_kind == Kind::Report)
        m_item->cancel();
}

StillWanted PanelJobs::wantedAs(const WorkItemPointer& item)
{
    return [item] { return !item->isCancelled() && !isMainHopClosed(); };
}

void PanelJobs::begin(const QString& status, Work work)
{
    beginLong(status, [work = std::move(work)](const WorkItemPointer& item,
                                               const std::shared_ptr<JobLog>& log, const Done& done) {
        work(item, log);
        done();
    });
}

void PanelJobs::beginLong(const QString& status, LongWork work)
{
    const bool isSeen = m_progress && !m_progress->isRunning() && !m_isRunning;
    if (!isSeen && m_kind == Kind::Report)
        return;
    const QPointer<PanelJobs> guard(this);
    const auto log = std::make_shared<JobLog>([guard](JobLog& full) {
        onMain(guard, [&](PanelJobs& self) {
            // A stopped report has already shown its last line, even if its job is still inside a page.
            if (self.m_log.get() == &full && self.m_isRunning)
                self.showText();
        });
    });
    const auto item = std::make_shared<WorkItem>();
    if (isSeen) {
        takePanel(status);
        m_item = item;
        m_log = log;
    }
    const Done done = [guard, log] { onMain(guard, [&](PanelJobs& self) { self.end(log.get()); }); };
    // Not under `item`: a job stopped before it starts must still reach end().
    start(std::make_shared<WorkItem>(),
          [item, log, done, work = std::move(work)](const WorkItem&) { work(item, log, done); });
}

void PanelJobs::takePanel(const QString& status)
{
    m_isRunning = true;
    m_progress->begin(status);
    connect(m_progress, &ProgressReporter::stopRequested, this, &PanelJobs::stop);
    connect(m_progress, &ProgressReporter::lineActivated, this, &PanelJobs::activateLine);
    // The next job of the panel, ours or another's, replaces these lines.
    connect(m_progress, &ProgressReporter::began, this, [this] {
        m_progress->disconnect(this);
        m_log.reset();
    });
    m_showTimer.start();
}

void PanelJobs::showText()
{
    if (!m_progress || !m_log)
        return;
    if (const QString text = m_log->take(); !text.isEmpty())
        m_progress->append(text);
}

/// Called when the job with this log has ended by itself.
void PanelJobs::end(const JobLog* log)
{
    if (!m_isRunning || m_log.get() != log)
        return;
    finish();
}

void PanelJobs::finish()
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

void PanelJobs::stop()
{
    if (!m_isRunning)
        return;
    m_item->cancel();
    if (m_kind == Kind::Report)
        finish();
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
