// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/linkmapping.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

// Rebasing one page: the page that comes out has the same links with the values that were asked for, and all
// bytes outside of them are the same.

using namespace luma;

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

std::string rebased(const ParsedPage& page)
{
    std::vector<LinkChange> changes;
    for (std::size_t i = 0; i < page.links.size(); ++i)
        changes.push_back({i, rebasedLink(page.links[i].value, "/s/a \"'&", "/s/b")});
    return withChangedLinks(page, std::move(changes));
}

std::string withoutValues(const ParsedPage& page)
{
    std::string rest = page.source;
    std::vector<PageLink> links = page.links;
    std::sort(links.begin(), links.end(),
              [](const PageLink& a, const PageLink& b) { return a.begin > b.begin; });
    for (const PageLink& link : links) {
        // Quotes and the equals sign may have been added.
        const bool quoted = link.quotes == Quotes::Double;
        const std::size_t begin = link.begin - (quoted ? 1 : 0);
        rest.erase(begin, link.end + (quoted ? 1 : 0) - begin);
        if (begin > 0 && rest[begin - 1] == '=' && link.quotes == Quotes::Double)
            rest.erase(begin - 1, 1);
    }
    return rest;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto page = parsePage(std::string(reinterpret_cast<const char*>(data), size));
    if (!page)
        return 0;
    const auto after = parsePage(rebased(*page));
    require(after && after->links.size() == page->links.size());
    bool plain = true;
    for (std::size_t i = 0; i < page->links.size(); ++i) {
        require(after->links[i].value == rebasedLink(page->links[i].value, "/s/a \"'&", "/s/b"));
        plain = plain && page->links[i].quotes == Quotes::Double;
    }
    if (plain)
        require(withoutValues(*page) == withoutValues(*after));
    return 0;
}
