// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"
#include "browser/unlinkeditemsmodel.h"

#include <QDialog>
#include <QTimer>

#include <filesystem>
#include <memory>

namespace Ui {
class UnlinkedItemsPanel;
}

namespace luma {

/// The sheet that lists the files of a site that nothing links to, and deletes the ticked ones for good,
/// after one question. Scan and deletion run in the background on values of their own; the panel may close or
/// go at any moment: a scan ends then, and a deletion after the file at which it is. Main thread only.
class UnlinkedItemsPanel final : public QDialog
{
    Q_OBJECT

public:
    /// A sheet of the window that `parent` is in.
    explicit UnlinkedItemsPanel(QWidget* parent);
    ~UnlinkedItemsPanel() override;

    /// Begins from an empty table; a running scan is dropped. `excludedFolders` are names with commas
    /// between. Opens as a sheet unless the window shows one already.
    void startFindUnlinkedItems(const std::filesystem::path& site, const QString& excludedFolders);
    void stopFindUnlinkedItems();
    /// Ticks or unticks every row, as its check box says.
    void AllOffOrOn();
    /// Asks, then deletes the ticked files.
    void deleteUnlinkedItems();
    /// Closing stops what runs.
    void reject() override;

signals:
    /// The user wants another scan.
    void restartRequested();
    /// Files have gone from the disk.
    void itemsDeleted();
    /// The user double-clicked this file's row.
    void fileActivated(const std::filesystem::path& file);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    enum class State { Idle, Scanning, Deleting };
    struct Findings;
    using Names = std::vector<std::string>;

    std::unique_ptr<Ui::UnlinkedItemsPanel> m_ui;
    UnlinkedItemsModel* unlinkedItemsArrayController;
    WorkItemPointer workItem;
    std::shared_ptr<Findings> m_findings;
    std::filesystem::path m_site;
    State m_state = State::Idle;
    QString m_note; // in place of rows: why there are none
    QTimer m_showTimer;

    void setUpTable();
    void connectControls();
    void showFindings();
    void endScan(const QString& note);
    void deleteFiles(const Names& names);
    void endDeletion(const Names& deleted);
    void setState(State state);
    void updateControls();
    void updateSelection();
    void toggleSelectedRows();
    [[nodiscard]] bool windowShowsASheet() const;
};

} // namespace luma
