// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/filesystemnode.h"
#include "browser/mountstep.h"

#include <QObject>
#include <QVariantMap>

#include <filesystem>
#include <functional>
#include <memory>

namespace Ui {
class BrowserPane;
}
class QAbstractButton;
class QMenu;
class QModelIndex;
class QWidget;

namespace luma {

class Browser;
class ConfigPanel;
class FileJobs;
class FolderWatcher;
class LinkJobs;
class ObservedDictionary;
class PaneConnection;
class PaneHost;
class PaneMenu;
class UnlinkedItemsPanel;
class VolumeMounter;

/// One pane of a site's window: connects to the folder of its endpoint, shows it as columns, keeps them in
/// step with the disk, and offers what can be done to files. The controller reads and shows; connection,
/// watcher, file operations and columns are classes of their own. Main thread only. It may go at any moment:
/// jobs that still run find nobody and end.
class BrowserController final : public QObject
{
    Q_OBJECT

public:
    /// `caption` names the pane and its watcher. `endpoint` is shared with the site record; the pane reads it
    /// through its settings sheet. `host` (may be null) outlives the pane. `parent` gets the pane's widget as
    /// its child and owns the controller.
    BrowserController(const QString& caption, std::shared_ptr<ObservedDictionary> endpoint, PaneHost* host,
                      QWidget* parent);
    ~BrowserController() override;

    [[nodiscard]] QWidget* widget() const { return m_widget; }
    [[nodiscard]] Browser& browser() const;
    [[nodiscard]] FileSystemNodePointer rootNode() const;
    /// The mount point, or the local folder; empty while not connected.
    [[nodiscard]] const std::filesystem::path& mountPath() const { return m_mountPath; }
    /// Who mounts shares from now on.
    void setMounter(std::shared_ptr<VolumeMounter> mounter);
    /// Who knows the names of the folders that the report on unlinked items leaves out, commas between.
    void setExcludedFolders(std::function<QString()> names) { m_excludedFolders = std::move(names); }

    /// The window has opened: connects when the endpoint asks for it, else disconnects.
    void doConnect();
    /// The title of `sender` decides: "Connect" connects, anything else disconnects.
    void doConnect(const QAbstractButton* sender);
    void disconnectPane();
    void configure();
    void closeSheet();
    /// Lists everything again; the selection is not kept.
    void reload();
    /// The same under the name that the window's jobs use.
    void reloadColumnZero() { reload(); }
    void newFolder();
    void duplicateItem();
    void renameItem();
    void deleteItem();
    void deleteSelectedItems();
    void openItem();
    /// Lists the links to or from the clicked item, as `senderTitle` says: "Show Links To Item..." or "Show
    /// Links From Item...".
    void showLinksForItem(const QString& senderTitle);
    /// Lists all links of the site's pages and marks the missing ones.
    void startFindMissingLinks();
    void stopFindMissingLinks();
    /// Lists the files that nothing links to, in a panel that can delete them.
    void startFindUnlinkedItems();
    void stopFindUnlinkedItems();

signals:
    /// A double click: the item, and the site folder that it belongs to.
    void openRequested(const std::filesystem::path& path, const std::filesystem::path& mountPath);
    /// Connected, disconnected, failed, or began to connect.
    void stateChanged();
    /// The user has renamed an item; the file has its new name already, and its links are being updated.
    void itemRenamed(const std::filesystem::path& oldPath, const std::filesystem::path& newPath);

private:
    using Paths = std::vector<std::filesystem::path>;

    QWidget* m_widget = nullptr;
    std::unique_ptr<Ui::BrowserPane> m_ui;
    PaneHost* parentDoc = nullptr;
    ConfigPanel* configPanel = nullptr;
    PaneMenu* contextualMenu = nullptr;
    FolderWatcher* m_watcher = nullptr;
    FileJobs* m_fileJobs = nullptr;
    PaneConnection* m_connection = nullptr;
    LinkJobs* m_linkJobs = nullptr;
    UnlinkedItemsPanel* unlinkedItemsPanel = nullptr;
    std::function<QString()> m_excludedFolders;
    std::filesystem::path m_mountPath;
    bool m_isShare = false;

    void connectSheet();
    void connectBrowser();
    void connectMenu();
    void connectLinks();
    void connectConnection(std::shared_ptr<VolumeMounter> mounter);
    void beginConnection();
    void finishConnection(const MountResult& result, const QVariantMap& request);
    void connectionSucceeded(const QVariantMap& request);
    void volumeUnmounted(const std::filesystem::path& mountPoint);
    void setRootNode(FileSystemNodePointer root);
    void setConnectState(const QString& text);
    void emptyPane();
    void folderChanged();
    void doBrowserClick(const QModelIndex& item);
    void refreshLater(const Paths& select);
    void showBusy();
    [[nodiscard]] std::filesystem::path pathOf(const QModelIndex& item) const;
};

} // namespace luma
