// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/panehost.h"
#include "mounts/volumemounter.h"
#include "site/remotelogin.h"
#include "site/siterecord.h"
#include "site/syncengine.h"

#include <QMainWindow>

#include <functional>
#include <memory>
#include <vector>

namespace Ui {
class HaldenDoc;
}

namespace luma {

class BrowserController;
class PaneMarks;
class ProgressPanel;
class RestorePanel;
class SyncPanel;
class UndoCommand;

/// The window of one open site: its two panes, the connection line, and the panels of its long jobs. It
/// shares its record with the site list, which finds the window by it. The title is the site's name with the
/// destination's server behind it.
/// Transfers go through rsync once the connection check has found that login by key works, until the
/// destination changes. Main thread only; closing the window at any time drops its jobs.
class HaldenDoc final : public QMainWindow, public PaneHost
{
    Q_OBJECT

public:
    /// What the window needs from outside. Injected so that a test needs no server.
    struct Services
    {
        RemoteLogin::Calls remoteLogin;
        ProgramRunner runProgram;
        std::shared_ptr<VolumeMounter> mounter;
        /// All but the site's web addresses and kept items, which are in its record; may be null.
        std::function<ReportChoices()> reportChoices = {};
        /// The user doesn't want to be asked before a move changes many pages; may be null.
        std::function<void()> stopAsking = {};
        /// Null where nobody outside the window is to hear of moves.
        std::shared_ptr<MoveNotices> moveNotices = {};
    };
    /// The real services: ssh, expect, the shell and the desktop's network file systems.
    static Services standardServices();

    HaldenDoc(std::shared_ptr<SiteRecord> siteDict, Services services, QWidget* parent = nullptr);
    ~HaldenDoc() override;

    [[nodiscard]] const std::shared_ptr<SiteRecord>& siteDict() const { return m_record; }
    [[nodiscard]] bool rsync() const { return m_rsync; }
    [[nodiscard]] BrowserController& sourceBrowserController() const { return *m_source; }
    [[nodiscard]] BrowserController& destinationBrowserController() const { return *m_destination; }

    /// Shows the window and connects both panes, the source first.
    void windowDidLoad();

    /// Size, divider, column widths and panels, to be restored in the next window. Restoring skips damaged or missing
    /// parts.
    [[nodiscard]] QByteArray layoutState() const;
    void restoreLayoutState(const QByteArray& state);

    // PaneHost
    void checkConnectionOK() override;
    ProgressReporter& progress() override;
    MoveNotices& moveNotices() override { return *m_moveNotices; }
    [[nodiscard]] ReportChoices reportChoices() const override;
    void setKeptItems(const std::vector<std::string>& items) override;
    void stopAsking() override;
    [[nodiscard]] std::vector<std::filesystem::path> siteFolders() const override;

    void setUpRsync();
    /// Opens the sync panel and compares from the side of `pane`, but only its selected items.
    void syncSelected(const BrowserController& pane);
    /// Opens the sync panel and compares in `direction`: all, or only the items with these paths below the site's
    /// folders.
    void sync(Direction direction, const std::vector<std::string>& only = {});

    /// The same for a page of the source with what it needs, once both panes have connected.
    void publishPage(const std::filesystem::path& page);
    /// Selects an item of the source, once that has connected.
    void showItem(const std::filesystem::path& item);
    /// Opens the window that finds text in the source, once that has connected.
    void findText(const QString& text);
    /// The same for the one with its classes and ids.
    void showNames();

signals:
    /// The user wants to open a file of the site; `mountPath` is the site's folder.
    void openRequested(const std::filesystem::path& path, const std::filesystem::path& mountPath);
    /// The same for a page that is to show the element at this line and column.
    void placeRequested(const std::filesystem::path& path, const std::filesystem::path& mountPath,
                        unsigned line, unsigned column);
    void windowWillClose();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    std::unique_ptr<Ui::HaldenDoc> m_ui;
    std::shared_ptr<SiteRecord> m_record;
    BrowserController* m_source = nullptr;
    BrowserController* m_destination = nullptr;
    PaneMarks* m_marks = nullptr;
    BrowserController* m_current = nullptr; // the pane that has or had the focus
    std::function<ReportChoices()> m_reportChoices;
    std::function<void()> m_stopAsking;
    std::shared_ptr<MoveNotices> m_moveNotices;
    UndoCommand* m_undo = nullptr;
    RemoteLogin m_remoteLogin;
    SyncEngine m_engine;
    ProgressPanel* m_progressPanel = nullptr;
    SyncPanel* m_syncPanel = nullptr;
    RestorePanel* m_restorePanel = nullptr;
    std::filesystem::path m_pageToPublish; // until both panes have connected
    std::function<void()> m_waiting;       // until the source has connected
    bool m_rsync = false;
    bool m_isNew = true; // the source has not been connected yet

    void createPanes(const std::shared_ptr<VolumeMounter>& mounter);
    void createToolBar();
    void connectActions();
    void connectRemoteLogin();
    void setIcons();
    void noteFocus(const QWidget* focused);
    void updateForRecord();
    void paneChanged();
    void updateActions();
    void connectUndo();
    void updateSetUp();
    void showCheck(bool works, const QString& answer);
    void showAdvice(const QString& text);
    void setUpEnded(const QString& message);
    void showInPane(const std::string& path, bool isSent);
    void showComparison(const std::string& path);
    void publishWaitingPage();
    void doOnceConnected(const std::function<void()>& work);
    void doWaiting();
    [[nodiscard]] SyncSides sides() const;
    /// The current pane, or the other one when that is not connected.
    [[nodiscard]] BrowserController& currentSitePane() const;
};

} // namespace luma
