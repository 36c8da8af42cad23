// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractItemModel>

#include <vector>

namespace luma {

class SiteList;

/// The list of sites as a tree for the screen: sites, and folders of sites, which can be dragged. A folder stands where
/// the first of its sites is in the list, and exists as long as it has one. Main thread only.
class SiteListTree final : public QAbstractItemModel
{
    Q_OBJECT

public:
    /// `sites` outlives the tree.
    explicit SiteListTree(SiteList& sites, QObject* parent = nullptr);

    [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex& child) const override;
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    /// A folder has its name and its icon; a site what the list says.
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    /// Renames a folder soon; the name of another one joins the two. An empty name is refused.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

    [[nodiscard]] Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }
    [[nodiscard]] QStringList mimeTypes() const override;
    [[nodiscard]] QMimeData* mimeData(const QModelIndexList& indexes) const override;
    [[nodiscard]] bool canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                                       const QModelIndex& parent) const override;
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override;

    /// The row in the list of sites; -1 for a folder or no index.
    [[nodiscard]] int siteRow(const QModelIndex& index) const;
    /// The name of a folder; empty for a site or no index.
    [[nodiscard]] QString folderAt(const QModelIndex& index) const;
    [[nodiscard]] QModelIndex indexOfSite(int siteRow) const;
    [[nodiscard]] QModelIndex indexOfFolder(const QString& name) const;

    /// By name, folders first, instead of the order of the list, which stays.
    void setSortedByName(bool sorted);
    [[nodiscard]] bool isSortedByName() const { return m_isSortedByName; }

    /// Whether step() does anything.
    [[nodiscard]] bool canStep(const QModelIndex& index, int step) const;
    /// Moves a site, or a folder, up (-1) or down (1) among its neighbours.
    void step(const QModelIndex& index, int step);
    /// Moves a site to the end of a folder, or out of its own if the name is empty.
    void moveToFolder(const QModelIndex& index, const QString& name);
    /// Puts a site into a new folder, whose name it returns.
    QString addFolder(const QModelIndex& site);
    /// The folder's sites stay in its place.
    void removeFolder(const QString& name);

signals:
    void folderRenamed(const QString& name);

private:
    // A site, or a folder with its sites.
    struct Entry
    {
        QString folder;
        std::vector<int> rows;
        [[nodiscard]] bool isFolder() const { return !folder.isEmpty(); }
    };

    void rebuild();
    void sortEntries();
    void takeChange(int siteRow);
    [[nodiscard]] const Entry* entryAt(const QModelIndex& index) const;
    [[nodiscard]] int rowBefore(const QModelIndex& parent, int position) const;
    void move(const std::vector<int>& rows, const QModelIndex& parent, int position, const QString& folder);

    SiteList& m_sites;
    std::vector<Entry> m_entries;
    bool m_isSortedByName = false;
};

} // namespace luma
