// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "site/syncengine.h"

#include <QDialog>

#include <memory>

class QCheckBox;
class QComboBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QTableView;

namespace Ui {
class SyncPanel;
}

namespace luma {

/// The sheet that lists the changed files of one direction and moves the ticked ones. It asks the engine and
/// shows its state; the rules are the engine's. Main thread only; the engine outlives it.
class SyncPanel final : public QDialog
{
    Q_OBJECT

public:
    SyncPanel(SyncEngine& engine, QWidget* parent);
    ~SyncPanel() override;

    /// Shows the panel as a sheet and compares in the direction whose title is `senderTitle`; an unknown
    /// title leaves the direction as it is.
    void sync(const QString& senderTitle);

public slots:
    void uploadDownloadPopupButtonAction();
    /// Compares again in the chosen direction.
    void reloadSyncArray();
    /// Transfers the ticked rows.
    void move();
    /// Ticks or unticks every row, as its check box says.
    void AllOffOrOn();
    /// Ends the sheet; with the title "Cancel" the job is dropped and the unticked names are remembered.
    void closeSheet(const QString& senderTitle);
    /// Escape and the window's own close button cancel, as the button does.
    void reject() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::unique_ptr<Ui::SyncPanel> m_ui;
    SyncEngine& m_engine;

    void setUpTable();
    void connectControls();
    void updateControls();
    void updateProgress();
    void updatePlaceholder();
    void updateSelection();
    void toggleSelectedRows();
};

} // namespace luma
