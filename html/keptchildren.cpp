// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/keptchildren.h"

#include "base/ascii.h"
#include "html/characterdata.h"
#include "html/element.h"
#include "html/textparts.h"
#include "html/unchangednodes.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>

namespace luma::html {

KeptChildren::KeptChildren(const ParentNode& parent, const UnchangedNodes& unchanged, TypedBehindBody typed)
    : m_units(unitsOf(parent))
{
    findClusters(parent);
    match(parent, unchanged);
    chooseKept();
    releaseLastBlank(parent, typed);
    for (std::size_t i = 0; i + 1 < m_units.size(); ++i) {
        m_units[i].isBeforeEdit =
            m_units[i].kept && (!m_units[i + 1].kept || m_units[i + 1].cluster != m_units[i].cluster + 1);
    }
}

std::vector<KeptChildren::Unit> KeptChildren::unitsOf(const ParentNode& parent)
{
    std::vector<Unit> units;
    for (const Node* child = parent.firstChild(); child;) {
        const Node* behind = child->next();
        Origin origin = child->origin();
        // New text goes with the text before it that has bytes, or with the one behind it.
        while (textOf(*child) && behind && textOf(*behind)) {
            const Origin& other = behind->origin();
            if (other.source && other.source == origin.source && other.record != origin.record)
                break;
            if (!origin.source)
                origin = other;
            behind = behind->next();
        }
        units.push_back({child, behind, origin});
        child = behind;
    }
    return units;
}

void KeptChildren::findClusters(const Node& parent)
{
    const PageSource& source = *parent.origin().source;
    const SourceRecord& record = PageSource::recordOf(parent);
    for (std::uint32_t number = parent.origin().record + 1; number < record.after;
         number = source.record(number).after) {
        const SourceRange& extent = source.record(number).extent;
        const auto index = static_cast<std::uint32_t>(m_children.size());
        m_children.push_back(number);
        Cluster added{extent, index, index + 1};
        while (!m_clusters.empty() && m_clusters.back().range.end > added.range.begin) {
            added.range = {std::min(m_clusters.back().range.begin, added.range.begin),
                           std::max(m_clusters.back().range.end, added.range.end)};
            added.first = m_clusters.back().first;
            m_clusters.pop_back();
        }
        m_clusters.push_back(added);
    }
}

// Which units stand for which cluster: a cluster of several only when all its children are there, and no text among them
// that was edited has its bytes in several places.
void KeptChildren::match(const Node& parent, const UnchangedNodes& unchanged)
{
    std::unordered_map<std::uint32_t, std::size_t> clusterOf;
    for (std::size_t i = 0; i < m_clusters.size(); ++i) {
        for (std::uint32_t child = m_clusters[i].first; child < m_clusters[i].behind; ++child)
            clusterOf[m_children[child]] = i;
    }
    for (std::size_t i = 0; i < m_units.size(); ++i) {
        const Origin& origin = m_units[i].origin;
        if (origin.source != parent.origin().source)
            continue;
        const auto found = clusterOf.find(origin.record);
        if (found == clusterOf.end())
            continue;
        const Cluster& cluster = m_clusters[found->second];
        const std::size_t length = cluster.behind - cluster.first;
        bool complete = i + length <= m_units.size() && m_children[cluster.first] == origin.record;
        for (std::size_t k = 0; complete && length > 1 && k < length; ++k) {
            const Unit& member = m_units[i + k];
            complete = member.origin.source == origin.source &&
                       member.origin.record == m_children[cluster.first + k] &&
                       member.node->next() == member.behind &&
                       (!textOf(*member.node) || unchanged.contains(*member.node) ||
                        PageSource::isWhole(*member.node));
        }
        if (!complete)
            continue;
        m_units[i].cluster = static_cast<std::ptrdiff_t>(found->second);
        m_units[i].length = length;
        clusterOf.erase(found);
    }
}

// Of the units that stand for clusters those stay that are in the source's order, as many as can be.
void KeptChildren::chooseKept()
{
    std::vector<std::size_t> tails;
    std::vector<std::size_t> before(m_units.size(), m_units.size());
    for (std::size_t i = 0; i < m_units.size(); ++i) {
        if (m_units[i].cluster < 0)
            continue;
        const auto place = std::lower_bound(
            tails.begin(), tails.end(), m_units[i].cluster,
            [this](std::size_t tail, std::ptrdiff_t cluster) { return m_units[tail].cluster < cluster; });
        before[i] = place == tails.begin() ? m_units.size() : *std::prev(place);
        if (place == tails.end())
            tails.push_back(i);
        else
            *place = i;
    }
    for (std::size_t i = tails.empty() ? m_units.size() : tails.back(); i < m_units.size(); i = before[i])
        m_units[i].kept = true;
}

// What is new behind white space that stands behind </body> is written in front of that tag, and the white space with it.
void KeptChildren::releaseLastBlank(const Node& parent, TypedBehindBody typed)
{
    const Element* const body = parent.asElement();
    if (!body || !body->is("body"))
        return;
    auto last = std::find_if(m_units.rbegin(), m_units.rend(), [](const Unit& unit) { return unit.kept; });
    if (last == m_units.rend() || last->cluster + 1 < std::ptrdiff_t(m_clusters.size()) || last->length > 1 ||
        !textOf(*last->node))
        return;
    if (last == m_units.rbegin() &&
        (typed == TypedBehindBody::InPlace || isBlank(joinedText(*last->node, last->behind))))
        return;
    const PageSource& source = *parent.origin().source;
    const SourceRange& tag = PageSource::recordOf(parent).start;
    const std::uint32_t begin =
        last->cluster > 0 ? m_clusters[static_cast<std::size_t>(last->cluster) - 1].range.end : tag.end;
    const SourceRange& own = m_clusters.back().range;
    last->kept = !isBlank(TextParts(source.text(own), false).text()) ||
                 !TextParts(source.text({begin, own.end}), false).endPage();
}

} // namespace luma::html
