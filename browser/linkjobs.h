// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"
#include "browser/droptarget.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

namespace luma {

class JobLog;
class ProgressReporter;
struct MoveReport;
struct MoveRequest;
struct ReportChoices;

/// The jobs of a pane that work on the links of its site and report to the window's progress panel: link
/// updates after a drop or a rename, and the reports on links. Each runs in the background on copies of its
/// values. A report ends at once when it is stopped or its pane is destroyed; a link update runs to its end
/// even without the pane, or links would be left broken. Quitting ends both at the next page. As a browser
/// reads links, an update that is stopped or fails is taken back. Main thread only.
class LinkJobs final : public QObject
{
    Q_OBJECT

public:
    enum class Direction { From, To };

    /// While the window closes, `reporter` may be destroyed first.
    LinkJobs(ProgressReporter& reporter, QObject* parent);
    ~LinkJobs() override;

    /// Moves or copies the dropped items and updates the links of `site`. As a browser reads links, an item that comes from
    /// another one of `siteFolders` keeps its relations.
    void acceptDrop(const std::filesystem::path& site, const Drop& drop,
                    const std::vector<std::filesystem::path>& siteFolders, const ReportChoices& choices);
    /// Updates the links to an item that is already renamed on disk.
    void updateAfterRename(const std::filesystem::path& site, const std::filesystem::path& oldPath,
                           const std::filesystem::path& newPath, const ReportChoices& choices);
    /// Takes the last job in `site` back that moved, renamed or copied as a browser reads links.
    void undoMove(const std::filesystem::path& site);
    /// Lists the links from or to an item.
    void showLinks(const std::filesystem::path& site, const std::filesystem::path& item, Direction direction,
                   const ReportChoices& choices);
    /// Lists all links of all pages and marks the missing ones.
    void findMissingLinks(const std::filesystem::path& site, const ReportChoices& choices);
    /// Ends a report at once, with the same last line as a complete one; ends a link update at its next page.
    void stop();
    /// Ends the report that is running, if any.
    void stopReport();

signals:
    /// The user has clicked a line about this file.
    void fileActivated(const std::filesystem::path& file);
    /// A drop or an undo has given an item of the site another path.
    void itemMoved(const std::filesystem::path& oldPath, const std::filesystem::path& newPath);

private:
    enum class Kind { Update, Report };
    using Work = std::function<void(const WorkItemPointer& item, JobLog& log)>;

    QPointer<ProgressReporter> m_progress;
    WorkItemPointer linksWorkItem;
    std::shared_ptr<JobLog> m_log;
    Kind m_kind = Kind::Update;
    bool m_isRunning = false;
    QTimer m_showTimer;

    void begin(Kind kind, const QString& status, Work work);
    void beginUpdate(const std::filesystem::path& site,
                     std::function<MoveOutcome(LinkUpdatingMove& move)> update, MoveOperation operation);
    void beginMove(const MoveRequest& request);
    static bool runMove(const QPointer<LinkJobs>& jobs, JobLog& log, const MoveRequest& request,
                        const WorkItemPointer& item);
    static void showReport(const QPointer<LinkJobs>& jobs, JobLog& log, const std::filesystem::path& site,
                           const MoveReport& report);
    void takePanel(const QString& status);
    void showText();
    void end(const JobLog* log);
    void finish();
    void activateLine(int number);
};

} // namespace luma
