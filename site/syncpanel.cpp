// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/syncpanel.h"

#include "ui_SyncPanel.h"

#include <QKeyEvent>
#include <QLocale>

namespace luma {

using State = SyncEngine::State;

SyncPanel::SyncPanel(SyncEngine& engine, QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::SyncPanel>()), m_engine(engine)
{
    m_ui->setupUi(this);
    setWindowModality(Qt::WindowModal);
    QSizePolicy keepsPlace = m_ui->syncProgressIndicator->sizePolicy();
    keepsPlace.setRetainSizeWhenHidden(true);
    m_ui->syncProgressIndicator->setSizePolicy(keepsPlace);
    setUpTable();
    connectControls();
    updateControls();
}

SyncPanel::~SyncPanel() = default;

void SyncPanel::setUpTable()
{
    QTableView* const table = m_ui->syncTableView;
    table->setModel(&m_engine.table());
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + 6);
    table->installEventFilter(this);
    m_ui->syncPlaceholder->setBackgroundRole(QPalette::Base);
    m_ui->syncPlaceholder->setForegroundRole(QPalette::PlaceholderText);
}

void SyncPanel::connectControls()
{
    connect(m_ui->uploadDownloadPopupButton, &QComboBox::activated, this,
            &SyncPanel::uploadDownloadPopupButtonAction);
    connect(m_ui->deleteOptionCheckBox, &QCheckBox::clicked, this, &SyncPanel::reloadSyncArray);
    connect(m_ui->allOnOffCheckBox, &QCheckBox::clicked, this, &SyncPanel::AllOffOrOn);
    connect(m_ui->syncButton, &QPushButton::clicked, this, &SyncPanel::move);
    connect(m_ui->cancelButton, &QPushButton::clicked, this,
            [this] { closeSheet(m_ui->cancelButton->text()); });
    connect(&m_engine, &SyncEngine::changed, this, &SyncPanel::updateControls);
    connect(&m_engine.table(), &SyncTableModel::selectionChanged, this, &SyncPanel::updateSelection);
    connect(&m_engine, &SyncEngine::progressed, this, [this](int done, int total) {
        m_ui->syncProgressIndicator->setRange(0, total);
        m_ui->syncProgressIndicator->setValue(done);
    });
}

void SyncPanel::sync(const QString& senderTitle)
{
    const int item = m_ui->uploadDownloadPopupButton->findText(senderTitle);
    if (item >= 0)
        m_ui->uploadDownloadPopupButton->setCurrentIndex(item);
    reloadSyncArray();
    open();
    m_ui->syncTableView->setFocus();
}

void SyncPanel::uploadDownloadPopupButtonAction()
{
    reloadSyncArray();
}

void SyncPanel::reloadSyncArray()
{
    // A running transfer goes on in its direction; the controls that lead here are disabled meanwhile.
    if (m_engine.state() == State::Transferring)
        return;
    m_engine.compare(m_ui->uploadDownloadPopupButton->currentText(), m_ui->deleteOptionCheckBox->isChecked());
}

void SyncPanel::move()
{
    m_engine.transfer(m_ui->deleteOptionCheckBox->isChecked());
}

void SyncPanel::AllOffOrOn()
{
    // A click on the box's half state ticks all.
    m_engine.table().selectAll(m_ui->allOnOffCheckBox->checkState() != Qt::Unchecked);
}

void SyncPanel::closeSheet(const QString& senderTitle)
{
    if (senderTitle == QLatin1String("Cancel"))
        m_engine.cancel();
    hide();
}

void SyncPanel::reject()
{
    closeSheet(m_ui->cancelButton->text());
}

void SyncPanel::updateControls()
{
    const State state = m_engine.state();
    const bool isTransferring = state == State::Transferring;
    m_ui->syncPanelTitle->setText(m_engine.title());
    m_ui->syncMessage->setText(m_engine.message());
    m_ui->syncMessage->setVisible(!m_engine.message().isEmpty());
    m_ui->syncButton->setEnabled(state == State::Ready);
    m_ui->syncTableView->setEnabled(!isTransferring);
    m_ui->uploadDownloadPopupButton->setEnabled(!isTransferring);
    m_ui->deleteOptionCheckBox->setEnabled(!isTransferring && m_engine.usesRsync());
    m_ui->deleteOptionCheckBox->setToolTip(m_engine.usesRsync() ? QString() : tr("Needs rsync over ssh"));
    const bool isOver = state == State::Empty || state == State::Done;
    m_ui->cancelButton->setText(isOver ? QStringLiteral("Close") : QStringLiteral("Cancel"));
    updateProgress();
    updatePlaceholder();
    updateSelection();
}

void SyncPanel::updateProgress()
{
    const bool isBusy = m_engine.state() == State::Comparing || m_engine.state() == State::Transferring;
    m_ui->syncProgressIndicator->setRange(0, 0);
    m_ui->syncProgressIndicator->setVisible(isBusy);
}

void SyncPanel::updatePlaceholder()
{
    QWidget* page = m_ui->syncPlaceholder;
    switch (m_engine.state()) {
    case State::Comparing:
        m_ui->syncPlaceholder->setText(tr("Comparing both sides"));
        break;
    case State::Empty:
        m_ui->syncPlaceholder->setText(tr("Every file is there, and none is newer.\n"
                                          "To look the other way, choose the other direction above."));
        break;
    case State::Done:
        m_ui->syncPlaceholder->setText(tr("All files have been moved."));
        break;
    default:
        page = m_ui->syncTableView;
    }
    m_ui->syncStack->setCurrentWidget(page);
}

void SyncPanel::updateSelection()
{
    const std::size_t all = m_engine.table().rows().size();
    const std::size_t ticked = m_engine.table().selectedCount();
    const Qt::CheckState some = ticked == 0 ? Qt::Unchecked : Qt::PartiallyChecked;
    m_ui->allOnOffCheckBox->setCheckState(ticked == all && all > 0 ? Qt::Checked : some);
    m_ui->allOnOffCheckBox->setEnabled(all > 0 && m_engine.state() == State::Ready);
    const QLocale locale;
    m_ui->syncCount->setText(
        all == 0 ? QString() : tr("%1 of %2 selected").arg(locale.toString(ticked), locale.toString(all)));
}

bool SyncPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space) {
        toggleSelectedRows();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

// The space bar gives all selected rows the state that the current one does not have.
void SyncPanel::toggleSelectedRows()
{
    const QModelIndex current = m_ui->syncTableView->currentIndex();
    if (!current.isValid())
        return;
    const bool isTicked = current.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    for (const QModelIndex& index : m_ui->syncTableView->selectionModel()->selectedRows())
        m_engine.table().setData(index, isTicked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
}

} // namespace luma
