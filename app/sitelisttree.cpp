// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/sitelisttree.h"

#include "app/sitelist.h"
#include "desktop/icons.h"

#include <QCollator>
#include <QDataStream>
#include <QIODevice>
#include <QLocale>
#include <QMimeData>

#include <algorithm>

namespace luma {

namespace {

const QString dragType = QStringLiteral("application/x-luma-sites");

// What is dragged: the sites, and the folder if it is one.
struct Dragged
{
    QString folder;
    std::vector<int> rows;
};

Dragged draggedIn(const QMimeData& data, int rowCount)
{
    Dragged dragged;
    QList<int> rows;
    QDataStream stream(data.data(dragType));
    stream >> dragged.folder >> rows;
    for (const int row : rows) {
        if (row >= 0 && row < rowCount)
            dragged.rows.push_back(row);
    }
    return dragged;
}

QCollator nameOrder()
{
    // In the C locale a collator knows no numbers.
    const QLocale locale;
    QCollator order(locale.language() == QLocale::C ? QLocale(QLocale::English) : locale);
    order.setCaseSensitivity(Qt::CaseInsensitive);
    order.setNumericMode(true);
    return order;
}

} // namespace

SiteListTree::SiteListTree(SiteList& sites, QObject* parent) : QAbstractItemModel(parent), m_sites(sites)
{
    connect(&sites, &QAbstractItemModel::modelReset, this, &SiteListTree::rebuild);
    connect(&sites, &QAbstractItemModel::rowsInserted, this, &SiteListTree::rebuild);
    connect(&sites, &QAbstractItemModel::rowsRemoved, this, &SiteListTree::rebuild);
    connect(&sites, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex& changed) { takeChange(changed.row()); });
    rebuild();
}

void SiteListTree::rebuild()
{
    beginResetModel();
    m_entries.clear();
    for (int row = 0; row < m_sites.rowCount(); ++row) {
        const QString folder = m_sites.record(row)->folder();
        const auto known = std::find_if(m_entries.begin(), m_entries.end(), [&folder](const Entry& entry) {
            return entry.isFolder() && entry.folder == folder;
        });
        if (known == m_entries.end())
            m_entries.push_back({.folder = folder, .rows = {row}});
        else
            known->rows.push_back(row);
    }
    if (m_isSortedByName)
        sortEntries();
    endResetModel();
}

void SiteListTree::sortEntries()
{
    const QCollator order = nameOrder();
    const auto nameOf = [this](int row) { return m_sites.record(row)->siteID(); };
    for (Entry& entry : m_entries)
        std::stable_sort(entry.rows.begin(), entry.rows.end(),
                         [&](int one, int other) { return order.compare(nameOf(one), nameOf(other)) < 0; });
    const auto titleOf = [&nameOf](const Entry& entry) {
        return entry.isFolder() ? entry.folder : nameOf(entry.rows.front());
    };
    std::stable_sort(m_entries.begin(), m_entries.end(), [&](const Entry& one, const Entry& other) {
        if (one.isFolder() != other.isFolder())
            return one.isFolder();
        return order.compare(titleOf(one), titleOf(other)) < 0;
    });
}

void SiteListTree::takeChange(int siteRow)
{
    const QModelIndex changed = indexOfSite(siteRow);
    if (m_sites.record(siteRow)->folder() == folderAt(changed.parent()))
        emit dataChanged(changed, changed);
    else
        rebuild();
}

// The entry of a folder, or of a site outside of folders.
const SiteListTree::Entry* SiteListTree::entryAt(const QModelIndex& index) const
{
    return index.isValid() && index.internalId() == 0 ? &m_entries[static_cast<std::size_t>(index.row())]
                                                      : nullptr;
}

// The internal id is 0, or for a site in a folder the folder's row and 1.
QModelIndex SiteListTree::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : quintptr{0});
}

QModelIndex SiteListTree::parent(const QModelIndex& child) const
{
    if (!child.isValid() || child.internalId() == 0)
        return {};
    return createIndex(static_cast<int>(child.internalId() - 1), 0, quintptr{0});
}

int SiteListTree::rowCount(const QModelIndex& parent) const
{
    if (!parent.isValid())
        return static_cast<int>(m_entries.size());
    const Entry* const entry = entryAt(parent);
    return entry && entry->isFolder() && parent.column() == 0 ? static_cast<int>(entry->rows.size()) : 0;
}

int SiteListTree::columnCount(const QModelIndex& /*parent*/) const
{
    return 1;
}

QVariant SiteListTree::data(const QModelIndex& index, int role) const
{
    if (const int row = siteRow(index); row >= 0)
        return m_sites.index(row).data(role);
    if (role == Qt::DisplayRole || role == Qt::EditRole || role == SiteList::SearchRole)
        return folderAt(index);
    if (role == Qt::DecorationRole && index.isValid())
        return icons::folder();
    return {};
}

bool SiteListTree::setData(const QModelIndex& index, const QVariant& value, int role)
{
    const QString before = folderAt(index);
    const QString name = value.toString().trimmed();
    if (role != Qt::EditRole || before.isEmpty() || name.isEmpty())
        return false;
    if (name != before)
        // Later, when the view has closed the editor: the list is shown anew.
        QMetaObject::invokeMethod(
            this,
            [this, before, name] {
                m_sites.renameFolder(before, name);
                emit folderRenamed(name);
            },
            Qt::QueuedConnection);
    return true;
}

Qt::ItemFlags SiteListTree::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    const Qt::ItemFlags both = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsDragEnabled;
    return both | (siteRow(index) >= 0 ? Qt::ItemFlags(Qt::ItemNeverHasChildren)
                                       : Qt::ItemIsDropEnabled | Qt::ItemIsEditable);
}

QStringList SiteListTree::mimeTypes() const
{
    return {dragType};
}

QMimeData* SiteListTree::mimeData(const QModelIndexList& indexes) const
{
    if (indexes.isEmpty())
        return nullptr;
    const Entry* const entry = entryAt(indexes.first());
    const std::vector<int> rows = entry ? entry->rows : std::vector<int>{siteRow(indexes.first())};
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << folderAt(indexes.first()) << QList<int>(rows.begin(), rows.end());
    auto* const data = new QMimeData;
    data->setData(dragType, bytes);
    return data;
}

bool SiteListTree::canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                                   const QModelIndex& parent) const
{
    if (!QAbstractItemModel::canDropMimeData(data, action, row, column, parent))
        return false;
    return !parent.isValid() || draggedIn(*data, m_sites.rowCount()).folder.isEmpty();
}

bool SiteListTree::dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                                const QModelIndex& parent)
{
    if (!canDropMimeData(data, action, row, column, parent))
        return false;
    const Dragged dragged = draggedIn(*data, m_sites.rowCount());
    move(dragged.rows, parent, row, parent.isValid() ? folderAt(parent) : dragged.folder);
    return true;
}

int SiteListTree::siteRow(const QModelIndex& index) const
{
    if (!index.isValid())
        return -1;
    if (const Entry* const entry = entryAt(index))
        return entry->isFolder() ? -1 : entry->rows.front();
    return m_entries[index.internalId() - 1].rows[static_cast<std::size_t>(index.row())];
}

QString SiteListTree::folderAt(const QModelIndex& index) const
{
    const Entry* const entry = entryAt(index);
    return entry ? entry->folder : QString();
}

QModelIndex SiteListTree::indexOfSite(int siteRow) const
{
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        const std::vector<int>& rows = m_entries[i].rows;
        const auto found = std::find(rows.begin(), rows.end(), siteRow);
        if (found == rows.end())
            continue;
        const QModelIndex top = index(static_cast<int>(i), 0);
        return m_entries[i].isFolder() ? index(static_cast<int>(found - rows.begin()), 0, top) : top;
    }
    return {};
}

QModelIndex SiteListTree::indexOfFolder(const QString& name) const
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(), [&name](const Entry& entry) {
        return entry.isFolder() && entry.folder == name;
    });
    return found == m_entries.end() ? QModelIndex() : index(static_cast<int>(found - m_entries.begin()), 0);
}

void SiteListTree::setSortedByName(bool sorted)
{
    if (m_isSortedByName == sorted)
        return;
    m_isSortedByName = sorted;
    rebuild();
}

bool SiteListTree::canStep(const QModelIndex& index, int step) const
{
    const int target = index.row() + step;
    return index.isValid() && !m_isSortedByName && target >= 0 && target < rowCount(index.parent());
}

void SiteListTree::step(const QModelIndex& index, int step)
{
    if (!canStep(index, step))
        return;
    const Entry* const entry = entryAt(index);
    const std::vector<int> rows = entry ? entry->rows : std::vector<int>{siteRow(index)};
    const QString folder = entry ? entry->folder : folderAt(index.parent());
    move(rows, index.parent(), step < 0 ? index.row() - 1 : index.row() + 2, folder);
}

// The row of the list that is to follow what comes to this position; -1 means the end.
int SiteListTree::rowBefore(const QModelIndex& parent, int position) const
{
    if (m_isSortedByName)
        position = -1;
    if (const Entry* const folder = entryAt(parent)) {
        const bool isInside = position >= 0 && position < static_cast<int>(folder->rows.size());
        return isInside ? folder->rows[static_cast<std::size_t>(position)]
                        : *std::max_element(folder->rows.begin(), folder->rows.end()) + 1;
    }
    const bool isInside = position >= 0 && position < static_cast<int>(m_entries.size());
    return isInside ? m_entries[static_cast<std::size_t>(position)].rows.front() : m_sites.rowCount();
}

void SiteListTree::move(const std::vector<int>& rows, const QModelIndex& parent, int position,
                        const QString& folder)
{
    m_sites.move(rows, rowBefore(parent, position), folder);
}

void SiteListTree::moveToFolder(const QModelIndex& index, const QString& name)
{
    const int row = siteRow(index);
    if (row < 0 || folderAt(index.parent()) == name)
        return;
    // One that leaves its folder stands behind it.
    const QModelIndex neighbours = name.isEmpty() ? index.parent() : indexOfFolder(name);
    m_sites.move({row}, neighbours.isValid() ? rowBefore(neighbours, -1) : row, name);
}

QString SiteListTree::addFolder(const QModelIndex& site)
{
    const int row = siteRow(site);
    if (row < 0)
        return {};
    QString name = tr("New folder");
    for (int number = 2; indexOfFolder(name).isValid(); ++number)
        name = tr("New folder %1").arg(number);
    m_sites.move({row}, row, name);
    return name;
}

void SiteListTree::removeFolder(const QString& name)
{
    m_sites.renameFolder(name, {});
}

} // namespace luma
