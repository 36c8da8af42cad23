// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/linkchecker.h"

#include "base/utf8.h"
#include "html/characterreferences.h"
#include "links/parsedpage.h"

#include <sys/stat.h>

namespace luma {

namespace {

enum class Answer : std::uint8_t { Yes, No, AskDisk };

// Follows a link through the tree as the system would on the disk. The disk is asked when the link leads out of
// the site, or through a symbolic link or an unreadable folder.
Answer existsInTree(const SiteTree& tree, SiteTree::Id folder, std::string_view link)
{
    using Type = SiteTree::Type;
    SiteTree::Id current = folder;
    for (;;) {
        const std::size_t slash = link.find('/');
        const std::string_view piece = link.substr(0, slash);
        if (tree.type(current) == Type::File)
            return Answer::No;
        if (tree.type(current) != Type::Folder)
            return Answer::AskDisk;
        if (piece == "..") {
            if (current == SiteTree::root)
                return Answer::AskDisk;
            current = tree.parent(current);
        } else if (!piece.empty() && piece != ".") {
            current = tree.child(current, piece);
            if (current == SiteTree::none)
                return piece == folderSettingsName ? Answer::AskDisk : Answer::No;
        }
        if (slash == std::string_view::npos)
            break;
        link.remove_prefix(slash + 1);
    }
    return tree.type(current) == Type::BrokenLink ? Answer::No : Answer::Yes;
}

} // namespace

void appendHeaderLine(std::string& text, const PageFindings& page)
{
    text.append(page.path).append("\n");
}

void appendLinkLine(std::string& text, const PageFindings& page, const LinkFinding& link)
{
    text.append("    ").append(linkAttributes.at(link.attribute)).append(" : ").append(page.value(link));
    if (link.state == LinkState::Missing)
        text.append("    *** MISSING ***");
    text.append("\n");
}

void appendLines(std::string& text, const PageFindings& page)
{
    appendHeaderLine(text, page);
    for (const LinkFinding& link : page.links)
        appendLinkLine(text, page, link);
}

PageFindings LinkChecker::check(SiteTree::Id id)
{
    const SiteTree::Id folder = m_tree->parent(id);
    const std::string folderPath = m_tree->path(folder);
    std::string path = folderPath;
    path.append(path.ends_with('/') ? "" : "/").append(m_tree->name(id));
    return check(path, folderPath, folder);
}

PageFindings LinkChecker::check(const std::string& path, const std::string& folder)
{
    return check(path, folder, SiteTree::none);
}

PageFindings LinkChecker::check(const std::string& path, const std::string& folder, SiteTree::Id folderId)
{
    PageFindings page;
    page.path = path;
    const auto source = m_reader.read(path);
    if (!source || !isValidUtf8(*source))
        return page;
    page.isPage = true;
    collect(*source);
    for (std::size_t attribute = 0; attribute < m_links.size(); ++attribute) {
        for (const std::string_view raw : m_links.at(attribute))
            keep(page, attribute, raw, folder, folderId);
    }
    return page;
}

void LinkChecker::collect(std::string_view source)
{
    for (std::vector<std::string_view>& links : m_links)
        links.clear();
    HtmlScanner scanner(source);
    HtmlToken token;
    while (scanner.next(token)) {
        if (token.kind == HtmlTokenKind::StartTag && !token.attributes.empty())
            forEachLinkOf(token, [this](std::size_t index, const HtmlAttribute& attribute) {
                m_links.at(index).push_back(attribute.value);
            });
    }
}

void LinkChecker::keep(PageFindings& page, std::size_t attribute, std::string_view raw,
                       const std::string& folder, SiteTree::Id folderId)
{
    std::string decoded;
    std::string_view value = raw;
    if (needsDecoding(value))
        value = decoded = decodeCharacters(value, ReferenceContext::AttributeValue);
    if (value.find('?') != std::string_view::npos)
        value = decoded = withoutPhpQuery(value);
    const LinkState state = stateOf(value, folder, folderId);
    if (m_kept == FindingsKept::Missing && state != LinkState::Missing)
        return;
    page.links.push_back({static_cast<std::uint8_t>(attribute), state,
                          static_cast<std::uint32_t>(page.values.size()),
                          static_cast<std::uint32_t>(value.size())});
    page.values += value;
}

LinkState LinkChecker::stateOf(std::string_view value, const std::string& folder, SiteTree::Id folderId)
{
    if (isExternalLink(value))
        return LinkState::External;
    Answer answer = Answer::AskDisk;
    if (folderId != SiteTree::none) {
        constexpr std::string_view index = "index";
        const bool isIndex = value.ends_with("/index") || value == index;
        answer =
            existsInTree(*m_tree, folderId, value.substr(0, value.size() - (isIndex ? index.size() : 0)));
    }
    if (answer == Answer::AskDisk)
        answer = existsOnDisk(checkedPath(folder, value)) ? Answer::Yes : Answer::No;
    return answer == Answer::Yes ? LinkState::Present : LinkState::Missing;
}

bool LinkChecker::existsOnDisk(const std::string& path)
{
    constexpr std::size_t mostRemembered = 16'384;
    if (m_existsOnDisk.size() >= mostRemembered)
        m_existsOnDisk.clear();
    const auto [entry, isNew] = m_existsOnDisk.try_emplace(path, false);
    if (isNew) {
        struct stat status = {};
        // The system would read the path only up to a NUL.
        entry->second = path.find('\0') == std::string::npos && ::stat(path.c_str(), &status) == 0;
    }
    return entry->second;
}

} // namespace luma
