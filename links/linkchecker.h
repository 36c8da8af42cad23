// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/filereader.h"
#include "links/sitetree.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace luma {

enum class LinkState : std::uint8_t { External, Present, Missing };

/// One link of a page as a report has found it. The value is decoded and without a query after ".php".
struct LinkFinding
{
    std::uint8_t attribute = 0; // index into linkAttributes
    LinkState state = LinkState::Present;
    std::uint32_t valueBegin = 0; // into PageFindings::values
    std::uint32_t valueLength = 0;
};

/// What a report has found in one page; links in the order in which they are reported.
struct PageFindings
{
    std::string path;
    bool isPage = false; // false: not readable or not UTF-8, and nothing is reported
    std::vector<LinkFinding> links;
    std::string values;

    [[nodiscard]] std::string_view value(const LinkFinding& link) const
    {
        return std::string_view(values).substr(link.valueBegin, link.valueLength);
    }
};

/// The lines of a report, each with its line feed: the page's path, then one a link.
void appendHeaderLine(std::string& text, const PageFindings& page);
void appendLinkLine(std::string& text, const PageFindings& page, const LinkFinding& link);

enum class FindingsKept : std::uint8_t { All, Missing };

/// Reads pages and looks up where their links lead. It keeps buffers and what it has asked the disk, so each
/// thread has one of its own and uses it for many pages. The tree must outlive it; without one every link is
/// looked up on the disk.
class LinkChecker final
{
public:
    LinkChecker(const SiteTree* tree, FindingsKept kept) : m_tree(tree), m_kept(kept) {}

    /// For the page `id` of the tree.
    PageFindings check(SiteTree::Id id);
    /// For any page.
    PageFindings check(const std::string& path, const std::string& folder);

private:
    struct Found
    {
        std::string_view raw;
        LinkState state;
    };

    PageFindings check(const std::string& path, const std::string& folder, SiteTree::Id folderId);
    void collect(std::string_view source);
    void keep(PageFindings& page, std::size_t attribute, std::string_view raw, const std::string& folder,
              SiteTree::Id folderId);
    LinkState stateOf(std::string_view value, const std::string& folder, SiteTree::Id folderId);
    bool existsOnDisk(const std::string& path);

    const SiteTree* m_tree;
    FindingsKept m_kept;
    FileReader m_reader;
    std::array<std::vector<std::string_view>, linkAttributes.size()> m_links;
    std::unordered_map<std::string, bool> m_askedBefore;
};

} // namespace luma
