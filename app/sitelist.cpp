// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/sitelist.h"

#include "browser/endpoint.h"

#include <QCollator>
#include <QLocale>

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

void SiteList::sortByName()
{
    // In the C locale a collator knows no numbers.
    const QLocale locale;
    QCollator order(locale.language() == QLocale::C ? QLocale(QLocale::English) : locale);
    order.setCaseSensitivity(Qt::CaseInsensitive);
    order.setNumericMode(true);
    beginResetModel();
    std::stable_sort(m_records.begin(), m_records.end(), [&order](const Record& one, const Record& other) {
        return order.compare(one->siteID(), other->siteID()) < 0;
    });
    endResetModel();
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
    const auto found = std::find_if(m_records.begin(), m_records.end(),
                                    [record](const Record& entry) { return entry.get() == record; });
    if (found == m_records.end())
        return;
    const QModelIndex changed = index(static_cast<int>(found - m_records.begin()));
    emit dataChanged(changed, changed);
}

} // namespace luma
