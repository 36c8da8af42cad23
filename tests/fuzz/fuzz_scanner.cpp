// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/htmlscanner.h"
#include "links/parsedpage.h"

#include <cstdint>
#include <cstdlib>

// Parse and serialise: a page without changes comes back byte for byte, every link lies where it says, and
// tokens come in order without overlapping.

using namespace luma;

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

void checkTokens(std::string_view source)
{
    HtmlScanner scanner(source);
    HtmlToken token;
    std::size_t end = 0;
    bool more = true;
    while (more) {
        more = scanner.next(token);
        require(token.begin >= end && token.end >= token.begin && token.end <= source.size());
        require(!more || token.end > end);
        end = token.end;
    }
    require(end == source.size());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string source(reinterpret_cast<const char*>(data), size);
    checkTokens(source);
    (void)styleContents(source);
    const auto page = parsePage(source);
    if (!page)
        return 0;
    require(withChangedLinks(*page, {}) == source);
    for (const PageLink& link : page->links)
        require(link.begin <= link.end && link.end <= source.size());
    return 0;
}
