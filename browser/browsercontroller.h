// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/filesystemnode.h"
#include "browser/itemcommands.h"
#include "browser/mountstep.h"

#include <QObject>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace Ui {
class BrowserPane;
}
class QMenu;
class QModelIndex;
class QWidget;

namespace luma {

class Browser;
class ConfigPanel;
class FileJobs;
class FolderWatcher;
class ObservedDictionary;
class PaneConnection;
class PaneHost;
class PaneLinks;
class PaneMenu;
class VolumeMounter;

/// One pane of a site's window: connects to the folder of its endpoint, shows it as columns, keeps them in
/// step with the disk, and offers the operations on files and links. The controller connects the parts;
/// connection, watcher, file jobs, links and columns are classes of their own. Main thread only; may be
/// destroyed at any time, even while jobs run.
class BrowserController final : public QObject
{
    Q_OBJECT

public:
    /// `caption` names the pane and its watcher. `endpoint` is shared with the site record; the pane reads it
    /// through its settings sheet. `mounter` mounts shares. `host` outlives the pane. `parent` owns the
    /// controller and becomes the parent of the pane's widget.
    BrowserController(const QString& caption, std::shared_ptr<ObservedDictionary> endpoint,
                      std::shared_ptr<VolumeMounter> mounter, PaneHost& host, QWidget* parent);
    ~BrowserController() override;

    [[nodiscard]] QWidget* widget() const { return m_widget; }
    [[nodiscard]] Browser& browser();
    [[nodiscard]] const Browser& browser() const;
    [[nodiscard]] FileSystemNodePointer rootNode() const;
    /// The mount point, or the local folder; empty while not connected.
    [[nodiscard]] const std::filesystem::path& mountPath() const { return m_mountPath; }

    /// Called when the window has opened: connects if the endpoint says so, otherwise disconnects.
    void doConnect();
    /// Connects a pane that is not connected, whatever the endpoint says.
    void connectPane();
    [[nodiscard]] bool isConnecting() const { return m_isConnecting; }
    void disconnectPane();
    /// The pane's menu shows the keys of the window's actions, and `transferTitle` for the transfer of the selected
    /// items.
    void finishMenu(const QWidget& window, const QString& transferTitle);
    [[nodiscard]] ItemCommands& itemCommands() const { return *m_itemCommands; }
    /// The selected items' paths in the site's folder.
    [[nodiscard]] std::vector<std::string> selectedSubpaths() const;

    void configure();
    void closeSheet();
    /// Lists everything again.
    void reload();
    void setShowsHidden(bool shows);
    void newFolder();
    void duplicateItem();
    /// Copies the files on the clipboard into the current column's folder; what was cut within the site moves.
    void pasteFiles();
    void renameItem();
    void deleteSelectedItems();
    void openItem();
    /// Takes the last move, rename or copy in the pane's site back, files and links.
    void undoMove();
    /// Looks whether there is one, and says so by olderMoveLooked().
    void lookForOlderMove();
    /// List the links from or to the current item.
    void showLinksFromItem();
    void showLinksToItem();
    /// Lists all links of the site's pages and marks the missing ones.
    void startFindMissingLinks();
    /// Opens the window that finds text in the site, with `text` to look for unless it is empty.
    void findText(const QString& text = {});
    /// Opens the window with the classes and ids of the site.
    void showNames();
    void stopFindMissingLinks();
    /// Lists the files without any link to them in a panel that can delete them.
    void startFindUnlinkedItems();
    void stopFindUnlinkedItems();

signals:
    /// An item is to be opened; `mountPath` is its site folder.
    void openRequested(const std::filesystem::path& path, const std::filesystem::path& mountPath);
    /// A page or style sheet is to be opened at this line and column, counted from 1.
    void placeRequested(const std::filesystem::path& path, const std::filesystem::path& mountPath,
                        unsigned line, unsigned column);
    /// The selected items are to be transferred.
    void transferRequested();
    /// A connection has begun, succeeded, failed or ended.
    void stateChanged();
    /// The user has changed files, and `undo`, called once, begins to take that back. `title` says what it was: "Delete".
    void undoable(const QString& title, const std::function<void()>& undo);
    void olderMoveLooked(bool isThere);

private:
    using Paths = std::vector<std::filesystem::path>;

    QWidget* m_widget = nullptr;
    std::unique_ptr<Ui::BrowserPane> m_ui;
    PaneHost& parentDoc;
    ConfigPanel* configPanel = nullptr;
    PaneMenu* contextualMenu = nullptr;
    FolderWatcher* m_watcher = nullptr;
    FileJobs* m_fileJobs = nullptr;
    ItemCommands* m_itemCommands = nullptr;
    PaneConnection* m_connection = nullptr;
    std::unique_ptr<PaneLinks> m_links;
    std::filesystem::path m_mountPath;
    bool m_isShare = false;
    bool m_isOnServer = false;        // as MountResult has it
    bool m_isNamingNewFolder = false; // from the preparation of a rename to its end
    bool m_isConnecting = false;
    std::optional<std::filesystem::path> m_problemItem; // what was current when the problem was shown

    void connectSheet();
    void connectBrowser();
    void connectMenu();
    void connectLinks();
    void connectConnection();
    void offerUpdate();
    void beginConnection();
    void finishConnection(const MountResult& result, const ConnectionRequest& request);
    void connectionSucceeded(const ConnectionRequest& request);
    void volumeUnmounted(const std::filesystem::path& mountPoint);
    void setRootNode(FileSystemNodePointer root);
    void connectionFailed(const QString& reason);
    void setConnectState(const QString& text);
    void setConnecting(bool connecting);
    void emptyPane();
    void folderChanged();
    /// Shows where the current item is, in place of a problem with another one.
    void doBrowserClick();
    /// Shows why something failed until another item is current: a refresh leaves it.
    void showProblem(const QString& reason);
    void showChanged(const Paths& select);
    void refreshLater(const Paths& select);
    void nameNewFolder(const std::filesystem::path& folder);
    void goOnAfterDeletion(const std::filesystem::path& next);
    void showBusy();
    void renameInBackground(const std::filesystem::path& oldPath, const std::filesystem::path& newPath);
    [[nodiscard]] Paths selectedPaths() const;
    [[nodiscard]] ItemCommands::Selection selection() const;
    [[nodiscard]] std::filesystem::path pathOf(const QModelIndex& item) const;
    /// Empty if no item is current.
    [[nodiscard]] std::filesystem::path currentPath() const;
};

} // namespace luma
