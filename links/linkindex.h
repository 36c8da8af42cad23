// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/dottednames.h"
#include "links/sitetree.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace luma {

/// Knows for every file of a site the texts that a link must begin with to count as one to it (the relative
/// path from the page, index pages by their folder, letter case ignored), laid out so that one link finds all
/// files it counts for without a look at the others: per folder a sorted table of names.
///
/// Marking is safe on any thread; the tree must outlive the index.
class LinkIndex final
{
public:
    using Id = SiteTree::Id;

    explicit LinkIndex(const SiteTree& tree);

    [[nodiscard]] const SiteTree& tree() const { return m_tree; }
    [[nodiscard]] bool isLinked(Id file) const { return m_linked[file].load(std::memory_order_relaxed); }
    void setLinked(Id file) { m_linked[file].store(true, std::memory_order_relaxed); }

    /// What one thread has seen already.
    class Seen final
    {
    public:
        /// Whether this is new.
        bool insert(std::uint64_t hash);

    private:
        std::vector<std::uint64_t> m_table;
        std::size_t m_count = 0;
    };

    /// Marks every file that a link with this decoded value, in a page in `folder`, counts for.
    void markLinkedBy(std::string_view value, Id folder, Seen& seen);

    /// Marks every file that a url(...) in a style element of a page in `folder` counts for; `reference` is
    /// what follows the opening bracket. Only files whose path holds no character special to regular
    /// expressions but the dot, which stands for any character. One thread.
    void markReferencedBy(std::string_view reference, Id folder);

    /// The same for a style sheet, where only the file's name counts.
    void markNamedBy(std::string_view reference);

    /// What stands behind each "url(" in a text, as far as it can matter to the two functions above.
    [[nodiscard]] std::vector<std::string_view> references(std::string_view text) const;

    /// Whether `name` stands for itself in a regular expression, dots apart.
    static bool isPlainPattern(std::string_view name);

private:
    static constexpr std::uint32_t none = ~0U;

    // A text that a link must go on with once its way from the start folder has come to `folder`.
    struct Pattern
    {
        Id folder = 0;
        std::uint32_t textBegin = 0;
        std::uint32_t textLength = 0;
        std::uint32_t prefix = none; // the pattern before it in the table that is a prefix of it
        Id target = 0;
        Id via = SiteTree::none; // the folder right below `folder` through which it leads
        // How deep the start folder must be for it: where the way begins in the page's folder, and above it.
        std::uint16_t leastDepth = 0;
        std::uint16_t leastDepthAbove = 0;
    };
    // An index page is reached from below by "..", then the rest of its name behind "html".
    struct UpPattern
    {
        std::string rest;
        Id target = 0;
        Id via = SiteTree::none;
    };
    // Where a way through the tree starts: `levels` above the page's folder, and not back down into
    // `forbidden`.
    struct Start
    {
        Id folder = SiteTree::root;
        std::size_t levels = 0;
        Id forbidden = SiteTree::none;
    };
    struct FolderNames
    {
        DottedNames patterns;
        DottedNames folders;
    };

    void addPatternsOf(Id file, std::string& texts);
    void addFolders();
    void linkPrefixes();
    [[nodiscard]] std::string_view text(const Pattern& pattern) const;
    [[nodiscard]] bool applies(const Pattern& pattern, const Start& start) const;
    [[nodiscard]] std::vector<Start> startsFrom(Id folder, std::size_t most) const;
    [[nodiscard]] std::uint32_t lastNotAfter(Id folder, std::string_view wanted) const;
    void markUp(const Start& start, std::string_view rest);
    void markDown(const Start& start, Id folder, std::string_view rest);

    const FolderNames& namesOf(Id folder);
    void referDown(const Start& start, Id folder, std::u32string_view text, std::size_t position);
    void referUp(const Start& start, std::u32string_view text, std::size_t position);

    const SiteTree& m_tree;
    std::unique_ptr<std::atomic<bool>[]> m_linked;
    std::vector<Pattern> m_patterns; // sorted by folder, then text
    std::string m_texts;
    std::vector<std::uint32_t> m_firstPattern; // by folder, and one more
    std::vector<std::uint16_t> m_depth;        // of folders
    std::unordered_map<Id, std::vector<UpPattern>> m_upPatterns;
    std::unordered_multimap<std::uint64_t, Id> m_foldersByName; // by parent and folded name
    std::vector<std::string> m_foldedFolderNames;               // by folder
    bool m_namesHoldCutCharacters = false;                      // '#' or '?'
    bool m_hasIndexFolders = false;
    std::size_t m_longestReference = 0;
    std::unordered_map<Id, FolderNames> m_folderNames;
    DottedNames m_names;
    std::vector<std::vector<Id>> m_filesByName; // what m_names counts
};

} // namespace luma
