// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/urlreferences.h"

#include "base/ascii.h"
#include "base/utf8.h"

#include <algorithm>

namespace luma {

namespace {

// Whether the closing bracket follows, after any number of blanks.
bool closesAt(std::u32string_view text, std::size_t position)
{
    while (position < text.size() && text[position] == U' ')
        ++position;
    return position < text.size() && text[position] == U')';
}

// Whether `pattern` matches at `position`, its dots any character but a line feed.
bool matchesAt(std::u32string_view text, std::size_t position, std::u32string_view pattern)
{
    if (position > text.size() || pattern.size() > text.size() - position)
        return false;
    return std::equal(pattern.begin(), pattern.end(), text.begin() + static_cast<std::ptrdiff_t>(position),
                      [](char32_t p, char32_t t) { return p == U'.' ? t != U'\n' : p == t; });
}

} // namespace

bool UrlReferences::isPlainPattern(std::string_view name)
{
    return name.find_first_of("\\^$|?*+()[]{}\n") == std::string_view::npos && isValidUtf8(name);
}

std::vector<std::string_view> UrlReferences::in(std::string_view text) const
{
    // Climbing takes three bytes a level; a folded character has at most four bytes.
    const std::size_t longest = 4 * (m_index.longestSubpath() + 3 * m_index.longestSubpath());
    const auto afterBlanks = [text](std::size_t position) {
        return std::min(text.find_first_not_of(' ', std::min(position, text.size())), text.size());
    };
    std::vector<std::string_view> references;
    for (std::size_t open = text.find('('); open != std::string_view::npos; open = text.find('(', open + 1)) {
        if (open < 3 || !equalIgnoringAsciiCase(text.substr(open - 3, 3), "url"))
            continue;
        const std::size_t end = afterBlanks(afterBlanks(open + 1) + longest);
        references.push_back(text.substr(open + 1, end - open));
    }
    return references;
}

const UrlReferences::FolderNames& UrlReferences::namesIn(Id folder)
{
    const auto [entry, isNew] = m_folderNames.try_emplace(folder);
    FolderNames& names = entry->second;
    if (!isNew)
        return names;
    const std::span<const LinkIndex::Pattern> patterns = m_index.patternsIn(folder);
    for (std::uint32_t i = 0; i < patterns.size(); ++i) {
        if (const std::string_view text = m_index.text(patterns[i]); isPlainPattern(text))
            names.patterns.add(caseFoldedCodePoints(text), i);
    }
    const SiteTree& tree = m_index.tree();
    for (Id child = folder + 1; child < tree.size(); ++child) {
        if (tree.parent(child) == folder && tree.type(child) == SiteTree::Type::Folder &&
            isPlainPattern(m_index.foldedName(child)))
            names.folders.add(caseFoldedCodePoints(m_index.foldedName(child)), child);
    }
    return names;
}

void UrlReferences::markFromPage(std::string_view reference, Id folder)
{
    const std::u32string text = caseFoldedCodePoints(reference);
    // Blanks belong to the brackets, or stand for the dots of "../".
    for (std::size_t begin = 0; begin < text.size(); ++begin) {
        std::size_t climbs = 0;
        while (matchesAt(text, begin + 3 * climbs, U"../"))
            ++climbs;
        for (const LinkIndex::Start& start : m_index.startsFrom(folder, climbs + 1)) {
            if (start.levels > 0)
                markUp(start, text, begin + 3 * (start.levels - 1));
            if (start.levels <= climbs)
                markDown(start, start.folder, text, begin + 3 * start.levels);
        }
        if (text[begin] != U' ')
            return;
    }
}

void UrlReferences::markUp(const LinkIndex::Start& start, std::u32string_view text, std::size_t position)
{
    for (const LinkIndex::UpPattern& pattern : m_index.upPatternsTo(start.folder)) {
        if (!isPlainPattern(pattern.rest) || !LinkIndex::applies(pattern, start))
            continue;
        const std::u32string name = U".." + caseFoldedCodePoints(pattern.rest);
        if (matchesAt(text, position, name) && closesAt(text, position + name.size()))
            m_index.setLinked(pattern.target);
    }
}

void UrlReferences::markDown(const LinkIndex::Start& start, Id folder, std::u32string_view text,
                             std::size_t position)
{
    // Stays valid while the recursion adds the names of other folders.
    const FolderNames& names = namesIn(folder);
    const std::span<const LinkIndex::Pattern> patterns = m_index.patternsIn(folder);
    names.patterns.find(text, position, [&](std::uint32_t pattern, std::size_t end) {
        if (closesAt(text, end) && m_index.applies(patterns[pattern], start))
            m_index.setLinked(patterns[pattern].target);
    });
    names.folders.find(text, position, [&](std::uint32_t child, std::size_t end) {
        if (child != start.forbidden && end < text.size() && text[end] == U'/')
            markDown(start, child, text, end + 1);
    });
}

void UrlReferences::addFileNames()
{
    const SiteTree& tree = m_index.tree();
    std::unordered_map<std::string_view, std::uint32_t> known;
    for (const Id file : tree.files()) {
        if (!isPlainPattern(tree.name(file)))
            continue;
        const auto [entry, isNew] =
            known.try_emplace(tree.name(file), static_cast<std::uint32_t>(m_filesByName.size()));
        if (isNew) {
            m_filesByName.emplace_back();
            m_fileNames.add(caseFoldedCodePoints(tree.name(file)), entry->second);
        }
        m_filesByName[entry->second].push_back(file);
    }
}

void UrlReferences::markFromSheet(std::string_view reference)
{
    if (m_filesByName.empty())
        addFileNames();
    const std::u32string text = caseFoldedCodePoints(reference);
    for (std::size_t begin = 0; begin < text.size(); ++begin) {
        m_fileNames.find(text, begin, [&](std::uint32_t name, std::size_t end) {
            if (!closesAt(text, end))
                return;
            for (const Id file : m_filesByName[name])
                m_index.setLinked(file);
        });
        if (text[begin] != U' ')
            return;
    }
}

} // namespace luma
