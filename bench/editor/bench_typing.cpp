// SPDX-License-Identifier: GPL-3.0-or-later
#include "bench/editor/pagewindow.h"
#include "html/parse.h"
#include "page/csstidy.h"
#include "web/pagescheme.h"
#include "web/scriptcall.h"

#include <QAction>
#include <QApplication>
#include <QImage>
#include <QTreeView>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

// Times a typed letter until the tree and the outline are updated, for pages of two sizes, and its parts: until
// the page reports the change, reading the markup, parsing it, and the total. The figures are medians of many
// letters, with the processor time that the window's thread and the page's spent in them, which other programs don't
// lengthen. A burst of letters shows the longest time in which the window does not respond. In milliseconds,
// and as multiples of once reading and parsing the same page in the same run. Then the times until the rendering shows an
// element that was deleted in the outline, and one that a script removed from the page.

namespace {

using namespace luma;
using namespace luma::bench;

/// The processor time of this thread in milliseconds.
double timeHere()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// That of the first thread of the page's process.
double timeInPage(Window& window)
{
    const std::string process = std::to_string(window.rendering().webView()->page()->renderProcessPid());
    std::ifstream file("/proc/" + process + "/task/" + process + "/schedstat");
    double nanoseconds = 0;
    file >> nanoseconds;
    return nanoseconds / 1e6;
}

struct Times
{
    std::vector<double> here;
    std::vector<double> inPage; // until the window is told
    std::vector<double> told;
    std::vector<double> whole;
    std::vector<double> read;
    std::vector<double> parsed;
};

void measureLetter(Window& window, Times& times)
{
    bool told = false;
    bool renewed = false;
    double toldAfter = 0;
    const double atStart = timeHere();
    const double inPageAtStart = timeInPage(window);
    const Stopwatch watch;
    QObject here;
    QObject::connect(&window.rendering().webView()->editorPage().bridge(), &PageBridge::mutationObserver,
                     &here, [&](const RenderingChange&) {
                         if (std::exchange(told, true))
                             return;
                         toldAfter = watch.milliseconds();
                         times.inPage.push_back(timeInPage(window) - inPageAtStart);
                     });
    QObject::connect(&window.document().tree(), &PageTree::elementChanged, &here, [&] { renewed = true; });
    window.type();
    waitFor([&] { return renewed; });
    // The one row that a letter changes.
    auto* const outline = window.document().findChild<QTreeView*>(QStringLiteral("myOutlineView"));
    outline->viewport()->repaint(outline->visualRect(outline->currentIndex()));
    times.whole.push_back(watch.milliseconds());
    times.here.push_back(timeHere() - atStart);
    times.told.push_back(toldAfter);
}

void measureParts(Window& window, Times& times)
{
    const Stopwatch reading;
    const QString markup = window.rendering().renderedMarkup();
    times.read.push_back(reading.milliseconds());
    const std::string bytes = markup.toStdString();
    const Stopwatch parsing;
    const auto parsed = html::parse(bytes);
    times.parsed.push_back(parsing.milliseconds());
}

/// The longest time without the window processing an event, while 20 letters a second are typed.
double longestDeafness(Window& window)
{
    const Pauses pauses;
    for (int i = 0; i < 40; ++i) {
        window.type();
        rest(50);
    }
    rest(1000);
    return pauses.longest();
}

/// Until the rendering's picture has changed.
double untilShown(Window& window, const std::function<void()>& edit)
{
    QWidget& view = *window.rendering().webView();
    const QImage before = view.grab().toImage();
    const Stopwatch watch;
    edit();
    waitFor([&] { return view.grab().toImage() != before; });
    return watch.milliseconds();
}

void measureOutline(const char* name, Window& window, int edits)
{
    auto* const outline = window.document().findChild<QTreeView*>(QStringLiteral("myOutlineView"));
    std::vector<double> scripted;
    std::vector<double> deleted;
    std::vector<double> inTree;
    for (int i = 0; i < edits; ++i) {
        const QAbstractItemModel& model = *outline->model();
        const QModelIndex body = model.index(1, 0, model.index(0, 0));
        outline->setCurrentIndex(model.index(model.rowCount(body) / 2, 0, body));
        rest(700);
        scripted.push_back(untilShown(window, [&] {
            window.rendering().evaluate(QStringLiteral(
                "blockOf(getSelection().anchorNode).closest('section').nextElementSibling.remove()"));
        }));
        rest(2500); // until the two copies of the page have been compared
        const Stopwatch watch;
        QObject here;
        QObject::connect(&window.document().tree(), &PageTree::removed, &here,
                         [&] { inTree.push_back(watch.milliseconds()); });
        deleted.push_back(untilShown(window, [&] {
            window.document().findChild<QAction*>(QStringLiteral("deleteTagAction"))->trigger();
        }));
        rest(2500);
    }
    std::printf("%s: deleted in the outline to tree %.1f, to rendering %.1f; by a script %.1f; ratio %.2f\n",
                name, middle(inTree), middle(deleted), middle(scripted), middle(deleted) / middle(scripted));
}

void measurePage(const char* name, int entries, int letters)
{
    Window window(samplePage(entries));
    Times times;
    for (int i = 0; i < letters; ++i) {
        measureLetter(window, times);
        rest(static_cast<int>(3 * times.whole.back()) + 50);
        measureParts(window, times);
    }
    const double bare = middle(times.read) + middle(times.parsed);
    std::printf(
        "%s: letter to tree and outline %.1f (told after %.1f; processor here %.1f, in the page %.1f); bare: read "
        "%.1f, parse %.1f; ratio %.2f; deaf at most %.1f in a burst\n",
        name, middle(times.whole), middle(times.told), middle(times.here), middle(times.inPage),
        middle(times.read), middle(times.parsed), middle(times.whole) / bare, longestDeafness(window));
    measureOutline(name, window, 1 + letters / 3);
}

void measureSheet()
{
    std::string sheet;
    for (int i = 0; sheet.size() < 300'000; ++i)
        sheet += ".c" + std::to_string(i) +
                 ">a:hover,#d .e{color:red;background:url(x.png) no-repeat;margin:0 1px}\n";
    std::vector<double> whole;
    std::vector<double> start;
    for (int i = 0; i < 5; ++i) {
        const Stopwatch watch;
        (void)tidyCSS(sheet);
        whole.push_back(watch.milliseconds());
        const Stopwatch empty;
        (void)tidyCSS("a{}");
        start.push_back(empty.milliseconds());
    }
    std::printf("sheet of 300 KB formatted %.0f, one rule %.0f\n", middle(whole), middle(start));
}

} // namespace

int main(int argc, char** argv)
{
    PageScheme::registerScheme();
    (void)std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const QApplication application(argc, argv);
    const int letters = argc > 1 ? std::max(1, std::atoi(argv[1])) : 30;
    measureSheet();
    measurePage("100 KB", 500, letters);
    measurePage("1 MB", 5000, letters);
    return 0;
}
