// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/sitelist.h"
#include "app/sitelisttree.h"

#include <QSet>
#include <QSortFilterProxyModel>
#include <QTreeView>

class QMenu;

namespace luma {

/// The sites and their folders on the screen, with search, drag and drop, and a choice that outlives changes of
/// the list. Main thread only.
class SiteListView final : public QTreeView
{
    Q_OBJECT

public:
    explicit SiteListView(QWidget* parent = nullptr);

    /// Called once; `sites` outlives the view.
    void setSites(SiteList& sites);

    /// The selected row of the whole list; -1 for a folder or none.
    [[nodiscard]] int selectedRow() const;
    /// The selected folder; empty for a site or none.
    [[nodiscard]] QString selectedFolder() const;
    /// Selects a row, which no search may hide, and scrolls to it.
    void select(int row);
    [[nodiscard]] bool finds(int row) const;
    [[nodiscard]] bool isEmpty() const { return m_found.rowCount() == 0; }

    /// Shows the sites whose name, servers or paths contain `text`, and those of folders whose name does.
    void search(const QString& text);

    [[nodiscard]] bool isSortedByName() const { return m_tree->isSortedByName(); }
    void setSortedByName(bool sorted);
    [[nodiscard]] bool canStep(int step) const;
    /// Moves the selected site or folder up (-1) or down (1).
    void stepSelected(int step);
    /// Puts the selected site into a new folder and starts to name that.
    void addFolder();
    void renameFolder();
    /// The sites of the selected folder stay.
    void removeFolder();
    /// Lists the folders that the selected site can be moved to.
    void fillFolderMenu(QMenu& menu);

    /// The folders that are closed.
    [[nodiscard]] QStringList closedFolders() const { return {m_closed.begin(), m_closed.end()}; }
    void setClosedFolders(const QStringList& names);

signals:
    /// Another site or folder is selected, or none, or the list has changed.
    void selectionMoved();

private:
    [[nodiscard]] QModelIndex selected() const { return m_found.mapToSource(currentIndex()); }
    void selectFolder(const QString& name);
    void showAgain();
    void noteSelected();
    void expandFolders();
    void noteExpansion(const QModelIndex& index, bool isOpen);
    void updateDragging();

    SiteList* m_sites = nullptr;
    SiteListTree* m_tree = nullptr;
    QSortFilterProxyModel m_found;
    QSet<QString> m_closed;
    std::weak_ptr<SiteRecord> m_selectedRecord;
    QString m_selectedFolder;
};

} // namespace luma
