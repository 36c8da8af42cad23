// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"
#include "browser/drop.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <filesystem>
#include <functional>
#include <memory>

namespace luma {

class JobLog;
class ProgressReporter;

/// The jobs of a pane that go over the links of its site and tell of it in the window's progress panel: link
/// updates after a drop or a rename, and the reports on links. Each runs in the background on values of its
/// own. A report ends at once when it is stopped or its pane goes; a link update goes on to its end without
/// the pane, for links that lead nowhere would be the worse surprise. Quitting ends both, at the next page.
/// Main thread only.
class LinkJobs final : public QObject
{
    Q_OBJECT

public:
    enum class Direction { From, To };

    /// `reporter` may answer null; jobs then run unseen, and reports not at all.
    explicit LinkJobs(std::function<ProgressReporter*()> reporter, QObject* parent);
    ~LinkJobs() override;

    /// Moves or copies what was dropped, and updates the links in the site at `site`.
    void acceptDrop(const std::filesystem::path& site, const Drop& drop);
    /// Updates the links to an item that has its new name already.
    void updateAfterRename(const std::filesystem::path& site, const std::filesystem::path& oldPath,
                           const std::filesystem::path& newPath);
    /// Lists the links of one item.
    void showLinks(const std::filesystem::path& site, const std::filesystem::path& item, Direction direction);
    /// Lists all links of all pages, missing ones marked.
    void findMissingLinks(const std::filesystem::path& site);
    /// Ends a report as if it had come to its end; a link update ends at its next page.
    void stop();
    /// Ends a report, if one runs.
    void stopReport();

signals:
    /// The user has clicked a line that speaks of this file.
    void fileActivated(const std::filesystem::path& file);

private:
    enum class Kind { Update, Report };
    using Work = std::function<void(const WorkItemPointer& item, JobLog& log)>;

    std::function<ProgressReporter*()> m_reporter;
    QPointer<ProgressReporter> m_progress; // while the panel shows a job of ours
    WorkItemPointer linksWorkItem;
    std::shared_ptr<JobLog> m_log;
    Kind m_kind = Kind::Update;
    bool m_isRunning = false;
    QTimer m_showTimer;

    void begin(Kind kind, const QString& status, Work work);
    void beginUpdate(const std::filesystem::path& site,
                     std::function<MoveOutcome(LinkUpdatingMove& move)> update, MoveOperation operation);
    void takePanel(ProgressReporter& progress, const QString& status);
    void showText();
    void end(const JobLog* log);
    void finish();
    void activateLine(int number);
};

} // namespace luma
