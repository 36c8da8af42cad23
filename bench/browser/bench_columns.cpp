// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/browser.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QListView>
#include <QScrollBar>

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;
using namespace luma;

namespace {

constexpr int entries = 50'000;

void settle()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

double millisecondsSince(QElapsedTimer& timer)
{
    const double elapsed = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    timer.restart();
    return elapsed;
}

} // namespace

/// A column of 50,000 rows: the time until it is painted, the longest time to scroll by a page, and the time
/// of a refresh, each compared with a bare listing of the same folder in the same run.
int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const fs::path folder = fs::temp_directory_path() / ("luma-bench-columns-" + std::to_string(::getpid()));
    fs::create_directory(folder);
    for (int i = 0; i < entries; ++i)
        std::ofstream(folder / ("Page number " + std::to_string(i * 7919 % entries) + ".html"));

    QElapsedTimer timer;
    timer.start();
    FileSystemNode(folder).children();
    const double listing = millisecondsSince(timer);
    Browser browser;
    browser.resize(800, 600);
    browser.show();
    settle();
    timer.restart();
    browser.model().setRootNode(std::make_shared<FileSystemNode>(folder));
    settle();
    browser.grab();
    const double shown = millisecondsSince(timer);

    const auto* list = browser.findChild<QListView*>(QStringLiteral("browserList0"));
    QScrollBar* bar = list->verticalScrollBar();
    double worst = 0;
    int pages = 0;
    for (int value = 0; value < bar->maximum(); value += bar->maximum() / 500, ++pages) {
        timer.restart();
        bar->setValue(value);
        browser.grab();
        worst = std::max(worst, millisecondsSince(timer));
    }
    std::ofstream(folder / "Zebra.html") << 1;
    timer.restart();
    browser.refresh();
    settle();
    browser.grab();
    const double refreshed = millisecondsSince(timer);
    fs::remove_all(folder);
    std::printf("bare listing %.1f ms; until painted %.1f ms (ratio %.2f); refresh %.1f ms (ratio %.2f); "
                "worst of %d scrolls %.1f ms\n",
                listing, shown, shown / listing, refreshed, refreshed / listing, pages, worst);
    return 0;
}
