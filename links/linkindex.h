// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/sitetree.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace luma {

/// What links to each file of a site look like, and which files have been linked so far.
///
/// A link counts for a file when it begins with the relative path from its page to the file, letter case
/// ignored; from "/index." to "html" that path is cut. Comparing every link with every file would be far too
/// slow, so each folder has a sorted table of patterns: the texts that may follow once a link has led there.
/// Two engines use the table: AttributeLinks for the values of link attributes, UrlReferences for url(...).
///
/// An example. The site:
///
///     index.html         <a href="Docs/#top"> <style>p { background: url( img/a-png ) }</style>
///     docs/index.html    <img src="../img/B.PNG?v=2">
///     docs/style.css     h1 { background: url(c.png) }
///     img/a.png, img/b.png, img/c.png, img/d.png
///
/// Every file has its name as a pattern in its own folder, such as "b.png" in img. docs/index.html also has
/// "docs" in the site's folder, for the pages there. An index page is reached from the folders below it by
/// climbing alone: the site's index.html by ".." from docs and img.
///
/// AttributeLinks reads "Docs/#top" as "docs/". "docs" is a prefix of it, so docs/index.html is linked. For
/// "../img/b.png" it goes up from docs, marks index.html on the way (".." is a prefix), goes down into img
/// and finds "b.png".
///
/// UrlReferences finds img/a.png by "img/a-png": names are regular expressions there, so the dot matches any
/// character. In a style sheet only the file name counts, so "c.png" finds img/c.png, and would find it in
/// any other folder.
///
/// Nothing has linked docs/style.css and img/d.png.
///
/// The tree must outlive the index. Marking is safe on any thread.
class LinkIndex final
{
public:
    using Id = SiteTree::Id;
    static constexpr std::uint32_t none = ~0U;

    /// What must follow in a link once it has led to `folder`.
    struct Pattern
    {
        Id folder = 0;
        std::uint32_t textBegin = 0;
        std::uint32_t textLength = 0;
        std::uint32_t prefix = none; // the nearest pattern of the folder before it that is a prefix of it
        Id target = 0;
        Id via = SiteTree::none; // the folder right below `folder` that leads to the target
        // How deep the start must be: where it is the page's own folder, and where it is one above.
        std::uint16_t leastDepth = 0;
        std::uint16_t leastDepthAbove = 0;
    };
    /// An index page as pages below it reach it: by ".." and what follows "html" in its path.
    struct UpPattern
    {
        std::string rest;
        Id target = 0;
        Id via = SiteTree::none;
    };
    /// Where the way down begins: `levels` above the page's folder. A relative path never climbs out of a
    /// folder and goes back down into it, so the way does not lead into `forbidden`.
    struct Start
    {
        Id folder = SiteTree::root;
        std::size_t levels = 0;
        Id forbidden = SiteTree::none;
    };

    explicit LinkIndex(const SiteTree& tree);

    [[nodiscard]] const SiteTree& tree() const { return m_tree; }
    [[nodiscard]] bool isLinked(Id file) const { return m_linked[file].load(std::memory_order_relaxed); }
    void setLinked(Id file) { m_linked[file].store(true, std::memory_order_relaxed); }

    /// The patterns of a folder, sorted by text.
    [[nodiscard]] std::span<const Pattern> patternsIn(Id folder) const;
    [[nodiscard]] std::string_view text(const Pattern& pattern) const;
    [[nodiscard]] bool applies(const Pattern& pattern, const Start& start) const;
    /// The index pages that a link may mean by climbing to `folder`.
    [[nodiscard]] std::span<const UpPattern> upPatternsTo(Id folder) const;
    [[nodiscard]] static bool applies(const UpPattern& pattern, const Start& start);
    /// The page's folder and up to `most` folders above it, nearest first.
    [[nodiscard]] std::vector<Start> startsFrom(Id folder, std::size_t most) const;

    /// Letter case folded.
    [[nodiscard]] const std::string& foldedName(Id folder) const { return m_foldedNames[folder]; }
    /// Whether a name of the site holds '#' or '?', so that links must be read with their tails.
    [[nodiscard]] bool hasNamesWithTails() const { return m_hasNamesWithTails; }
    /// The length of the longest subpath, in bytes.
    [[nodiscard]] std::size_t longestSubpath() const { return m_longestSubpath; }

private:
    void addFolders();
    void addPatternsOf(Id file);
    void sortPatterns();

    const SiteTree& m_tree;
    std::unique_ptr<std::atomic<bool>[]> m_linked;
    std::vector<Pattern> m_patterns; // sorted by folder, then text
    std::string m_texts;
    std::vector<std::uint32_t> m_firstPattern; // by folder, and one more
    std::unordered_map<Id, std::vector<UpPattern>> m_upPatterns;
    std::vector<std::uint16_t> m_depths;    // by folder
    std::vector<std::string> m_foldedNames; // by folder
    bool m_hasNamesWithTails = false;
    std::size_t m_longestSubpath = 0;
};

} // namespace luma
