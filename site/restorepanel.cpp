// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/restorepanel.h"

#include "site/synctableview.h"
#include "ui_RestorePanel.h"

#include <QDateTime>
#include <QLocale>
#include <QMessageBox>
#include <QTableView>

#include <utility>

namespace luma {

RestorePanel::RestorePanel(const SiteRecord& record, ProgramRunner runProgram,
                           std::function<SyncSides()> sides, QWidget* parent)
    : QDialog(parent),
      m_engine(record, std::move(runProgram), std::move(sides)),
      m_ui(std::make_unique<Ui::RestorePanel>())
{
    m_ui->setupUi(this);
    setWindowModality(Qt::WindowModal);
    setUpTable();
    connectControls();
    updateControls();
}

RestorePanel::~RestorePanel() = default;

void RestorePanel::setUpTable()
{
    m_ui->restoreTickList->setUp(m_engine.table(), {.table = "restoreTableView",
                                                    .all = "restoreAllCheckBox",
                                                    .count = "restoreCount",
                                                    .placeholder = "restorePlaceholder"});
    setUpSyncTable(m_ui->restoreTickList->table(), m_engine.table());
}

void RestorePanel::connectControls()
{
    connect(m_ui->restorePublish, &QComboBox::activated, this,
            [this](int index) { m_engine.choose(static_cast<std::size_t>(index)); });
    connect(m_ui->restoreButton, &QPushButton::clicked, this, &RestorePanel::putBack);
    connect(m_ui->restoreCloseButton, &QPushButton::clicked, this, &RestorePanel::closeSheet);
    connect(&m_engine, &RestoreEngine::listed, this, &RestorePanel::showPublishes);
    connect(&m_engine, &RestoreEngine::changed, this, &RestorePanel::updateControls);
    connect(&m_engine.table(), &TickListModel::ticksChanged, this, &RestorePanel::updateControls);
}

void RestorePanel::restore()
{
    m_engine.list();
    open();
    m_ui->restoreTickList->table().setFocus();
}

void RestorePanel::showPublishes()
{
    const QLocale locale;
    m_ui->restorePublish->clear();
    for (const KeptFiles& kept : m_engine.publishes()) {
        const QString date = locale.toString(QDateTime::fromSecsSinceEpoch(kept.time), QLocale::ShortFormat);
        m_ui->restorePublish->addItem(
            kept.files.size() == 1
                ? tr("%1: one file").arg(date)
                : tr("%1: %2 files").arg(date, locale.toString(static_cast<qulonglong>(kept.files.size()))));
    }
}

void RestorePanel::putBack()
{
    const std::size_t conflicts = m_engine.tickedConflicts();
    if (conflicts == 0) {
        m_engine.restore();
        return;
    }
    const QString question =
        conflicts == 1
            ? tr("One of the files has been changed there since the last publish. Replace it all the same?")
            : tr("%1 of the files have been changed there since the last publish. Replace them all the same?")
                  .arg(conflicts);
    auto* const box =
        new QMessageBox(QMessageBox::Warning, windowTitle(), question, QMessageBox::Cancel, this);
    box->setObjectName(QStringLiteral("restoreQuestion"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    connect(box->addButton(tr("Replace"), QMessageBox::AcceptRole), &QAbstractButton::clicked, &m_engine,
            &RestoreEngine::restore);
    box->setDefaultButton(QMessageBox::Cancel);
    box->open();
}

void RestorePanel::closeSheet()
{
    if (m_engine.state() == RestoreEngine::State::Restoring) {
        m_engine.stop();
        return;
    }
    m_engine.cancel();
    hide();
}

void RestorePanel::reject()
{
    closeSheet();
}

QString RestorePanel::placeholder() const
{
    using State = RestoreEngine::State;
    switch (m_engine.state()) {
    case State::Listing:
        return tr("Looking for old versions");
    case State::Comparing:
        return tr("Comparing with what is there now");
    case State::Empty:
        return tr(
            "No old versions are kept.\n"
            "To keep what a publish replaces or deletes, set \"Keep old versions\" in the site's form.");
    case State::Complete:
        return tr("All files of this publish are back in their places.");
    case State::Failed:
        return tr("The old versions can't be listed.");
    default:
        return {};
    }
}

void RestorePanel::updateControls()
{
    using State = RestoreEngine::State;
    const State state = m_engine.state();
    const bool isRestoring = state == State::Restoring;
    m_ui->restoreMessage->setText(m_engine.message());
    m_ui->restoreMessage->setVisible(!m_engine.message().isEmpty());
    m_ui->restoreTickList->setPlaceholder(placeholder());
    m_ui->restoreTickList->setTickingEnabled(!isRestoring);
    m_ui->restorePublish->setEnabled(!isRestoring && m_ui->restorePublish->count() > 0);
    m_ui->restoreButton->setEnabled(state == State::Ready && m_engine.table().tickedCount() > 0);
    m_ui->restoreCloseButton->setText(isRestoring ? tr("Stop") : tr("Close"));
    const bool isBusy = isRestoring || state == State::Listing || state == State::Comparing;
    m_ui->restoreProgress->setVisible(isBusy);
}

} // namespace luma
