// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/linkfindings.h"

#include "browser/displaytext.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace luma {

namespace {

std::string_view viewOf(std::string_view text)
{
    return text;
}

} // namespace

void LinkFindings::setPages(std::vector<WebPage> pages)
{
    m_pages.clear();
    m_linkCount = 0;
    m_unreadableCount = 0;
    addPages(std::move(pages));
    arrange();
}

std::size_t LinkFindings::addPages(std::vector<WebPage> pages)
{
    const std::size_t first = m_pages.size();
    std::for_each(pages.begin(), pages.end(), [this](const WebPage& page) { count(page); });
    std::move(pages.begin(), pages.end(), std::back_inserter(m_pages));
    return first;
}

void LinkFindings::count(const WebPage& page)
{
    m_linkCount += page.links.size();
    m_unreadableCount += page.unreadable.empty() ? 0U : 1U;
}

std::size_t LinkFindings::rowCount() const
{
    return m_linkCount +
           static_cast<std::size_t>(std::count_if(m_pages.begin(), m_pages.end(),
                                                  [](const WebPage& page) { return page.links.empty(); }));
}

void LinkFindings::setOrder(int column, Qt::SortOrder order)
{
    m_sortColumn = column;
    m_sortOrder = order;
}

std::vector<LinkFindings::Group> LinkFindings::groupsFrom(std::size_t firstPage) const
{
    std::vector<Group> added;
    for (std::size_t page = firstPage; page < m_pages.size(); ++page) {
        if (std::vector<Row> rows = shownRowsOf(page); !rows.empty())
            added.push_back(
                {m_grouping == Grouping::None ? std::string() : m_pages[page].path, std::move(rows)});
    }
    return added;
}

void LinkFindings::append(std::vector<Group> groups)
{
    if (m_grouping == Grouping::None && m_groups.empty() && !groups.empty())
        m_groups.emplace_back();
    for (Group& group : groups) {
        m_shownCount += group.rows.size();
        if (m_grouping == Grouping::None)
            m_groups.front().rows.insert(m_groups.front().rows.end(), group.rows.begin(), group.rows.end());
        else
            m_groups.push_back(std::move(group));
    }
}

void LinkFindings::arrange()
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

void LinkFindings::sortGroups()
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

void LinkFindings::sortRows(std::vector<Row>& rows) const
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

std::vector<LinkFindings::Row> LinkFindings::shownRowsOf(std::size_t page) const
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

bool LinkFindings::isShown(Row row) const
{
    if (m_filter.isEmpty())
        return true;
    const auto columns = {Link, Page, Problem, Suggestion};
    return std::any_of(columns.begin(), columns.end(),
                       [&](int column) { return text(row, column).contains(m_filter, Qt::CaseInsensitive); });
}

const WebLink* LinkFindings::linkOf(Row row) const
{
    return row.link == wholePage ? nullptr : &pageOf(row).links[row.link];
}

/// The place of the site that the link leads to, or what it says where that is none.
std::string LinkFindings::targetOf(Row row) const
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

QString LinkFindings::problemOf(const WebPage& page, const WebLink* link)
{
    if (!link)
        return page.unreadable.empty() ? tr("contains the name") : displayText(page.unreadable);
    switch (link->state) {
    case LinkState::Missing:
        return tr(textOf(link->why).data());
    case LinkState::NotJudged:
        return tr("not judged: server code");
    case LinkState::External:
    case LinkState::Present:
        break;
    }
    return {};
}

QString LinkFindings::text(Row row, int column) const
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

} // namespace luma
