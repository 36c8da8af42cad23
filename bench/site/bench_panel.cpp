// SPDX-License-Identifier: GPL-3.0-or-later
// Times the missing-links report of a site, without a window and in a window's progress panel.
#include "browser/linkjobs.h"
#include "browser/panehost.h"
#include "links/linkreports.h"
#include "site/jobline.h"
#include "site/progresspanel.h"

#include <QApplication>
#include <QPushButton>
#include <QTimer>

#include <sys/resource.h>

#include <chrono>
#include <cstdio>

using namespace luma;

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point begin)
{
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

long withoutScreen(const std::filesystem::path& site)
{
    long lines = 0;
    std::string text;
    const auto done = findMissingLinks(site, FindingsKept::All, [&](const PageFindings& page) {
        text.clear();
        appendHeaderLine(text, page);
        for (const LinkFinding& link : page.links)
            appendLinkLine(text, page, link);
        lines += 1 + static_cast<long>(page.links.size());
    });
    return done ? lines : -1;
}

// The longest time between two turns of the event loop.
double inPanel(const std::filesystem::path& site)
{
    QWidget window;
    window.show();
    JobLine line(&window);
    ProgressPanel panel(line, &window);
    LinkJobs jobs(panel, &window);
    double longest = 0;
    auto last = Clock::now();
    QTimer tick;
    QObject::connect(&tick, &QTimer::timeout, [&] {
        longest = std::max(longest, secondsSince(last));
        last = Clock::now();
    });
    tick.start(0);
    jobs.findMissingLinks(site, {.linkRules = LinkRules::Letter});
    while (panel.isRunning())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return longest;
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    if (argc != 2) {
        (void)std::fprintf(stderr, "bench_panel SITE\n");
        return 2;
    }
    for (int round = 0; round < 3; ++round) {
        auto begin = Clock::now();
        const long lines = withoutScreen(argv[1]);
        const double alone = secondsSince(begin);
        begin = Clock::now();
        const double longest = inPanel(argv[1]);
        const double seen = secondsSince(begin);
        std::printf("%ld lines: without a screen %.2f s; in the panel %.2f s, %.0f lines/s, ratio %.2f, "
                    "longest pause of the window %.0f ms\n",
                    lines, alone, seen, static_cast<double>(lines) / seen, seen / alone, longest * 1000);
    }
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("peak memory %ld MB\n", usage.ru_maxrss / 1024);
    return 0;
}
