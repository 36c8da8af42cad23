// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/watcher/announcer.h"
#include "browser/watcher/foldertreewatch.h"

#include <QCoreApplication>

#include <poll.h>
#include <sys/signalfd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>

using namespace luma;
using Clock = std::chrono::steady_clock;

namespace {

int terminationDescriptor()
{
    sigset_t endings = {};
    sigemptyset(&endings);
    sigaddset(&endings, SIGTERM);
    sigaddset(&endings, SIGINT);
    sigaddset(&endings, SIGHUP);
    // Blocked before any thread is created, so that every thread inherits it.
    sigprocmask(SIG_BLOCK, &endings, nullptr);
    return ::signalfd(-1, &endings, SFD_CLOEXEC);
}

/// Whether the other end of standard input is closed.
bool parentIsGone(short events)
{
    std::array<char, 256> ignored = {};
    return events != 0 && ::read(STDIN_FILENO, ignored.data(), ignored.size()) <= 0;
}

int soonest(int a, int b)
{
    return a < 0 || b < 0 ? std::max(a, b) : std::min(a, b);
}

void watch(const std::filesystem::path& folder, const timespec& since, Announcer& announcer, int termination)
{
    FolderTreeWatch tree(folder, since);
    auto lastLook = Clock::now();
    for (;;) {
        const int due = announcer.postIfDue();
        std::array<pollfd, 3> sources = {
            {{tree.descriptor(), POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}, {termination, POLLIN, 0}}};
        ::poll(sources.data(), sources.size(), soonest(due, tree.patience()));
        if (sources[2].revents != 0 || parentIsGone(sources[1].revents))
            return;
        if (sources[0].revents != 0 && tree.readEvents())
            announcer.changed(tree.takeChangedFolders());
        const int patience = tree.patience();
        if (patience >= 0 && Clock::now() - lastLook >= std::chrono::milliseconds(patience)) {
            lastLook = Clock::now();
            if (tree.lookAround())
                announcer.changed(tree.takeChangedFolders());
        }
    }
}

} // namespace

/// Watches a folder recursively and posts the notification "folderChanged" followed by the caption, with this
/// process's id as its object, whenever something in it has changed, also between SINCE (nanoseconds of the system's
/// clock, by default now) and its start. Ends on SIGTERM, or when standard input is closed.
int main(int argc, char** argv)
{
    const int termination = terminationDescriptor();
    (void)std::signal(SIGPIPE, SIG_IGN);
    const QCoreApplication application(argc, argv);
    if (argc != 3 && argc != 4) {
        (void)std::fprintf(stderr, "usage: LUMAWatcher CAPTION FOLDER [SINCE]\n");
        return 2;
    }
    timespec since = {};
    ::clock_gettime(CLOCK_REALTIME_COARSE, &since);
    if (argc == 4) {
        constexpr std::int64_t second = 1'000'000'000;
        const std::int64_t time = std::strtoll(argv[3], nullptr, 10);
        since = {.tv_sec = time / second, .tv_nsec = time % second};
    }
    const std::filesystem::path folder = argv[2];
    Announcer announcer(QString::fromUtf8(argv[1]));
    watch(folder, since, announcer, termination);
    return 0;
}
