// SPDX-License-Identifier: GPL-3.0-or-later
// Times the steps of the application's start. The second call prints when each step was done, in milliseconds
// since the process began:
//
//     bench_start make FOLDER SITES
//     bench_start start FOLDER
//
// The start ends stray watchers, so run it in a process namespace of its own, as `run` does.
#include "app/lumaappdelegate.h"
#include "app/program.h"
#include "app/sitelistwindow.h"
#include "web/pagescheme.h"

#include <QApplication>
#include <QTest>

#include <cstdio>
#include <cstring>
#include <ctime>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <unistd.h>

using namespace luma;

namespace {

double sinceBoot()
{
    timespec now{};
    (void)::clock_gettime(CLOCK_BOOTTIME, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

// Field 22 of /proc/self/stat, in clock ticks; accurate to a hundredth of a second (proc(5)).
double processBegin()
{
    std::ifstream file("/proc/self/stat");
    const std::string text(std::istreambuf_iterator<char>(file), {});
    std::istringstream fields(text.substr(text.rfind(')') + 2));
    std::string field;
    for (int number = 3; number <= 22; ++number)
        fields >> field;
    return std::stod(field) * 1e3 / static_cast<double>(::sysconf(_SC_CLK_TCK));
}

void tell(const char* what)
{
    static const double begin = processBegin();
    std::printf("%-32s %7.0f\n", what, sinceBoot() - begin);
}

void makeSites(Program& program, int count)
{
    for (int site = 0; site < count; ++site)
        program.delegate().add();
}

// The window is painted, and a key typed into the search has narrowed the list.
bool showAndSearch(Program& program)
{
    SiteListWindow& window = program.delegate().siteListWindow();
    if (!program.launch({}) || !QTest::qWaitForWindowExposed(&window))
        return false;
    QCoreApplication::processEvents();
    tell("site list on the screen");
    auto* const search = window.findChild<QWidget*>(QStringLiteral("searchField"));
    if (search == nullptr)
        return false;
    QTest::keyClicks(search, QStringLiteral("x"));
    QCoreApplication::processEvents();
    tell("first key answered");
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    const bool makes = argc == 4 && std::strcmp(argv[1], "make") == 0;
    if (!makes && (argc != 3 || std::strcmp(argv[1], "start") != 0)) {
        (void)std::fputs("bench_start make FOLDER SITES | bench_start start FOLDER\n", stderr);
        return 2;
    }
    tell("main() reached");
    PageScheme::registerScheme();
    QApplication application(argc, argv);
    tell("application object");
    Program program(QString::fromLocal8Bit(argv[2]) + QStringLiteral("/luma.conf"));
    tell("list loaded, window built");
    if (makes)
        makeSites(program, std::atoi(argv[3]));
    else if (!showAndSearch(program))
        return 1;
    program.terminate();
    return 0;
}
