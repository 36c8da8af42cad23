// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/haldendoc.h"

#include "base/mainhop.h"
#include "browser/browser.h"
#include "browser/browsercontroller.h"
#include "browser/endpoint.h"
#include "browser/itemcommands.h"
#include "browser/movenotices.h"
#include "desktop/icons.h"
#include "desktop/screenroom.h"
#include "desktop/windowregistry.h"
#include "links/browserreports.h"
#include "mounts/gvfsmounter.h"
#include "shell/sshcontroller.h"
#include "site/comparisonwindow.h"
#include "site/jobline.h"
#include "site/panellayouts.h"
#include "site/panemarks.h"
#include "site/progresspanel.h"
#include "site/restorepanel.h"
#include "site/syncpanel.h"
#include "site/undocommand.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDataStream>
#include <QToolButton>

#include <algorithm>

#include "ui_HaldenDoc.h"

namespace luma {

namespace {

// A prominent button of the tool bar.
QToolButton* addButton(QToolBar& bar, QAction* before, QAction* action, const QString& title)
{
    bar.insertAction(before, action);
    action->setIconText(title);
    auto* const button = qobject_cast<QToolButton*>(bar.widgetForAction(action));
    button->setAccessibleName(title);
    return button;
}

constexpr int mostColumns = 255; // the layout stores their number in one byte

void writeColumnWidths(QDataStream& stream, const Browser& browser)
{
    const QList<int> widths = browser.columnWidths().mid(0, mostColumns);
    stream << static_cast<quint8>(widths.size());
    for (const int width : widths)
        stream << static_cast<qint32>(width);
}

// Read one by one: reading a whole QList would allocate whatever size a damaged layout names.
void restoreColumnWidths(QDataStream& stream, Browser& browser)
{
    quint8 count = 0;
    stream >> count;
    QList<int> widths;
    for (int i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        qint32 width = 0;
        stream >> width;
        widths.append(width);
    }
    if (stream.status() == QDataStream::Ok)
        browser.setColumnWidths(widths);
}

} // namespace

HaldenDoc::Services HaldenDoc::standardServices()
{
    const auto checkConnection = [](const QString& login, const QString& port) {
        return QString::fromStdString(
            SSHController::checkConnectionOK(login.toStdString(), port.toStdString()));
    };
    const auto setUp = [](const QString& login, const QString& port, const QString& password) {
        return QString::fromStdString(
            SSHController::setUpRemoteLogin(login.toStdString(), port.toStdString(), password.toStdString()));
    };
    return {.remoteLogin = {.checkConnection = checkConnection, .setUp = setUp},
            .runProgram = &luma::runProgram,
            .mounter = GvfsMounter::shared(),
            .reportChoices = {},
            .stopAsking = {},
            .moveNotices = {}};
}

HaldenDoc::HaldenDoc(std::shared_ptr<SiteRecord> siteDict, Services services, QWidget* parent)
    : QMainWindow(parent),
      m_ui(std::make_unique<Ui::HaldenDoc>()),
      m_record(std::move(siteDict)),
      m_reportChoices(std::move(services.reportChoices)),
      m_stopAsking(std::move(services.stopAsking)),
      m_moveNotices(services.moveNotices ? std::move(services.moveNotices) : std::make_shared<MoveNotices>()),
      m_remoteLogin(m_record->destinationDict(), std::move(services.remoteLogin)),
      m_engine(*m_record, services.runProgram, [this] { return sides(); })
{
    setAttribute(Qt::WA_DeleteOnClose);
    m_ui->setupUi(this);
    fitHeightToScreen(*this);
    createToolBar();
    setIcons();
    showAdvice({});
    m_undo = new UndoCommand(*m_ui->undoMoveAction, *m_ui->editMenu, this);
    m_progressPanel = new ProgressPanel(*m_ui->jobLine, this);
    createPanes(services.mounter);
    m_syncPanel = new SyncPanel(m_engine, this);
    m_restorePanel = new RestorePanel(
        *m_record, services.runProgram, [this] { return sides(); }, this);
    connectActions();
    connectUndo();
    connectRemoteLogin();
    connect(m_record.get(), &SiteRecord::changed, this, &HaldenDoc::updateForRecord);
    updateForRecord();
    updateActions();
    WindowRegistry::instance().add(this, m_record.get());
    WindowRegistry::instance().fill(m_ui->windowsMenu);
}

HaldenDoc::~HaldenDoc()
{
    // The focus leaves the panes while QWidget destroys them, when this is no HaldenDoc any more.
    disconnect(qApp, nullptr, this, nullptr);
}

void HaldenDoc::createPanes(const std::shared_ptr<VolumeMounter>& mounter)
{
    m_source = new BrowserController(tr("Source"), m_record->sourceDict(), mounter, *this, m_ui->splitView);
    m_destination = new BrowserController(tr("Destination"), m_record->destinationDict(), mounter, *this,
                                          m_ui->splitView);
    m_ui->splitView->addWidget(m_source->widget());
    m_ui->splitView->addWidget(m_destination->widget());
    m_ui->splitView->setSizes({panesplit::minimumUpper * 2, panesplit::minimumUpper * 2});
    m_source->widget()->setObjectName(QStringLiteral("sourceBrowserController"));
    m_destination->widget()->setObjectName(QStringLiteral("destinationBrowserController"));
    for (BrowserController* pane : {m_source, m_destination}) {
        connect(pane, &BrowserController::stateChanged, this, &HaldenDoc::paneChanged);
        connect(pane, &BrowserController::stateChanged, this, &HaldenDoc::publishWaitingPage);
        connect(pane, &BrowserController::stateChanged, this, &HaldenDoc::doWaiting);
        connect(&pane->browser(), &Browser::currentChanged, this, &HaldenDoc::updateActions);
        connect(pane, &BrowserController::openRequested, this, &HaldenDoc::openRequested);
        connect(pane, &BrowserController::placeRequested, this, &HaldenDoc::placeRequested);
        connect(pane, &BrowserController::transferRequested, this, [this, pane] { syncSelected(*pane); });
    }
    m_marks = new PaneMarks(*m_source, *m_destination, *m_record, this);
    m_source->finishMenu(*this, tr("Uplo&ad This..."));
    m_destination->finishMenu(*this, tr("Downlo&ad This..."));
    m_current = m_source;
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget* /*old*/, QWidget* focused) { noteFocus(focused); });
}

void HaldenDoc::createToolBar()
{
    QAction* const first = m_ui->siteToolBar->actions().constFirst();
    addButton(*m_ui->siteToolBar, first, m_ui->uploadAction, tr("Upload"))
        ->setObjectName(QStringLiteral("uploadButton"));
    addButton(*m_ui->siteToolBar, first, m_ui->downloadAction, tr("Download"))
        ->setObjectName(QStringLiteral("downloadButton"));
    m_ui->siteToolBar->insertSeparator(first);
}

void HaldenDoc::setIcons()
{
    m_ui->uploadAction->setIcon(icons::symbol(QStringLiteral("upload")));
    m_ui->downloadAction->setIcon(icons::symbol(QStringLiteral("download")));
    m_ui->newFolderAction->setIcon(icons::symbol(QStringLiteral("new-folder")));
    m_ui->reloadAction->setIcon(icons::symbol(QStringLiteral("reload")));
    m_ui->missingLinksAction->setIcon(icons::symbol(QStringLiteral("missing-links")));
    m_ui->unlinkedItemsAction->setIcon(icons::symbol(QStringLiteral("unlinked-items")));
}

void HaldenDoc::connectActions()
{
    const auto onPane = [this](QAction* action, void (BrowserController::*does)()) {
        connect(action, &QAction::triggered, this, [this, does] { std::invoke(does, m_current); });
    };
    onPane(m_ui->openAction, &BrowserController::openItem);
    onPane(m_ui->newFolderAction, &BrowserController::newFolder);
    onPane(m_ui->renameAction, &BrowserController::renameItem);
    onPane(m_ui->duplicateAction, &BrowserController::duplicateItem);
    onPane(m_ui->deleteAction, &BrowserController::deleteSelectedItems);
    const auto onItems = [this](QAction* action, void (ItemCommands::*does)()) {
        connect(action, &QAction::triggered, this,
                [this, does] { std::invoke(does, m_current->itemCommands()); });
    };
    onItems(m_ui->browserAction, &ItemCommands::openInBrowser);
    onItems(m_ui->fileManagerAction, &ItemCommands::showInFileManager);
    onItems(m_ui->cutAction, &ItemCommands::cutFiles);
    onItems(m_ui->copyAction, &ItemCommands::copyFiles);
    onPane(m_ui->pasteAction, &BrowserController::pasteFiles);
    onItems(m_ui->copyPathAction, &ItemCommands::copyPath);
    onItems(m_ui->copyLinkAction, &ItemCommands::copyRelativeLink);
    onItems(m_ui->propertiesAction, &ItemCommands::showProperties);
    connect(m_ui->transferAction, &QAction::triggered, this, [this] { syncSelected(*m_current); });
    connect(m_ui->selectAllAction, &QAction::triggered, this, [this] { m_current->browser().selectAll(); });
    connect(m_ui->reloadAction, &QAction::triggered, m_source, &BrowserController::reload);
    connect(m_ui->reloadAction, &QAction::triggered, m_destination, &BrowserController::reload);
    for (BrowserController* pane : {m_source, m_destination})
        connect(m_ui->showHiddenAction, &QAction::toggled, pane, &BrowserController::setShowsHidden);
    connect(m_ui->sideBySideAction, &QAction::triggered, m_ui->splitView, [this](bool isSideBySide) {
        m_ui->splitView->arrange(isSideBySide ? Qt::Horizontal : Qt::Vertical);
    });
    connect(m_progressPanel, &ProgressPanel::began, this, [this] { m_ui->lastJobAction->setEnabled(true); });
    connect(m_ui->lastJobAction, &QAction::triggered, m_progressPanel, &ProgressPanel::show);
    connect(m_ui->missingLinksAction, &QAction::triggered, this,
            [this] { currentSitePane().startFindMissingLinks(); });
    connect(m_ui->unlinkedItemsAction, &QAction::triggered, this,
            [this] { currentSitePane().startFindUnlinkedItems(); });
    connect(m_ui->findInSiteAction, &QAction::triggered, this, [this] { currentSitePane().findText(); });
    connect(m_ui->namesAction, &QAction::triggered, this, [this] { currentSitePane().showNames(); });
    connect(m_ui->sourceSettingsAction, &QAction::triggered, m_source, &BrowserController::configure);
    connect(m_ui->destinationSettingsAction, &QAction::triggered, m_destination,
            &BrowserController::configure);
    connect(m_ui->uploadAction, &QAction::triggered, this, [this] { sync(Direction::Upload); });
    connect(m_ui->downloadAction, &QAction::triggered, this, [this] { sync(Direction::Download); });
    connect(m_ui->restoreAction, &QAction::triggered, m_restorePanel, &RestorePanel::restore);
    connect(m_ui->closeAction, &QAction::triggered, this, &QWidget::close);
    connect(m_ui->quitAction, &QAction::triggered, qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    connect(m_syncPanel, &SyncPanel::showRequested, this, &HaldenDoc::showInPane);
    connect(m_syncPanel, &SyncPanel::comparisonRequested, this, &HaldenDoc::showComparison);
    connect(&m_engine, &SyncEngine::transferred, m_marks, &PaneMarks::update);
    connect(&m_engine, &SyncEngine::transferred, m_source, &BrowserController::reload);
    connect(&m_engine, &SyncEngine::transferred, m_destination, &BrowserController::reload);
    connect(&m_restorePanel->engine(), &RestoreEngine::restored, m_destination, &BrowserController::reload);
}

void HaldenDoc::connectRemoteLogin()
{
    connect(&m_remoteLogin, &RemoteLogin::checked, this, &HaldenDoc::showCheck);
    connect(&m_remoteLogin, &RemoteLogin::setUpEnded, this, &HaldenDoc::setUpEnded);
    connect(m_ui->setUpRemoteLoginConnectionButton, &QPushButton::clicked, this, &HaldenDoc::setUpRsync);
    connect(m_ui->setUpRemoteLoginAction, &QAction::triggered, this, &HaldenDoc::setUpRsync);
    connect(m_ui->checkConnectionAction, &QAction::triggered, this, &HaldenDoc::checkConnectionOK);
}

// Moves can also be taken back that were made before the window opened.
void HaldenDoc::connectUndo()
{
    for (BrowserController* pane : {m_source, m_destination}) {
        connect(pane, &BrowserController::undoable, m_undo, &UndoCommand::add);
        connect(pane, &BrowserController::olderMoveLooked, m_undo, &UndoCommand::setHasOlder);
    }
    connect(m_undo, &UndoCommand::olderRequested, this, [this] { currentSitePane().undoMove(); });
    connect(m_undo, &UndoCommand::lookRequested, this, [this] { currentSitePane().lookForOlderMove(); });
    connect(m_undo, &UndoCommand::changed, m_ui->jobLine, &JobLine::forgetUndo);
    connect(m_ui->jobLine, &JobLine::undoRequested, m_undo, &UndoCommand::run);
}

void HaldenDoc::windowDidLoad()
{
    show();
    m_source->doConnect();
    m_destination->doConnect();
}

void HaldenDoc::updateForRecord()
{
    const ObservedDictionary& destination = *m_record->destinationDict();
    // A local folder needs no login.
    const bool isRemote = destination.string(endpoint::protocol) != endpoint::fileProtocol;
    const QString server = isRemote ? destination.string(endpoint::server) : QString();
    QStringList title = {m_record->siteID(), server};
    title.removeAll(QString());
    setWindowTitle(title.join(QStringLiteral(" – ")));
    m_ui->connectionLine->setVisible(isRemote);
    m_ui->checkConnectionAction->setEnabled(isRemote);
    updateSetUp();
}

// Two set-ups at the same time would install two keys.
void HaldenDoc::updateSetUp()
{
    const bool isUseful = !m_rsync && !m_remoteLogin.isSettingUp();
    m_ui->setUpRemoteLoginConnectionButton->setEnabled(isUseful);
    m_ui->setUpRemoteLoginAction->setEnabled(isUseful && m_ui->checkConnectionAction->isEnabled());
}

void HaldenDoc::paneChanged()
{
    updateActions();
    // Not while a sheet is open or the user has gone to the other pane already.
    if (!m_isNew || !m_source->rootNode())
        return;
    m_isNew = false;
    if (m_current == m_source && !QApplication::activeModalWidget())
        m_source->browser().focusCurrentColumn();
}

void HaldenDoc::updateActions()
{
    const bool isConnected = m_source->rootNode() || m_destination->rootNode();
    for (QAction* action : {m_ui->findInSiteAction, m_ui->namesAction, m_ui->missingLinksAction,
                            m_ui->unlinkedItemsAction, m_ui->reloadAction})
        action->setEnabled(isConnected);
    const bool isDestinationReached = m_rsync || m_destination->rootNode();
    const bool areBothReached = m_source->rootNode() && isDestinationReached;
    for (QAction* action : {m_ui->uploadAction, m_ui->downloadAction})
        action->setEnabled(areBothReached);
    m_ui->restoreAction->setEnabled(isDestinationReached);
    const bool isPaneConnected = m_current->rootNode() != nullptr;
    for (QAction* action : {m_ui->newFolderAction, m_ui->pasteAction, m_ui->selectAllAction})
        action->setEnabled(isPaneConnected);
    const bool hasItem = m_current->browser().currentItem().isValid();
    for (QAction* action :
         {m_ui->openAction, m_ui->browserAction, m_ui->fileManagerAction, m_ui->propertiesAction,
          m_ui->cutAction, m_ui->copyAction, m_ui->copyPathAction, m_ui->copyLinkAction, m_ui->renameAction,
          m_ui->duplicateAction, m_ui->deleteAction})
        action->setEnabled(hasItem);
    m_ui->transferAction->setEnabled(hasItem && areBothReached);
}

QByteArray HaldenDoc::layoutState() const
{
    QByteArray state;
    QDataStream stream(&state, QIODevice::WriteOnly);
    stream << saveGeometry() << m_ui->splitView->saveState();
    writeColumnWidths(stream, m_source->browser());
    writeColumnWidths(stream, m_destination->browser());
    writePanelLayouts(stream, *this);
    stream << m_ui->showHiddenAction->isChecked();
    return state;
}

void HaldenDoc::restoreLayoutState(const QByteArray& state)
{
    QByteArray geometry;
    QByteArray split;
    QDataStream stream(state);
    stream >> geometry >> split;
    restoreGeometry(geometry);
    m_ui->splitView->restoreState(split);
    const bool isSideBySide = m_ui->splitView->orientation() == Qt::Horizontal;
    if (!isSideBySide)
        m_ui->splitView->setOrientation(Qt::Vertical); // a damaged state may name neither
    m_ui->sideBySideAction->setChecked(isSideBySide);
    restoreColumnWidths(stream, m_source->browser());
    restoreColumnWidths(stream, m_destination->browser());
    readPanelLayouts(stream, *this);
    bool showsHidden = false;
    stream >> showsHidden;
    if (stream.status() == QDataStream::Ok)
        m_ui->showHiddenAction->setChecked(showsHidden);
}

void HaldenDoc::checkConnectionOK()
{
    m_remoteLogin.check();
}

// The line above has room for one short text.
void HaldenDoc::showAdvice(const QString& text)
{
    m_ui->connectionAdviceText->setText(text);
    m_ui->connectionAdviceText->setVisible(!text.isEmpty());
}

void HaldenDoc::showCheck(bool works, const QString& answer)
{
    m_rsync = works;
    updateActions();
    updateSetUp();
    if (m_remoteLogin.isSettingUp())
        return;
    m_ui->connectionResultText->setText(works ? tr("LUMA is using rsync for faster uploads and downloads.")
                                              : tr("Turn on rsync to make uploads and downloads go faster."));
    showAdvice(works ? QString() : RemoteLogin::advice(answer));
}

void HaldenDoc::setUpRsync()
{
    // Moving the focus commits the field that is being edited to the record.
    setFocus();
    m_ui->connectionResultText->setText(tr("Remote Login setup requested."));
    showAdvice({});
    m_remoteLogin.setUp();
    updateSetUp();
}

void HaldenDoc::setUpEnded(const QString& message)
{
    updateSetUp();
    if (!message.isEmpty()) {
        m_ui->connectionResultText->setText(message);
        return;
    }
    m_ui->connectionResultText->setText(tr("Remote Login setup done. Verifying connection..."));
    checkConnectionOK();
}

void HaldenDoc::syncSelected(const BrowserController& pane)
{
    if (const auto subpaths = pane.selectedSubpaths(); !subpaths.empty())
        sync(&pane == m_source ? Direction::Upload : Direction::Download, subpaths);
}

void HaldenDoc::sync(Direction direction, const std::vector<std::string>& only)
{
    m_syncPanel->sync(direction, only);
}

void HaldenDoc::publishPage(const std::filesystem::path& page)
{
    m_source->connectPane();
    m_destination->connectPane();
    m_pageToPublish = page;
    publishWaitingPage();
}

void HaldenDoc::showItem(const std::filesystem::path& item)
{
    doOnceConnected([this, item] {
        if (m_source->browser().reveal(item))
            m_source->browser().focusCurrentColumn();
    });
}

void HaldenDoc::findText(const QString& text)
{
    doOnceConnected([this, text] { m_source->findText(text); });
}

void HaldenDoc::showNames()
{
    doOnceConnected([this] { m_source->showNames(); });
}

void HaldenDoc::doOnceConnected(const std::function<void()>& work)
{
    m_waiting = work;
    m_source->connectPane();
    doWaiting();
}

void HaldenDoc::doWaiting()
{
    if (m_waiting && m_source->rootNode())
        std::exchange(m_waiting, nullptr)();
}

void HaldenDoc::publishWaitingPage()
{
    for (const BrowserController* pane : {m_source, m_destination}) {
        if (pane->rootNode())
            continue;
        if (!pane->isConnecting())
            m_pageToPublish.clear(); // the connection has failed
        return;
    }
    if (m_pageToPublish.empty())
        return;
    start(std::make_shared<WorkItem>(),
          [self = QPointer(this), page = std::exchange(m_pageToPublish, {}), site = m_source->mountPath(),
           rules = reportChoices().webRules](const WorkItem&) {
              const auto needed = findNeededFiles(site, page, rules);
              onMain(self, [&](HaldenDoc& window) {
                  // If the site can't be read, the comparison says so.
                  const std::string name = page.lexically_relative(site).native();
                  window.sync(Direction::Upload, needed ? *needed : std::vector<std::string>{name});
              });
          });
}

void HaldenDoc::showInPane(const std::string& path, bool isSent)
{
    const bool isInSource = isSent == (m_engine.direction() == Direction::Upload);
    BrowserController& pane = isInSource ? *m_source : *m_destination;
    if (pane.rootNode())
        (void)pane.browser().reveal(pane.mountPath() / path);
}

void HaldenDoc::showComparison(const std::string& path)
{
    const auto side = [&path](const QString& title, const BrowserController& pane) {
        return ComparisonWindow::Side{title,
                                      pane.rootNode() ? pane.mountPath() / path : std::filesystem::path()};
    };
    auto* const window = new ComparisonWindow(side(tr("Source"), *m_source),
                                              side(tr("Destination"), *m_destination), m_syncPanel);
    window->open();
}

ProgressReporter& HaldenDoc::progress()
{
    return *m_progressPanel;
}

ReportChoices HaldenDoc::reportChoices() const
{
    ReportChoices choices = m_reportChoices ? m_reportChoices() : ReportChoices();
    choices.webRules.webAddresses = m_record->webAddresses();
    choices.keptItems = m_record->keptItems();
    return choices;
}

void HaldenDoc::setKeptItems(const std::vector<std::string>& items)
{
    m_record->setKeptItems(items);
}

void HaldenDoc::stopAsking()
{
    if (m_stopAsking)
        m_stopAsking();
}

std::vector<std::filesystem::path> HaldenDoc::siteFolders() const
{
    std::vector<std::filesystem::path> folders = {m_source->mountPath(), m_destination->mountPath()};
    std::erase(folders, std::filesystem::path());
    return folders;
}

SyncSides HaldenDoc::sides() const
{
    return {.rsync = m_rsync, .source = m_source->mountPath(), .destination = m_destination->mountPath()};
}

void HaldenDoc::noteFocus(const QWidget* focused)
{
    for (BrowserController* pane : {m_source, m_destination}) {
        if (pane->widget()->isAncestorOf(focused))
            m_current = pane;
    }
    updateActions();
}

BrowserController& HaldenDoc::currentSitePane() const
{
    BrowserController& other = m_current == m_source ? *m_destination : *m_source;
    return m_current->rootNode() || !other.rootNode() ? *m_current : other;
}

void HaldenDoc::closeEvent(QCloseEvent* event)
{
    emit windowWillClose();
    m_engine.cancel();
    m_restorePanel->engine().cancel();
    m_source->disconnectPane();
    m_destination->disconnectPane();
    QMainWindow::closeEvent(event);
}

} // namespace luma
