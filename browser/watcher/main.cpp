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
#include <string>

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

/// Reads questions, which are numbers, each followed by a line end. False when the other end of standard input is closed.
bool readQuestions(std::string& questions)
{
    std::array<char, 256> buffer = {};
    const ssize_t length = ::read(STDIN_FILENO, buffer.data(), buffer.size());
    if (length > 0)
        questions.append(buffer.data(), static_cast<std::size_t>(length));
    return length > 0;
}

/// The answer to the last question is one to all.
void answer(std::string& questions, FolderTreeWatch& tree, Announcer& announcer)
{
    const std::size_t end = questions.rfind('\n');
    if (end == std::string::npos)
        return;
    const std::string whole = questions.substr(0, end);
    questions.erase(0, end + 1);
    if (tree.readEvents())
        announcer.changed(tree.takeChangedFolders());
    else
        announcer.note(tree.takeChangedFolders());
    if (!tree.isComplete())
        announcer.note({});
    announcer.answer(whole.substr(whole.rfind('\n') + 1));
}

int soonest(int a, int b)
{
    return a < 0 || b < 0 ? std::max(a, b) : std::min(a, b);
}

void watch(const std::filesystem::path& folder, const timespec& since, Announcer& announcer, int termination)
{
    FolderTreeWatch tree(folder, since);
    std::string questions;
    auto lastLook = Clock::now();
    for (;;) {
        const int due = announcer.postIfDue();
        std::array<pollfd, 3> sources = {
            {{tree.descriptor(), POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}, {termination, POLLIN, 0}}};
        ::poll(sources.data(), sources.size(), soonest(due, tree.patience()));
        if (sources[2].revents != 0 || (sources[1].revents != 0 && !readQuestions(questions)))
            return;
        answer(questions, tree, announcer);
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
/// clock, by default now) and its start. Answers questions on standard input (Announcer). Ends on SIGTERM, or when standard input is closed.
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
