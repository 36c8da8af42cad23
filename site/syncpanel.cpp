// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/syncpanel.h"

#include "ui_SyncPanel.h"

#include <QLocale>
#include <QTableView>

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
    m_ui->syncTickList->setUp(m_engine.table(), {.table = "syncTableView",
                                                 .all = "allOnOffCheckBox",
                                                 .count = "syncCount",
                                                 .placeholder = "syncPlaceholder"});
    connectControls();
    updateControls();
}

SyncPanel::~SyncPanel() = default;

void SyncPanel::connectControls()
{
    connect(m_ui->uploadDownloadPopupButton, &QComboBox::activated, this, &SyncPanel::reloadSyncArray);
    connect(m_ui->deleteOptionCheckBox, &QCheckBox::clicked, this, &SyncPanel::reloadSyncArray);
    connect(m_ui->syncButton, &QPushButton::clicked, this, &SyncPanel::move);
    connect(m_ui->cancelButton, &QPushButton::clicked, this, &SyncPanel::closeSheet);
    connect(&m_engine, &SyncEngine::changed, this, &SyncPanel::updateControls);
    connect(&m_engine, &SyncEngine::progressed, this, [this](int done, int total) {
        m_ui->syncProgressIndicator->setRange(0, total);
        m_ui->syncProgressIndicator->setValue(done);
    });
}

void SyncPanel::sync(Direction direction)
{
    m_ui->uploadDownloadPopupButton->setCurrentIndex(itemOf(direction));
    reloadSyncArray();
    open();
    m_ui->syncTickList->table().setFocus();
}

void SyncPanel::reloadSyncArray()
{
    // A running transfer keeps its direction.
    if (m_engine.state() == State::Transferring)
        return;
    const bool isUpload = m_ui->uploadDownloadPopupButton->currentIndex() == itemOf(Direction::Upload);
    m_engine.compare(isUpload ? Direction::Upload : Direction::Download,
                     m_ui->deleteOptionCheckBox->isChecked());
}

void SyncPanel::move()
{
    m_engine.transfer();
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

void SyncPanel::updateControls()
{
    const State state = m_engine.state();
    const bool isTransferring = state == State::Transferring;
    m_ui->syncPanelTitle->setText(m_engine.title());
    m_ui->syncMessage->setText(m_engine.message());
    m_ui->syncMessage->setVisible(!m_engine.message().isEmpty());
    m_ui->syncButton->setEnabled(state == State::Ready);
    m_ui->syncTickList->setTickingEnabled(!isTransferring && state != State::Failed);
    m_ui->syncTickList->setNote(m_engine.ignoredCount() == 0
                                    ? QString()
                                    : tr("%1 ignored").arg(QLocale().toString(m_engine.ignoredCount())));
    m_ui->uploadDownloadPopupButton->setEnabled(!isTransferring);
    m_ui->deleteOptionCheckBox->setEnabled(!isTransferring && m_engine.usesRsync());
    m_ui->deleteOptionCheckBox->setToolTip(m_engine.usesRsync() ? QString() : tr("Needs rsync over ssh"));
    m_ui->cancelButton->setText(cancelTitle());
    updateProgress();
    updatePlaceholder();
}

QString SyncPanel::cancelTitle() const
{
    if (isOver() || m_engine.isStopping())
        return QStringLiteral("Close");
    return m_engine.state() == State::Transferring ? tr("Stop") : QStringLiteral("Cancel");
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
        m_ui->syncTickList->setPlaceholder(tr("Every file is there, and none is newer.\n"
                                              "To look the other way, choose the other direction above."));
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
