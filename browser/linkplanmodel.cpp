// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/linkplanmodel.h"

#include "browser/displaytext.h"

#include <QApplication>
#include <QStyle>

#include <algorithm>
#include <utility>

namespace luma {

LinkPlanModel::LinkPlanModel(std::shared_ptr<const LinkPlan> plan, QObject* parent)
    : QAbstractTableModel(parent), m_plan(std::move(plan)), m_rows(rowsOfPlan())
{}

std::vector<LinkPlanModel::Row> LinkPlanModel::rowsOfPlan() const
{
    std::vector<Row> rows;
    for (const MoveProblem& problem : m_plan->problems)
        rows.push_back({&problem.path, &problem.text, nullptr, 0, true});
    for (const PlanNote& note : m_plan->notes)
        rows.push_back({&note.page, &note.text});
    for (const PageRewrite& page : m_plan->pages) {
        for (const LinkEdit& edit : page.edits)
            rows.push_back({&page.oldPage, &edit.newLink, &edit.oldLink, edit.line});
    }
    for (const SymlinkChange& change : m_plan->symlinks)
        rows.push_back({&change.oldLink, &change.after, &change.before});
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
        std::stable_sort(m_rows.begin(), m_rows.end(),
                         [](const Row& a, const Row& b) { return a.line < b.line; });
    } else if (column >= 0) {
        std::vector<std::pair<QString, Row>> keyed;
        for (const Row& row : m_rows)
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
        const auto found = std::find_if(m_rows.begin(), m_rows.end(),
                                        [&](const Row& row) { return row.after == shown[i].after; });
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

// The page has a column of its own.
std::string_view LinkPlanModel::reasonOf(const Row& row)
{
    const std::string page = row.page->native() + ": ";
    std::string_view reason = *row.after;
    if (reason.starts_with(page))
        reason.remove_prefix(page.size());
    return reason;
}

QString LinkPlanModel::text(const Row& row, int column) const
{
    switch (column) {
    case Page: {
        const std::filesystem::path below = row.page->lexically_relative(m_plan->request.site);
        return displayText((below.empty() ? *row.page : below).native());
    }
    case Line:
        return row.line > 0 ? QString::number(row.line) : QString();
    case OldLink:
        return row.before ? displayText(*row.before) : QString();
    default:
        return row.isProblem ? tr("Stays as it is: %1").arg(displayText(reasonOf(row)))
                             : displayText(*row.after);
    }
}

QVariant LinkPlanModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole)
        return text(m_rows[static_cast<std::size_t>(index.row())], index.column());
    const bool isMarked = role == Qt::DecorationRole && index.column() == Page;
    if (isMarked && m_rows[static_cast<std::size_t>(index.row())].isProblem)
        return QApplication::style()->standardIcon(QStyle::SP_MessageBoxWarning);
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
        return m_plan->text ? tr("Text") : tr("Link");
    default:
        return m_plan->text ? tr("New text") : tr("New link");
    }
}

} // namespace luma
