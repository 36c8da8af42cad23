// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "site/restoreengine.h"

#include <QDialog>

#include <memory>

namespace Ui {
class RestorePanel;
}

namespace luma {

/// The sheet that lists what publishes have replaced or deleted on a site's destination, and puts the ticked
/// files back. Main thread only.
class RestorePanel final : public QDialog
{
    Q_OBJECT

public:
    /// `record` outlives the panel; the others are those of the site's SyncEngine.
    RestorePanel(const SiteRecord& record, ProgramRunner runProgram, std::function<SyncSides()> sides,
                 QWidget* parent);
    ~RestorePanel() override;

    [[nodiscard]] RestoreEngine& engine() { return m_engine; }
    /// Shows the panel as a sheet and lists the publishes.
    void restore();

public slots:
    /// Puts the ticked rows back, after a question where that would undo changes.
    void putBack();
    /// Stops what is being put back; else closes the sheet.
    void closeSheet();
    /// Escape and the close button of the window.
    void reject() override;

private:
    RestoreEngine m_engine;
    std::unique_ptr<Ui::RestorePanel> m_ui;

    void setUpTable();
    void connectControls();
    void showPublishes();
    void updateControls();
    [[nodiscard]] QString placeholder() const;
};

} // namespace luma
