// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/filejobs.h"
#include "browser/folderwatcher.h"
#include "browser/linkreportrun.h"

#include <QObject>

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

class QWidget;

namespace luma {

class LinkJobs;
class LinkReportPanel;
class MoveJobs;
class OutsideMoves;
class PaneHost;
class SiteFindPanel;
class SiteNamesPanel;
class SiteLinks;
class UnlinkedItemsPanel;
struct Drop;

/// The links of the site that a pane shows: what is kept of them while the pane is connected, the moves that keep them
/// right, the reports, and what other programs have moved. Without a site, nothing is done. Main thread only.
class PaneLinks final : public QObject
{
    Q_OBJECT

public:
    /// The reports name `caption` as their side. `watcher` tells what has changed in the site. `pane` is the parent of the
    /// reports' windows. All three outlive this.
    PaneLinks(const QString& caption, FolderWatcher& watcher, PaneHost& host, QWidget* pane);
    ~PaneLinks() override;

    /// The pane shows `site`, which `watcher` watches by now. A move that was interrupted there is finished or taken back.
    /// Moves by other programs are looked for in a local site only: on a server, other computers move files unseen.
    void begin(const std::filesystem::path& site, bool isLocal);
    /// The pane shows no site. Reports end, with what they have found; jobs go on.
    void end();
    /// Items in these folders have changed, or anywhere without them.
    void siteChanged(const FolderWatcher::Folders& folders);

    /// To be called before an item is renamed on disk, then one of the others. Error: it must not be renamed.
    Result<void> prepareRename(const std::filesystem::path& oldPath, const std::filesystem::path& newPath);
    void dropRename();
    void updateAfterRename(const std::filesystem::path& oldPath, const std::filesystem::path& newPath);
    /// Renames an item in the background and updates the links to it.
    void rename(const std::filesystem::path& oldPath, const std::filesystem::path& newPath);
    /// Moves or copies the items and updates the links.
    void acceptDrop(const Drop& drop);
    /// Takes the last move, rename or copy in the site back, files and links.
    void undoMove();
    /// Looks in the background whether undoMove() has something to take back, and says so by olderMoveLooked().
    void lookForOlderMove();
    /// Counts the links to `items` that would be missing without them; empty where links are read by the letter.
    [[nodiscard]] FileJobs::LinkCounter linkCounter(const std::vector<std::filesystem::path>& items) const;

    /// As a table, or by the letter as a log. `item` counts for the reports about one.
    void showReport(LinkReportRun::Kind kind, const std::filesystem::path& item = {});
    void stopReport();
    void showUnlinkedItems();
    void stopUnlinkedItems();
    /// Opens the window that finds text in the site, with `text` to look for unless it is empty.
    void findText(const QString& text);
    /// Opens the window with the site's classes and ids.
    void showNames();

    /// What other programs have moved, where links still lead to the old places.
    [[nodiscard]] const std::vector<MovedItem>& outsideMoves() const;
    /// Shows the plan that updates these links, or leaves them.
    void followOutsideMoves();
    void ignoreOutsideMoves();

signals:
    /// The user wants to see this file in the pane.
    void fileActivated(const std::filesystem::path& file);
    /// The user wants to see this place of a page, counted from 1, or the page where there is none (0).
    void pageActivated(const std::filesystem::path& page, unsigned line, unsigned column);
    /// Files were deleted from the disk or put back.
    void itemsChanged();
    /// The user has moved items, and `undo`, called once, begins to take that back. `title` says what it was: "Rename".
    void undoable(const QString& title, const std::function<void()>& undo);
    void outsideMovesChanged();
    void olderMoveLooked(bool isThere);

private:
    PaneHost& m_host;
    QWidget* m_pane;
    FolderWatcher& m_watcher;
    LinkJobs* m_linkJobs;
    MoveJobs* m_moveJobs;
    LinkReportPanel* m_reportPanel;
    UnlinkedItemsPanel* unlinkedItemsPanel;
    SiteFindPanel* m_findPanel = nullptr; // made when they are first needed
    SiteNamesPanel* m_namesPanel = nullptr;
    OutsideMoves* m_outsideMoves;
    std::filesystem::path m_site;           // empty without one
    std::shared_ptr<SiteLinks> m_siteLinks; // of m_site

    void connectMoves();
    void connectReports();
    SiteFindPanel& findPanel();
    SiteNamesPanel& namesPanel();
    void keepLinks();
    void askWatcher(const std::shared_ptr<SiteLinks>& links, const std::function<void(bool isAll)>& told);
};

} // namespace luma
