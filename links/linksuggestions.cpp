// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/linksuggestions.h"

#include "base/pathbelow.h"
#include "base/utf8.h"
#include "links/bytehash.h"
#include "links/percentencoding.h"

#include <algorithm>
#include <bit>

namespace luma {

namespace {

// Another name is similar with at most this many letters added, left out or changed.
std::size_t mostChanges(std::string_view name)
{
    return std::clamp<std::size_t>(name.size() / 5, 1, 3);
}

std::uint64_t lettersOf(std::string_view name)
{
    std::uint64_t bits = 0;
    for (const char c : name)
        bits |= std::uint64_t{1} << (static_cast<unsigned char>(c) % 64U);
    return bits;
}

// The letters to add, leave out or change to make one name the other (Levenshtein distance); `most` + 1 where it is
// more than `most`.
std::size_t changesBetween(std::string_view a, std::string_view b, std::size_t most)
{
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j)
        row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        std::size_t least = row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t changed = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({changed, row[j] + 1, row[j - 1] + 1});
            least = std::min(least, row[j]);
        }
        if (least > most)
            return most + 1;
    }
    return std::min(row.back(), most + 1);
}

std::size_t commonLength(std::string_view a, std::string_view b)
{
    return static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
}

} // namespace

LinkSuggestions::LinkSuggestions(const SiteTree& tree) : m_tree(&tree), m_letters(tree.size())
{
    for (Id id = 1; id < tree.size(); ++id) {
        m_byFoldedPath.emplace(hashBytes(caseFolded(tree.subpath(id))), id);
        if (tree.type(id) != SiteTree::Type::Folder)
            m_byName.emplace(hashBytes(tree.name(id)), id);
        m_children[tree.parent(id)].push_back(id);
        m_letters[id] = lettersOf(tree.name(id));
    }
}

LinkSuggestions::Id LinkSuggestions::withOtherCase(std::string_view subpath) const
{
    const std::string folded = caseFolded(subpath);
    const auto [begin, end] = m_byFoldedPath.equal_range(hashBytes(folded));
    Id found = SiteTree::none;
    for (auto entry = begin; entry != end; ++entry) {
        if (caseFolded(m_tree->subpath(entry->second)) == folded)
            found = std::min(found, entry->second);
    }
    return found;
}

LinkSuggestions::Id LinkSuggestions::nearest(std::string_view subpath) const
{
    const std::string_view name = namePart(subpath);
    const Id folderId = m_tree->find(folderPart(subpath));
    const Id similar = folderId == SiteTree::none ? folderId : mostSimilarIn(folderId, name);
    return similar == SiteTree::none ? ofSameName(subpath, name) : similar;
}

LinkSuggestions::Id LinkSuggestions::mostSimilarIn(Id folder, std::string_view name) const
{
    const auto children = m_children.find(folder);
    if (children == m_children.end())
        return SiteTree::none;
    std::size_t least = mostChanges(name) + 1;
    const std::uint64_t letters = lettersOf(name);
    Id found = SiteTree::none;
    for (const Id child : children->second) {
        const std::string_view other = m_tree->name(child);
        const std::size_t longer = std::max(name.size(), other.size()) - std::min(name.size(), other.size());
        // Each change adds one letter and removes one at most.
        if (longer >= least ||
            static_cast<std::size_t>(std::popcount(letters ^ m_letters[child])) > 2 * (least - 1))
            continue;
        const std::size_t changes = changesBetween(name, other, least - 1);
        if (changes < least) {
            least = changes;
            found = child;
        }
    }
    return found;
}

LinkSuggestions::Id LinkSuggestions::ofSameName(std::string_view subpath, std::string_view name) const
{
    constexpr int mostCompared = 64;
    const auto [begin, end] = m_byName.equal_range(hashBytes(name));
    Id found = SiteTree::none;
    std::size_t longest = 0;
    int compared = 0;
    for (auto entry = begin; entry != end && compared < mostCompared; ++entry, ++compared) {
        if (m_tree->name(entry->second) != name)
            continue;
        const std::size_t common = commonLength(subpath, m_tree->subpath(entry->second));
        if (found == SiteTree::none || common > longest || (common == longest && entry->second < found)) {
            longest = common;
            found = entry->second;
        }
    }
    return found;
}

std::string addressFrom(std::string_view page, std::string_view target)
{
    std::size_t shared = 0; // of the folders both are below, with their slashes
    for (std::size_t i = 0; i < std::min(page.size(), target.size()) && page[i] == target[i]; ++i) {
        if (page[i] == '/')
            shared = i + 1;
    }
    std::string address;
    for (std::size_t i = shared; i < page.size(); ++i) {
        if (page[i] == '/')
            address += "../";
    }
    const std::string_view rest = target.substr(shared);
    // Without "./", what stands before a colon would be a scheme.
    if (address.empty() && rest.substr(0, rest.find('/')).find(':') != std::string_view::npos)
        address = "./";
    for (const char c : rest) {
        if (c == '%')
            address += "%25";
        else
            appendEncoded(address, c, AddressPart::Path);
    }
    return address;
}

} // namespace luma
