// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "links/linkreports.h"
#include "links/parsedpage.h"
#include "links/sitetree.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>

// Measures how fast one core scans the pages of a site in memory, compared with merely counting '<' in the same
// bytes, and how many report lines it delivers per second.
//
//     scanspeed SITE

using namespace luma;

namespace {

// Processor time, so that other load does not count.
template <class Function>
double processorSecondsOf(Function f)
{
    const std::clock_t start = std::clock();
    f();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

template <class Function>
double secondsOf(Function f)
{
    const auto start = std::chrono::steady_clock::now();
    f();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

} // namespace

int main(int argc, char** argv)
{
    const auto tree = SiteTree::read(argc > 1 ? argv[1] : ".");
    if (!tree) {
        (void)std::fprintf(stderr, "%s\n", tree.error().text.c_str());
        return 2;
    }
    std::vector<std::string> pages;
    std::size_t bytes = 0;
    for (const SiteTree::Id page : tree->pages()) {
        if (auto source = readFile(tree->path(page))) {
            bytes += source->size();
            pages.push_back(*std::move(source));
        }
    }
    std::size_t links = 0;
    std::size_t brackets = 0;
    const double scanning = processorSecondsOf([&] {
        HtmlToken token;
        for (const std::string& page : pages) {
            HtmlScanner scanner(page);
            while (scanner.next(token)) {
                if (token.kind == HtmlTokenKind::StartTag)
                    forEachLinkOf(token, [&links](std::size_t, const HtmlAttribute&) { ++links; });
            }
        }
    });
    const double searching = processorSecondsOf([&] {
        for (const std::string& page : pages)
            brackets += static_cast<std::size_t>(std::count(page.begin(), page.end(), '<'));
    });
    std::size_t lines = 0;
    const double reporting = secondsOf([&] {
        std::string text;
        (void)findMissingLinks(tree->rootPath(), FindingsKept::All, [&](const PageFindings& page) {
            for (const LinkFinding& link : page.links) {
                text.clear();
                appendLinkLine(text, page, link);
                ++lines;
            }
        });
    });
    const double megabytes = static_cast<double>(bytes) / 1e6;
    std::printf("%zu pages, %.0f MB, %zu links, %zu brackets\n", pages.size(), megabytes, links, brackets);
    std::printf("scanning %.0f MB/s, %.2f times a count of '<'; report %.0f lines/s\n", megabytes / scanning,
                scanning / searching, static_cast<double>(lines) / reporting);
    return 0;
}
