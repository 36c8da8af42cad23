// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "bench/measuring.h"
#include "links/browserreports.h"
#include "links/linkstore.h"
#include "links/sitelinks.h"
#include "links/sitemoves.h"

#include <cstdio>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

// What it costs to answer from the links that are kept of a site, beside reading every page. PAGE is rewritten, and TARGET is
// what links are looked for, and what is renamed and gets its name back.
//
//     indexspeed SITE PAGE TARGET
//
// The site is left as it was. The store is written to the cache folder, and the journal of renames to the state folder: set
// XDG_CACHE_HOME and XDG_STATE_HOME.

using namespace luma;
using bench::measured;
using bench::Stopwatch;
namespace fs = std::filesystem;

namespace {

constexpr int rounds = 5;

double median(const std::function<void()>& work)
{
    std::vector<double> times;
    times.reserve(rounds);
    for (int round = 0; round < rounds; ++round)
        times.push_back(measured(work));
    return bench::middle(times);
}

void show(const char* what, double time, double cold)
{
    std::printf("%-42s %9.1f ms %8.3f of a check\n", what, time, time / cold);
}

// In MB.
double memoryInUse()
{
    constexpr double pagesToMegabytes = 4096.0 / 1048576.0;
    std::ifstream file("/proc/self/statm");
    std::size_t all = 0;
    std::size_t resident = 0;
    file >> all >> resident;
    return static_cast<double>(resident) * pagesToMegabytes;
}

/// Renames TARGET there and back, again and again. Between the renames, what is kept is brought up to date, as in a pane.
class Renames final
{
public:
    Renames(fs::path site, fs::path target, std::shared_ptr<SiteLinks> links)
        : m_site(std::move(site)), m_target(std::move(target)), m_links(std::move(links))
    {}

    void watch()
    {
        m_isWatched = true;
        m_links->setWatcher([](const SiteLinks::Told& told) { told(true); });
        m_links->noteChanges({});
        (void)*m_links->findMissing({}, [](const WebPage&) {});
    }

    void show(const char* what)
    {
        std::vector<double> plans;
        std::vector<double> all;
        std::vector<double> writings;
        for (int round = 0; round < rounds; ++round) {
            const fs::path other = m_target.native() + ".renamed";
            for (const MovedItem& item : {MovedItem{m_target, other}, MovedItem{other, m_target}}) {
                const Stopwatch watch;
                const LinkPlan plan = planned(item);
                plans.push_back(watch.milliseconds());
                m_pages = SiteMoves::open(m_site)->carryOut(plan).rewritten;
                all.push_back(watch.milliseconds());
                tell();
                (void)*m_links->findMissing({}, [](const WebPage&) {});
                writings.push_back(measured([this] { write(); }));
                tell();
            }
        }
        const double writing = bench::middle(writings);
        std::printf("%-42s %9.1f ms %8.3f of writing its %zu pages; the plan %.1f ms\n", what,
                    bench::middle(all), bench::middle(all) / writing, m_pages.size(), bench::middle(plans));
    }

private:
    [[nodiscard]] LinkPlan planned(const MovedItem& item) const
    {
        MoveRequest request{m_site, {}, MoveOperation::Move, {item}, {}};
        request.keptLinks = m_links;
        return *planMove(request);
    }

    void write() const
    {
        for (const fs::path& page : m_pages)
            (void)writeFile(page, *readFile(page));
    }

    // What the watcher would.
    void tell() const
    {
        KeptPages::Folders folders = {m_target.parent_path()};
        for (const fs::path& page : m_pages)
            folders.insert(page.parent_path());
        if (m_isWatched)
            m_links->noteChanges(folders);
    }

    fs::path m_site;
    fs::path m_target;
    std::shared_ptr<SiteLinks> m_links;
    std::vector<fs::path> m_pages; // that are rewritten
    bool m_isWatched = false;
};

} // namespace

int main(int argc, char** argv)
{
    if (argc != 4) {
        (void)std::fputs("Usage: indexspeed SITE PAGE TARGET\n", stderr);
        return 2;
    }
    const fs::path site = argv[1];
    const fs::path page = site / argv[2];
    std::size_t found = 0;
    const auto sink = [&found](const WebPage& with) { found += with.links.size(); };
    const double cold = median([&] { (void)*checkWebLinks(site, {}, FindingsKept::Missing, sink); });
    show("check without what is kept", cold, cold);

    const double before = memoryInUse();
    auto links = std::make_shared<SiteLinks>(site, SiteLinks::Keeping::Stored);
    links->noteChanges({});
    const auto report = [&] { (void)*links->findMissing({}, sink); };
    show("first report", measured(report), cold);
    std::printf("%-42s %9.1f MB\n", "memory of what is kept", memoryInUse() - before);
    show("writing the store", measured([&] { links->store(); }), cold);
    show("report again", median(report), cold);
    const std::string bytes = *readFile(page);
    int count = 0;
    show("report after a page was changed",
         median([&] {
             (void)writeFile(page, bytes + "<!-- " + std::to_string(count++) + " -->");
             links->noteChanges(KeptPages::Folders{page.parent_path()});
             report();
         }) - median([&] { (void)writeFile(page, bytes + "<!-- " + std::to_string(count++) + " -->"); }),
         cold);
    (void)writeFile(page, bytes);
    links->noteChanges(KeptPages::Folders{page.parent_path()});
    report();
    show("links to a file", median([&] { (void)*links->findTo(site / argv[3], {}, sink); }), cold);
    show("unlinked files", median([&] { (void)*links->findUnlinked({}, {}, {}); }), cold);
    links->endWatch();
    show("report without a watcher", median(report), cold);
    show("first report with the store", median([&] {
             links = std::make_shared<SiteLinks>(site, SiteLinks::Keeping::Stored);
             report();
         }),
         cold);
    Renames renames(site, site / argv[3], links);
    renames.show("rename of a file without a watcher");
    renames.watch();
    renames.show("rename of a file");
    std::printf("%-42s %9zu pages\n", "read in spite of the store", links->readCount());
    std::error_code error;
    const auto size = fs::file_size(LinkStore(site).file(), error);
    std::printf("%-42s %9.1f MB\n", "the store", static_cast<double>(size) / 1048576.0);
    return 0;
}
