// SPDX-License-Identifier: GPL-3.0-or-later
#include "bench/editor/pagewindow.h"
#include "html/parse.h"
#include "page/csstidy.h"
#include "web/pagescheme.h"
#include "web/scriptcall.h"

#include <QAction>
#include <QApplication>
#include <QTreeView>

#include <algorithm>
#include <array>
#include <chrono>
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
// and as multiples of once reading and parsing the same page in the same run. Then the times until the frame is over that shows
// an element deleted in the outline, and one that a script removed from the page.

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

/// The time in milliseconds, by the clock that pages have as well.
double wallClock()
{
    using namespace std::chrono;
    return duration<double, std::milli>(system_clock::now().time_since_epoch()).count();
}

/// What came of an edit, in milliseconds behind it.
struct Showing
{
    double inTree = 0;
    double inPage = 0;
    double shown = 0; // the frame is over that shows it: the engine begins the next
};

Showing untilShown(Window& window, const std::function<void()>& edit)
{
    const auto answer = [&window](const char* script) {
        return ScriptCall::wait(&window.rendering().webView()->editorPage(), QString::fromLatin1(script));
    };
    (void)answer(
        "window.showing = [];"
        "new MutationObserver((records, observer) => {"
        "    observer.disconnect();"
        "    const note = () => showing.push(performance.timeOrigin + performance.now());"
        "    const noteFrame = () => { note(); if (showing.length < 3) requestAnimationFrame(noteFrame); };"
        "    noteFrame();"
        "}).observe(document.body, { childList: true })");
    Showing showing;
    QObject here;
    const double start = wallClock();
    QObject::connect(&window.document().tree(), &PageTree::removed, &here,
                     [&] { showing.inTree = wallClock() - start; });
    edit();
    rest(400); // questions to the page would delay it
    QVariantList times;
    waitFor(
        [&] {
            times = answer("showing").toList();
            return times.size() == 3;
        },
        "three frames of the page");
    showing.inPage = times[0].toDouble() - start;
    showing.shown = times[2].toDouble() - start;
    return showing;
}

/// A median, and the quartiles around it.
std::string spread(std::vector<double> times)
{
    std::sort(times.begin(), times.end());
    std::array<char, 64> text{};
    (void)std::snprintf(text.data(), text.size(), "%.1f (%.1f to %.1f)", middle(times),
                        times[times.size() / 4], times[times.size() * 3 / 4]);
    return text.data();
}

/// Elements in the middle of the page are deleted in the outline and, in turn, removed by a script in the page.
void measureOutline(const char* name, Window& window, int edits)
{
    auto* const outline = window.document().findChild<QTreeView*>(QStringLiteral("myOutlineView"));
    auto* const deleteAction = window.document().findChild<QAction*>(QStringLiteral("deleteTagAction"));
    std::vector<double> scripted;
    std::vector<double> inTree;
    std::vector<double> inPage;
    std::vector<double> shown;
    std::vector<double> more;
    std::vector<double> here;
    std::vector<double> workOfScript; // of the processor, in the page
    std::vector<double> workOfOutline;
    for (int i = 0; i < edits; ++i) {
        const QAbstractItemModel& model = *outline->model();
        const QModelIndex body = model.index(1, 0, model.index(0, 0));
        outline->setCurrentIndex(model.index(model.rowCount(body) / 2, 0, body));
        rest(700);
        const double beforeScript = timeInPage(window);
        const Showing byScript = untilShown(window, [&] {
            window.rendering().evaluate(QStringLiteral(
                "blockOf(getSelection().anchorNode).closest('section').nextElementSibling.remove()"));
        });
        workOfScript.push_back(timeInPage(window) - beforeScript);
        rest(700);
        const double atStart = timeHere();
        const double beforeOutline = timeInPage(window);
        const Showing byOutline = untilShown(window, [&] { deleteAction->trigger(); });
        here.push_back(timeHere() - atStart);
        workOfOutline.push_back(timeInPage(window) - beforeOutline);
        scripted.push_back(byScript.shown);
        inTree.push_back(byOutline.inTree);
        inPage.push_back(byOutline.inPage);
        shown.push_back(byOutline.shown);
        more.push_back(byOutline.shown - byScript.shown);
    }
    std::printf(
        "%s: deleted in the outline %d times: in the tree after %s, in the page %s, shown %s; by a script in "
        "the page shown %s; %s more, %.2f frames of 16.7; processor here %s, in the page %s, for the script %s\n",
        name, edits, spread(inTree).c_str(), spread(inPage).c_str(), spread(shown).c_str(),
        spread(scripted).c_str(), spread(more).c_str(), middle(more) / 16.7, spread(here).c_str(),
        spread(workOfOutline).c_str(), spread(workOfScript).c_str());
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
    if (argc > 2) { // only the edits in the outline
        Window window(samplePage(5000));
        measureOutline("1 MB", window, letters);
        return 0;
    }
    measureSheet();
    measurePage("100 KB", 500, letters);
    measurePage("1 MB", 5000, letters);
    return 0;
}
