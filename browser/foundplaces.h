// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/sitesearch.h"

#include <QAbstractItemModel>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace luma {

/// What a search of a site has found: a row for each file, and below it one for each place. While the user wants to replace it,
/// every row has a check box and the new text. Files can be added while the search runs. Main thread only.
class FoundPlaces final : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Column { Place, Text, NewText, ColumnCount };
    /// Of a place's text: where in it what was found begins, and how long that is.
    enum Role { MatchStartRole = Qt::UserRole, MatchLengthRole };

    using QAbstractItemModel::QAbstractItemModel;

    void clear();
    /// Adds files in the order of the search; all their places are ticked.
    void append(std::vector<SearchedFile> files);

    /// What is to take the place of what was found; nothing while nothing is replaced. `isExpression` as in replacementFor().
    void setReplacement(const std::optional<QString>& replacement, bool isExpression);
    /// Shows only files and places in whose path or text `text` is, letter case ignored. What is hidden keeps its tick.
    void setFilter(const QString& text);
    /// Files by their paths, places within their file. Column -1 is the order of the search.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    [[nodiscard]] const std::vector<SearchedFile>& files() const { return m_files; }
    /// Places in all files, files that have one, those that can't be searched, shown places, and ticked ones with their files.
    struct Counts
    {
        std::size_t places = 0;
        std::size_t files = 0;
        std::size_t unread = 0;
        std::size_t shown = 0;
        std::size_t ticked = 0;
        std::size_t tickedFiles = 0;
    };
    [[nodiscard]] Counts counts() const;
    /// The ticked places, by file.
    [[nodiscard]] std::vector<WantedPlaces> wanted() const;
    void tick(const QModelIndexList& rows, bool on);

    /// The file of a row, and its place; null for a file's own row.
    [[nodiscard]] const SearchedFile* fileOf(const QModelIndex& index) const;
    [[nodiscard]] const FoundText* placeOf(const QModelIndex& index) const;

    [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex& index) const override;
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

signals:
    void ticksChanged();

private:
    struct Group
    {
        std::uint32_t file = 0;
        std::vector<std::uint32_t> places;
    };

    void rebuild();
    [[nodiscard]] Group groupOf(std::uint32_t file) const;
    void sortPlaces(Group& group) const;
    [[nodiscard]] bool isBefore(const SearchedFile& file, std::uint32_t a, std::uint32_t b) const;
    [[nodiscard]] QString text(const QModelIndex& index) const;
    [[nodiscard]] QString newText(const FoundText& place) const;
    [[nodiscard]] Qt::CheckState tickOf(const QModelIndex& index) const;
    [[nodiscard]] const Group& groupAt(const QModelIndex& index) const;
    [[nodiscard]] std::size_t placeNumber(const QModelIndex& index) const;

    std::vector<SearchedFile> m_files;
    std::vector<std::vector<bool>> m_ticks; // of all places of each file
    std::vector<Group> m_groups;            // what is shown
    std::optional<QString> m_replacement;
    bool m_isExpression = false;
    QString m_filter;
    int m_sortColumn = -1;
    Qt::SortOrder m_order = Qt::AscendingOrder;
};

} // namespace luma
