// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/linkindex.h"

#include "base/utf8.h"

#include <algorithm>

namespace luma {

namespace {

// An index name in a path, which may be cut out of it, and what is left after it.
struct IndexName
{
    std::size_t component; // counted from 0
    std::string_view rest;
};

// The end of the last "html" on the line, `rest` being what follows "index."; 0 where there is none.
std::size_t endOfIndex(std::string_view rest)
{
    constexpr std::string_view html = "html";
    rest = rest.substr(0, rest.find('\n'));
    const std::size_t last = rest.rfind(html);
    return last == std::string_view::npos ? 0 : last + html.size();
}

std::vector<IndexName> indexNamesIn(std::string_view path)
{
    constexpr std::string_view index = "index.";
    std::vector<IndexName> names;
    for (std::size_t component = 0;; ++component) {
        if (path.starts_with(index)) {
            const std::string_view rest = path.substr(index.size());
            if (const std::size_t end = endOfIndex(rest); end > 0)
                names.push_back({component, rest.substr(end)});
        }
        const std::size_t slash = path.find('/');
        if (slash == std::string_view::npos)
            return names;
        path.remove_prefix(slash + 1);
    }
}

} // namespace

LinkIndex::LinkIndex(const SiteTree& tree)
    : m_tree(tree), m_linked(std::make_unique<std::atomic<bool>[]>(tree.size()))
{
    addFolders();
    for (const Id file : tree.files())
        addPatternsOf(file);
    sortPatterns();
}

void LinkIndex::addFolders()
{
    m_depths.assign(m_tree.size(), 0);
    m_foldedNames.resize(m_tree.size());
    for (Id id = 1; id < m_tree.size(); ++id) {
        m_hasNamesWithTails =
            m_hasNamesWithTails || m_tree.name(id).find_first_of("#?") != std::string_view::npos;
        if (m_tree.type(id) != SiteTree::Type::Folder)
            continue;
        m_depths[id] = static_cast<std::uint16_t>(m_depths[m_tree.parent(id)] + 1);
        m_foldedNames[id] = caseFolded(m_tree.name(id));
    }
}

// A file without an index name in its path has one pattern: its name, in its folder. Each index name adds one
// for starts above it, where the link may end before that name; those starts no longer use the others.
void LinkIndex::addPatternsOf(Id file)
{
    const std::string path = m_tree.subpath(file);
    m_longestSubpath = std::max(m_longestSubpath, path.size());
    std::vector<Id> folders = {m_tree.parent(file)};
    while (folders.back() != SiteTree::root)
        folders.push_back(m_tree.parent(folders.back()));
    std::reverse(folders.begin(), folders.end());

    Pattern pattern;
    pattern.target = file;
    const auto add = [&](Id folder, Id via, const std::string& text) {
        pattern.folder = folder;
        pattern.via = via;
        pattern.textBegin = static_cast<std::uint32_t>(m_texts.size());
        pattern.textLength = static_cast<std::uint32_t>(text.size());
        m_texts += text;
        m_patterns.push_back(pattern);
    };
    for (const auto& [component, rest] : indexNamesIn(path)) {
        const Id below = component + 1 < folders.size() ? folders[component + 1] : SiteTree::none;
        m_upPatterns[folders[component]].push_back({caseFolded(rest), file, below});
        if (component > 0)
            add(folders[component - 1], folders[component],
                caseFolded(std::string(m_tree.name(folders[component])).append(rest)));
        pattern.leastDepth = static_cast<std::uint16_t>(component);
        pattern.leastDepthAbove = static_cast<std::uint16_t>(component + 1);
    }
    add(folders.back(), SiteTree::none, caseFolded(m_tree.name(file)));
}

void LinkIndex::sortPatterns()
{
    std::sort(m_patterns.begin(), m_patterns.end(), [this](const Pattern& a, const Pattern& b) {
        return a.folder != b.folder ? a.folder < b.folder : text(a) < text(b);
    });
    m_firstPattern.assign(m_tree.size() + 1, 0);
    for (const Pattern& pattern : m_patterns)
        ++m_firstPattern[pattern.folder + 1];
    for (std::size_t folder = 1; folder < m_firstPattern.size(); ++folder)
        m_firstPattern[folder] += m_firstPattern[folder - 1];
    for (std::uint32_t i = 1; i < m_patterns.size(); ++i) {
        const std::uint32_t first = m_firstPattern[m_patterns[i].folder];
        std::uint32_t candidate = i > first ? i - 1 - first : none;
        while (candidate != none && !text(m_patterns[i]).starts_with(text(m_patterns[first + candidate])))
            candidate = m_patterns[first + candidate].prefix;
        m_patterns[i].prefix = candidate;
    }
}

std::span<const LinkIndex::Pattern> LinkIndex::patternsIn(Id folder) const
{
    return std::span(m_patterns)
        .subspan(m_firstPattern[folder], m_firstPattern[folder + 1] - m_firstPattern[folder]);
}

std::string_view LinkIndex::text(const Pattern& pattern) const
{
    return std::string_view(m_texts).substr(pattern.textBegin, pattern.textLength);
}

bool LinkIndex::applies(const Pattern& pattern, const Start& start) const
{
    const unsigned least = start.levels == 0 ? pattern.leastDepth : pattern.leastDepthAbove;
    if (m_depths[start.folder] < least)
        return false;
    return pattern.folder != start.folder || pattern.via == SiteTree::none || pattern.via != start.forbidden;
}

std::span<const LinkIndex::UpPattern> LinkIndex::upPatternsTo(Id folder) const
{
    const auto found = m_upPatterns.find(folder);
    return found == m_upPatterns.end() ? std::span<const UpPattern>() : found->second;
}

bool LinkIndex::applies(const UpPattern& pattern, const Start& start)
{
    return pattern.via == SiteTree::none || pattern.via != start.forbidden;
}

std::vector<LinkIndex::Start> LinkIndex::startsFrom(Id folder, std::size_t most) const
{
    std::vector<Start> starts = {{folder, 0, SiteTree::none}};
    while (starts.size() <= most && starts.back().folder != SiteTree::root) {
        const Start below = starts.back();
        starts.push_back({m_tree.parent(below.folder), below.levels + 1, below.folder});
    }
    return starts;
}

} // namespace luma
