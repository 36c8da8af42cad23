// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/browsercontroller.h"

#include "base/console.h"
#include "base/mainhop.h"
#include "base/pathbelow.h"
#include "base/workitem.h"
#include "browser/browser.h"
#include "browser/configpanel.h"
#include "browser/displaytext.h"
#include "browser/endpoint.h"
#include "browser/filejobs.h"
#include "browser/folderlisting.h"
#include "browser/folderwatcher.h"
#include "browser/movenotices.h"
#include "browser/paneconnection.h"
#include "browser/panehost.h"
#include "browser/panelinks.h"
#include "browser/panemenu.h"
#include "browser/transformers.h"
#include "desktop/icons.h"
#include "mounts/volumemounter.h"

#include "ui_BrowserPane.h"

#include <QClipboard>
#include <QMimeData>

#include <system_error>
#include <utility>

namespace luma {

BrowserController::BrowserController(const QString& caption, std::shared_ptr<ObservedDictionary> endpoint,
                                     std::shared_ptr<VolumeMounter> mounter, PaneHost& host, QWidget* parent)
    : QObject(parent),
      m_widget(new QWidget(parent)),
      m_ui(std::make_unique<Ui::BrowserPane>()),
      parentDoc(host),
      configPanel(new ConfigPanel(std::move(endpoint), m_widget)),
      contextualMenu(new PaneMenu(m_widget)),
      m_watcher(new FolderWatcher(this)),
      m_fileJobs(new FileJobs(m_widget)),
      m_itemCommands(new ItemCommands([this] { return selection(); }, m_widget)),
      m_connection(new PaneConnection(std::move(mounter), this)),
      m_links(std::make_unique<PaneLinks>(caption, *m_watcher, host, m_widget))
{
    m_ui->setupUi(m_widget);
    m_ui->label->setText(caption);
    m_ui->configureButton->setAccessibleName(tr("Connection settings of %1").arg(caption));
    browser().setPaneName(caption);
    m_ui->configureButton->setIcon(icons::symbol(QStringLiteral("settings")));
    connect(m_watcher, &FolderWatcher::changed, this, &BrowserController::folderChanged);
    connectSheet();
    connectBrowser();
    connectMenu();
    connect(m_fileJobs, &FileJobs::runningChanged, this, &BrowserController::showBusy);
    connect(m_fileJobs, &FileJobs::changed, this, &BrowserController::showChanged);
    connect(m_fileJobs, &FileJobs::folderCreated, this, &BrowserController::nameNewFolder);
    // After the selection that a job causes, which shows its path in the same line.
    connect(m_fileJobs, &FileJobs::failed, this, &BrowserController::showProblem, Qt::QueuedConnection);
    connect(m_fileJobs, &FileJobs::deleted, this, &BrowserController::goOnAfterDeletion);
    connect(m_fileJobs, &FileJobs::undoable, this, &BrowserController::undoable);
    connectLinks();
    connectConnection();
    setRootNode(nullptr);
    showBusy();
}

BrowserController::~BrowserController() = default;

Browser& BrowserController::browser()
{
    return *m_ui->myBrowser;
}

const Browser& BrowserController::browser() const
{
    return *m_ui->myBrowser;
}

FileSystemNodePointer BrowserController::rootNode() const
{
    return browser().model().rootNode();
}

void BrowserController::connectSheet()
{
    // Its title says what it does.
    connect(m_ui->connectButton, &QAbstractButton::clicked, this,
            [this] { rootNode() || m_isConnecting ? disconnectPane() : beginConnection(); });
    connect(m_ui->configureButton, &QAbstractButton::clicked, this, &BrowserController::configure);
    connect(configPanel, &ConfigPanel::connectRequested, this, &BrowserController::beginConnection);
    connect(configPanel, &ConfigPanel::closeRequested, this, &BrowserController::closeSheet);
}

void BrowserController::connectBrowser()
{
    connect(&browser(), &Browser::currentChanged, this, &BrowserController::doBrowserClick);
    connect(&browser(), &Browser::doubleClicked, this, &BrowserController::openItem);
    connect(&browser(), &Browser::deleteRequested, this, &BrowserController::deleteSelectedItems);
    connect(&browser(), &Browser::contextMenuRequested, this,
            [this](const QModelIndex& item, const QPoint& position) {
                contextualMenu->popupFor(item.isValid(), position);
            });
    browser().model().setRenamePreparation(
        [this](const std::filesystem::path& oldPath, const std::filesystem::path& newPath) {
            // Nothing links to a folder that has just been made.
            m_isNamingNewFolder = m_fileJobs->isNewFolder(oldPath);
            if (m_isNamingNewFolder)
                return Result<void>();
            return m_links->prepareRename(oldPath, newPath);
        });
    connect(&browser().model(), &FileSystemModel::renameFailed, m_links.get(), &PaneLinks::dropRename);
    // The old name just reappears, so the line below the columns says why.
    connect(&browser().model(), &FileSystemModel::renameFailed, this, &BrowserController::showProblem);
    connect(&browser().model(), &FileSystemModel::renamed, this,
            [this](const std::filesystem::path& oldPath, const std::filesystem::path& newPath) {
                emit parentDoc.moveNotices().itemMoved({oldPath, newPath}, m_mountPath);
                browser().updateTexts();
                doBrowserClick();
                m_fileJobs->noteRename(oldPath, newPath);
                if (!m_isNamingNewFolder)
                    m_links->updateAfterRename(oldPath, newPath);
                refreshLater({newPath});
            });
}

void BrowserController::renameInBackground(const std::filesystem::path& oldPath,
                                           const std::filesystem::path& newPath)
{
    m_fileJobs->renameNewFolder(oldPath, newPath,
                                [this, oldPath, newPath] { m_links->rename(oldPath, newPath); });
}

void BrowserController::connectMenu()
{
    connect(contextualMenu, &PaneMenu::openRequested, this, &BrowserController::openItem);
    connect(contextualMenu, &PaneMenu::browserRequested, m_itemCommands, &ItemCommands::openInBrowser);
    connect(contextualMenu, &PaneMenu::fileManagerRequested, m_itemCommands,
            &ItemCommands::showInFileManager);
    connect(contextualMenu, &PaneMenu::cutRequested, m_itemCommands, &ItemCommands::cutFiles);
    connect(contextualMenu, &PaneMenu::copyRequested, m_itemCommands, &ItemCommands::copyFiles);
    connect(contextualMenu, &PaneMenu::pasteRequested, this, &BrowserController::pasteFiles);
    connect(contextualMenu, &PaneMenu::pathCopyRequested, m_itemCommands, &ItemCommands::copyPath);
    connect(contextualMenu, &PaneMenu::linkCopyRequested, m_itemCommands, &ItemCommands::copyRelativeLink);
    connect(contextualMenu, &PaneMenu::propertiesRequested, m_itemCommands, &ItemCommands::showProperties);
    connect(contextualMenu, &PaneMenu::transferRequested, this, &BrowserController::transferRequested);
    connect(m_itemCommands, &ItemCommands::failed, this, &BrowserController::showProblem);
    m_itemCommands->fillOpenWith(contextualMenu->openWithMenu());
    connect(contextualMenu, &PaneMenu::newFolderRequested, this, &BrowserController::newFolder);
    connect(contextualMenu, &PaneMenu::duplicateRequested, this, &BrowserController::duplicateItem);
    connect(contextualMenu, &PaneMenu::renameRequested, this, &BrowserController::renameItem);
    connect(contextualMenu, &PaneMenu::deleteRequested, this, &BrowserController::deleteSelectedItems);
    connect(contextualMenu, &PaneMenu::reloadRequested, this, &BrowserController::reload);
}

void BrowserController::connectLinks()
{
    connect(m_links.get(), &PaneLinks::fileActivated, this,
            [this](const std::filesystem::path& file) { browser().reveal(file); });
    connect(m_links.get(), &PaneLinks::pageActivated, this,
            [this](const std::filesystem::path& page, unsigned line, unsigned column) {
                if (line > 0)
                    emit placeRequested(page, m_mountPath, line, column);
                else
                    emit openRequested(page, m_mountPath);
            });
    connect(m_links.get(), &PaneLinks::itemsChanged, this, [this] { refreshLater({}); });
    connect(m_links.get(), &PaneLinks::undoable, this, &BrowserController::undoable);
    connect(m_links.get(), &PaneLinks::olderMoveLooked, this, &BrowserController::olderMoveLooked);
    connect(m_links.get(), &PaneLinks::outsideMovesChanged, this, &BrowserController::offerUpdate);
    connect(m_ui->ignoreMoveButton, &QPushButton::clicked, m_links.get(), &PaneLinks::ignoreOutsideMoves);
    connect(m_ui->updateLinksButton, &QPushButton::clicked, m_links.get(), &PaneLinks::followOutsideMoves);
    connect(&parentDoc.moveNotices(), &MoveNotices::itemMoved, this,
            [this](const MovedItem& item, const std::filesystem::path& site) {
                const bool isRename = item.from.parent_path() == item.to.parent_path();
                const QModelIndex current = browser().currentItem();
                if (isRename && site == m_mountPath && current.isValid() && pathOf(current) == item.from)
                    refreshLater({item.to});
            });
    // Queued, for the source is still inside its drag.
    connect(&browser(), &Browser::dropped, m_links.get(), &PaneLinks::acceptDrop, Qt::QueuedConnection);
    connect(contextualMenu, &PaneMenu::linksFromItemRequested, this, &BrowserController::showLinksFromItem);
    connect(contextualMenu, &PaneMenu::linksToItemRequested, this, &BrowserController::showLinksToItem);
    connect(contextualMenu, &PaneMenu::missingLinksRequested, this,
            &BrowserController::startFindMissingLinks);
    connect(contextualMenu, &PaneMenu::unlinkedItemsRequested, this,
            &BrowserController::startFindUnlinkedItems);
}

void BrowserController::offerUpdate()
{
    const std::vector<MovedItem>& items = m_links->outsideMoves();
    m_ui->outsideMoveBar->setVisible(!items.empty());
    const auto place = [this](const std::filesystem::path& path) {
        return displayText(path.lexically_relative(m_mountPath).native());
    };
    if (items.size() == 1)
        m_ui->outsideMoveLabel->setText(
            tr("Another program has moved %1 to %2. Links still lead to the old place.")
                .arg(place(items.front().from), place(items.front().to)));
    else if (!items.empty())
        m_ui->outsideMoveLabel->setText(
            tr("Another program has moved %1 items. Links still lead to the old places.").arg(items.size()));
}

void BrowserController::connectConnection()
{
    connect(m_connection, &PaneConnection::finished, this, &BrowserController::finishConnection);
    connect(&m_connection->mounter(), &VolumeMounter::unmounted, this, &BrowserController::volumeUnmounted);
}

void BrowserController::doConnect()
{
    if (configPanel->connectsOnOpening())
        beginConnection();
    else
        disconnectPane();
}

void BrowserController::connectPane()
{
    if (!rootNode() && !m_isConnecting)
        beginConnection();
}

void BrowserController::beginConnection()
{
    closeSheet();
    setConnectState(tr("Connecting... Please wait."));
    browser().setEmptyText(tr("Connecting..."));
    setConnecting(true);
    m_connection->begin(configPanel->request());
    emit stateChanged();
}

void BrowserController::finishConnection(const MountResult& result, const ConnectionRequest& request)
{
    setConnecting(false);
    const std::filesystem::path former =
        std::exchange(m_mountPath, result.folder ? result.mountPath : std::filesystem::path());
    const bool wasShare = std::exchange(m_isShare, !request.isLocal());
    // The pane was already connected and has now mounted the same share again, or another one, or none.
    if (wasShare && !former.empty())
        m_connection->mounter().unmount(former);
    if (result.folder) {
        m_isOnServer = result.isOnServer;
        browser().model().setBackgroundLister(m_isOnServer ? &listFolder : FileSystemModel::Lister());
        browser().model().setBackgroundRenamer(
            m_isOnServer
                ? [this](const auto& oldPath, const auto& newPath) { renameInBackground(oldPath, newPath); }
                : FileSystemModel::Renamer());
        setRootNode(result.root);
        showBusy();
        connectionSucceeded(request);
    } else {
        emptyPane();
        m_watcher->stop();
        connectionFailed(result.reason);
    }
    emit stateChanged();
}

void BrowserController::connectionSucceeded(const ConnectionRequest& request)
{
    setConnectState(request.protocol + request.server + request.path);
    m_watcher->start(m_ui->label->text(), m_mountPath);
    m_links->begin(m_mountPath, request.isLocal());
    if (!request.isLocal())
        parentDoc.checkConnectionOK();
}

void BrowserController::connectionFailed(const QString& reason)
{
    setConnectState(tr("There is an error connecting to the Destination Server"));
    browser().setEmptyText(reason);
}

void BrowserController::disconnectPane()
{
    m_connection->cancel();
    emptyPane();
    m_watcher->stop();
    if (configPanel->protocol() != endpoint::fileProtocol && !m_mountPath.empty()) {
        m_connection->mounter().unmount(m_mountPath);
        m_mountPath.clear();
    }
    emit stateChanged();
}

void BrowserController::volumeUnmounted(const std::filesystem::path& mountPoint)
{
    if (m_mountPath.empty() || mountPoint != m_mountPath)
        return;
    m_connection->cancel();
    emptyPane();
    m_mountPath.clear();
    emit stateChanged();
}

void BrowserController::emptyPane()
{
    setConnecting(false);
    m_links->end();
    setConnectState({});
    setRootNode(nullptr);
    showBusy();
}

void BrowserController::setRootNode(FileSystemNodePointer root)
{
    browser().model().setRootNode(std::move(root));
    browser().setEmptyText(
        tr("Not connected. Choose Connect, or set the folder in the connection settings."));
    m_ui->fullPathToSelectedItem->clear();
    m_problemItem.reset();
    setConnecting(m_isConnecting);
}

void BrowserController::setConnecting(bool connecting)
{
    m_isConnecting = connecting;
    const QVariant bound = rootNode() ? QVariant(true) : QVariant();
    const QString title = connecting ? tr("Cancel") : Transformers::named(u"ConnectTransformer")(bound);
    m_ui->connectButton->setText(title);
    m_ui->connectButton->setAccessibleName(tr("%1 %2").arg(title, m_ui->label->text()));
    showBusy();
}

void BrowserController::setConnectState(const QString& text)
{
    m_ui->connectStateField->setText(text);
}

void BrowserController::configure()
{
    configPanel->clearErrorMessage();
    configPanel->open();
    configPanel->setFocus();
}

void BrowserController::closeSheet()
{
    configPanel->close();
}

void BrowserController::reload()
{
    browser().reload();
}

void BrowserController::setShowsHidden(bool shows)
{
    browser().model().setShowsHidden(shows);
    browser().refresh();
}

void BrowserController::folderChanged()
{
    printDiagnostic("folderChanged at path = " + m_mountPath.string());
    browser().refresh();
    m_links->siteChanged(m_watcher->takeChangedFolders());
}

std::filesystem::path BrowserController::pathOf(const QModelIndex& item) const
{
    return browser().model().node(item)->url();
}

std::filesystem::path BrowserController::currentPath() const
{
    const QModelIndex item = browser().currentItem();
    return item.isValid() ? pathOf(item) : std::filesystem::path();
}

BrowserController::Paths BrowserController::selectedPaths() const
{
    Paths items;
    for (const QModelIndex& item : browser().selectedItems())
        items.push_back(pathOf(item));
    return items;
}

ItemCommands::Selection BrowserController::selection() const
{
    ItemCommands::Selection selection{selectedPaths(), m_mountPath, {}, m_isOnServer};
    for (const QModelIndex& item : browser().selectedItems())
        selection.areFolders.push_back(browser().model().node(item)->isDirectory());
    return selection;
}

std::vector<std::string> BrowserController::selectedSubpaths() const
{
    std::vector<std::string> subpaths;
    for (const std::filesystem::path& item : selectedPaths())
        subpaths.emplace_back(pathBelow(item.native(), m_mountPath.native()).value_or(""));
    return subpaths;
}

void BrowserController::finishMenu(const QWidget& window, const QString& transferTitle)
{
    contextualMenu->setTransferTitle(transferTitle);
    contextualMenu->showKeysOf(window);
}

void BrowserController::doBrowserClick()
{
    const std::filesystem::path item = currentPath();
    if (m_problemItem == item)
        return;
    m_problemItem.reset();
    const QString path = displayText(pathBelow(item.native(), m_mountPath.native()).value_or(""));
    m_ui->fullPathToSelectedItem->setText(path.isEmpty() ? path : tr("Relative Path: ") + path);
}

void BrowserController::showProblem(const QString& reason)
{
    m_ui->fullPathToSelectedItem->setText(reason);
    m_problemItem = currentPath();
}

void BrowserController::openItem()
{
    const QModelIndex item = browser().currentItem();
    if (!item.isValid() || browser().enter(item))
        return;
    if (!m_isOnServer) {
        emit openRequested(pathOf(item), m_mountPath);
        return;
    }
    // Opening reads the file at once, which must not be what finds out that the server is silent.
    start(std::make_shared<WorkItem>(),
          [guard = QPointer(this), path = pathOf(item), site = m_mountPath](const WorkItem&) {
              std::error_code error;
              (void)std::filesystem::exists(path, error);
              onMain(guard, [&](BrowserController& self) { emit self.openRequested(path, site); });
          });
}

void BrowserController::newFolder()
{
    if (!rootNode())
        return;
    m_fileJobs->newFolder(pathOf(browser().parentForItemsInColumn(browser().currentColumn())));
}

void BrowserController::duplicateItem()
{
    if (const QModelIndex item = browser().currentItem(); item.isValid())
        m_fileJobs->duplicate(pathOf(item));
}

void BrowserController::pasteFiles()
{
    QClipboard& clipboard = *QGuiApplication::clipboard();
    const QMimeData* const files = clipboard.mimeData();
    if (!rootNode())
        return;
    Drop drop{MoveOperation::Copy, files ? DropTarget::droppedPaths(*files) : Paths(),
              pathOf(browser().parentForItemsInColumn(browser().currentColumn()))};
    if (drop.items.empty()) {
        showProblem(tr("There are no files on the clipboard."));
        return;
    }
    const bool areOfSite = std::all_of(drop.items.begin(), drop.items.end(), [this](const auto& item) {
        return pathBelow(item.native(), m_mountPath.native()).has_value();
    });
    if (areOfSite && areCut(*files)) {
        drop.operation = MoveOperation::Move;
        clipboard.clear();
    }
    m_links->acceptDrop(drop);
}

void BrowserController::renameItem()
{
    browser().rename(browser().currentItem());
}

void BrowserController::deleteSelectedItems()
{
    const Paths items = selectedPaths();
    const QModelIndex next = browser().itemBesideSelection();
    if (items.empty())
        return;
    m_fileJobs->confirmDeletion(items, next.isValid() ? pathOf(next) : std::filesystem::path(),
                                m_links->linkCounter(items));
}

void BrowserController::showLinksFromItem()
{
    if (const QModelIndex item = browser().currentItem(); item.isValid())
        m_links->showReport(LinkReportRun::Kind::LinksFrom, pathOf(item));
}

void BrowserController::showLinksToItem()
{
    if (const QModelIndex item = browser().currentItem(); item.isValid())
        m_links->showReport(LinkReportRun::Kind::LinksTo, pathOf(item));
}

void BrowserController::startFindMissingLinks()
{
    m_links->showReport(LinkReportRun::Kind::MissingLinks);
}

void BrowserController::findText(const QString& text)
{
    m_links->findText(text);
}

void BrowserController::showNames()
{
    m_links->showNames();
}

void BrowserController::undoMove()
{
    m_links->undoMove();
}

void BrowserController::lookForOlderMove()
{
    m_links->lookForOlderMove();
}

void BrowserController::stopFindMissingLinks()
{
    m_links->stopReport();
}

void BrowserController::startFindUnlinkedItems()
{
    m_links->showUnlinkedItems();
}

void BrowserController::stopFindUnlinkedItems()
{
    m_links->stopUnlinkedItems();
}

// Where what was selected has gone, its neighbour is selected.
void BrowserController::showChanged(const Paths& select)
{
    const QModelIndex beside = browser().itemBesideSelection();
    if (select.empty() && beside.isValid())
        goOnAfterDeletion(pathOf(beside));
    else
        refreshLater(select);
}

void BrowserController::refreshLater(const Paths& select)
{
    QMetaObject::invokeMethod(
        this,
        [this, select] {
            browser().refresh();
            for (const std::filesystem::path& path : select)
                browser().selectInFolder(path.parent_path(), {path.filename().string()});
        },
        Qt::QueuedConnection);
}

void BrowserController::nameNewFolder(const std::filesystem::path& folder)
{
    browser().refresh();
    browser().selectInFolder(folder.parent_path(), {folder.filename().string()});
    // The row of a slow server may come when the user is elsewhere.
    if (currentPath() == folder)
        browser().rename(browser().currentItem());
}

/// Unless the user has gone on to another item meanwhile.
void BrowserController::goOnAfterDeletion(const std::filesystem::path& next)
{
    browser().refresh();
    if (!next.empty() && browser().selectedItems().isEmpty())
        browser().selectInFolder(next.parent_path(), {next.filename().string()});
}

void BrowserController::showBusy()
{
    m_ui->progressIndicator->setVisible(m_isConnecting || m_fileJobs->isRunning());
}

} // namespace luma
