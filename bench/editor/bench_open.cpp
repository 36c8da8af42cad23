// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "bench/measuring.h"
#include "editor/htmldocument.h"
#include "editor/outlinemodel.h"
#include "editor/outlineview.h"
#include "html/element.h"
#include "html/parse.h"
#include "page/pagefile.h"
#include "web/pagescheme.h"
#include "web/viewcontroller.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QMenu>
#include <QMimeData>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QWebEngineSettings>
#include <QWebEngineView>

#include <gumbo.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>

namespace fs = std::filesystem;
using namespace luma;
using namespace luma::bench;

namespace {

constexpr int rounds = 9;

double bareParse(const std::string& page)
{
    const Stopwatch watch;
    GumboOptions options = kGumboDefaultOptions;
    options.max_errors = 0;
    gumbo_destroy_output(&options, gumbo_parse_with_options(&options, page.data(), page.size()));
    return watch.milliseconds();
}

void paint(QWidget& widget)
{
    QCoreApplication::sendPostedEvents();
    widget.grab();
}

/// Processes events until `isDone` returns true; false after a minute.
bool waitUntil(const std::function<bool()>& isDone)
{
    QElapsedTimer timer;
    timer.start();
    while (!isDone() && !timer.hasExpired(60'000))
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    return isDone();
}

bool isShown(HTMLDocument& window)
{
    MyWebView& view = *window.viewController().webView();
    return view.editorPage().isComplete() && !view.heldInput().isHolding();
}

/// A process's proportional share of memory (Pss), in MB.
double proportionalMemory(const std::string& process)
{
    std::ifstream file("/proc/" + process + "/smaps_rollup");
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("Pss:"))
            return std::stod(line.substr(4)) / 1024;
    }
    return 0;
}

std::vector<std::string> childProcesses()
{
    std::vector<std::string> found = {"self"};
    for (std::size_t i = 0; i < found.size(); ++i) {
        std::error_code error;
        for (const auto& task : fs::directory_iterator("/proc/" + found[i] + "/task", error)) {
            std::ifstream children(task.path() / "children");
            for (std::string child; children >> child;)
                found.push_back(child);
        }
    }
    found.erase(found.begin());
    return found;
}

struct Memory
{
    double own = proportionalMemory("self");
    double engine = 0;
    std::size_t processes = 0;

    Memory()
    {
        const auto children = childProcesses();
        processes = children.size();
        for (const std::string& child : children)
            engine += proportionalMemory(child);
    }
};

/// Times the parts of opening a page in its window, and of one edit.
struct Times
{
    std::vector<double> bare, read, parsed, rows, dragBegun, dragMoved, bareShown, shown, edited, editShown;
};

HTMLDocument* openWindow(const fs::path& file)
{
    auto* window = new HTMLDocument;
    window->mountPath = file.parent_path();
    window->readFromURL(file);
    window->show();
    window->windowDidLoad();
    return window;
}

/// Times starting a drag of the last row, and one mouse move over the row before it.
void measureDrag(const OutlineModel& model, Times& times)
{
    const QModelIndex body = model.index(1, 0, model.index(0, 0));
    const QModelIndex last = model.index(model.rowCount(body) - 1, 0, body);
    const Stopwatch beginning;
    const std::unique_ptr<QMimeData> data(model.mimeData({model.index(1, 0, last)}));
    times.dragBegun.push_back(beginning.milliseconds());
    const Stopwatch moving;
    (void)model.canDropMimeData(data.get(), Qt::MoveAction, 1, 0, last.siblingAtRow(last.row() - 1));
    times.dragMoved.push_back(moving.milliseconds());
}

/// Times reading, parsing, and building and painting the expanded outline.
void measureOutline(const fs::path& file, Times& times)
{
    const TagRules rules;
    PageTree tree;
    OutlineModel model(tree, rules);
    OutlineView view;
    view.resize(300, 700);
    view.setModel(&model);
    paint(view);
    const Stopwatch reading;
    const auto bytes = PageFile(file).read();
    times.read.push_back(reading.milliseconds());
    const Stopwatch parsing;
    auto parsed = html::parse(*bytes);
    times.parsed.push_back(parsing.milliseconds());
    const Stopwatch rows;
    tree.setDocument(std::move(*parsed));
    paint(view);
    times.rows.push_back(rows.milliseconds());
    measureDrag(model, times);
}

/// Times the engine alone: the same file in a separate view, without scripts.
bool measureEngine(const fs::path& file, Times& times)
{
    QWebEngineView view;
    view.settings()->setAttribute(QWebEngineSettings::JavascriptEnabled, false);
    view.resize(600, 700);
    view.show();
    bool isLoaded = false;
    QObject::connect(&view, &QWebEngineView::loadFinished, &view, [&] { isLoaded = true; });
    const Stopwatch loading;
    view.load(QUrl::fromLocalFile(QString::fromStdString(file.string())));
    if (!waitUntil([&] { return isLoaded; }))
        return false;
    times.bareShown.push_back(loading.milliseconds());
    return true;
}

bool measureWindow(const fs::path& file, Times& times)
{
    const Stopwatch opening;
    const QPointer<HTMLDocument> window = openWindow(file);
    if (!waitUntil([&] { return isShown(*window); }))
        return false;
    times.shown.push_back(opening.milliseconds());
    auto* outline = window->findChild<QTreeView*>(QStringLiteral("myOutlineView"));
    const QModelIndex body = outline->model()->index(1, 0, outline->model()->index(0, 0));
    outline->setCurrentIndex(outline->model()->index(2500, 0, body));
    QMenu* const insert = window->findChild<QPushButton*>(QStringLiteral("addTagButton"))->menu();
    paint(*outline);
    const Stopwatch editing;
    emit insert->aboutToShow();
    insert->actions().first()->trigger();
    window->viewController().catchUp();
    paint(*outline);
    times.edited.push_back(editing.milliseconds());
    const bool back = waitUntil([&] { return isShown(*window); });
    times.editShown.push_back(editing.milliseconds());
    delete window;
    return back;
}

void printTimes(const Times& times)
{
    const double unit = middle(times.bare);
    const auto line = [unit](const char* name, double time) {
        std::printf("%-46s %7.1f ms  %.2f\n", name, time, time / unit);
    };
    line("bare parser", unit);
    line("read", middle(times.read));
    line("parse", middle(times.parsed));
    line("rows, expanded and painted", middle(times.rows));
    line("read, parse and rows together", middle(times.read) + middle(times.parsed) + middle(times.rows));
    line("drag of the last row begun", middle(times.dragBegun));
    line("one step of the mouse while dragging", middle(times.dragMoved));
    line("engine alone until the file is loaded", middle(times.bareShown));
    line("window opened until the rendering stands there", middle(times.shown));
    line("one edit until the outline is painted", middle(times.edited));
    line("one edit until the rendering is back", middle(times.editShown));
}

bool measureMemory(const fs::path& folder, const std::string& page, int count)
{
    const Memory before;
    std::vector<QPointer<HTMLDocument>> windows;
    for (int i = 0; i < count; ++i) {
        const fs::path file = folder / ("page" + std::to_string(i) + ".html");
        if (!writeFile(file, page))
            return false;
        windows.emplace_back(openWindow(file));
        if (!waitUntil([&] { return isShown(*windows.back()); }))
            return false;
    }
    const Memory after;
    std::printf("%d pages of %zu bytes: %.1f MB a page here, %.1f MB a page in %zu processes of the engine\n",
                count, page.size(), (after.own - before.own) / count, (after.engine - before.engine) / count,
                after.processes);
    for (const auto& window : windows)
        delete window;
    return true;
}

/// Opens the files at once and prints what all processes hold together.
bool measureTogether(const char* name, const std::vector<fs::path>& files)
{
    std::vector<QPointer<HTMLDocument>> windows;
    for (const fs::path& file : files) {
        windows.emplace_back(openWindow(file));
        if (!waitUntil([&] { return isShown(*windows.back()); }))
            return false;
    }
    (void)waitUntil(
        [clock = Stopwatch()] { return clock.milliseconds() > 5000; }); // what follows the opening
    const Memory all;
    std::printf("%zu open pages, %s: %.0f MB in all, %.0f here and %.0f in %zu processes of the engine\n",
                files.size(), name, all.own + all.engine, all.own, all.engine, all.processes);
    for (const auto& window : windows)
        delete window;
    return true;
}

/// Five pages of the folder, and five of 1 MB.
bool measureFive(const fs::path& site, const fs::path& folder)
{
    std::vector<fs::path> pages;
    for (const auto& entry : fs::recursive_directory_iterator(site)) {
        if (entry.path().extension() == ".html" && pages.size() < 5)
            pages.push_back(entry.path());
    }
    std::vector<fs::path> large;
    for (int i = 0; i < 5; ++i) {
        large.push_back(folder / ("large" + std::to_string(i) + ".html"));
        if (!writeFile(large.back(), samplePage(5000)))
            return false;
    }
    return measureTogether(site.c_str(), pages) && measureTogether("1 MB each", large);
}

} // namespace

/// Opening a page of 1 MB and 20,000 elements, part by part, and one edit, as multiples of the bare parser's
/// time for it in the same rounds. Then the memory used by 20 open pages, small and large. With a site's folder as the
/// argument only the memory that five of its pages take together, and five of 1 MB.
int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    PageScheme::registerScheme();
    const QApplication application(argc, argv);
    const QTemporaryDir temporary;
    const fs::path folder = temporary.path().toStdString();
    if (argc > 1)
        return measureFive(argv[1], folder) ? 0 : 1;
    const std::string page = samplePage(5000);
    if (!writeFile(folder / "page.html", page))
        return 1;
    Times times;
    for (int round = 0; round < rounds; ++round) {
        times.bare.push_back(bareParse(page));
        measureOutline(folder / "page.html", times);
        if (!measureEngine(folder / "page.html", times) || !measureWindow(folder / "page.html", times))
            return 1;
    }
    printTimes(times);
    return measureMemory(folder, samplePage(100), 20) && measureMemory(folder, page, 20) ? 0 : 1;
}
