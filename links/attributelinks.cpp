// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/attributelinks.h"

#include "base/utf8.h"
#include "links/bytehash.h"
#include "links/linkrules.h"

#include <algorithm>

namespace luma {

namespace {

std::uint64_t folderKey(SiteTree::Id parent, std::string_view foldedName)
{
    return hashBytes(foldedName, parent);
}

std::size_t climbsIn(std::string_view value)
{
    std::size_t count = 0;
    while (value.substr(3 * count).starts_with("../"))
        ++count;
    return count;
}

} // namespace

AttributeLinks::AttributeLinks(LinkIndex& index) : m_index(index)
{
    const SiteTree& tree = index.tree();
    for (Id id = 1; id < tree.size(); ++id) {
        if (tree.type(id) == SiteTree::Type::Folder)
            m_foldersByName.emplace(folderKey(tree.parent(id), index.foldedName(id)), id);
    }
}

void AttributeLinks::mark(std::string_view value, Id folder, SeenHashes& seen)
{
    // No relative path begins with a slash, and none with '#' unless a name does.
    if (value.empty() || value.front() == '/' || (value.front() == '#' && !m_index.hasNamesWithTails()))
        return;
    if (!m_index.hasNamesWithTails())
        value = pathPart(value);
    if (!seen.insert(hashBytes(value, folder)))
        return;
    const std::string folded = caseFolded(value);
    const std::string_view link = folded;
    const std::size_t climbs = climbsIn(link);
    for (const LinkIndex::Start& start : m_index.startsFrom(folder, climbs + 1)) {
        if (start.levels > 0)
            markUp(start, link.substr(3 * (start.levels - 1)));
        if (start.levels <= climbs)
            markDown(start, start.folder, link.substr(3 * start.levels));
    }
}

void AttributeLinks::markUp(const LinkIndex::Start& start, std::string_view rest)
{
    if (!rest.starts_with(".."))
        return;
    for (const LinkIndex::UpPattern& pattern : m_index.upPatternsTo(start.folder)) {
        if (LinkIndex::applies(pattern, start) && rest.substr(2).starts_with(pattern.rest))
            m_index.setLinked(pattern.target);
    }
}

void AttributeLinks::markDown(const LinkIndex::Start& start, Id folder, std::string_view rest)
{
    const std::span<const LinkIndex::Pattern> patterns = m_index.patternsIn(folder);
    const auto after = std::upper_bound(patterns.begin(), patterns.end(), rest,
                                        [this](std::string_view key, const LinkIndex::Pattern& pattern) {
                                            return key < m_index.text(pattern);
                                        });
    // All patterns that are prefixes of `rest` are among the prefixes of the last one not after it.
    auto i = after == patterns.begin() ? LinkIndex::none
                                       : static_cast<std::uint32_t>(after - patterns.begin() - 1);
    for (; i != LinkIndex::none; i = patterns[i].prefix) {
        if (rest.starts_with(m_index.text(patterns[i])) && m_index.applies(patterns[i], start))
            m_index.setLinked(patterns[i].target);
    }
    const std::size_t slash = rest.find('/');
    if (slash == std::string_view::npos)
        return;
    const std::string_view name = rest.substr(0, slash);
    const auto [begin, end] = m_foldersByName.equal_range(folderKey(folder, name));
    for (auto next = begin; next != end; ++next) {
        const Id child = next->second;
        if (child != start.forbidden && m_index.tree().parent(child) == folder &&
            m_index.foldedName(child) == name)
            markDown(start, child, rest.substr(slash + 1));
    }
}

} // namespace luma
