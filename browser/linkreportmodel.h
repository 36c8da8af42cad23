// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/browserchecker.h"

#include <QAbstractItemModel>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// The rows of a link report: one for each link, and one for a page that is reported as a whole because it can't be
/// read or has only the name of a file. Rows can be grouped, filtered and sorted; a group has a row of its own with
/// the number of its rows. Pages can be added while the report runs. Main thread only.
class LinkReportModel final : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Column { Link, Page, Line, Character, Attribute, Problem, Suggestion, ColumnCount };
    enum class Grouping { None, ByPage, ByTarget };

    /// A row: `link` is null for a page as a whole.
    struct Finding
    {
        const WebPage* page = nullptr;
        const WebLink* link = nullptr;
    };

    using QAbstractItemModel::QAbstractItemModel;

    /// Adds the pages that a running report has found.
    void append(std::vector<WebPage> pages);
    /// Shows another report in the place of this one.
    void setPages(std::vector<WebPage> pages);
    [[nodiscard]] const std::vector<WebPage>& pages() const { return m_pages; }

    [[nodiscard]] Grouping grouping() const { return m_grouping; }
    void setGrouping(Grouping grouping);
    /// Shows only rows whose page, link, problem or suggestion contains `text`, letter case ignored.
    void setFilter(const QString& text);
    /// Sorts the rows, within their groups; by Link also the groups. Column -1 is the order of the report, with the
    /// largest targets first.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    /// Links in the whole report.
    [[nodiscard]] std::size_t linkCount() const { return m_linkCount; }
    /// Pages that can't be read.
    [[nodiscard]] std::size_t unreadableCount() const { return m_unreadableCount; }
    /// Rows that the filter lets through.
    [[nodiscard]] std::size_t shownCount() const { return m_shownCount; }
    [[nodiscard]] std::size_t rowCountOfReport() const;

    /// Whether the row is a group's own.
    [[nodiscard]] bool isGroup(const QModelIndex& index) const;
    /// The finding of a row; without a page for a group's row.
    [[nodiscard]] Finding finding(const QModelIndex& index) const;
    /// The findings of these rows, or of all that are shown, in the order shown. A group's row stands for its rows.
    [[nodiscard]] std::vector<Finding> findings(const QModelIndexList& rows) const;
    [[nodiscard]] std::vector<Finding> shownFindings() const;
    /// The page or target of a group.
    [[nodiscard]] std::string_view groupName(const QModelIndex& index) const;

    [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex& index) const override;
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    static constexpr std::uint32_t wholePage = UINT32_MAX;
    struct Row
    {
        std::uint32_t page;
        std::uint32_t link;
    };
    struct Group
    {
        std::string name;
        std::vector<Row> rows;
    };

    std::vector<WebPage> m_pages;
    std::vector<Group> m_groups; // without grouping one, which has no row of its own
    Grouping m_grouping = Grouping::None;
    QString m_filter;
    int m_sortColumn = -1;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
    std::size_t m_linkCount = 0;
    std::size_t m_unreadableCount = 0;
    std::size_t m_shownCount = 0;

    void count(const WebPage& page);
    void rebuild();
    void fillGroups();
    void sortGroups();
    void sortRows(std::vector<Row>& rows) const;
    void appendRows(std::size_t firstPage);
    void appendGroups(std::size_t firstPage);
    [[nodiscard]] std::vector<Row> shownRowsOf(std::size_t page) const;
    [[nodiscard]] bool isShown(Row row) const;
    [[nodiscard]] std::string targetOf(Row row) const;
    [[nodiscard]] const WebPage& pageOf(Row row) const { return m_pages[row.page]; }
    [[nodiscard]] const WebLink* linkOf(Row row) const;
    [[nodiscard]] Finding findingOf(Row row) const { return {&pageOf(row), linkOf(row)}; }
    [[nodiscard]] QString text(Row row, int column) const;
};

} // namespace luma
