// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/linkreportmodel.h"

#include "browser/displaytext.h"

#include <QFont>
#include <QLocale>

#include <algorithm>
#include <utility>

namespace luma {

namespace {

// The internal id of a row below a group is the group's number and one; that of a group's own row is 0.
constexpr quintptr groupRow = 0;

std::size_t rowCountOf(const std::vector<LinkFindings::Group>& groups)
{
    std::size_t count = 0;
    for (const LinkFindings::Group& group : groups)
        count += group.rows.size();
    return count;
}

} // namespace

void LinkReportModel::append(std::vector<WebPage> pages)
{
    if (pages.empty())
        return;
    const std::size_t first = m_findings.addPages(std::move(pages));
    if (m_findings.growsAtEnd())
        append(m_findings.groupsFrom(first));
    else
        rebuild();
}

void LinkReportModel::setPages(std::vector<WebPage> pages)
{
    beginResetModel();
    m_findings.setPages(std::move(pages));
    endResetModel();
}

void LinkReportModel::setGrouping(Grouping grouping)
{
    if (m_findings.grouping() == grouping)
        return;
    m_findings.setGrouping(grouping);
    rebuild();
}

void LinkReportModel::setFilter(const QString& text)
{
    if (m_findings.filter() == text)
        return;
    m_findings.setFilter(text);
    rebuild();
}

void LinkReportModel::sort(int column, Qt::SortOrder order)
{
    if (m_findings.isOrder(column, order))
        return;
    m_findings.setOrder(column, order);
    rebuild();
}

void LinkReportModel::rebuild()
{
    beginResetModel();
    m_findings.arrange();
    endResetModel();
}

void LinkReportModel::append(std::vector<LinkFindings::Group> added)
{
    if (added.empty())
        return;
    const std::size_t count = m_findings.grouping() == Grouping::None ? rowCountOf(added) : added.size();
    const int first = rowCount({});
    beginInsertRows({}, first, first + static_cast<int>(count) - 1);
    m_findings.append(std::move(added));
    endInsertRows();
}

LinkFindings::Row LinkReportModel::rowAt(const QModelIndex& index) const
{
    return m_findings.groups()[index.internalId() - 1].rows[static_cast<std::size_t>(index.row())];
}

bool LinkReportModel::isGroup(const QModelIndex& index) const
{
    return index.isValid() && index.internalId() == groupRow;
}

LinkReportModel::Finding LinkReportModel::finding(const QModelIndex& index) const
{
    if (!index.isValid() || isGroup(index))
        return {};
    return findingOf(rowAt(index));
}

std::vector<LinkReportModel::Finding> LinkReportModel::findings(const QModelIndexList& rows) const
{
    std::vector<std::pair<std::size_t, std::size_t>> numbers; // of group and row
    for (const QModelIndex& index : rows) {
        if (!index.isValid())
            continue;
        const auto row = static_cast<std::size_t>(index.row());
        if (!isGroup(index)) {
            numbers.emplace_back(index.internalId() - 1, row);
            continue;
        }
        for (std::size_t number = 0; number < m_findings.groups()[row].rows.size(); ++number)
            numbers.emplace_back(row, number);
    }
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    std::vector<Finding> found;
    found.reserve(numbers.size());
    for (const auto& [group, row] : numbers)
        found.push_back(findingOf(m_findings.groups()[group].rows[row]));
    return found;
}

std::vector<LinkReportModel::Finding> LinkReportModel::shownFindings() const
{
    std::vector<Finding> found;
    for (const LinkFindings::Group& group : m_findings.groups()) {
        for (const LinkFindings::Row row : group.rows)
            found.push_back(findingOf(row));
    }
    return found;
}

std::string_view LinkReportModel::groupName(const QModelIndex& index) const
{
    return isGroup(index) ? std::string_view(m_findings.groups()[static_cast<std::size_t>(index.row())].name)
                          : std::string_view();
}

QModelIndex LinkReportModel::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    if (parent.isValid())
        return createIndex(row, column, static_cast<quintptr>(parent.row()) + 1);
    return createIndex(row, column, m_findings.grouping() == Grouping::None ? quintptr{1} : groupRow);
}

QModelIndex LinkReportModel::parent(const QModelIndex& index) const
{
    if (!index.isValid() || m_findings.grouping() == Grouping::None || isGroup(index))
        return {};
    return createIndex(static_cast<int>(index.internalId() - 1), 0, groupRow);
}

int LinkReportModel::rowCount(const QModelIndex& parent) const
{
    if (parent.isValid() && (!isGroup(parent) || parent.column() > 0))
        return 0;
    if (parent.isValid())
        return static_cast<int>(m_findings.groups()[static_cast<std::size_t>(parent.row())].rows.size());
    if (m_findings.grouping() != Grouping::None)
        return static_cast<int>(m_findings.groups().size());
    return m_findings.groups().empty() ? 0 : static_cast<int>(m_findings.groups().front().rows.size());
}

int LinkReportModel::columnCount(const QModelIndex& /*parent*/) const
{
    return ColumnCount;
}

QVariant LinkReportModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    if (role == Qt::TextAlignmentRole && (index.column() == Line || index.column() == Character))
        return QVariant::fromValue(Qt::Alignment(Qt::AlignRight | Qt::AlignVCenter));
    if (isGroup(index)) {
        const LinkFindings::Group& group = m_findings.groups()[static_cast<std::size_t>(index.row())];
        if (role == Qt::FontRole) {
            QFont bold;
            bold.setBold(true);
            return bold;
        }
        if (role != Qt::DisplayRole || index.column() != 0)
            return {};
        return tr("%1  (%2)").arg(displayText(group.name), QLocale().toString(group.rows.size()));
    }
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    return m_findings.text(rowAt(index), index.column());
}

QVariant LinkReportModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= ColumnCount)
        return {};
    if (role == Qt::TextAlignmentRole && (section == Line || section == Character))
        return QVariant::fromValue(Qt::Alignment(Qt::AlignRight | Qt::AlignVCenter));
    if (role != Qt::DisplayRole)
        return {};
    static constexpr const char* titles[] = {
        QT_TR_NOOP("Link"),      QT_TR_NOOP("Page"),    QT_TR_NOOP("Line"),        QT_TR_NOOP("Column"),
        QT_TR_NOOP("Attribute"), QT_TR_NOOP("Problem"), QT_TR_NOOP("Did you mean")};
    return tr(titles[section]);
}

} // namespace luma
