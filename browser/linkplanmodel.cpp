// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/linkplanmodel.h"

#include "browser/displaytext.h"

#include <algorithm>
#include <utility>

namespace luma {

LinkPlanModel::LinkPlanModel(std::shared_ptr<const LinkPlan> plan, QObject* parent)
    : QAbstractTableModel(parent), m_plan(std::move(plan)), m_rows(rowsOfPlan())
{}

std::vector<LinkPlanModel::Row> LinkPlanModel::rowsOfPlan() const
{
    std::vector<Row> rows;
    for (std::uint32_t i = 0; i < m_plan->problems.size(); ++i)
        rows.push_back({i, noEdit});
    for (std::uint32_t page = 0; page < m_plan->pages.size(); ++page) {
        for (std::uint32_t edit = 0; edit < m_plan->pages[page].edits.size(); ++edit)
            rows.push_back({page, edit});
    }
    return rows;
}

void LinkPlanModel::sort(int column, Qt::SortOrder order)
{
    emit layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    std::vector<Row> shown;
    for (const QModelIndex& index : before)
        shown.push_back(m_rows[static_cast<std::size_t>(index.row())]);
    m_rows = rowsOfPlan();
    if (column == Line) {
        std::stable_sort(m_rows.begin(), m_rows.end(), [this](Row a, Row b) {
            const auto line = [this](Row row) {
                return row.edit == noEdit ? 0U : m_plan->pages[row.page].edits[row.edit].line;
            };
            return line(a) < line(b);
        });
    } else if (column >= 0) {
        std::vector<std::pair<QString, Row>> keyed;
        for (const Row row : m_rows)
            keyed.emplace_back(text(row, column), row);
        std::stable_sort(keyed.begin(), keyed.end(), [](const auto& a, const auto& b) {
            return a.first.localeAwareCompare(b.first) < 0;
        });
        std::transform(keyed.begin(), keyed.end(), m_rows.begin(),
                       [](const auto& row) { return row.second; });
    }
    if (column >= 0 && order == Qt::DescendingOrder)
        std::reverse(m_rows.begin(), m_rows.end());
    QModelIndexList after;
    for (std::size_t i = 0; i < shown.size(); ++i) {
        const auto found = std::find_if(m_rows.begin(), m_rows.end(), [&](Row row) {
            return row.page == shown[i].page && row.edit == shown[i].edit;
        });
        after.append(
            index(static_cast<int>(found - m_rows.begin()), before[static_cast<qsizetype>(i)].column()));
    }
    changePersistentIndexList(before, after);
    emit layoutChanged();
}

int LinkPlanModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int LinkPlanModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

const std::filesystem::path& LinkPlanModel::pageOf(Row row) const
{
    return row.edit == noEdit ? m_plan->problems[row.page].path : m_plan->pages[row.page].oldPage;
}

QString LinkPlanModel::text(Row row, int column) const
{
    const std::filesystem::path& page = pageOf(row);
    if (column == Page) {
        const std::filesystem::path below = page.lexically_relative(m_plan->request.site);
        return displayText((below.empty() ? page : below).native());
    }
    if (row.edit == noEdit)
        return column == NewLink ? tr("Stays as it is: %1").arg(displayText(m_plan->problems[row.page].text))
                                 : QString();
    const LinkEdit& edit = m_plan->pages[row.page].edits[row.edit];
    return column == Line      ? QString::number(edit.line)
           : column == OldLink ? displayText(edit.oldLink)
                               : displayText(edit.newLink);
}

QVariant LinkPlanModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole)
        return text(m_rows[static_cast<std::size_t>(index.row())], index.column());
    if (role == Qt::TextAlignmentRole && index.column() == Line)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

QVariant LinkPlanModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Page:
        return tr("Page");
    case Line:
        return tr("Line");
    case OldLink:
        return tr("Link");
    default:
        return tr("New link");
    }
}

} // namespace luma
