// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/sitelistview.h"

#include "app/siteitemdelegate.h"

#include <QMenu>

namespace luma {

SiteListView::SiteListView(QWidget* parent) : QTreeView(parent)
{
    setHeaderHidden(true);
    setItemDelegate(new SiteItemDelegate(this));
    setEditTriggers(EditKeyPressed);
    setDragDropMode(InternalMove);
    setDefaultDropAction(Qt::MoveAction);
    setContextMenuPolicy(Qt::CustomContextMenu);
}

void SiteListView::setSites(SiteList& sites)
{
    m_sites = &sites;
    m_tree = new SiteListTree(sites, this);
    m_found.setSourceModel(m_tree);
    m_found.setFilterRole(SiteList::SearchRole);
    m_found.setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_found.setRecursiveFilteringEnabled(true);
    m_found.setAutoAcceptChildRows(true);
    // The record being edited stays visible even if it no longer matches the search.
    m_found.setDynamicSortFilter(false);
    setModel(&m_found);
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this, &SiteListView::noteSelected);
    connect(&m_found, &QAbstractItemModel::modelReset, this, &SiteListView::showAgain);
    connect(m_tree, &SiteListTree::folderRenamed, this, &SiteListView::selectFolder);
    connect(this, &QTreeView::expanded, this,
            [this](const QModelIndex& index) { noteExpansion(index, true); });
    connect(this, &QTreeView::collapsed, this,
            [this](const QModelIndex& index) { noteExpansion(index, false); });
    showAgain();
}

int SiteListView::selectedRow() const
{
    return m_tree->siteRow(selected());
}

QString SiteListView::selectedFolder() const
{
    return m_tree->folderAt(selected());
}

bool SiteListView::finds(int row) const
{
    return m_found.mapFromSource(m_tree->indexOfSite(row)).isValid();
}

void SiteListView::select(int row)
{
    const QModelIndex shown = m_found.mapFromSource(m_tree->indexOfSite(row));
    setCurrentIndex(shown);
    scrollTo(shown);
}

void SiteListView::selectFolder(const QString& name)
{
    setCurrentIndex(m_found.mapFromSource(m_tree->indexOfFolder(name)));
}

void SiteListView::noteSelected()
{
    m_selectedRecord = m_sites->record(selectedRow());
    m_selectedFolder = selectedFolder();
    emit selectionMoved();
}

// After each change of the list's order or length: the same folders are closed, and the same is selected.
void SiteListView::showAgain()
{
    expandFolders();
    const auto record = m_selectedRecord.lock();
    const QModelIndex wanted = m_selectedFolder.isEmpty()
                                   ? m_tree->indexOfSite(record ? m_sites->rowOf(record.get()) : -1)
                                   : m_tree->indexOfFolder(m_selectedFolder);
    const QModelIndex shown = m_found.mapFromSource(wanted);
    if (shown.isValid())
        setCurrentIndex(shown);
    else
        emit selectionMoved();
}

void SiteListView::expandFolders()
{
    bool hasFolders = false;
    const bool searches = !m_found.filterRegularExpression().pattern().isEmpty();
    for (int row = 0; row < m_found.rowCount(); ++row) {
        const QModelIndex index = m_found.index(row, 0);
        const QString folder = m_tree->folderAt(m_found.mapToSource(index));
        hasFolders = hasFolders || !folder.isEmpty();
        const QSignalBlocker blocker(this);
        setExpanded(index, searches || !m_closed.contains(folder));
    }
    setRootIsDecorated(hasFolders);
    updateDragging();
}

// Where a search shows less than there is, no place says what stands beside it.
void SiteListView::updateDragging()
{
    setDragEnabled(m_found.filterRegularExpression().pattern().isEmpty());
}

void SiteListView::noteExpansion(const QModelIndex& index, bool isOpen)
{
    const QString folder = m_tree->folderAt(m_found.mapToSource(index));
    if (isOpen)
        m_closed.remove(folder);
    else
        m_closed.insert(folder);
}

void SiteListView::setClosedFolders(const QStringList& names)
{
    m_closed = QSet<QString>(names.begin(), names.end());
    expandFolders();
}

void SiteListView::search(const QString& text)
{
    const int before = selectedRow();
    m_found.setFilterFixedString(text);
    expandFolders();
    // Keep the selection while the search finds it, otherwise select the first match.
    QModelIndex wanted = m_found.mapFromSource(m_tree->indexOfSite(before));
    if (!wanted.isValid())
        wanted = m_found.index(0, 0);
    if (m_found.hasChildren(wanted))
        wanted = m_found.index(0, 0, wanted);
    setCurrentIndex(wanted);
    scrollTo(wanted);
    emit selectionMoved();
}

void SiteListView::setSortedByName(bool sorted)
{
    m_tree->setSortedByName(sorted);
}

bool SiteListView::canStep(int step) const
{
    return dragEnabled() && m_tree->canStep(selected(), step);
}

void SiteListView::stepSelected(int step)
{
    if (canStep(step))
        m_tree->step(selected(), step);
}

void SiteListView::addFolder()
{
    const QString name = m_tree->addFolder(selected());
    if (name.isEmpty())
        return;
    selectFolder(name);
    renameFolder();
}

void SiteListView::renameFolder()
{
    if (!selectedFolder().isEmpty())
        edit(currentIndex());
}

void SiteListView::removeFolder()
{
    const QModelIndex first = m_found.mapToSource(m_found.index(0, 0, currentIndex()));
    const int next = m_tree->siteRow(first);
    const QString folder = selectedFolder();
    if (folder.isEmpty())
        return;
    m_selectedFolder.clear();
    m_selectedRecord = m_sites->record(next);
    m_tree->removeFolder(folder);
}

void SiteListView::fillFolderMenu(QMenu& menu)
{
    menu.clear();
    const SiteList::Record record = m_sites->record(selectedRow());
    if (!record)
        return;
    QStringList names = m_sites->folders();
    names.prepend(QString());
    for (const QString& name : names) {
        QAction* const entry = menu.addAction(name.isEmpty() ? tr("&None") : SiteList::menuText(name));
        entry->setCheckable(true);
        entry->setChecked(record->folder() == name);
        connect(entry, &QAction::triggered, this, [this, name] { m_tree->moveToFolder(selected(), name); });
    }
}

} // namespace luma
