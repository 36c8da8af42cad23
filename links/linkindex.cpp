// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/linkindex.h"

#include "base/utf8.h"
#include "links/bytehash.h"

#include <algorithm>

namespace luma {

namespace {

constexpr std::string_view indexBegin = "index.";
constexpr std::string_view indexEnd = "html";

// The end of the last "html" behind "index." on its line, `rest` being what follows "index."; 0 for none.
std::size_t endOfIndex(std::string_view rest)
{
    rest = rest.substr(0, rest.find('\n'));
    const std::size_t last = rest.rfind(indexEnd);
    return last == std::string_view::npos ? 0 : last + indexEnd.size();
}

// The places of `path` where an index name begins that may be cut out, each with what is left behind it.
struct IndexName
{
    std::size_t component; // counted from 0
    std::size_t begin;     // bytes into the path
    std::string_view rest;
};

std::vector<IndexName> indexNamesIn(std::string_view path)
{
    std::vector<IndexName> names;
    std::size_t component = 0;
    for (std::size_t begin = 0;; ++component) {
        if (path.substr(begin).starts_with(indexBegin)) {
            const std::string_view rest = path.substr(begin + indexBegin.size());
            if (const std::size_t end = endOfIndex(rest); end > 0)
                names.push_back({component, begin, rest.substr(end)});
        }
        const std::size_t slash = path.find('/', begin);
        if (slash == std::string_view::npos)
            return names;
        begin = slash + 1;
    }
}

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

// Behind what a reference names may come blanks, then its closing bracket.
bool closesAt(std::u32string_view text, std::size_t position)
{
    while (position < text.size() && text[position] == U' ')
        ++position;
    return position < text.size() && text[position] == U')';
}

// Whether `pattern` stands at `position` of `text`, its dots being any character but a line feed.
bool matchesAt(std::u32string_view text, std::size_t position, std::u32string_view pattern)
{
    if (pattern.size() > text.size() - position)
        return false;
    return std::equal(pattern.begin(), pattern.end(), text.begin() + static_cast<std::ptrdiff_t>(position),
                      [](char32_t p, char32_t t) { return p == U'.' ? t != U'\n' : p == t; });
}

} // namespace

bool LinkIndex::Seen::insert(std::uint64_t hash)
{
    constexpr std::size_t mostRemembered = std::size_t{1} << 22U;
    hash += hash == 0 ? 1 : 0;
    if (m_count * 2 >= m_table.size()) {
        std::vector<std::uint64_t> old(
            m_count >= mostRemembered ? 1024 : std::max<std::size_t>(m_table.size() * 2, 1024));
        old.swap(m_table);
        if (m_count >= mostRemembered)
            old.clear();
        m_count = 0;
        for (const std::uint64_t known : old) {
            if (known != 0)
                insert(known);
        }
    }
    std::size_t slot = hash & (m_table.size() - 1);
    for (; m_table[slot] != 0; slot = (slot + 1) & (m_table.size() - 1)) {
        if (m_table[slot] == hash)
            return false;
    }
    m_table[slot] = hash;
    ++m_count;
    return true;
}

LinkIndex::LinkIndex(const SiteTree& tree)
    : m_tree(tree), m_linked(std::make_unique<std::atomic<bool>[]>(tree.size()))
{
    addFolders();
    for (const Id file : tree.files())
        addPatternsOf(file, m_texts);
    std::sort(m_patterns.begin(), m_patterns.end(), [this](const Pattern& a, const Pattern& b) {
        return a.folder != b.folder ? a.folder < b.folder : text(a) < text(b);
    });
    linkPrefixes();
}

void LinkIndex::addFolders()
{
    m_depth.assign(m_tree.size(), 0);
    m_foldedFolderNames.resize(m_tree.size());
    for (Id id = 1; id < m_tree.size(); ++id) {
        m_namesHoldCutCharacters =
            m_namesHoldCutCharacters || m_tree.name(id).find_first_of("#?") != std::string_view::npos;
        if (m_tree.type(id) != SiteTree::Type::Folder)
            continue;
        m_depth[id] = static_cast<std::uint16_t>(m_depth[m_tree.parent(id)] + 1);
        m_foldedFolderNames[id] = caseFolded(m_tree.name(id));
        m_foldersByName.emplace(folderKey(m_tree.parent(id), m_foldedFolderNames[id]), id);
    }
}

// With no index name on the way a file has one pattern: its name, in its folder. Each index name gives one
// more for the starts far enough above it, where the link may end before it; and takes those starts from the
// others.
void LinkIndex::addPatternsOf(Id file, std::string& texts)
{
    const std::string path = m_tree.subpath(file);
    m_longestReference = std::max(m_longestReference, path.size());
    std::vector<Id> folders = {m_tree.parent(file)};
    while (folders.back() != SiteTree::root)
        folders.push_back(m_tree.parent(folders.back()));
    std::reverse(folders.begin(), folders.end());

    Pattern pattern;
    pattern.target = file;
    const auto add = [&](const std::string& name) {
        pattern.textBegin = static_cast<std::uint32_t>(texts.size());
        pattern.textLength = static_cast<std::uint32_t>(name.size());
        texts += name;
        m_patterns.push_back(pattern);
    };
    const std::vector<IndexName> indexNames = indexNamesIn(path);
    m_hasIndexFolders = m_hasIndexFolders || indexNames.size() > 1 ||
                        (indexNames.size() == 1 && indexNames.front().component + 1 < folders.size());
    for (const IndexName& index : indexNames) {
        const Id next = index.component + 1 < folders.size() ? folders[index.component + 1] : SiteTree::none;
        m_upPatterns[folders[index.component]].push_back({caseFolded(index.rest), file, next});
        if (index.component > 0) {
            pattern.folder = folders[index.component - 1];
            pattern.via = folders[index.component];
            add(caseFolded(std::string(m_tree.name(pattern.via)).append(index.rest)));
        }
        pattern.leastDepth = static_cast<std::uint16_t>(index.component);
        pattern.leastDepthAbove = static_cast<std::uint16_t>(index.component + 1);
    }
    pattern.folder = folders.back();
    pattern.via = SiteTree::none;
    add(caseFolded(m_tree.name(file)));
}

std::string_view LinkIndex::text(const Pattern& pattern) const
{
    return std::string_view(m_texts).substr(pattern.textBegin, pattern.textLength);
}

void LinkIndex::linkPrefixes()
{
    m_firstPattern.assign(m_tree.size() + 1, 0);
    for (const Pattern& pattern : m_patterns)
        ++m_firstPattern[pattern.folder + 1];
    for (std::size_t folder = 1; folder < m_firstPattern.size(); ++folder)
        m_firstPattern[folder] += m_firstPattern[folder - 1];
    for (std::uint32_t i = 1; i < m_patterns.size(); ++i) {
        if (m_patterns[i - 1].folder != m_patterns[i].folder)
            continue;
        std::uint32_t candidate = i - 1;
        while (candidate != none && !text(m_patterns[i]).starts_with(text(m_patterns[candidate])))
            candidate = m_patterns[candidate].prefix;
        m_patterns[i].prefix = candidate;
    }
}

bool LinkIndex::applies(const Pattern& pattern, const Start& start) const
{
    const unsigned least = start.levels == 0 ? pattern.leastDepth : pattern.leastDepthAbove;
    if (m_depth[start.folder] < least)
        return false;
    return pattern.folder != start.folder || pattern.via == SiteTree::none || pattern.via != start.forbidden;
}

std::vector<LinkIndex::Start> LinkIndex::startsFrom(Id folder, std::size_t most) const
{
    std::vector<Start> starts = {{folder, 0, SiteTree::none}};
    while (starts.size() <= most && starts.back().folder != SiteTree::root) {
        const Start& below = starts.back();
        starts.push_back({m_tree.parent(below.folder), below.levels + 1, below.folder});
    }
    return starts;
}

void LinkIndex::markLinkedBy(std::string_view value, Id folder, Seen& seen)
{
    if (value.empty() || value.front() == '#' || value.front() == '/') {
        // No relative path begins so, unless a name does.
        if (!m_namesHoldCutCharacters || value.empty() || value.front() == '/')
            return;
    }
    if (!m_namesHoldCutCharacters)
        value = pathPart(value);
    if (!seen.insert(hashBytes(value, folder)))
        return;
    const std::string folded = caseFolded(value);
    const std::string_view link = folded;
    const std::size_t climbs = climbsIn(link);
    for (const Start& start : startsFrom(folder, climbs + 1)) {
        if (start.levels > 0 && !m_upPatterns.empty())
            markUp(start, link.substr(3 * (start.levels - 1)));
        if (start.levels <= climbs)
            markDown(start, start.folder, link.substr(3 * start.levels));
    }
}

void LinkIndex::markUp(const Start& start, std::string_view rest)
{
    const auto found = m_upPatterns.find(start.folder);
    if (found == m_upPatterns.end() || !rest.starts_with(".."))
        return;
    for (const UpPattern& pattern : found->second) {
        if ((pattern.via == SiteTree::none || pattern.via != start.forbidden) &&
            rest.substr(2).starts_with(pattern.rest))
            setLinked(pattern.target);
    }
}

// The last pattern of the folder that does not come after `wanted`; all patterns that are prefixes of
// `wanted` are among its own prefixes.
std::uint32_t LinkIndex::lastNotAfter(Id folder, std::string_view wanted) const
{
    const auto begin = m_patterns.begin() + m_firstPattern[folder];
    const auto end = m_patterns.begin() + m_firstPattern[folder + 1];
    const auto after =
        std::upper_bound(begin, end, wanted, [this](std::string_view key, const Pattern& pattern) {
            return key < text(pattern);
        });
    return after == begin ? none : static_cast<std::uint32_t>(after - m_patterns.begin() - 1);
}

void LinkIndex::markDown(const Start& start, Id folder, std::string_view rest)
{
    for (std::uint32_t i = lastNotAfter(folder, rest); i != none; i = m_patterns[i].prefix) {
        if (rest.starts_with(text(m_patterns[i])) && applies(m_patterns[i], start))
            setLinked(m_patterns[i].target);
    }
    const std::size_t slash = rest.find('/');
    if (slash == std::string_view::npos)
        return;
    const std::string_view name = rest.substr(0, slash);
    const auto [begin, end] = m_foldersByName.equal_range(folderKey(folder, name));
    for (auto next = begin; next != end; ++next) {
        const Id child = next->second;
        if (child != start.forbidden && m_tree.parent(child) == folder && m_foldedFolderNames[child] == name)
            markDown(start, child, rest.substr(slash + 1));
    }
}

bool LinkIndex::isPlainPattern(std::string_view name)
{
    return name.find_first_of("\\^$|?*+()[]{}\n") == std::string_view::npos && isValidUtf8(name);
}

std::vector<std::string_view> LinkIndex::references(std::string_view text) const
{
    std::vector<std::string_view> references;
    for (std::size_t open = text.find('('); open != std::string_view::npos; open = text.find('(', open + 1)) {
        if (open < 3 || !equalIgnoringAsciiCase(text.substr(open - 3, 3), "url"))
            continue;
        const std::size_t name = std::min(text.find_first_not_of(' ', open + 1), text.size());
        // Climbing takes three bytes a level; a folded character is not longer than four bytes.
        const std::size_t longest = 4 * (m_longestReference + 3 * m_longestReference);
        const std::size_t end =
            std::min(text.find_first_not_of(' ', std::min(name + longest, text.size())), text.size());
        references.push_back(text.substr(open + 1, std::min(end + 1, text.size()) - open - 1));
    }
    return references;
}

const LinkIndex::FolderNames& LinkIndex::namesOf(Id folder)
{
    const auto [entry, isNew] = m_folderNames.try_emplace(folder);
    if (!isNew)
        return entry->second;
    for (std::uint32_t i = m_firstPattern[folder]; i < m_firstPattern[folder + 1]; ++i) {
        if (isPlainPattern(text(m_patterns[i])))
            entry->second.patterns.add(caseFoldedCodePoints(text(m_patterns[i])), i);
    }
    for (Id child = folder + 1; child < m_tree.size(); ++child) {
        if (m_tree.parent(child) == folder && m_tree.type(child) == SiteTree::Type::Folder &&
            isPlainPattern(m_foldedFolderNames[child]))
            entry->second.folders.add(caseFoldedCodePoints(m_foldedFolderNames[child]), child);
    }
    return entry->second;
}

void LinkIndex::referDown(const Start& start, Id folder, std::u32string_view text, std::size_t position)
{
    // A copy of the pointer only: filling in another folder's names leaves this one's where they are.
    const FolderNames& names = namesOf(folder);
    names.patterns.find(text, position, [&](std::uint32_t pattern, std::size_t end) {
        if (closesAt(text, end) && applies(m_patterns[pattern], start))
            setLinked(m_patterns[pattern].target);
    });
    names.folders.find(text, position, [&](std::uint32_t child, std::size_t end) {
        if (child != start.forbidden && end < text.size() && text[end] == U'/')
            referDown(start, child, text, end + 1);
    });
}

void LinkIndex::referUp(const Start& start, std::u32string_view text, std::size_t position)
{
    const auto found = m_upPatterns.find(start.folder);
    if (found == m_upPatterns.end())
        return;
    for (const UpPattern& pattern : found->second) {
        if (!isPlainPattern(pattern.rest) ||
            (pattern.via != SiteTree::none && pattern.via == start.forbidden))
            continue;
        const std::u32string name = U".." + caseFoldedCodePoints(pattern.rest);
        if (position <= text.size() && matchesAt(text, position, name) &&
            closesAt(text, position + name.size()))
            setLinked(pattern.target);
    }
}

void LinkIndex::markReferencedBy(std::string_view reference, Id folder)
{
    const std::u32string folded = caseFoldedCodePoints(reference);
    const std::u32string_view text = folded;
    // Blanks may belong to the brackets or stand for the dots of "../".
    for (std::size_t begin = 0; begin < text.size(); ++begin) {
        std::size_t climbs = 0;
        while (begin + 3 * climbs <= text.size() && matchesAt(text, begin + 3 * climbs, U"../"))
            ++climbs;
        for (const Start& start : startsFrom(folder, climbs + 1)) {
            if (start.levels > 0)
                referUp(start, text, begin + 3 * (start.levels - 1));
            if (start.levels <= climbs)
                referDown(start, start.folder, text, begin + 3 * start.levels);
        }
        if (text[begin] != U' ')
            return;
    }
}

void LinkIndex::markNamedBy(std::string_view reference)
{
    if (m_filesByName.empty()) {
        std::unordered_map<std::string_view, std::uint32_t> known;
        for (const Id file : m_tree.files()) {
            if (!isPlainPattern(m_tree.name(file)))
                continue;
            const auto [entry, isNew] =
                known.try_emplace(m_tree.name(file), static_cast<std::uint32_t>(m_filesByName.size()));
            if (isNew) {
                m_filesByName.emplace_back();
                m_names.add(caseFoldedCodePoints(m_tree.name(file)), entry->second);
            }
            m_filesByName[entry->second].push_back(file);
        }
    }
    const std::u32string folded = caseFoldedCodePoints(reference);
    for (std::size_t begin = 0; begin < folded.size(); ++begin) {
        m_names.find(folded, begin, [&](std::uint32_t name, std::size_t end) {
            for (const Id file : closesAt(folded, end) ? m_filesByName[name] : std::vector<Id>())
                setLinked(file);
        });
        if (folded[begin] != U' ')
            return;
    }
}

} // namespace luma
