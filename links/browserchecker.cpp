// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/browserchecker.h"

#include "html/servercode.h"
#include "links/linesandcolumns.h"

#include <algorithm>

namespace luma {

namespace {

// Whether reading an address leaves its fragment as it is (URL standard, "fragment percent-encode set"), and it holds no
// server code.
bool isTakenAsWritten(std::string_view fragment)
{
    return std::all_of(fragment.begin(), fragment.end(), [](char c) {
        return c > ' ' && c < '\x7F' && c != '"' && c != '<' && c != '>' && c != '`' && c != '{';
    });
}

} // namespace

WebPage BrowserChecker::check(SiteTree::Id id)
{
    return check(id, m_site->tree().subpath(id));
}

WebPage BrowserChecker::check(const std::string& subpath)
{
    return check(SiteTree::none, subpath);
}

// What of an address decides whether it is missing.
std::string_view BrowserChecker::seenPart(std::string_view address) const
{
    return m_site->rules().fragmentsAreChecked ? address : address.substr(0, address.find('#'));
}

// Whether the address leads to a place in a file to which the same address led with another fragment, or without one.
bool BrowserChecker::leadsIntoSeenFile(std::string_view address, SiteTree::Id folder)
{
    const std::size_t hash = address.find('#');
    if (hash == std::string_view::npos)
        return false;
    const std::string_view fragment = address.substr(hash + 1);
    const SiteTree::Id file = m_present.fileOf(SeenAddresses::keyOf(address.substr(0, hash), folder));
    return file != SiteTree::none && isTakenAsWritten(fragment) && m_judge.isPlaceThere(file, fragment);
}

void BrowserChecker::keepPresent(const WebLink& link, std::string_view address, SiteTree::Id folder)
{
    const std::size_t hash = address.find('#');
    m_present.insert(SeenAddresses::keyOf(address, folder), link.file);
    if (hash != std::string_view::npos && link.file != SiteTree::none)
        m_present.insert(SeenAddresses::keyOf(address.substr(0, hash), folder), link.file);
}

WebPage BrowserChecker::check(SiteTree::Id id, const std::string& subpath)
{
    WebPage found{subpath, {}, {}};
    const std::string& root = m_site->tree().rootPath();
    if (const auto read = m_reader.read(root + (root.ends_with('/') ? "" : "/") + subpath); !read) {
        found.unreadable = read.error().text;
        return found;
    }
    if (id != SiteTree::none && m_site->rules().fragmentsAreChecked)
        m_site->anchors().put(id, m_reader);
    const SiteAddresses::Page page = m_site->addresses().page(subpath, m_reader.page().base());
    LinesAndColumns lines(m_reader.text());
    const bool mayBeSeen = m_kept == FindingsKept::Missing && id != SiteTree::none && !page.hasBase;
    const SiteTree::Id folder = mayBeSeen ? m_site->tree().parent(id) : SiteTree::none;
    for (const LinkReference& reference : m_reader.page().references()) {
        const bool isSeenNow = mayBeSeen && reference.place != LinkPlace::UseMap;
        const std::string_view address = isSeenNow ? seenPart(reference.value) : std::string_view();
        const std::uint64_t key = isSeenNow ? SeenAddresses::keyOf(address, folder) : 0;
        if (isSeenNow && (m_present.contains(key) || leadsIntoSeenFile(address, folder)))
            continue;
        WebLink link = m_judge.judged(reference.value, reference.place, page, id);
        if (m_kept == FindingsKept::Missing && link.state != LinkState::Missing) {
            // Server code in a fragment says nothing about the same address without it.
            const bool isSame =
                address.size() == reference.value.size() || link.state != LinkState::NotJudged;
            if (isSeenNow && isSame && isPresentInFolder(link, address))
                keepPresent(link, address, folder);
            continue;
        }
        link.value = withEllipses(reference.value);
        lines.goTo(reference.begin);
        link.line = lines.line();
        link.column = lines.column();
        found.links.push_back(std::move(link));
    }
    return found;
}

} // namespace luma
