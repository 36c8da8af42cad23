// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/linkreportmodel.h"
#include "browser/linkreportrun.h"

#include <QDialog>
#include <QTimer>

#include <memory>

namespace Ui {
class LinkReportPanel;
}

namespace luma {

class LinkJobs;
class ReportLog;
struct ReportChoices;

/// The window of a pane's reports on links as a browser reads them: missing links, links from an item, links to an
/// item. The table fills while the report runs; a tab beside it has the same report as the lines of a log, made when
/// it is first shown. After the site has changed, the report runs again in the background and the table takes over
/// what is different. Not modal; closing or destroying it ends the report. Main thread only.
class LinkReportPanel final : public QDialog
{
    Q_OBJECT

public:
    explicit LinkReportPanel(QWidget* parent);
    ~LinkReportPanel() override;

    /// The name of the pane that the reports are about.
    void setSide(const QString& side) { m_side = side; }
    /// Empties the table and begins a report; `request.rules` are taken from `choices`. Shows the panel.
    void begin(LinkReportRun::Request request, const ReportChoices& choices);
    /// Ends the report at once; what it has found stays.
    void stop();
    /// Runs the report again soon, unless the panel is closed or was stopped.
    void siteChanged();
    void reject() override;

signals:
    /// The user wants to see the link at this place, counted from 1, or the page where there is none (0).
    void pageActivated(const std::filesystem::path& page, unsigned line, unsigned column);
    /// The user wants to see this file in the pane.
    void fileActivated(const std::filesystem::path& file);
    /// All links of the site that lead to `target`, where nothing is, are to lead to `file`.
    void replacementRequested(const std::filesystem::path& target, const std::filesystem::path& file);
    /// The user asked for the report again.
    void restartRequested(luma::LinkReportRun::Kind kind, const std::filesystem::path& item);

private:
    enum class State { Idle, Running, Refreshing, Stopped };

    std::unique_ptr<Ui::LinkReportPanel> m_ui;
    LinkReportModel* m_model;
    LinkReportRun* m_run;
    ReportLog* m_log;
    LinkJobs* m_logJobs;
    LinkReportRun::Request m_request;
    QString m_side;
    std::unique_ptr<ReportChoices> m_choices;
    State m_state = State::Idle;
    bool m_hasLog = false;
    QString m_error;
    QTimer m_showTimer;
    QTimer m_filterTimer;
    QTimer m_refreshTimer;

    void setUpView();
    void addAction(const char* name, const QString& text, const QKeySequence& keys,
                   void (LinkReportPanel::*does)());
    void connectControls();
    void connectRun();
    void showFindings();
    void end(const QString& error);
    void refresh();
    void showLog();
    void activate(const LinkReportModel::Finding& finding);
    void openPage();
    void showInPane();
    [[nodiscard]] const WebLink* replaceableLink() const;
    void replaceEverywhere();
    void updateReplaceAction();
    void copyText();
    void copyCsv();
    void saveAs();
    void write(const QString& path);
    void restart();
    void setState(State state);
    void updateControls();
    [[nodiscard]] QString countsText() const;
    [[nodiscard]] QString placeholderText() const;
};

} // namespace luma
