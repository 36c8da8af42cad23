// SPDX-License-Identifier: GPL-3.0-or-later
// The sync panel with a listing of 100,000 rows: the longest time in which its window did not respond while they came,
// and the main thread's processor time for what the user does, each with the painting of the whole panel.
#include "site/syncpanel.h"

#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QProgressBar>
#include <QScrollBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <string>

using namespace luma;

namespace {

constexpr int rowCount = 100'000;

std::string listing()
{
    std::string text = "|cd+++++++++ 4096 2026/11/22-02:30:05 .///\n";
    for (int i = 0; i < rowCount; ++i)
        text += "|>f+++++++++ " + std::to_string(i * 7919 % 100'003) + " 2026/11/22-02:30:05 archive/" +
                std::to_string(i % 365) + "/a page of the archive, number " + std::to_string(i) + ".html//\n";
    return text;
}

// Of the main thread, so that other programs don't count.
class ProcessorTimer final
{
public:
    void restart() { m_start = now(); }
    [[nodiscard]] double milliseconds() const { return now() - m_start; }

private:
    static double now()
    {
        timespec time = {};
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
    }

    double m_start = now();
};

double millisecondsSince(QElapsedTimer& timer)
{
    const double elapsed = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    timer.restart();
    return elapsed;
}

// Processes events until `isDone` returns true. Returns the longest time between two turns, in milliseconds.
template <class Condition>
double longestPauseUntil(Condition isDone)
{
    double longest = 0;
    QElapsedTimer lap;
    lap.start();
    QTimer tick;
    QObject::connect(&tick, &QTimer::timeout, [&] { longest = std::max(longest, millisecondsSince(lap)); });
    tick.start(0);
    while (!isDone())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return longest;
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    const QString text = QStringLiteral("/");
    const QTemporaryDir folder;
    SiteRecord record({{QStringLiteral("sourceDict"), QVariantMap{{QStringLiteral("path"), folder.path()}}},
                       {QStringLiteral("destinationDict"), QVariantMap{{QStringLiteral("user"), text},
                                                                       {QStringLiteral("server"), text},
                                                                       {QStringLiteral("path"), text}}}});
    SyncEngine engine(
        record,
        [text = listing()](const std::vector<std::string>&, std::string_view, const StillWanted&) {
            return ProgramResult{0, text, {}};
        },
        [] {
            return SyncSides{true, "/", "/"};
        });
    QWidget window;
    window.resize(900, 700);
    window.show();
    SyncPanel panel(engine, &window);
    panel.sync(Direction::Download);
    auto& table = *panel.findChild<QTableView*>(QStringLiteral("syncTableView"));
    const double filling = longestPauseUntil(
        [&] { return table.model()->rowCount() == rowCount && engine.state() == SyncEngine::State::Ready; });

    panel.grab();
    ProcessorTimer timer;
    panel.grab();
    const double painting = timer.milliseconds();
    QScrollBar& bar = *table.verticalScrollBar();
    double scrolling = 0;
    for (int value = 0; value < bar.maximum(); value += std::max(1, bar.maximum() / 500)) {
        timer.restart();
        bar.setValue(value);
        panel.grab();
        scrolling = std::max(scrolling, timer.milliseconds());
    }
    double ticking = 0;
    for (int i = 0; i < 4; ++i) {
        timer.restart();
        panel.findChild<QCheckBox*>(QStringLiteral("allOnOffCheckBox"))->click();
        panel.grab();
        ticking = std::max(ticking, timer.milliseconds());
    }
    double sorting = 0;
    for (const int column :
         {SyncTableModel::SentSizeColumn, SyncTableModel::NameColumn, SyncTableModel::KindColumn}) {
        timer.restart();
        table.sortByColumn(column, Qt::DescendingOrder);
        panel.grab();
        sorting = std::max(sorting, timer.milliseconds());
    }
    // What is prepared while nobody types counts, too.
    double preparing = 0;
    for (int turn = 0; turn < 20; ++turn) {
        timer.restart();
        QApplication::processEvents();
        preparing = std::max(preparing, timer.milliseconds());
    }
    double filtering = 0;
    for (const char* const typed : {"n", "number", "number 9"}) {
        timer.restart();
        panel.findChild<QLineEdit*>(QStringLiteral("syncNameFilter"))->setText(QLatin1String(typed));
        panel.grab();
        filtering = std::max(filtering, timer.milliseconds());
    }
    std::printf(
        "%d rows: longest pause while they came %.1f ms; processor time of one painting %.1f ms; worst scroll with its "
        "painting %.1f ms; all on or off with its painting %.1f ms; worst sort %.1f ms; worst turn before the filter "
        "%.1f ms; worst filter %.1f ms\n",
        rowCount, filling, painting, scrolling, ticking, sorting, preparing, filtering);
    return 0;
}
