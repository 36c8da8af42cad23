// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "site/siterecord.h"

#include <QAbstractListModel>

#include <memory>
#include <optional>
#include <vector>

namespace luma {

/// The site records in the user's order, as a model of one column. Each may be in a folder. An open site's window shares its record, so a
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

    struct Place
    {
        Record record;
        QString folder;
        bool operator==(const Place& other) const = default;
    };
    /// The records in their order with their folders.
    using Arrangement = std::vector<Place>;

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

    /// A name for a menu, where a single ampersand would mark a mnemonic.
    static QString menuText(QString name);

    /// The row of a record; -1 if it is not in the list.
    [[nodiscard]] int rowOf(const SiteRecord* record) const;

    /// The names of the folders in the order of their first sites.
    [[nodiscard]] QStringList folders() const;
    [[nodiscard]] Arrangement arrangement() const;
    /// Gives the records this order and these folders. Records that it doesn't name follow at the end.
    void arrange(const Arrangement& places);
    /// Moves records into `folder`, or out of any if it is empty, and before the record at row `before`, or to the end
    /// of the list if there is no such row. They keep their order.
    void move(const std::vector<int>& rows, int before, const QString& folder);
    /// The name of another folder joins the two, an empty one takes the sites out.
    void renameFolder(const QString& folder, const QString& name);

    /// Removes the record at `row` and returns the row to select next. Does nothing and returns none if it is
    /// the only record or there is no such row.
    std::optional<int> remove(int row);

signals:
    /// After every arrange().
    void arranged();
    /// After a move() or renameFolder() that changed something: what arrange() takes to undo it, and the
    /// text of the menu entry.
    void rearranged(const luma::SiteList::Arrangement& before, const QString& undoText);

private:
    void rearrange(const Arrangement& wanted, const QString& undoText);
    Record newRecord(const QVariantMap& values);
    void announce(const SiteRecord* record);

    std::vector<Record> m_records;
    bool m_isArranging = false;
};

} // namespace luma
