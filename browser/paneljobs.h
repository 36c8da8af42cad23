// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/stillwanted.h"
#include "base/workitem.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <filesystem>
#include <functional>
#include <memory>

namespace luma {

class JobLog;
class ProgressReporter;

/// Jobs of one kind that run in the background, on copies of their values, and write a log that the progress panel shows.
/// One of them has the panel at a time. A report ends at once when it is stopped or its owner is destroyed; an update runs to
/// its end even then, or links would be left broken. Quitting ends both at the next page. Main thread only.
class PanelJobs : public QObject
{
    Q_OBJECT

public:
    ~PanelJobs() override;

    /// Ends a report at once, with the same last line as a complete one; ends an update at its next page.
    void stop();

signals:
    /// The user has clicked a line about this file.
    void fileActivated(const std::filesystem::path& file);

protected:
    enum class Kind { Update, Report };
    using Done = std::function<void()>; // any thread
    using Work = std::function<void(const WorkItemPointer& item, const std::shared_ptr<JobLog>& log)>;
    using LongWork = std::function<void(const WorkItemPointer& item, const std::shared_ptr<JobLog>& log,
                                        const Done& done)>;

    /// While the window closes, `reporter` may be destroyed first.
    PanelJobs(Kind kind, ProgressReporter& reporter, QObject* parent);

    /// Runs `work` in the background. While another job uses the panel, an update runs unseen and a report does not run.
    void begin(const QString& status, Work work);
    /// The same for work that goes on after `work` has returned, until it calls Done.
    void beginLong(const QString& status, LongWork work);

    /// True until the job is stopped or the application quits.
    static StillWanted wantedAs(const WorkItemPointer& item);

private:
    Kind m_kind;
    QPointer<ProgressReporter> m_progress;
    WorkItemPointer m_item;
    std::shared_ptr<JobLog> m_log;
    bool m_isRunning = false;
    QTimer m_showTimer;

    void takePanel(const QString& status);
    void showText();
    void end(const JobLog* log);
    void finish();
    void activateLine(int number);
};

} // namespace luma
