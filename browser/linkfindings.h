// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/browserchecker.h"

#include <QCoreApplication>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace luma {

/// The rows of a link report as they are shown, grouped, filtered and sorted: one for each link, and one for each
/// page that is reported as a whole because it can't be read or has only the name of a file. Main thread only.
class LinkFindings final
{
    Q_DECLARE_TR_FUNCTIONS(LinkFindings)

public:
    enum Column { Link, Page, Line, Character, Attribute, Problem, Suggestion, ColumnCount };
    enum class Grouping { None, ByPage, ByTarget };

    static constexpr std::uint32_t wholePage = UINT32_MAX;
    struct Row
    {
        std::uint32_t page;
        std::uint32_t link; // or wholePage
    };
    struct Group
    {
        std::string name; // of its page or target
        std::vector<Row> rows;
    };

    [[nodiscard]] const std::vector<WebPage>& pages() const { return m_pages; }
    /// Another report in the place of this one.
    void setPages(std::vector<WebPage> pages);
    /// Adds pages without their rows; gives the number of the first one.
    std::size_t addPages(std::vector<WebPage> pages);

    /// These change nothing until arrange().
    void setGrouping(Grouping grouping) { m_grouping = grouping; }
    void setFilter(const QString& text) { m_filter = text; }
    void setOrder(int column, Qt::SortOrder order);
    [[nodiscard]] Grouping grouping() const { return m_grouping; }
    [[nodiscard]] const QString& filter() const { return m_filter; }
    [[nodiscard]] bool isOrder(int column, Qt::SortOrder order) const
    {
        return m_sortColumn == column && m_sortOrder == order;
    }
    /// Makes the groups anew.
    void arrange();

    /// Without grouping one, or none without rows.
    [[nodiscard]] const std::vector<Group>& groups() const { return m_groups; }
    /// Whether rows of added pages belong behind all others.
    [[nodiscard]] bool growsAtEnd() const { return m_sortColumn < 0 && m_grouping != Grouping::ByTarget; }
    /// The groups of the pages from this one on; without grouping they have no names.
    [[nodiscard]] std::vector<Group> groupsFrom(std::size_t firstPage) const;
    /// Appends them; without grouping their rows.
    void append(std::vector<Group> groups);

    /// Links in the whole report, and pages that can't be read.
    [[nodiscard]] std::size_t linkCount() const { return m_linkCount; }
    [[nodiscard]] std::size_t unreadableCount() const { return m_unreadableCount; }
    /// Rows of the whole report, and those that the filter lets through.
    [[nodiscard]] std::size_t rowCount() const;
    [[nodiscard]] std::size_t shownCount() const { return m_shownCount; }

    [[nodiscard]] const WebPage& pageOf(Row row) const { return m_pages[row.page]; }
    /// Null for a page as a whole.
    [[nodiscard]] const WebLink* linkOf(Row row) const;
    [[nodiscard]] QString text(Row row, int column) const;

private:
    void count(const WebPage& page);
    void sortGroups();
    void sortRows(std::vector<Row>& rows) const;
    [[nodiscard]] std::vector<Row> shownRowsOf(std::size_t page) const;
    [[nodiscard]] bool isShown(Row row) const;
    [[nodiscard]] std::string targetOf(Row row) const;
    static QString problemOf(const WebPage& page, const WebLink* link);

    std::vector<WebPage> m_pages;
    std::vector<Group> m_groups;
    Grouping m_grouping = Grouping::None;
    QString m_filter;
    int m_sortColumn = -1;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
    std::size_t m_linkCount = 0;
    std::size_t m_unreadableCount = 0;
    std::size_t m_shownCount = 0;
};

} // namespace luma
