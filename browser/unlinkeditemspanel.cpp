// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/unlinkeditemspanel.h"

#include "base/files.h"
#include "base/mainhop.h"
#include "browser/displaytext.h"
#include "links/unlinkeditems.h"

#include "ui_UnlinkedItemsPanel.h"

#include <QKeyEvent>
#include <QLocale>
#include <QMessageBox>

#include <algorithm>
#include <mutex>
#include <system_error>

namespace luma {

namespace fs = std::filesystem;

namespace {

constexpr int showInterval = 40; // milliseconds

// A folder that has taken a file's name meanwhile is not what the user ticked.
bool deleteFile(const fs::path& file)
{
    std::error_code error;
    return !fs::is_directory(fs::symlink_status(file, error)) && !error && removeItem(file);
}

} // namespace

/// What the scan has found and the screen has not shown yet.
struct UnlinkedItemsPanel::Findings
{
    std::mutex mutex;
    std::string current;
    Names rows;
};

UnlinkedItemsPanel::UnlinkedItemsPanel(QWidget* parent)
    : QDialog(parent),
      m_ui(std::make_unique<Ui::UnlinkedItemsPanel>()),
      unlinkedItemsArrayController(new UnlinkedItemsModel(this))
{
    m_ui->setupUi(this);
    setWindowModality(Qt::WindowModal);
    unlinkedItemsArrayController->setObjectName(QStringLiteral("unlinkedItemsArrayController"));
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
    QTableView* const table = m_ui->unlinkedItemsTableView;
    table->setModel(unlinkedItemsArrayController);
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + 6);
    table->installEventFilter(this);
    QSizePolicy policy = m_ui->unlinkedItemsProgressIndicator->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_ui->unlinkedItemsProgressIndicator->setSizePolicy(policy);
    m_ui->unlinkedItemsPlaceholder->setBackgroundRole(QPalette::Base);
    m_ui->unlinkedItemsPlaceholder->setForegroundRole(QPalette::PlaceholderText);
    m_ui->unlinkedItemsCuurentResourcePath->setForegroundRole(QPalette::PlaceholderText);
}

void UnlinkedItemsPanel::connectControls()
{
    connect(&m_showTimer, &QTimer::timeout, this, &UnlinkedItemsPanel::showFindings);
    connect(m_ui->unlinkedItemsAllCheckBox, &QCheckBox::clicked, this, &UnlinkedItemsPanel::AllOffOrOn);
    connect(m_ui->unlinkedItemsStopButton, &QPushButton::clicked, this,
            &UnlinkedItemsPanel::stopFindUnlinkedItems);
    connect(m_ui->unlinkedItemsRestartButton, &QPushButton::clicked, this,
            &UnlinkedItemsPanel::restartRequested);
    connect(m_ui->unlinkedItemsDeleteButton, &QPushButton::clicked, this,
            &UnlinkedItemsPanel::deleteUnlinkedItems);
    connect(m_ui->unlinkedItemsCloseButton, &QPushButton::clicked, this, &UnlinkedItemsPanel::reject);
    connect(unlinkedItemsArrayController, &UnlinkedItemsModel::selectionChanged, this,
            &UnlinkedItemsPanel::updateSelection);
    connect(m_ui->unlinkedItemsTableView, &QTableView::doubleClicked, this, [this](const QModelIndex& row) {
        emit fileActivated(
            m_site / unlinkedItemsArrayController->rows()[static_cast<std::size_t>(row.row())].displayName);
    });
}

bool UnlinkedItemsPanel::windowShowsASheet() const
{
    const auto dialogs = parentWidget()->window()->findChildren<QDialog*>();
    return std::any_of(dialogs.begin(), dialogs.end(),
                       [](const QDialog* dialog) { return dialog->isVisible(); });
}

void UnlinkedItemsPanel::startFindUnlinkedItems(const fs::path& site, const QString& excludedFolders)
{
    // What is being deleted has to be through first.
    if (m_state == State::Deleting)
        return;
    if (workItem)
        workItem->cancel();
    m_site = site;
    m_note.clear();
    unlinkedItemsArrayController->clear();
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
            findings->rows.push_back(subpath);
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
    Names rows;
    std::string current;
    {
        const std::scoped_lock lock(m_findings->mutex);
        rows.swap(m_findings->rows);
        current = m_findings->current;
    }
    unlinkedItemsArrayController->append(rows);
    if (m_state == State::Scanning)
        m_ui->unlinkedItemsCuurentResourcePath->setText(displayText(current));
}

void UnlinkedItemsPanel::stopFindUnlinkedItems()
{
    if (!workItem || m_state == State::Idle)
        return;
    workItem->cancel();
    // A deletion tells itself what it has come to.
    if (m_state == State::Scanning)
        endScan(tr("Stopped before all files were looked through. Restart begins again."));
}

void UnlinkedItemsPanel::endScan(const QString& note)
{
    m_showTimer.stop();
    showFindings();
    m_findings.reset();
    m_note = note;
    setState(State::Idle);
}

void UnlinkedItemsPanel::AllOffOrOn()
{
    // A click on the box's half state ticks all.
    unlinkedItemsArrayController->selectAll(m_ui->unlinkedItemsAllCheckBox->checkState() != Qt::Unchecked);
}

void UnlinkedItemsPanel::deleteUnlinkedItems()
{
    const Names names = unlinkedItemsArrayController->selectedNames();
    if (names.empty() || m_state != State::Idle)
        return;
    auto* const alert =
        new QMessageBox(QMessageBox::Warning, tr("Warning"), tr("Warning"), QMessageBox::NoButton, this);
    alert->setObjectName(QStringLiteral("deleteUnlinkedItemsAlert"));
    alert->setAttribute(Qt::WA_DeleteOnClose);
    const QString count = QLocale().toString(names.size());
    alert->setInformativeText(
        names.size() == 1
            ? tr("Are you sure you want to delete this file? It is not moved to the trash.")
            : tr("Are you sure you want to delete these %1 files? They are not moved to the trash.")
                  .arg(count));
    QPushButton* const accepted = alert->addButton(tr("Delete"), QMessageBox::AcceptRole);
    QPushButton* const refused = alert->addButton(tr("No"), QMessageBox::RejectRole);
    alert->setDefaultButton(refused);
    alert->setEscapeButton(refused);
    connect(accepted, &QAbstractButton::clicked, this, [this, names] { deleteFiles(names); });
    alert->open();
}

void UnlinkedItemsPanel::deleteFiles(const Names& names)
{
    workItem = std::make_shared<WorkItem>();
    setState(State::Deleting);
    const QPointer<UnlinkedItemsPanel> guard(this);
    // Under an item of its own: one that is stopped before its turn has to end in the panel too.
    start(std::make_shared<WorkItem>(), [guard, names, site = m_site, token = workItem](const WorkItem&) {
        Names deleted;
        for (const std::string& name : names) {
            if (token->isCancelled())
                break;
            if (deleteFile(site / name))
                deleted.push_back(name);
        }
        onMain(guard, [&](UnlinkedItemsPanel& self) { self.endDeletion(deleted); });
    });
}

void UnlinkedItemsPanel::endDeletion(const Names& deleted)
{
    unlinkedItemsArrayController->remove(deleted);
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
    const bool isBusy = m_state != State::Idle;
    // Its range of nothing lets the bar run without an end; at rest it would look like a field to type in.
    m_ui->unlinkedItemsProgressIndicator->setVisible(isBusy);
    m_ui->unlinkedItemsStopButton->setEnabled(isBusy);
    m_ui->unlinkedItemsRestartButton->setEnabled(!isBusy);
    m_ui->unlinkedItemsTableView->setEnabled(m_state != State::Deleting);
    if (m_state != State::Scanning)
        m_ui->unlinkedItemsCuurentResourcePath->clear();
    updateSelection();
}

void UnlinkedItemsPanel::updateSelection()
{
    const std::size_t all = unlinkedItemsArrayController->rows().size();
    const auto ticked = static_cast<std::size_t>(std::count_if(
        unlinkedItemsArrayController->rows().begin(), unlinkedItemsArrayController->rows().end(),
        [](const UnlinkedItemsModel::Row& row) { return row.select == 1; }));
    const bool isIdle = m_state == State::Idle;
    const Qt::CheckState some = ticked == 0 ? Qt::Unchecked : Qt::PartiallyChecked;
    m_ui->unlinkedItemsAllCheckBox->setCheckState(ticked == all && all > 0 ? Qt::Checked : some);
    m_ui->unlinkedItemsAllCheckBox->setEnabled(all > 0 && m_state != State::Deleting);
    m_ui->unlinkedItemsDeleteButton->setEnabled(all > 0 && isIdle);
    const QLocale locale;
    m_ui->unlinkedItemsCount->setText(
        all == 0 ? QString() : tr("%1 of %2 selected").arg(locale.toString(ticked), locale.toString(all)));
    QString nothing = isIdle ? tr("No files without links.") : tr("Looking through all files of the site");
    if (!m_note.isEmpty())
        nothing = m_note;
    m_ui->unlinkedItemsPlaceholder->setText(nothing);
    m_ui->unlinkedItemsStack->setCurrentWidget(all > 0 ? static_cast<QWidget*>(m_ui->unlinkedItemsTableView)
                                                       : m_ui->unlinkedItemsPlaceholder);
}

bool UnlinkedItemsPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space) {
        toggleSelectedRows();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

// The space bar gives all selected rows the state that the current one does not have.
void UnlinkedItemsPanel::toggleSelectedRows()
{
    const QModelIndex current = m_ui->unlinkedItemsTableView->currentIndex();
    if (!current.isValid())
        return;
    const bool isTicked = current.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    for (const QModelIndex& index : m_ui->unlinkedItemsTableView->selectionModel()->selectedRows())
        unlinkedItemsArrayController->setData(index, isTicked ? Qt::Unchecked : Qt::Checked,
                                              Qt::CheckStateRole);
}

} // namespace luma
