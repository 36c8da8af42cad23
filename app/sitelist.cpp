// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/sitelist.h"

#include "browser/endpoint.h"

#include <algorithm>

namespace luma {

namespace {

QString summary(const ObservedDictionary& values)
{
    const QString protocol = values.string(endpoint::protocol);
    if (protocol == endpoint::fileProtocol)
        return values.string(endpoint::path);
    QString place = protocol + values.string(endpoint::server);
    if (const QString volume = values.string(endpoint::volume); !volume.isEmpty())
        place += u'/' + volume;
    return place + values.string(endpoint::path);
}

} // namespace

int SiteList::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_records.size());
}

QVariant SiteList::data(const QModelIndex& index, int role) const
{
    const Record found = record(index.row());
    if (!found)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return found->siteID();
    case Qt::ToolTipRole:
        return QString(found->siteID() + u'\n' + summary(*found->destinationDict()));
    case DestinationRole:
        return summary(*found->destinationDict());
    case SearchRole:
        return QString(found->siteID() + u'\n' + summary(*found->sourceDict()) + u'\n' +
                       summary(*found->destinationDict()));
    default:
        return {};
    }
}

SiteList::Record SiteList::record(int row) const
{
    return row >= 0 && row < rowCount() ? m_records[static_cast<std::size_t>(row)] : nullptr;
}

QList<QVariantMap> SiteList::records() const
{
    QList<QVariantMap> all;
    all.reserve(static_cast<qsizetype>(m_records.size()));
    for (const Record& record : m_records)
        all += record->values();
    return all;
}

void SiteList::setRecords(const QList<QVariantMap>& records)
{
    beginResetModel();
    m_records.clear();
    for (const QVariantMap& values : records)
        m_records.push_back(newRecord(values));
    endResetModel();
}

int SiteList::add(const QVariantMap& values)
{
    const int row = rowCount();
    beginInsertRows({}, row, row);
    m_records.push_back(newRecord(values));
    endInsertRows();
    return row;
}

int SiteList::putBack(int row, const Record& record)
{
    const int place = std::min(row, rowCount());
    beginInsertRows({}, place, place);
    m_records.insert(m_records.begin() + place, record);
    endInsertRows();
    return place;
}

QString SiteList::menuText(QString name)
{
    return name.replace(u'&', QStringLiteral("&&"));
}

int SiteList::rowOf(const SiteRecord* record) const
{
    const auto found = std::find_if(m_records.begin(), m_records.end(),
                                    [record](const Record& entry) { return entry.get() == record; });
    return found == m_records.end() ? -1 : static_cast<int>(found - m_records.begin());
}

QStringList SiteList::folders() const
{
    QStringList names;
    for (const Record& record : m_records) {
        if (!record->folder().isEmpty() && !names.contains(record->folder()))
            names.append(record->folder());
    }
    return names;
}

SiteList::Arrangement SiteList::arrangement() const
{
    Arrangement places;
    for (const Record& record : m_records)
        places.push_back({.record = record, .folder = record->folder()});
    return places;
}

void SiteList::arrange(const Arrangement& places)
{
    std::vector<Record> others = m_records;
    std::vector<Record> ordered;
    m_isArranging = true;
    beginResetModel();
    for (const Place& place : places) {
        const auto found = std::find(others.begin(), others.end(), place.record);
        if (found == others.end())
            continue;
        place.record->setFolder(place.folder);
        ordered.push_back(place.record);
        others.erase(found);
    }
    ordered.insert(ordered.end(), others.begin(), others.end());
    m_records = std::move(ordered);
    endResetModel();
    m_isArranging = false;
    emit arranged();
}

void SiteList::move(const std::vector<int>& rows, int before, const QString& folder)
{
    const Arrangement old = arrangement();
    Arrangement moved;
    Arrangement wanted;
    std::size_t place = 0;
    for (int row = 0; row < rowCount(); ++row) {
        if (row == before)
            place = wanted.size();
        const bool isMoved = std::find(rows.begin(), rows.end(), row) != rows.end();
        (isMoved ? moved : wanted).push_back(old[static_cast<std::size_t>(row)]);
    }
    if (before < 0 || before >= rowCount())
        place = wanted.size();
    for (Place& entry : moved)
        entry.folder = folder;
    wanted.insert(wanted.begin() + static_cast<std::ptrdiff_t>(place), moved.begin(), moved.end());
    rearrange(wanted, tr("&Undo move"));
}

void SiteList::renameFolder(const QString& folder, const QString& name)
{
    Arrangement wanted = arrangement();
    for (Place& place : wanted) {
        if (place.folder == folder)
            place.folder = name;
    }
    rearrange(wanted, name.isEmpty() ? tr("&Undo removal of “%1”").arg(menuText(folder))
                                     : tr("&Undo renaming of folder"));
}

void SiteList::rearrange(const Arrangement& wanted, const QString& undoText)
{
    const Arrangement before = arrangement();
    if (wanted == before)
        return;
    arrange(wanted);
    emit rearranged(before, undoText);
}

std::optional<int> SiteList::remove(int row)
{
    if (rowCount() <= 1 || !record(row))
        return std::nullopt;
    beginRemoveRows({}, row, row);
    m_records.erase(m_records.begin() + row);
    endRemoveRows();
    return std::min(row, rowCount() - 1);
}

SiteList::Record SiteList::newRecord(const QVariantMap& values)
{
    auto made = std::make_shared<SiteRecord>(values);
    connect(made.get(), &SiteRecord::changed, this, [this, record = made.get()] { announce(record); });
    return made;
}

void SiteList::announce(const SiteRecord* record)
{
    const int row = m_isArranging ? -1 : rowOf(record);
    if (row >= 0)
        emit dataChanged(index(row), index(row));
}

} // namespace luma
