// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/linkfindings.h"

#include <QAbstractItemModel>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// LinkFindings as an item model: a group has a row of its own with the number of its rows. Pages can be added
/// while the report runs. Main thread only.
class LinkReportModel final : public QAbstractItemModel
{
    Q_OBJECT

public:
    using Column = LinkFindings::Column;
    using enum LinkFindings::Column;
    using Grouping = LinkFindings::Grouping;

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
    [[nodiscard]] const std::vector<WebPage>& pages() const { return m_findings.pages(); }

    [[nodiscard]] Grouping grouping() const { return m_findings.grouping(); }
    void setGrouping(Grouping grouping);
    /// Shows only rows whose page, link, problem or suggestion contains `text`, letter case ignored.
    void setFilter(const QString& text);
    /// Sorts the rows, within their groups; by Link also the groups. Column -1 is the order of the report, with the
    /// largest targets first.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    /// Links in the whole report.
    [[nodiscard]] std::size_t linkCount() const { return m_findings.linkCount(); }
    /// Pages that can't be read.
    [[nodiscard]] std::size_t unreadableCount() const { return m_findings.unreadableCount(); }
    /// Rows that the filter lets through.
    [[nodiscard]] std::size_t shownCount() const { return m_findings.shownCount(); }
    [[nodiscard]] std::size_t rowCountOfReport() const { return m_findings.rowCount(); }

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
    LinkFindings m_findings;

    void rebuild();
    void append(std::vector<LinkFindings::Group> added);
    [[nodiscard]] LinkFindings::Row rowAt(const QModelIndex& index) const;
    [[nodiscard]] Finding findingOf(LinkFindings::Row row) const
    {
        return {&m_findings.pageOf(row), m_findings.linkOf(row)};
    }
};

} // namespace luma
