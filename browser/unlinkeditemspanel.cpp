// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/unlinkeditemspanel.h"

#include "base/files.h"
#include "base/mainhop.h"
#include "browser/displaytext.h"
#include "links/unlinkeditems.h"

#include "ui_UnlinkedItemsPanel.h"

#include <QLocale>
#include <QMessageBox>
#include <QTableView>

#include <algorithm>
#include <mutex>
#include <system_error>

namespace luma {

namespace fs = std::filesystem;

namespace {

constexpr int showInterval = 40; // milliseconds

// A folder that has since taken the name of a ticked file is kept.
bool deleteFile(const fs::path& file)
{
    std::error_code error;
    return !fs::is_directory(fs::symlink_status(file, error)) && !error && removeItem(file);
}

} // namespace

/// What the scan has found and the screen does not show yet.
struct UnlinkedItemsPanel::Findings
{
    std::mutex mutex;
    std::string current;
    std::vector<Item> items;
};

UnlinkedItemsPanel::UnlinkedItemsPanel(QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::UnlinkedItemsPanel>())
{
    m_ui->setupUi(this);
    setWindowModality(Qt::WindowModal);
    m_showTimer.setInterval(showInterval);
    setUpTable();
    connectControls();
    updateControls();
}

UnlinkedItemsPanel::~UnlinkedItemsPanel()
{
    if (workItem)
        workItem->cancel();
}

void UnlinkedItemsPanel::setUpTable()
{
    static constexpr TickColumn<Item> columns[] = {
        {.title = QT_TR_NOOP("File"),
         .text = [](const Item& item) { return displayText(item.displayName); }}};
    unlinkedItemsArrayController = new TickTable<Item>(columns, this);
    unlinkedItemsArrayController->setObjectName(QStringLiteral("unlinkedItemsArrayController"));
    m_ui->unlinkedItemsTickList->setUp(*unlinkedItemsArrayController,
                                       {.table = "unlinkedItemsTableView",
                                        .all = "unlinkedItemsAllCheckBox",
                                        .count = "unlinkedItemsCount",
                                        .placeholder = "unlinkedItemsPlaceholder"});
    QSizePolicy policy = m_ui->unlinkedItemsProgressIndicator->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_ui->unlinkedItemsProgressIndicator->setSizePolicy(policy);
    m_ui->unlinkedItemsCuurentResourcePath->setForegroundRole(QPalette::PlaceholderText);
}

void UnlinkedItemsPanel::connectControls()
{
    connect(&m_showTimer, &QTimer::timeout, this, &UnlinkedItemsPanel::showFindings);
    connect(m_ui->unlinkedItemsStopButton, &QPushButton::clicked, this,
            &UnlinkedItemsPanel::stopFindUnlinkedItems);
    connect(m_ui->unlinkedItemsRestartButton, &QPushButton::clicked, this,
            &UnlinkedItemsPanel::restartRequested);
    connect(m_ui->unlinkedItemsDeleteButton, &QPushButton::clicked, this,
            &UnlinkedItemsPanel::deleteUnlinkedItems);
    connect(m_ui->unlinkedItemsCloseButton, &QPushButton::clicked, this, &UnlinkedItemsPanel::reject);
    connect(unlinkedItemsArrayController, &TickListModel::ticksChanged, this,
            &UnlinkedItemsPanel::updateControls);
    connect(&m_ui->unlinkedItemsTickList->table(), &QTableView::doubleClicked, this,
            [this](const QModelIndex& index) {
                const auto& items = unlinkedItemsArrayController->rows();
                emit fileActivated(m_site / items[static_cast<std::size_t>(index.row())].displayName);
            });
}

bool UnlinkedItemsPanel::windowShowsASheet() const
{
    const auto dialogs = parentWidget()->window()->findChildren<QDialog*>();
    return std::any_of(dialogs.begin(), dialogs.end(),
                       [](const QDialog* dialog) { return dialog->isVisible() && dialog->isModal(); });
}

void UnlinkedItemsPanel::startFindUnlinkedItems(const fs::path& site, const QString& excludedFolders)
{
    if (m_state == State::Deleting)
        return;
    if (workItem)
        workItem->cancel();
    m_site = site;
    m_note.clear();
    unlinkedItemsArrayController->setRows({});
    m_ui->unlinkedItemsPanelTitle->setText(QStringLiteral("Listing all files with no links."));
    workItem = std::make_shared<WorkItem>();
    m_findings = std::make_shared<Findings>();
    m_showTimer.start();
    setState(State::Scanning);
    const QPointer<UnlinkedItemsPanel> guard(this);
    start(workItem, [guard, site, excluded = excludedFolders.toStdString(), token = workItem,
                     findings = m_findings](const WorkItem&) {
        UnlinkedItemsCallbacks callbacks;
        callbacks.examining = [&](const std::string& subpath) {
            const std::scoped_lock lock(findings->mutex);
            findings->current = subpath;
        };
        callbacks.row = [&](const std::string& subpath) {
            const std::scoped_lock lock(findings->mutex);
            findings->items.push_back({.displayName = subpath});
        };
        callbacks.stillWanted = [token] { return !token->isCancelled(); };
        const auto done = findUnlinkedItems(site, excluded, callbacks);
        onMain(guard, [&](UnlinkedItemsPanel& self) {
            if (self.workItem == token && !token->isCancelled())
                self.endScan(done ? QString() : displayText(done.error().text));
        });
    });
    if (!windowShowsASheet())
        open();
}

void UnlinkedItemsPanel::showFindings()
{
    if (!m_findings)
        return;
    std::vector<Item> items;
    std::string current;
    {
        const std::scoped_lock lock(m_findings->mutex);
        items.swap(m_findings->items);
        current = m_findings->current;
    }
    unlinkedItemsArrayController->append(std::move(items));
    if (m_state == State::Scanning)
        m_ui->unlinkedItemsCuurentResourcePath->setText(displayText(current));
}

void UnlinkedItemsPanel::stopFindUnlinkedItems()
{
    if (!workItem || m_state == State::Idle)
        return;
    workItem->cancel();
    // A deletion reports its own end.
    if (m_state == State::Scanning)
        endScan(tr("Stopped before all files were checked. Restart begins again."));
}

void UnlinkedItemsPanel::endScan(const QString& note)
{
    m_showTimer.stop();
    showFindings();
    m_findings.reset();
    m_note = note;
    setState(State::Idle);
}

void UnlinkedItemsPanel::deleteUnlinkedItems()
{
    const std::size_t ticked = unlinkedItemsArrayController->tickedCount();
    if (ticked == 0 || m_state != State::Idle)
        return;
    auto* const alert =
        new QMessageBox(QMessageBox::Warning, tr("Warning"), tr("Warning"), QMessageBox::NoButton, this);
    alert->setObjectName(QStringLiteral("deleteUnlinkedItemsAlert"));
    alert->setAttribute(Qt::WA_DeleteOnClose);
    const QString count = QLocale().toString(ticked);
    alert->setInformativeText(
        ticked == 1 ? tr("Are you sure you want to delete this file? It is not moved to the trash.")
                    : tr("Are you sure you want to delete these %1 files? They are not moved to the trash.")
                          .arg(count));
    QPushButton* const accepted = alert->addButton(tr("Delete"), QMessageBox::AcceptRole);
    QPushButton* const refused = alert->addButton(tr("No"), QMessageBox::RejectRole);
    alert->setDefaultButton(refused);
    alert->setEscapeButton(refused);
    connect(accepted, &QAbstractButton::clicked, this,
            [this, items = unlinkedItemsArrayController->rows()] { deleteFiles(items); });
    alert->open();
}

void UnlinkedItemsPanel::deleteFiles(const std::vector<Item>& items)
{
    workItem = std::make_shared<WorkItem>();
    setState(State::Deleting);
    const QPointer<UnlinkedItemsPanel> guard(this);
    // Under another work item: a job cancelled before it starts would never reach endDeletion().
    start(std::make_shared<WorkItem>(), [guard, items, site = m_site, token = workItem](const WorkItem&) {
        std::vector<std::size_t> deleted;
        for (std::size_t i = 0; i < items.size() && !token->isCancelled(); ++i) {
            if (items[i].select && deleteFile(site / items[i].displayName))
                deleted.push_back(i);
        }
        onMain(guard, [&](UnlinkedItemsPanel& self) { self.endDeletion(deleted); });
    });
}

void UnlinkedItemsPanel::endDeletion(const std::vector<std::size_t>& deleted)
{
    unlinkedItemsArrayController->removeRowsAt(deleted);
    if (unlinkedItemsArrayController->rowCount() == 0)
        m_ui->unlinkedItemsPanelTitle->setText(QStringLiteral("No more files to be deleted."));
    setState(State::Idle);
    emit itemsDeleted();
}

void UnlinkedItemsPanel::reject()
{
    stopFindUnlinkedItems();
    QDialog::reject();
}

void UnlinkedItemsPanel::setState(State state)
{
    m_state = state;
    updateControls();
}

void UnlinkedItemsPanel::updateControls()
{
    const bool isIdle = m_state == State::Idle;
    // At rest the bar, which has no range, would look like a text field.
    m_ui->unlinkedItemsProgressIndicator->setVisible(!isIdle);
    m_ui->unlinkedItemsStopButton->setEnabled(!isIdle);
    m_ui->unlinkedItemsRestartButton->setEnabled(isIdle);
    m_ui->unlinkedItemsDeleteButton->setEnabled(isIdle && unlinkedItemsArrayController->rowCount() > 0);
    m_ui->unlinkedItemsTickList->setTickingEnabled(m_state != State::Deleting);
    if (m_state != State::Scanning)
        m_ui->unlinkedItemsCuurentResourcePath->clear();
    QString placeholder =
        isIdle ? tr("No files without links.") : tr("Looking through all files of the site");
    if (!m_note.isEmpty())
        placeholder = m_note;
    m_ui->unlinkedItemsTickList->setPlaceholder(placeholder);
}

} // namespace luma
