// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/foundplaces.h"

#include "browser/countedtext.h"
#include "browser/displaytext.h"

#include <algorithm>
#include <numeric>

namespace luma {

namespace {

// An index of a place holds the number of its group, counted from 1; that of a file 0.
constexpr quintptr ofFile = 0;

constexpr qsizetype mostBefore = 40; // characters, so that what was found is in sight

QString shownBefore(const FoundText& place)
{
    return place.before.size() <= mostBefore ? place.before : u'…' + place.before.last(mostBefore);
}

QString shownMatch(const FoundText& place)
{
    QString text = place.captured.front();
    for (QChar& c : text) {
        if (c == u'\n' || c == u'\r')
            c = QChar(0x21b5);
        else if (c < u' ')
            c = u' ';
    }
    return text;
}

} // namespace

void FoundPlaces::clear()
{
    beginResetModel();
    m_files.clear();
    m_ticks.clear();
    m_groups.clear();
    endResetModel();
    emit ticksChanged();
}

void FoundPlaces::append(std::vector<SearchedFile> files)
{
    if (files.empty())
        return;
    const auto first = static_cast<std::uint32_t>(m_files.size());
    for (SearchedFile& file : files) {
        m_ticks.emplace_back(file.found.size(), true);
        m_files.push_back(std::move(file));
    }
    std::vector<Group> added;
    for (std::uint32_t file = first; file < m_files.size(); ++file) {
        if (Group group = groupOf(file); !group.places.empty() || !m_files[file].problem.empty())
            added.push_back(std::move(group));
    }
    if (added.empty())
        return;
    const auto row = static_cast<int>(m_groups.size());
    beginInsertRows({}, row, row + static_cast<int>(added.size()) - 1);
    std::move(added.begin(), added.end(), std::back_inserter(m_groups));
    endInsertRows();
    emit ticksChanged();
}

// The places of a file that are shown; all of them where the filter is in its path.
FoundPlaces::Group FoundPlaces::groupOf(std::uint32_t file) const
{
    Group group{file, {}};
    const SearchedFile& searched = m_files[file];
    const bool isWhole =
        m_filter.isEmpty() || displayText(searched.path).contains(m_filter, Qt::CaseInsensitive);
    for (std::uint32_t place = 0; place < searched.found.size(); ++place) {
        const FoundText& found = searched.found[place];
        if (isWhole ||
            (found.before + found.captured.front() + found.after).contains(m_filter, Qt::CaseInsensitive))
            group.places.push_back(place);
    }
    sortPlaces(group);
    return group;
}

bool FoundPlaces::isBefore(const SearchedFile& file, std::uint32_t a, std::uint32_t b) const
{
    if (m_sortColumn == Place)
        return a < b;
    const FoundText& first = file.found[a];
    const FoundText& second = file.found[b];
    if (m_sortColumn == NewText)
        return newText(first).localeAwareCompare(newText(second)) < 0;
    return (first.captured.front() + first.after).localeAwareCompare(second.captured.front() + second.after) <
           0;
}

void FoundPlaces::sortPlaces(Group& group) const
{
    if (m_sortColumn < 0)
        return;
    const SearchedFile& file = m_files[group.file];
    std::stable_sort(group.places.begin(), group.places.end(), [&](std::uint32_t a, std::uint32_t b) {
        return m_order == Qt::AscendingOrder ? isBefore(file, a, b) : isBefore(file, b, a);
    });
}

void FoundPlaces::rebuild()
{
    beginResetModel();
    m_groups.clear();
    for (std::uint32_t file = 0; file < m_files.size(); ++file) {
        Group group = groupOf(file);
        const bool isNamed =
            m_filter.isEmpty() || displayText(m_files[file].path).contains(m_filter, Qt::CaseInsensitive);
        if (!group.places.empty() || (!m_files[file].problem.empty() && isNamed))
            m_groups.push_back(std::move(group));
    }
    if (m_sortColumn == Place && m_order == Qt::DescendingOrder)
        std::reverse(m_groups.begin(), m_groups.end());
    endResetModel();
}

void FoundPlaces::setReplacement(const std::optional<QString>& replacement, bool isExpression)
{
    m_replacement = replacement;
    m_isExpression = isExpression;
    for (int row = 0; row < rowCount(); ++row) {
        const QModelIndex file = index(row, Place);
        emit dataChanged(file, file.siblingAtColumn(NewText));
        emit dataChanged(index(0, Place, file), index(rowCount(file) - 1, NewText, file));
    }
    emit ticksChanged();
}

void FoundPlaces::setFilter(const QString& text)
{
    if (text == m_filter)
        return;
    m_filter = text;
    rebuild();
}

void FoundPlaces::sort(int column, Qt::SortOrder order)
{
    if (column == m_sortColumn && order == m_order)
        return;
    m_sortColumn = column;
    m_order = order;
    rebuild();
}

FoundPlaces::Counts FoundPlaces::counts() const
{
    Counts counts;
    for (std::size_t file = 0; file < m_files.size(); ++file) {
        const auto ticked =
            static_cast<std::size_t>(std::count(m_ticks[file].begin(), m_ticks[file].end(), true));
        counts.places += m_files[file].found.size();
        counts.files += m_files[file].found.empty() ? 0 : 1;
        counts.unread += m_files[file].problem.empty() ? 0 : 1;
        counts.ticked += ticked;
        counts.tickedFiles += ticked > 0 ? 1 : 0;
    }
    counts.shown =
        std::accumulate(m_groups.begin(), m_groups.end(), std::size_t(0),
                        [](std::size_t sum, const Group& group) { return sum + group.places.size(); });
    return counts;
}

std::vector<WantedPlaces> FoundPlaces::wanted() const
{
    std::vector<WantedPlaces> wanted;
    for (std::size_t file = 0; file < m_files.size(); ++file) {
        if (std::find(m_ticks[file].begin(), m_ticks[file].end(), true) != m_ticks[file].end())
            wanted.push_back({m_files[file].path, m_files[file].hash, m_ticks[file]});
    }
    return wanted;
}

void FoundPlaces::tick(const QModelIndexList& rows, bool on)
{
    for (const QModelIndex& row : rows) {
        const bool isFile = row.internalId() == ofFile;
        const QModelIndex file = isFile ? row.siblingAtColumn(Place) : row.parent();
        const Group& group = groupAt(row);
        std::vector<bool>& ticks = m_ticks[group.file];
        for (std::size_t i = 0; i < group.places.size(); ++i) {
            if (isFile || static_cast<int>(i) == row.row())
                ticks[group.places[i]] = on;
        }
        emit dataChanged(file, file, {Qt::CheckStateRole});
        emit dataChanged(index(0, Place, file), index(rowCount(file) - 1, Place, file), {Qt::CheckStateRole});
    }
    emit ticksChanged();
}

const SearchedFile* FoundPlaces::fileOf(const QModelIndex& index) const
{
    if (!index.isValid())
        return nullptr;
    return &m_files[groupAt(index).file];
}

// Of a file or of one of its places.
const FoundPlaces::Group& FoundPlaces::groupAt(const QModelIndex& index) const
{
    return m_groups[index.internalId() == ofFile ? static_cast<std::size_t>(index.row())
                                                 : static_cast<std::size_t>(index.internalId()) - 1];
}

std::size_t FoundPlaces::placeNumber(const QModelIndex& index) const
{
    return groupAt(index).places[static_cast<std::size_t>(index.row())];
}

const FoundText* FoundPlaces::placeOf(const QModelIndex& index) const
{
    if (!index.isValid() || index.internalId() == ofFile)
        return nullptr;
    return &fileOf(index)->found[placeNumber(index)];
}

QModelIndex FoundPlaces::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : ofFile);
}

QModelIndex FoundPlaces::parent(const QModelIndex& index) const
{
    if (!index.isValid() || index.internalId() == ofFile)
        return {};
    return createIndex(static_cast<int>(index.internalId()) - 1, 0, ofFile);
}

int FoundPlaces::rowCount(const QModelIndex& parent) const
{
    if (!parent.isValid())
        return static_cast<int>(m_groups.size());
    if (parent.internalId() != ofFile || parent.column() != 0)
        return 0;
    return static_cast<int>(m_groups[static_cast<std::size_t>(parent.row())].places.size());
}

int FoundPlaces::columnCount(const QModelIndex& /*parent*/) const
{
    return ColumnCount;
}

QString FoundPlaces::newText(const FoundText& place) const
{
    return m_replacement ? replacementFor(place.captured, *m_replacement, m_isExpression) : QString();
}

QString FoundPlaces::text(const QModelIndex& index) const
{
    const SearchedFile& file = *fileOf(index);
    if (const FoundText* const place = placeOf(index)) {
        switch (index.column()) {
        case Place:
            return tr("%1:%2").arg(place->line).arg(place->column);
        case Text:
            return shownBefore(*place) + shownMatch(*place) + place->after;
        default:
            return newText(*place);
        }
    }
    if (index.column() == Place)
        return displayText(file.path);
    if (index.column() == Text)
        return file.problem.empty() ? counted(file.found.size(), tr("place"), tr("places"))
                                    : displayText(file.problem);
    return {};
}

Qt::CheckState FoundPlaces::tickOf(const QModelIndex& index) const
{
    const Group& group = groupAt(index);
    const std::vector<bool>& ticks = m_ticks[group.file];
    if (index.internalId() != ofFile)
        return ticks[placeNumber(index)] ? Qt::Checked : Qt::Unchecked;
    const auto ticked = std::count_if(group.places.begin(), group.places.end(),
                                      [&ticks](std::uint32_t place) { return ticks[place]; });
    return ticked == 0                                               ? Qt::Unchecked
           : static_cast<std::size_t>(ticked) == group.places.size() ? Qt::Checked
                                                                     : Qt::PartiallyChecked;
}

QVariant FoundPlaces::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const FoundText* const place = placeOf(index);
    switch (role) {
    case Qt::DisplayRole:
        return text(index);
    case Qt::ToolTipRole:
        return text(index).isEmpty() ? QVariant() : text(index);
    case Qt::AccessibleTextRole:
        return place && index.column() == Place ? tr("Line %1, column %2").arg(place->line).arg(place->column)
                                                : text(index);
    case Qt::CheckStateRole:
        if (m_replacement && index.column() == Place && (place || !fileOf(index)->found.empty()))
            return tickOf(index);
        return {};
    case MatchStartRole:
        return place && index.column() == Text ? QVariant(shownBefore(*place).size()) : QVariant();
    case MatchLengthRole:
        return place && index.column() == Text ? QVariant(place->captured.front().size()) : QVariant();
    default:
        return {};
    }
}

bool FoundPlaces::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::CheckStateRole || !index.isValid() || !m_replacement)
        return false;
    tick({index}, value.toInt() != Qt::Unchecked);
    return true;
}

QVariant FoundPlaces::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Place:
        return tr("Place");
    case Text:
        return tr("Text");
    default:
        return tr("New text");
    }
}

Qt::ItemFlags FoundPlaces::flags(const QModelIndex& index) const
{
    Qt::ItemFlags flags = QAbstractItemModel::flags(index);
    if (index.isValid() && index.column() == Place && m_replacement)
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}

} // namespace luma
