// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "site/siterecord.h"

#include <QAbstractListModel>

#include <memory>
#include <optional>
#include <vector>

namespace luma {

/// The site records in their order, as a model of one column. It owns them; an open site's window shares the
/// one it shows, so a record that is removed lives on until that window closes. Main thread only.
class SiteList final : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        /// Where the site is published to, for reading.
        DestinationRole = Qt::UserRole,
        /// Everything that a search may look for: name, servers, paths.
        SearchRole,
    };
    using Record = std::shared_ptr<SiteRecord>;

    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

    /// The record at `row`, or null.
    [[nodiscard]] Record record(int row) const;
    [[nodiscard]] QList<QVariantMap> records() const;
    void setRecords(const QList<QVariantMap>& records);

    /// Appends a record with these values and endpoints of its own; gives its row.
    int add(const QVariantMap& values);

    /// Removes the record at `row` and gives the row to select then. Nothing is removed, and nothing given,
    /// when it is the only one or there is none.
    std::optional<int> remove(int row);

private:
    Record newRecord(const QVariantMap& values);
    void announce(const SiteRecord* record);

    std::vector<Record> m_records;
};

} // namespace luma
