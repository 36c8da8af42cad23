// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/sitenames.h"

#include <QAbstractItemModel>

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace luma {

/// The classes and ids of a site: a row for each, and below it one for each file that has it. Main thread only.
class SiteNamesModel final : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Column { Name, Rules, Elements, Pages, Note, ColumnCount };
    /// Which names are shown: all, those that no element has, those that no rule has.
    enum class Shown : std::uint8_t { All, Unused, Undefined, Classes, Ids };
    /// Whether the row is one of a name that is unused or undefined.
    enum Role { MarkedRole = Qt::UserRole };

    using QAbstractItemModel::QAbstractItemModel;

    void setNames(std::vector<SiteName> names);
    [[nodiscard]] const std::vector<SiteName>& names() const { return m_names; }
    [[nodiscard]] std::size_t shownCount() const { return m_rows.size(); }
    /// Shows only names that `text` is in, letter case ignored.
    void setFilter(const QString& text, Shown shown);
    /// Column -1 is the order of the names, classes first.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    /// The name of a row, or of the row above it.
    [[nodiscard]] const SiteName* nameOf(const QModelIndex& index) const;
    /// The place of a row: of a name, its first rule, else its first element, else a reference; null where it has none.
    [[nodiscard]] const SiteName::Place* placeOf(const QModelIndex& index) const;

    [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex& index) const override;
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    using Part = std::pair<const SiteName::Place*, int>; // a place, and which column counts it

    void arrange();
    [[nodiscard]] bool isShown(const SiteName& name) const;
    [[nodiscard]] bool isBefore(const SiteName& a, const SiteName& b) const;
    [[nodiscard]] static std::vector<Part> partsOf(const SiteName& name);
    [[nodiscard]] QString nameText(const SiteName& name, int column) const;
    [[nodiscard]] QString placeText(const Part& part, int column) const;
    [[nodiscard]] static QString noteOn(const SiteName& name);

    std::vector<SiteName> m_names;
    std::vector<std::uint32_t> m_rows; // numbers of the names that are shown
    QString m_filter;
    Shown m_shown = Shown::All;
    int m_sortColumn = -1;
    Qt::SortOrder m_order = Qt::AscendingOrder;
};

} // namespace luma
