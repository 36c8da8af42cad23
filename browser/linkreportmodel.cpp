// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/linkreportmodel.h"

#include "browser/displaytext.h"

#include <QFont>
#include <QLocale>

#include <algorithm>
#include <iterator>
#include <tuple>
#include <unordered_map>

namespace luma {

namespace {

// The internal id of a row below a group is the group's number and one; that of a group's own row is 0.
constexpr quintptr groupRow = 0;

std::string_view viewOf(std::string_view text)
{
    return text;
}

QString problemOf(const WebPage& page, const WebLink* link)
{
    if (!link)
        return page.unreadable.empty() ? LinkReportModel::tr("contains the name")
                                       : displayText(page.unreadable);
    switch (link->state) {
    case LinkState::Missing:
        return displayText(textOf(link->why));
    case LinkState::NotJudged:
        return LinkReportModel::tr("not judged: server code");
    case LinkState::External:
    case LinkState::Present:
        break;
    }
    return {};
}

} // namespace

void LinkReportModel::count(const WebPage& page)
{
    m_linkCount += page.links.size();
    m_unreadableCount += page.unreadable.empty() ? 0U : 1U;
}

std::size_t LinkReportModel::rowCountOfReport() const
{
    return m_linkCount +
           static_cast<std::size_t>(std::count_if(m_pages.begin(), m_pages.end(),
                                                  [](const WebPage& page) { return page.links.empty(); }));
}

void LinkReportModel::append(std::vector<WebPage> pages)
{
    if (pages.empty())
        return;
    const std::size_t first = m_pages.size();
    std::for_each(pages.begin(), pages.end(), [this](const WebPage& page) { count(page); });
    std::move(pages.begin(), pages.end(), std::back_inserter(m_pages));
    // Only in the order of the report does all that is new belong at the end.
    if (m_sortColumn >= 0 || m_grouping == Grouping::ByTarget)
        rebuild();
    else if (m_grouping == Grouping::ByPage)
        appendGroups(first);
    else
        appendRows(first);
}

void LinkReportModel::setPages(std::vector<WebPage> pages)
{
    beginResetModel();
    m_pages = std::move(pages);
    m_linkCount = 0;
    m_unreadableCount = 0;
    std::for_each(m_pages.begin(), m_pages.end(), [this](const WebPage& page) { count(page); });
    fillGroups();
    endResetModel();
}

void LinkReportModel::setGrouping(Grouping grouping)
{
    if (m_grouping == grouping)
        return;
    m_grouping = grouping;
    rebuild();
}

void LinkReportModel::setFilter(const QString& text)
{
    if (m_filter == text)
        return;
    m_filter = text;
    rebuild();
}

void LinkReportModel::sort(int column, Qt::SortOrder order)
{
    if (m_sortColumn == column && m_sortOrder == order)
        return;
    m_sortColumn = column;
    m_sortOrder = order;
    rebuild();
}

void LinkReportModel::rebuild()
{
    beginResetModel();
    fillGroups();
    endResetModel();
}

void LinkReportModel::appendRows(std::size_t firstPage)
{
    std::vector<Row> added;
    for (std::size_t page = firstPage; page < m_pages.size(); ++page) {
        const std::vector<Row> rows = shownRowsOf(page);
        added.insert(added.end(), rows.begin(), rows.end());
    }
    if (added.empty())
        return;
    if (m_groups.empty())
        m_groups.emplace_back();
    std::vector<Row>& rows = m_groups.front().rows;
    beginInsertRows({}, static_cast<int>(rows.size()), static_cast<int>(rows.size() + added.size()) - 1);
    rows.insert(rows.end(), added.begin(), added.end());
    m_shownCount += added.size();
    endInsertRows();
}

void LinkReportModel::appendGroups(std::size_t firstPage)
{
    std::vector<Group> added;
    std::size_t rowCount = 0;
    for (std::size_t page = firstPage; page < m_pages.size(); ++page) {
        std::vector<Row> rows = shownRowsOf(page);
        rowCount += rows.size();
        if (!rows.empty())
            added.push_back({m_pages[page].path, std::move(rows)});
    }
    if (added.empty())
        return;
    const int first = static_cast<int>(m_groups.size());
    beginInsertRows({}, first, first + static_cast<int>(added.size()) - 1);
    std::move(added.begin(), added.end(), std::back_inserter(m_groups));
    m_shownCount += rowCount;
    endInsertRows();
}

void LinkReportModel::fillGroups()
{
    m_groups.clear();
    m_shownCount = 0;
    std::unordered_map<std::string, std::size_t> groupOf; // by target
    if (m_grouping == Grouping::None)
        m_groups.emplace_back();
    for (std::size_t page = 0; page < m_pages.size(); ++page) {
        std::vector<Row> rows = shownRowsOf(page);
        m_shownCount += rows.size();
        if (m_grouping == Grouping::ByPage && !rows.empty()) {
            m_groups.push_back({m_pages[page].path, std::move(rows)});
        } else if (m_grouping == Grouping::None) {
            m_groups.front().rows.insert(m_groups.front().rows.end(), rows.begin(), rows.end());
        } else {
            for (const Row row : rows) {
                const auto [entry, isNew] = groupOf.try_emplace(targetOf(row), m_groups.size());
                if (isNew)
                    m_groups.push_back({entry->first, {}});
                m_groups[entry->second].rows.push_back(row);
            }
        }
    }
    sortGroups();
}

void LinkReportModel::sortGroups()
{
    if (m_grouping == Grouping::ByTarget)
        std::stable_sort(m_groups.begin(), m_groups.end(),
                         [](const Group& a, const Group& b) { return a.rows.size() > b.rows.size(); });
    if (m_sortColumn < 0)
        return;
    if (m_sortColumn == Link && m_grouping != Grouping::None)
        std::stable_sort(m_groups.begin(), m_groups.end(), [this](const Group& a, const Group& b) {
            return m_sortOrder == Qt::AscendingOrder ? a.name < b.name : b.name < a.name;
        });
    for (Group& group : m_groups)
        sortRows(group.rows);
}

void LinkReportModel::sortRows(std::vector<Row>& rows) const
{
    const auto sortBy = [&](auto keyOf) {
        std::stable_sort(rows.begin(), rows.end(), [&](Row a, Row b) {
            return m_sortOrder == Qt::AscendingOrder ? keyOf(a) < keyOf(b) : keyOf(b) < keyOf(a);
        });
    };
    const auto ofLink = [this](Row row, auto read, auto none) {
        const WebLink* link = linkOf(row);
        return link ? read(*link) : none;
    };
    switch (m_sortColumn) {
    case Link:
        return sortBy([&](Row row) {
            return ofLink(
                row, [](const WebLink& link) { return viewOf(link.value); }, std::string_view());
        });
    case Page:
        return sortBy([](Row row) { return row.page; });
    case Line:
    case Character:
        return sortBy([&](Row row) {
            const bool byLine = m_sortColumn == Line;
            return ofLink(
                row,
                [byLine](const WebLink& link) {
                    return byLine ? std::pair(link.line, link.column) : std::pair(link.column, link.line);
                },
                std::pair<std::uint32_t, std::uint32_t>());
        });
    case Attribute:
        return sortBy([&](Row row) {
            return ofLink(
                row, [](const WebLink& link) { return nameOf(link.place); }, std::string_view());
        });
    case Problem:
        return sortBy([&](Row row) {
            return ofLink(
                row, [](const WebLink& link) { return std::pair(link.state, link.why); },
                std::pair(LinkState::External, MissingReason::None));
        });
    default:
        return sortBy([&](Row row) {
            return ofLink(
                row, [](const WebLink& link) { return viewOf(link.suggestion); }, std::string_view());
        });
    }
}

std::vector<LinkReportModel::Row> LinkReportModel::shownRowsOf(std::size_t page) const
{
    const auto number = static_cast<std::uint32_t>(page);
    std::vector<Row> rows;
    if (m_pages[page].links.empty() && isShown({number, wholePage}))
        rows.push_back({number, wholePage});
    for (std::uint32_t link = 0; link < m_pages[page].links.size(); ++link) {
        if (isShown({number, link}))
            rows.push_back({number, link});
    }
    return rows;
}

bool LinkReportModel::isShown(Row row) const
{
    if (m_filter.isEmpty())
        return true;
    const auto columns = {Link, Page, Problem, Suggestion};
    return std::any_of(columns.begin(), columns.end(),
                       [&](int column) { return text(row, column).contains(m_filter, Qt::CaseInsensitive); });
}

const WebLink* LinkReportModel::linkOf(Row row) const
{
    return row.link == wholePage ? nullptr : &pageOf(row).links[row.link];
}

/// The place of the site that the link leads to, or what it says where that is none.
std::string LinkReportModel::targetOf(Row row) const
{
    const WebLink* link = linkOf(row);
    if (!link)
        return pageOf(row).path;
    if (link->target.empty())
        return link->value;
    const std::size_t fragment =
        link->why == MissingReason::NoSuchPlace ? link->value.find('#') : std::string::npos;
    return link->target + (fragment == std::string::npos ? std::string() : link->value.substr(fragment));
}

bool LinkReportModel::isGroup(const QModelIndex& index) const
{
    return index.isValid() && index.internalId() == groupRow;
}

LinkReportModel::Finding LinkReportModel::finding(const QModelIndex& index) const
{
    if (!index.isValid() || isGroup(index))
        return {};
    return findingOf(m_groups[index.internalId() - 1].rows[static_cast<std::size_t>(index.row())]);
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
        for (std::size_t number = 0; number < m_groups[row].rows.size(); ++number)
            numbers.emplace_back(row, number);
    }
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    std::vector<Finding> found;
    for (const auto& [group, row] : numbers)
        found.push_back(findingOf(m_groups[group].rows[row]));
    return found;
}

std::vector<LinkReportModel::Finding> LinkReportModel::shownFindings() const
{
    std::vector<Finding> found;
    for (const Group& group : m_groups) {
        for (const Row row : group.rows)
            found.push_back(findingOf(row));
    }
    return found;
}

std::string_view LinkReportModel::groupName(const QModelIndex& index) const
{
    return isGroup(index) ? viewOf(m_groups[static_cast<std::size_t>(index.row())].name) : std::string_view();
}

QModelIndex LinkReportModel::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    if (parent.isValid())
        return createIndex(row, column, static_cast<quintptr>(parent.row()) + 1);
    return createIndex(row, column, m_grouping == Grouping::None ? quintptr{1} : groupRow);
}

QModelIndex LinkReportModel::parent(const QModelIndex& index) const
{
    if (!index.isValid() || m_grouping == Grouping::None || isGroup(index))
        return {};
    return createIndex(static_cast<int>(index.internalId() - 1), 0, groupRow);
}

int LinkReportModel::rowCount(const QModelIndex& parent) const
{
    if (parent.isValid() && (!isGroup(parent) || parent.column() > 0))
        return 0;
    if (parent.isValid())
        return static_cast<int>(m_groups[static_cast<std::size_t>(parent.row())].rows.size());
    if (m_grouping != Grouping::None)
        return static_cast<int>(m_groups.size());
    return m_groups.empty() ? 0 : static_cast<int>(m_groups.front().rows.size());
}

int LinkReportModel::columnCount(const QModelIndex& /*parent*/) const
{
    return ColumnCount;
}

QString LinkReportModel::text(Row row, int column) const
{
    const WebPage& page = pageOf(row);
    const WebLink* link = linkOf(row);
    switch (column) {
    case Page:
        return displayText(page.path);
    case Problem:
        return problemOf(page, link);
    case Link:
        return link ? displayText(link->value) : QString();
    case Line:
        return link ? QString::number(link->line) : QString();
    case Character:
        return link ? QString::number(link->column) : QString();
    case Attribute:
        return link ? displayText(nameOf(link->place)) : QString();
    default:
        return link ? displayText(link->suggestion) : QString();
    }
}

QVariant LinkReportModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    if (role == Qt::TextAlignmentRole && (index.column() == Line || index.column() == Character))
        return QVariant::fromValue(Qt::Alignment(Qt::AlignRight | Qt::AlignVCenter));
    if (isGroup(index)) {
        const Group& group = m_groups[static_cast<std::size_t>(index.row())];
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
    return text(m_groups[index.internalId() - 1].rows[static_cast<std::size_t>(index.row())], index.column());
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
