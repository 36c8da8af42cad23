// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/unlinkeditemspanel.h"

#include "base/files.h"
#include "base/mainhop.h"
#include "browser/displaytext.h"
#include "links/sitelinks.h"

#include "ui_UnlinkedItemsPanel.h"

#include <QAction>
#include <QHeaderView>
#include <QLocale>
#include <QTableView>

#include <algorithm>
#include <map>
#include <mutex>
#include <set>
#include <system_error>

namespace luma {

namespace fs = std::filesystem;

namespace {

// In milliseconds.
constexpr int showInterval = 40;
constexpr int refreshDelay = 300;

// A folder that has since taken the name of a ticked file is kept.
bool isFile(const fs::path& path)
{
    std::error_code error;
    return !fs::is_directory(fs::symlink_status(path, error)) && !error;
}

std::uintmax_t sizeOf(const fs::path& file)
{
    std::error_code error;
    const std::uintmax_t size = fs::is_symlink(file, error) ? 0 : fs::file_size(file, error);
    return error ? 0 : size;
}

QString sizeText(std::uintmax_t size)
{
    return QLocale().formattedDataSize(static_cast<qint64>(size));
}

} // namespace

/// What the scan has found and the screen does not show yet.
struct UnlinkedItemsPanel::Findings
{
    std::mutex mutex;
    std::string current;
    std::vector<Item> items;

    Result<bool> scan(const fs::path& site, const ReportChoices& choices, SiteLinks* links,
                      const StillWanted& stillWanted)
    {
        UnlinkedItemsCallbacks callbacks;
        callbacks.examining = [&](const std::string& subpath) {
            const std::scoped_lock lock(mutex);
            current = subpath;
        };
        callbacks.row = [&](const std::string& subpath) {
            const std::uintmax_t size = sizeOf(site / subpath);
            const std::scoped_lock lock(mutex);
            items.push_back({.displayName = subpath, .size = size});
        };
        callbacks.stillWanted = stillWanted;
        const std::string excluded = choices.excludedFolders.toStdString();
        if (choices.linkRules == LinkRules::Letter)
            return findUnlinkedItems(site, excluded, callbacks);
        return links ? links->findUnlinked(choices.webRules, excluded, callbacks)
                     : findWebUnlinked(site, choices.webRules, excluded, callbacks);
    }
};

UnlinkedItemsPanel::UnlinkedItemsPanel(QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::UnlinkedItemsPanel>())
{
    m_ui->setupUi(this);
    setWindowModality(Qt::WindowModal);
    m_showTimer.setInterval(showInterval);
    m_refreshTimer.setInterval(refreshDelay);
    m_refreshTimer.setSingleShot(true);
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
         .text =
             [](const Item& item) {
                 const QString name = displayText(item.displayName);
                 return item.isKept ? tr("%1 (kept)").arg(name) : name;
             },
         .less = [](const Item& a, const Item& b) { return a.displayName < b.displayName; }},
        {.title = QT_TR_NOOP("Size"),
         .text = [](const Item& item) { return sizeText(item.size); },
         .less = [](const Item& a, const Item& b) { return a.size < b.size; },
         .isNumber = true}};
    unlinkedItemsArrayController = new TickTable<Item>(columns, this);
    unlinkedItemsArrayController->setObjectName(QStringLiteral("unlinkedItemsArrayController"));
    m_ui->unlinkedItemsTickList->setUp(*unlinkedItemsArrayController,
                                       {.table = "unlinkedItemsTableView",
                                        .all = "unlinkedItemsAllCheckBox",
                                        .count = "unlinkedItemsCount",
                                        .placeholder = "unlinkedItemsPlaceholder"});
    QHeaderView& header = *m_ui->unlinkedItemsTickList->table().horizontalHeader();
    // At first in the order of the report, by name.
    header.setSortIndicator(-1, Qt::AscendingOrder);
    m_ui->unlinkedItemsTickList->table().setSortingEnabled(true);
    header.setStretchLastSection(false);
    header.setSectionResizeMode(0, QHeaderView::Stretch);
    header.setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    setUpMenu();
    QSizePolicy policy = m_ui->unlinkedItemsProgressIndicator->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_ui->unlinkedItemsProgressIndicator->setSizePolicy(policy);
    m_ui->unlinkedItemsCuurentResourcePath->setForegroundRole(QPalette::PlaceholderText);
}

void UnlinkedItemsPanel::setUpMenu()
{
    QTableView& table = m_ui->unlinkedItemsTickList->table();
    table.setContextMenuPolicy(Qt::ActionsContextMenu);
    auto* const keep = new QAction(tr("&Keep This Item"), this);
    keep->setObjectName(QStringLiteral("keepItemAction"));
    keep->setShortcut(Qt::CTRL | Qt::Key_K);
    keep->setToolTip(tr("Leaves the selected files out of this report from now on"));
    connect(keep, &QAction::triggered, this, &UnlinkedItemsPanel::keepSelectedItems);
    table.addAction(keep);
    connect(table.selectionModel(), &QItemSelectionModel::selectionChanged, this, [this, keep, &table] {
        const QModelIndexList rows = table.selectionModel()->selectedRows();
        keep->setEnabled(m_state != State::Deleting && !rows.isEmpty());
        const bool isKeptRow =
            !rows.isEmpty() && unlinkedItemsArrayController->shownRow(rows.first().row()).isKept;
        keep->setText(isKeptRow ? tr("No Longer &Keep This Item") : tr("&Keep This Item"));
    });
}

void UnlinkedItemsPanel::connectControls()
{
    connect(&m_showTimer, &QTimer::timeout, this, &UnlinkedItemsPanel::showFindings);
    connect(&m_refreshTimer, &QTimer::timeout, this, &UnlinkedItemsPanel::refresh);
    connect(m_ui->unlinkedItemsStopButton, &QPushButton::clicked, this,
            &UnlinkedItemsPanel::stopFindUnlinkedItems);
    connect(m_ui->unlinkedItemsRestartButton, &QPushButton::clicked, this,
            &UnlinkedItemsPanel::restartRequested);
    connect(m_ui->unlinkedItemsDeleteButton, &QPushButton::clicked, this,
            &UnlinkedItemsPanel::deleteUnlinkedItems);
    connect(m_ui->unlinkedItemsPutBackButton, &QPushButton::clicked, this, &UnlinkedItemsPanel::putBackItems);
    connect(m_ui->unlinkedItemsKeptCheckBox, &QCheckBox::clicked, this, &UnlinkedItemsPanel::showKept);
    connect(m_ui->unlinkedItemsCloseButton, &QPushButton::clicked, this, &UnlinkedItemsPanel::reject);
    connect(unlinkedItemsArrayController, &TickListModel::ticksChanged, this,
            &UnlinkedItemsPanel::updateControls);
    connect(&m_ui->unlinkedItemsTickList->table(), &QTableView::doubleClicked, this,
            [this](const QModelIndex& index) {
                emit fileActivated(m_site / unlinkedItemsArrayController->shownRow(index.row()).displayName);
            });
}

bool UnlinkedItemsPanel::windowShowsASheet() const
{
    const auto dialogs = parentWidget()->window()->findChildren<QDialog*>();
    return std::any_of(dialogs.begin(), dialogs.end(),
                       [](const QDialog* dialog) { return dialog->isVisible() && dialog->isModal(); });
}

void UnlinkedItemsPanel::startFindUnlinkedItems(const fs::path& site, const ReportChoices& choices,
                                                std::shared_ptr<SiteLinks> links)
{
    if (m_state == State::Deleting)
        return;
    stopRefreshing();
    if (workItem)
        workItem->cancel();
    if (m_site != site)
        m_trashed.clear();
    m_site = site;
    m_choices = choices;
    m_note.clear();
    m_kept.clear();
    unlinkedItemsArrayController->setRows({});
    m_ui->unlinkedItemsPanelTitle->setText(tr("Listing all files with no links."));
    m_links = std::move(links);
    m_isComplete = false;
    m_showTimer.start();
    setState(State::Scanning);
    scan();
    if (!windowShowsASheet())
        open();
}

void UnlinkedItemsPanel::scan()
{
    workItem = std::make_shared<WorkItem>();
    m_findings = std::make_shared<Findings>();
    const QPointer<UnlinkedItemsPanel> guard(this);
    start(workItem, [guard, site = m_site, choices = m_choices, links = m_links, token = workItem,
                     findings = m_findings](const WorkItem&) {
        const auto done = findings->scan(site, choices, links.get(),
                                         [token] { return !token->isCancelled() && !isMainHopClosed(); });
        onMain(guard, [&](UnlinkedItemsPanel& self) {
            if (self.workItem == token && !token->isCancelled())
                self.endScan(done ? QString() : displayText(done.error().text));
        });
        if (links)
            links->store();
    });
}

// By the letter every file would be read again.
void UnlinkedItemsPanel::siteChanged()
{
    if (isVisible() && m_links && m_choices.linkRules == LinkRules::Browser && !m_refreshTimer.isActive())
        m_refreshTimer.start();
}

void UnlinkedItemsPanel::refresh()
{
    if (m_state != State::Idle || m_isRefreshing) {
        m_refreshTimer.start();
    } else if (m_isComplete) {
        m_isRefreshing = true;
        scan();
    }
}

void UnlinkedItemsPanel::stopRefreshing()
{
    m_refreshTimer.stop();
    if (std::exchange(m_isRefreshing, false))
        workItem->cancel();
}

void UnlinkedItemsPanel::showFindings()
{
    if (!m_findings)
        return;
    unlinkedItemsArrayController->append(takeFindings());
    if (m_state == State::Scanning) {
        const std::scoped_lock lock(m_findings->mutex);
        m_ui->unlinkedItemsCuurentResourcePath->setText(displayText(m_findings->current));
    }
}

// Those to be kept go where they belong.
std::vector<UnlinkedItemsPanel::Item> UnlinkedItemsPanel::takeFindings()
{
    std::vector<Item> items;
    {
        const std::scoped_lock lock(m_findings->mutex);
        items.swap(m_findings->items);
    }
    const auto firstKept = std::stable_partition(
        items.begin(), items.end(), [this](const Item& item) { return !isKept(item.displayName); });
    std::for_each(firstKept, items.end(), [this](Item& item) {
        item.isKept = true;
        item.select = false;
        m_kept.push_back(item);
    });
    items.erase(firstKept, items.end());
    return items;
}

// Rows that stay keep their ticks, and the selection where nothing has changed.
void UnlinkedItemsPanel::showRefreshed()
{
    m_kept.clear();
    std::vector<Item> items = takeFindings();
    std::map<std::string, bool> ticks;
    for (const Item& item : unlinkedItemsArrayController->rows())
        ticks.emplace(item.displayName, item.select);
    for (Item& item : items) {
        if (const auto tick = ticks.find(item.displayName); tick != ticks.end() && !item.isKept)
            item.select = tick->second;
    }
    if (m_ui->unlinkedItemsKeptCheckBox->isChecked())
        items.insert(items.end(), m_kept.begin(), m_kept.end());
    if (items != unlinkedItemsArrayController->rows())
        unlinkedItemsArrayController->setRows(std::move(items));
}

void UnlinkedItemsPanel::stopFindUnlinkedItems()
{
    stopRefreshing();
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
    if (!std::exchange(m_isRefreshing, false))
        showFindings();
    else if (note.isEmpty())
        showRefreshed();
    m_findings.reset();
    m_note = note;
    m_isComplete = note.isEmpty();
    setState(State::Idle);
}

bool UnlinkedItemsPanel::isKept(const std::string& subpath) const
{
    return std::find(m_choices.keptItems.begin(), m_choices.keptItems.end(), subpath) !=
           m_choices.keptItems.end();
}

void UnlinkedItemsPanel::showKept(bool isShown)
{
    std::vector<Item> rows = unlinkedItemsArrayController->rows();
    std::erase_if(rows, [](const Item& item) { return item.isKept; });
    if (isShown)
        rows.insert(rows.end(), m_kept.begin(), m_kept.end());
    unlinkedItemsArrayController->setRows(std::move(rows));
    updateControls();
}

void UnlinkedItemsPanel::keepSelectedItems()
{
    std::set<std::string> selected;
    for (const QModelIndex& index : m_ui->unlinkedItemsTickList->table().selectionModel()->selectedRows())
        selected.insert(unlinkedItemsArrayController->shownRow(index.row()).displayName);
    std::vector<Item> rows = unlinkedItemsArrayController->rows();
    for (Item& item : rows) {
        if (!selected.contains(item.displayName))
            continue;
        item.isKept = !item.isKept;
        item.select = !item.isKept;
        if (item.isKept) {
            m_choices.keptItems.push_back(item.displayName);
            m_kept.push_back(item);
        } else {
            std::erase(m_choices.keptItems, item.displayName);
            std::erase_if(m_kept, [&](const Item& kept) { return kept.displayName == item.displayName; });
        }
    }
    unlinkedItemsArrayController->setRows(std::move(rows));
    showKept(m_ui->unlinkedItemsKeptCheckBox->isChecked());
    emit keptItemsChanged(m_choices.keptItems);
}

std::vector<UnlinkedItemsPanel::Item> UnlinkedItemsPanel::tickedItems() const
{
    std::vector<Item> items = unlinkedItemsArrayController->rows();
    std::erase_if(items, [](const Item& item) { return !item.select; });
    return items;
}

void UnlinkedItemsPanel::deleteUnlinkedItems()
{
    const std::vector<Item> items = tickedItems();
    if (items.empty() || m_state != State::Idle)
        return;
    std::uintmax_t size = 0;
    for (const Item& item : items)
        size += item.size;
    const QString question =
        items.size() == 1
            ? tr("Are you sure you want to move this file (%1) to the trash?").arg(sizeText(size))
            : tr("Are you sure you want to move these %1 files (%2) to the trash?")
                  .arg(QLocale().toString(items.size()), sizeText(size));
    askToDelete(*this, QStringLiteral("deleteUnlinkedItemsAlert"), question,
                [this, items] { moveToTrash(items); });
}

/// Runs `work` in the background; what is left of it to delete comes back.
void UnlinkedItemsPanel::runDeletion(std::function<TrashOutcome(const std::function<bool()>& isWanted)> work)
{
    stopRefreshing();
    workItem = std::make_shared<WorkItem>();
    setState(State::Deleting);
    const QPointer<UnlinkedItemsPanel> guard(this);
    // Under another work item: a job cancelled before it starts would never reach endDeletion().
    start(std::make_shared<WorkItem>(), [guard, token = workItem, work = std::move(work)](const WorkItem&) {
        const TrashOutcome outcome = work([&token] { return !token->isCancelled(); });
        onMain(guard, [&](UnlinkedItemsPanel& self) { self.endDeletion(outcome); });
    });
}

void UnlinkedItemsPanel::moveToTrash(const std::vector<Item>& items)
{
    runDeletion([items, site = m_site](const std::function<bool()>& isWanted) {
        std::vector<fs::path> files;
        for (const Item& item : items) {
            if (isFile(site / item.displayName))
                files.push_back(site / item.displayName);
        }
        return moveAllToTrash(files, isWanted);
    });
}

void UnlinkedItemsPanel::removeForGood(const std::vector<fs::path>& files)
{
    runDeletion([files](const std::function<bool()>& isWanted) {
        for (const fs::path& file : files) {
            if (isWanted() && isFile(file))
                (void)removeItem(file);
        }
        return TrashOutcome();
    });
}

void UnlinkedItemsPanel::endDeletion(const TrashOutcome& outcome)
{
    m_trashed.insert(m_trashed.end(), outcome.trashed.begin(), outcome.trashed.end());
    const std::vector<Item>& rows = unlinkedItemsArrayController->rows();
    std::vector<std::size_t> gone;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        if (rows[row].select && !itemExists(m_site / rows[row].displayName))
            gone.push_back(row);
    }
    unlinkedItemsArrayController->removeRowsAt(gone);
    if (unlinkedItemsArrayController->rowCount() == 0)
        m_ui->unlinkedItemsPanelTitle->setText(tr("No more files to be deleted."));
    setState(State::Idle);
    emit itemsDeleted();
    if (!outcome.left.empty())
        askToDelete(*this, QStringLiteral("removeUnlinkedItemsAlert"), questionAbout(outcome),
                    [this, files = outcome.left] { removeForGood(files); });
}

void UnlinkedItemsPanel::putBackItems()
{
    if (m_state != State::Idle)
        return;
    // Renames on one volume.
    std::erase_if(m_trashed, [](const TrashedItem& item) { return bool(putBack(item)); });
    emit itemsDeleted();
    emit restartRequested();
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
    m_ui->unlinkedItemsPutBackButton->setVisible(!m_trashed.empty());
    m_ui->unlinkedItemsPutBackButton->setEnabled(isIdle);
    m_ui->unlinkedItemsKeptCheckBox->setVisible(!m_kept.empty());
    m_ui->unlinkedItemsKeptCheckBox->setEnabled(m_state != State::Deleting);
    m_ui->unlinkedItemsKeptCheckBox->setText(
        tr("Show &kept files (%1)").arg(QLocale().toString(m_kept.size())));
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
