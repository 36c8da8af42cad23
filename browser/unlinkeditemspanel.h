// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"
#include "browser/ticktable.h"

#include <QDialog>
#include <QTimer>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace Ui {
class UnlinkedItemsPanel;
}

namespace luma {

/// The sheet that lists the files of a site to which nothing links, and deletes the ticked ones for good
/// after asking once. Scan and deletion run in the background on copies of what they need. The panel may be
/// closed or destroyed at any time: that ends a scan at once and a deletion after the current file. Main
/// thread only.
class UnlinkedItemsPanel final : public QDialog
{
    Q_OBJECT

public:
    /// A sheet of the window that holds `parent`.
    explicit UnlinkedItemsPanel(QWidget* parent);
    ~UnlinkedItemsPanel() override;

    /// Empties the table and scans `site`; a running scan is dropped, and during a deletion nothing happens.
    /// `excludedFolders` are names separated by commas. Opens the sheet unless the window already shows one.
    void startFindUnlinkedItems(const std::filesystem::path& site, const QString& excludedFolders);
    void stopFindUnlinkedItems();
    /// Asks, then deletes the ticked files.
    void deleteUnlinkedItems();
    /// Closes the sheet and stops what runs.
    void reject() override;

signals:
    /// The user asked for another scan.
    void restartRequested();
    /// Files were deleted from the disk.
    void itemsDeleted();
    /// The user double-clicked this file's row.
    void fileActivated(const std::filesystem::path& file);

private:
    enum class State { Idle, Scanning, Deleting };
    struct Findings;
    /// A file, named by the bytes of its path below the site's folder.
    struct Item
    {
        bool select = true;
        std::string displayName;
    };

    std::unique_ptr<Ui::UnlinkedItemsPanel> m_ui;
    TickTable<Item>* unlinkedItemsArrayController;
    WorkItemPointer workItem;
    std::shared_ptr<Findings> m_findings;
    std::filesystem::path m_site;
    State m_state = State::Idle;
    QString m_note; // why there are no rows, when the scan did not end normally
    QTimer m_showTimer;

    void setUpTable();
    void connectControls();
    void showFindings();
    void endScan(const QString& note);
    void deleteFiles(const std::vector<Item>& items);
    void endDeletion(const std::vector<std::size_t>& deleted);
    void setState(State state);
    void updateControls();
    [[nodiscard]] bool windowShowsASheet() const;
};

} // namespace luma
