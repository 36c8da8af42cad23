// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "site/siterecord.h"

#include <QAbstractListModel>

#include <memory>
#include <optional>
#include <vector>

namespace luma {

/// The site records in their order, as a model of one column. An open site's window shares its record, so a
/// removed record lives until that window closes. Main thread only.
class SiteList final : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        /// The destination, for display.
        DestinationRole = Qt::UserRole,
        /// The text that a search looks through: name, servers, paths.
        SearchRole,
    };
    using Record = std::shared_ptr<SiteRecord>;

    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

    /// The record at `row`; null if there is no such row.
    [[nodiscard]] Record record(int row) const;
    [[nodiscard]] QList<QVariantMap> records() const;
    void setRecords(const QList<QVariantMap>& records);

    /// Appends a record with a copy of these values; returns its row.
    int add(const QVariantMap& values);

    /// Puts a removed record back at `row`, or at the end of a shorter list; returns its row.
    int putBack(int row, const Record& record);

    /// Sorts the records by name as a reader expects: without regard to case, numbers by their value.
    void sortByName();

    /// Removes the record at `row` and returns the row to select next. Does nothing and returns none if it is
    /// the only record or there is no such row.
    std::optional<int> remove(int row);

private:
    Record newRecord(const QVariantMap& values);
    void announce(const SiteRecord* record);

    std::vector<Record> m_records;
};

} // namespace luma
