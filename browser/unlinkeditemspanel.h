// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"
#include "browser/deletionalert.h"
#include "browser/panehost.h"
#include "browser/ticktable.h"

#include <QDialog>
#include <QTimer>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Ui {
class UnlinkedItemsPanel;
}

namespace luma {

class SiteLinks;

/// The sheet that lists the files of a site to which nothing links, and moves the ticked ones to the trash after
/// asking; they can be put back. Files that the user wants to keep are left out from then on. Scan and deletion run in
/// the background on copies of what they need. The panel may be closed or destroyed at any time: that ends a scan at
/// once and a deletion after the current file. Main thread only.
class UnlinkedItemsPanel final : public QDialog
{
    Q_OBJECT

public:
    /// A sheet of the window that holds `parent`.
    explicit UnlinkedItemsPanel(QWidget* parent);
    ~UnlinkedItemsPanel() override;

    /// Empties the table and scans `site`; a running scan is dropped, and during a deletion nothing happens.
    /// Opens the sheet unless the window already shows one. With what is kept of the site's links, fewer files are read.
    void startFindUnlinkedItems(const std::filesystem::path& site, const ReportChoices& choices,
                                std::shared_ptr<SiteLinks> links = {});
    /// Something in the site has changed: scans again and shows what is new or gone, once another scan or a deletion has ended.
    void siteChanged();
    void stopFindUnlinkedItems();
    /// Asks, then moves the ticked files to the trash. Asks again about those that can't be moved there.
    void deleteUnlinkedItems();
    /// Moves what was deleted since the panel was opened back to its place.
    void putBackItems();
    /// Leaves the selected rows out from now on, or no longer.
    void keepSelectedItems();
    /// Closes the sheet and stops what runs.
    void reject() override;

signals:
    /// The user asked for another scan.
    void restartRequested();
    /// Files were deleted from the disk or put back.
    void itemsDeleted();
    /// The user has changed ReportChoices::keptItems.
    void keptItemsChanged(const std::vector<std::string>& items);
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
        std::uintmax_t size = 0; // in bytes
        bool isKept = false;

        bool operator==(const Item&) const = default;
    };

    std::unique_ptr<Ui::UnlinkedItemsPanel> m_ui;
    TickTable<Item>* unlinkedItemsArrayController;
    WorkItemPointer workItem;
    std::shared_ptr<Findings> m_findings;
    std::filesystem::path m_site;
    std::shared_ptr<SiteLinks> m_links;
    State m_state = State::Idle;
    ReportChoices m_choices;
    std::vector<Item> m_kept; // found, but to be kept
    std::vector<TrashedItem> m_trashed;
    QString m_note; // why there are no rows, when the scan did not end normally
    QTimer m_showTimer;
    QTimer m_refreshTimer;
    bool m_isRefreshing = false; // unseen, while the state is Idle
    bool m_isComplete = false;   // the rows are those of a scan that was not stopped

    void setUpTable();
    void connectControls();
    void scan();
    void refresh();
    void stopRefreshing();
    void showFindings();
    void showRefreshed();
    [[nodiscard]] std::vector<Item> takeFindings();
    void endScan(const QString& note);
    void setUpMenu();
    void showKept(bool isShown);
    [[nodiscard]] bool isKept(const std::string& subpath) const;
    [[nodiscard]] std::vector<Item> tickedItems() const;
    void moveToTrash(const std::vector<Item>& items);
    void removeForGood(const std::vector<std::filesystem::path>& files);
    void runDeletion(std::function<TrashOutcome(const std::function<bool()>& isWanted)> work);
    void endDeletion(const TrashOutcome& outcome);
    void setState(State state);
    void updateControls();
    [[nodiscard]] bool windowShowsASheet() const;
};

} // namespace luma
