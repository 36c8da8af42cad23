// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/stillwanted.h"
#include "base/workitem.h"
#include "browser/panehost.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <deque>
#include <filesystem>
#include <functional>
#include <memory>

namespace luma {

class JobLog;

/// Jobs of one kind that run in the background, on copies of their values, and write a log that the progress panel shows.
/// One of them has the panel at a time; the next one waits. A report, which has the panel open, ends at once when it is stopped
/// or its owner is destroyed. An update, which shows itself in the line at the foot of the window, runs to its end even then,
/// or links would be left broken. Quitting ends both at the next page. Main thread only.
class PanelJobs : public QObject
{
    Q_OBJECT

public:
    ~PanelJobs() override;

    /// Ends a report at once, with an offer to begin it again; ends an update at its next page.
    void stop();

signals:
    /// The user has clicked a line about this file.
    void fileActivated(const std::filesystem::path& file);

protected:
    enum class Kind { Update, Report };
    using Done = std::function<void(const JobEnd& end)>; // any thread
    using Work = std::function<JobEnd(const WorkItemPointer& item, const std::shared_ptr<JobLog>& log)>;
    using LongWork = std::function<void(const WorkItemPointer& item, const std::shared_ptr<JobLog>& log,
                                        const Done& done)>;

    /// While the window closes, `reporter` may be destroyed first.
    PanelJobs(Kind kind, ProgressReporter& reporter, QObject* parent);

    /// Runs `work` in the background, as soon as no other job uses the panel. If the owner is destroyed before, an update runs
    /// unseen and a report does not run.
    void begin(const QString& status, Work work);
    /// The same for work that goes on after `work` has returned, until it calls Done.
    void beginLong(const QString& status, LongWork work);

    /// Of the running job.
    void setStatus(const QString& status);

    /// True until the job is stopped or the application quits.
    static StillWanted wantedAs(const WorkItemPointer& item);

private:
    struct Job
    {
        QString status;
        LongWork work;
    };

    Kind m_kind;
    QPointer<ProgressReporter> m_progress;
    std::deque<Job> m_waiting;
    Job m_job; // the one that has the panel, or had it last
    WorkItemPointer m_item;
    std::shared_ptr<JobLog> m_log;
    bool m_isRunning = false;
    QTimer m_showTimer;

    static void startWork(const LongWork& work, const WorkItemPointer& item,
                          const std::shared_ptr<JobLog>& log, const Done& done);
    static void startUnseen(const LongWork& work);
    void beginNext();
    void showText();
    void end(const JobLog* log, const JobEnd& end);
    void finish(const JobEnd& end);
    void activateLine(int number);
};

} // namespace luma
