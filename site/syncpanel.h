// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "site/foldednames.h"
#include "site/syncengine.h"

#include <QDialog>
#include <QElapsedTimer>

#include <cstddef>
#include <memory>

namespace Ui {
class SyncPanel;
}
class QMenu;

namespace luma {

/// The sheet that lists the changed files of one direction, sorted and filtered as the user likes, and moves
/// the ticked ones. It shows the state of the engine, which holds the rules and outlives the panel. Main thread
/// only.
class SyncPanel final : public QDialog
{
    Q_OBJECT

public:
    SyncPanel(SyncEngine& engine, QWidget* parent);
    ~SyncPanel() override;

    /// Shows the panel as a sheet and compares in `direction`: all, or only the items with these paths below both
    /// folders.
    void sync(Direction direction, const std::vector<std::string>& only = {});

signals:
    /// The user wants to see a file of the sending or the receiving side in its pane. The sheet is closed.
    void showRequested(const std::string& path, bool isSent);
    /// The user wants to see both sides' text of a file side by side.
    void comparisonRequested(const std::string& path);

public slots:
    /// Compares again in the chosen direction.
    void reloadSyncArray();
    /// Transfers the ticked rows, after a question where something speaks against it.
    void move();
    /// Stops a transfer; else closes the sheet. Unless all work is over, drops the job and remembers the
    /// unticked names.
    void closeSheet();
    /// Escape and the close button of the window.
    void reject() override;

private:
    std::unique_ptr<Ui::SyncPanel> m_ui;
    SyncEngine& m_engine;
    QElapsedTimer m_transferTime;
    std::vector<std::string> m_only;
    FoldedNames m_names;            // of the table's rows
    std::size_t m_namesVersion = 0; // of the table
    std::vector<bool> m_holdsText;  // the rows' names
    QString m_heldText;             // that they hold
    bool m_isOpening = false;       // the table gets the focus as soon as it has rows

    [[nodiscard]] bool isOver() const;
    [[nodiscard]] QString cancelTitle() const;
    void setUpTable();
    void connectControls();
    void showMenu(const QPoint& place);
    void addFileActions(QMenu& menu, const SyncRow& row);
    void publishOnlySelected();
    void neverPublish(const std::string& path);
    void showProgress(const SyncProgress& done, const SyncTotals& all);
    void updateFilter();
    void foldSomeNames();
    void foldNames(std::size_t most);
    [[nodiscard]] bool holdsText(const SyncRow& row, const QString& text);
    void updateNote();
    void updateControls();
    void updateProgress();
    void updatePlaceholder();
    void focusTable();
};

} // namespace luma
