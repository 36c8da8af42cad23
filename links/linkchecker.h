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

/// NotJudged: holds server code, so that only the server knows; never by the letter.
enum class LinkState : std::uint8_t { External, Present, Missing, NotJudged };

/// One link of a page in a report. Its value is decoded and has no query after ".php".
struct LinkFinding
{
    std::uint8_t attribute = 0; // index into linkAttributes
    LinkState state = LinkState::Present;
    std::uint32_t valueBegin = 0; // into PageFindings::values
    std::uint32_t valueLength = 0;
};

/// What a report found in one page. Links are in the order of linkAttributes, then in document order.
struct PageFindings
{
    std::string path;
    bool isPage = false; // false: no readable UTF-8, so nothing is reported
    std::vector<LinkFinding> links;
    std::string values;

    [[nodiscard]] std::string_view value(const LinkFinding& link) const
    {
        return std::string_view(values).substr(link.valueBegin, link.valueLength);
    }
};

/// Append lines of a report, each with its line feed: the page's path, one link, or the path and all links.
void appendHeaderLine(std::string& text, const PageFindings& page);
void appendLinkLine(std::string& text, const PageFindings& page, const LinkFinding& link);
void appendLines(std::string& text, const PageFindings& page);

enum class FindingsKept : std::uint8_t { All, Missing };

/// Reads pages and checks where their links lead. It keeps buffers and answers from the disk, so use one for
/// many pages, and one for each thread. The tree must outlive it; without a tree every link is looked up on
/// the disk.
class LinkChecker final
{
public:
    LinkChecker(const SiteTree* tree, FindingsKept kept) : m_tree(tree), m_kept(kept) {}

    /// Checks the page `id` of the tree.
    PageFindings check(SiteTree::Id id);
    /// Checks any page; `folder` is the one it is in.
    PageFindings check(const std::string& path, const std::string& folder);

private:
    PageFindings check(const std::string& path, const std::string& folder, SiteTree::Id folderId);
    void collect(std::string_view source);
    void keep(PageFindings& page, std::size_t attribute, std::string_view raw, const std::string& folder,
              SiteTree::Id folderId);
    LinkState stateOf(std::string_view value, const std::string& folder, SiteTree::Id folderId);
    bool existsOnDisk(const std::string& path);

    const SiteTree* m_tree;
    FindingsKept m_kept;
    FileReader m_reader;
    std::array<std::vector<std::string_view>, linkAttributes.size()> m_links; // of one page, as written
    std::unordered_map<std::string, bool> m_existsOnDisk;                     // by path
};

} // namespace luma
