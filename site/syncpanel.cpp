// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/syncpanel.h"

#include "desktop/screenroom.h"
#include "site/synctableview.h"
#include "ui_SyncPanel.h"

#include <QLocale>
#include <QMenu>
#include <QMessageBox>
#include <QTableView>

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

namespace luma {

using State = SyncEngine::State;

namespace {

// Of the pop-up button.
int itemOf(Direction direction)
{
    return direction == Direction::Upload ? 0 : 1;
}

} // namespace

SyncPanel::SyncPanel(SyncEngine& engine, QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::SyncPanel>()), m_engine(engine)
{
    m_ui->setupUi(this);
    setWindowModality(Qt::WindowModal);
    QSizePolicy keepsPlace = m_ui->syncProgressIndicator->sizePolicy();
    keepsPlace.setRetainSizeWhenHidden(true);
    m_ui->syncProgressIndicator->setSizePolicy(keepsPlace);
    for (const SyncKind kind :
         {SyncKind::New, SyncKind::Newer, SyncKind::Different, SyncKind::Conflict, SyncKind::Delete})
        m_ui->syncKindFilter->addItem(SyncTableModel::textOf(kind), int(kind));
    m_ui->syncKindFilter->insertItem(0, tr("All changes"));
    m_ui->syncKindFilter->setCurrentIndex(0);
    setUpTable();
    connectControls();
    updateControls();
}

SyncPanel::~SyncPanel() = default;

void SyncPanel::setUpTable()
{
    m_ui->syncTickList->setUp(m_engine.table(), {.table = "syncTableView",
                                                 .all = "allOnOffCheckBox",
                                                 .count = "syncCount",
                                                 .placeholder = "syncPlaceholder"});
    m_ui->syncTickList->table().setContextMenuPolicy(Qt::CustomContextMenu);
    setUpSyncTable(m_ui->syncTickList->table(), m_engine.table());
}

void SyncPanel::connectControls()
{
    connect(m_ui->syncKindFilter, &QComboBox::currentIndexChanged, this, &SyncPanel::updateFilter);
    connect(m_ui->syncNameFilter, &QLineEdit::textChanged, this, &SyncPanel::updateFilter);
    connect(&m_engine.table(), &TickListModel::ticksChanged, this, &SyncPanel::updateNote);
    // In turns of their own, before the first letter is typed.
    connect(&m_engine.table(), &TickListModel::modelReset, this, &SyncPanel::foldSomeNames,
            Qt::QueuedConnection);
    connect(&m_ui->syncTickList->table(), &QWidget::customContextMenuRequested, this, &SyncPanel::showMenu);
    connect(m_ui->uploadDownloadPopupButton, &QComboBox::activated, this, &SyncPanel::reloadSyncArray);
    connect(m_ui->deleteOptionCheckBox, &QCheckBox::clicked, this, &SyncPanel::reloadSyncArray);
    connect(m_ui->syncButton, &QPushButton::clicked, this, &SyncPanel::move);
    connect(m_ui->cancelButton, &QPushButton::clicked, this, &SyncPanel::closeSheet);
    connect(&m_engine, &SyncEngine::changed, this, &SyncPanel::updateControls);
    connect(&m_engine, &SyncEngine::progressed, this, &SyncPanel::showProgress);
}

void SyncPanel::sync(Direction direction, const std::vector<std::string>& only)
{
    m_only = only;
    m_ui->uploadDownloadPopupButton->setCurrentIndex(itemOf(direction));
    m_isOpening = true;
    reloadSyncArray();
    // Its buttons are at its end.
    if (!isVisible())
        resize(size().boundedTo(screenRoom(*this)));
    open();
    focusTable();
}

// Once it has rows, and only if the user has not gone elsewhere meanwhile.
void SyncPanel::focusTable()
{
    if (!isVisible() || m_engine.state() != State::Ready || !std::exchange(m_isOpening, false))
        return;
    QTableView& table = m_ui->syncTickList->table();
    const QWidget* const focus = focusWidget();
    if (focus && focus != m_ui->uploadDownloadPopupButton && focus != &table)
        return;
    table.setFocus();
    table.setCurrentIndex(table.model()->index(0, 0));
}

void SyncPanel::reloadSyncArray()
{
    // A running transfer keeps its direction.
    if (m_engine.state() == State::Transferring)
        return;
    const bool isUpload = m_ui->uploadDownloadPopupButton->currentIndex() == itemOf(Direction::Upload);
    m_engine.compare(isUpload ? Direction::Upload : Direction::Download,
                     m_ui->deleteOptionCheckBox->isChecked() ? Deletions::Listed : Deletions::Ignored,
                     m_only);
}

void SyncPanel::move()
{
    const QStringList questions = m_engine.questions();
    m_transferTime.start();
    if (questions.isEmpty()) {
        m_engine.transfer();
        return;
    }
    auto* const box = new QMessageBox(QMessageBox::Warning, windowTitle(),
                                      questions.join(QStringLiteral("\n\n")), QMessageBox::Cancel, this);
    box->setObjectName(QStringLiteral("syncQuestion"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    const auto* const goOn = box->addButton(tr("Move anyway"), QMessageBox::AcceptRole);
    box->setDefaultButton(QMessageBox::Cancel);
    connect(box, &QMessageBox::buttonClicked, this, [this, goOn](const QAbstractButton* button) {
        m_transferTime.start();
        if (button == goOn)
            m_engine.transfer();
        else
            m_engine.restoreTicks();
    });
    box->open();
}

bool SyncPanel::isOver() const
{
    const State state = m_engine.state();
    return state == State::Empty || state == State::Failed || state == State::Done;
}

void SyncPanel::closeSheet()
{
    // The first click stops; the panel then says what was done.
    if (m_engine.state() == State::Transferring && !m_engine.isStopping()) {
        m_engine.stop();
        return;
    }
    if (!isOver())
        m_engine.cancel();
    hide();
}

void SyncPanel::reject()
{
    closeSheet();
}

void SyncPanel::updateFilter()
{
    const QVariant kind = m_ui->syncKindFilter->currentData();
    const QString text = m_ui->syncNameFilter->text();
    if (!kind.isValid() && text.isEmpty()) {
        m_engine.table().setFilter({});
        return;
    }
    const int wantedKind = kind.isValid() ? kind.toInt() : -1;
    m_engine.table().setFilter([this, wantedKind, text](const SyncRow& row) {
        return holdsText(row, text) && (wantedKind < 0 || int(row.kind) == wantedKind);
    });
}

// Once for each list, so that typing in the filter reads one stretch of memory instead of all rows. A part in each turn, so
// that the window goes on.
void SyncPanel::foldSomeNames()
{
    constexpr std::size_t part = 10'000;
    foldNames(part);
    if (m_names.size() < m_engine.table().rows().size())
        QMetaObject::invokeMethod(this, &SyncPanel::foldSomeNames, Qt::QueuedConnection);
}

void SyncPanel::foldNames(std::size_t most)
{
    const SyncTableModel& table = m_engine.table();
    if (m_namesVersion != table.version()) {
        m_namesVersion = table.version();
        m_heldText.clear();
        m_holdsText.clear();
        m_names = FoldedNames(table.rows().size());
    }
    const std::size_t end = m_names.size() + std::min(most, table.rows().size() - m_names.size());
    for (std::size_t row = m_names.size(); row < end; ++row)
        m_names.add(table.rows()[row].displayName);
}

bool SyncPanel::holdsText(const SyncRow& row, const QString& text)
{
    if (text.isEmpty())
        return true;
    const auto number = static_cast<std::size_t>(&row - m_engine.table().rows().data());
    foldNames(m_engine.table().rows().size());
    if (text != m_heldText) {
        m_heldText = text;
        m_holdsText = m_names.holding(text);
    }
    return m_holdsText[number];
}

void SyncPanel::showMenu(const QPoint& place)
{
    QTableView& view = m_ui->syncTickList->table();
    const QModelIndex index = view.indexAt(place);
    if (!index.isValid() || !view.isEnabled())
        return;
    SyncTableModel& model = m_engine.table();
    const SyncRow& row = model.shownRow(index.row());
    const std::string folder = row.relativePath.substr(0, row.relativePath.rfind('/') + 1);
    const auto isInFolder = [folder](const SyncRow& other) { return other.relativePath.starts_with(folder); };
    const auto isOfKind = [kind = row.kind](const SyncRow& other) { return other.kind == kind; };
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    addFileActions(*menu, row);
    const auto add = [&](const QString& title, const TickTable<SyncRow>::Filter& chosen, bool on) {
        menu->addAction(title, &model, [&model, chosen, on] { model.tickWhere(chosen, on); });
    };
    menu->addAction(tr("Tick selected"), this,
                    [&model, &view] { model.tick(view.selectionModel()->selectedRows(), true); });
    menu->addAction(tr("Untick selected"), this,
                    [&model, &view] { model.tick(view.selectionModel()->selectedRows(), false); });
    menu->addSeparator();
    add(tr("Tick all of this kind"), isOfKind, true);
    add(tr("Untick all of this kind"), isOfKind, false);
    if (!folder.empty()) {
        menu->addSeparator();
        add(tr("Tick all in this folder"), isInFolder, true);
        add(tr("Untick all in this folder"), isInFolder, false);
    }
    menu->popup(view.viewport()->mapToGlobal(place));
}

void SyncPanel::addFileActions(QMenu& menu, const SyncRow& row)
{
    const std::string path = row.relativePath;
    const bool isSent = row.sent.exists();
    menu.addAction(tr("Show in pane"), this, [this, path, isSent] {
        closeSheet();
        emit showRequested(path, isSent);
    });
    QAction* const compare =
        menu.addAction(tr("Compare..."), this, [this, path] { emit comparisonRequested(path); });
    compare->setEnabled(row.sent.type == FileFacts::Type::File && row.received.type == FileFacts::Type::File);
    menu.addAction(tr("Publish only selected"), this, &SyncPanel::publishOnlySelected);
    menu.addAction(tr("Never publish this"), this, [this, path] { neverPublish(path); });
    menu.addSeparator();
}

void SyncPanel::publishOnlySelected()
{
    if (m_engine.state() != State::Ready)
        return;
    m_engine.tickOnly(m_ui->syncTickList->table().selectionModel()->selectedRows());
    move();
}

void SyncPanel::neverPublish(const std::string& path)
{
    if (m_engine.ignore(path))
        reloadSyncArray();
    else
        m_ui->syncMessage->setText(tr("The name is not UTF-8, so no pattern can name it."));
    m_ui->syncMessage->setVisible(!m_ui->syncMessage->text().isEmpty());
}

void SyncPanel::showProgress(const SyncProgress& done, const SyncTotals& all)
{
    const QLocale locale;
    const bool byBytes = all.bytes > 0;
    constexpr int steps = 1000;
    const double share =
        byBytes ? double(done.bytes) / double(all.bytes)
                : double(done.rows) / double(std::max<std::size_t>(all.files + all.deletions, 1));
    m_ui->syncProgressIndicator->setRange(0, steps);
    m_ui->syncProgressIndicator->setValue(static_cast<int>(std::min(share, 1.0) * steps));
    QString text = tr("%1 of %2, %3 of %4")
                       .arg(locale.toString(static_cast<qulonglong>(done.rows)),
                            locale.toString(qulonglong{all.files} + all.deletions),
                            locale.formattedDataSize(done.bytes), locale.formattedDataSize(all.bytes));
    const double seconds = double(m_transferTime.elapsed()) / 1000;
    const double rate = seconds > 0 ? double(done.bytes) / seconds : 0;
    if (rate > 1 && done.bytes < all.bytes)
        text += tr(", %1 a second, %2 seconds left")
                    .arg(locale.formattedDataSize(static_cast<qint64>(rate)),
                         locale.toString(static_cast<qlonglong>(double(all.bytes - done.bytes) / rate) + 1));
    m_ui->syncMessage->setText(text);
    m_ui->syncMessage->setVisible(true);
}

void SyncPanel::updateNote()
{
    const QLocale locale;
    QStringList texts;
    if (!m_only.empty())
        texts.append(tr("only the selected items"));
    const SyncTotals totals = tickedTotals(m_engine.table().rows());
    if (totals.files > 0)
        texts.append(tr("%1 to move").arg(locale.formattedDataSize(totals.bytes)));
    if (totals.deletions > 0)
        texts.append(tr("%1 to delete").arg(locale.toString(static_cast<qulonglong>(totals.deletions))));
    if (m_engine.ignoredCount() > 0)
        texts.append(tr("%1 ignored").arg(locale.toString(static_cast<qulonglong>(m_engine.ignoredCount()))));
    m_ui->syncTickList->setNote(texts.join(QStringLiteral(", ")));
}

void SyncPanel::updateControls()
{
    const State state = m_engine.state();
    const bool isTransferring = state == State::Transferring;
    m_ui->syncPanelTitle->setText(m_engine.title());
    m_ui->syncMessage->setText(m_engine.message());
    m_ui->syncMessage->setVisible(!m_engine.message().isEmpty());
    // Else the focus would wander through what is switched off here.
    if (isTransferring && m_ui->syncTickList->table().isEnabled())
        m_ui->cancelButton->setFocus();
    m_ui->syncButton->setEnabled(state == State::Ready);
    m_ui->syncButton->setText(m_engine.wasStopped() ? tr("&Go On") : tr("&Move"));
    m_ui->syncTickList->setTickingEnabled(!isTransferring && state != State::Failed);
    updateNote();
    m_ui->uploadDownloadPopupButton->setEnabled(!isTransferring);
    m_ui->deleteOptionCheckBox->setEnabled(!isTransferring);
    m_ui->cancelButton->setText(cancelTitle());
    updateProgress();
    updatePlaceholder();
    focusTable();
}

QString SyncPanel::cancelTitle() const
{
    if (isOver() || m_engine.isStopping())
        return tr("Close");
    return m_engine.state() == State::Transferring ? tr("Stop") : tr("Cancel");
}

void SyncPanel::updateProgress()
{
    const bool isBusy = m_engine.state() == State::Comparing || m_engine.state() == State::Transferring;
    m_ui->syncProgressIndicator->setRange(0, 0);
    m_ui->syncProgressIndicator->setVisible(isBusy);
}

void SyncPanel::updatePlaceholder()
{
    switch (m_engine.state()) {
    case State::Comparing:
        m_ui->syncTickList->setPlaceholder(tr("Comparing both sides"));
        break;
    case State::Empty:
        m_ui->syncTickList->setPlaceholder(
            (m_only.empty() ? tr("Every file is there, and none is newer.")
                            : tr("Every selected file is there, and none is newer.")) +
            u'\n' + tr("To look the other way, choose the other direction above."));
        break;
    case State::Failed:
        m_ui->syncTickList->setPlaceholder(tr("Nothing is known about the files on either side."));
        break;
    case State::Done:
        m_ui->syncTickList->setPlaceholder(tr("All files have been moved."));
        break;
    default:
        break;
    }
}

} // namespace luma
