// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/childprocess.h"
#include "tests/shell/runners.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"

#include <QRegularExpression>
#include <QTest>

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

namespace fs = std::filesystem;
using namespace luma;
using namespace luma::test;

// What holds for the children of all runners.
class tst_childprocess final : public QObject
{
    Q_OBJECT

private:
    using Run = std::function<std::string()>;

    static std::size_t openDescriptors()
    {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator()));
    }

    // Our children, zombies included.
    static std::string children()
    {
        std::string all;
        for (const auto& thread : fs::directory_iterator("/proc/self/task")) {
            std::ifstream file(thread.path() / "children");
            all += std::string(std::istreambuf_iterator<char>(file), {});
        }
        return all;
    }

private slots:
    void cleanup() { acceptNewChildren(); }

    void child_getsThreeDescriptorsAlone()
    {
        const int leak = ::open("/dev/null", O_RDONLY);
        const std::string seen = sh("ls /proc/$$/fd; true");
        const std::string seenByZsh = zsh("print $(ls /proc/$$/fd)");
        ::close(leak);
        QCOMPARE(QByteArray::fromStdString(seen).simplified(), QByteArray("0 1 2"));
        // zsh keeps its own descriptors at 10 and above.
        static const QRegularExpression ownOnes(QStringLiteral(" \\d\\d"));
        QCOMPARE(QString::fromStdString(seenByZsh).remove(ownOnes), QStringLiteral("0 1 2"));
    }

    void child_getsNoSignalSettingsOfOurs()
    {
        const auto old = std::signal(SIGPIPE, SIG_IGN);
        sigset_t set = {};
        sigset_t before = {};
        sigemptyset(&set);
        sigaddset(&set, SIGTERM);
        pthread_sigmask(SIG_BLOCK, &set, &before);
        const std::string seen = sh("grep -E 'SigBlk|SigIgn' /proc/self/status");
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
        (void)std::signal(SIGPIPE, old);
        // 32 and 33 belong to the C library, which ignores them in spawned processes.
        const QByteArray ours =
            QByteArray::fromStdString(seen).replace("0000000180000000", "0000000000000000");
        QCOMPARE(ours, QByteArray("SigBlk:\t0000000000000000\nSigIgn:\t0000000000000000\n"));
    }

    void child_hasItsOwnGroupAndNoTerminal()
    {
        QCOMPARE(sh("test $(ps -o pgid= -p $$) = $$ && (: </dev/tty) 2>/dev/null || echo ok"),
                 std::string("ok\n"));
    }

    void closedStandardInput_changesNothing()
    {
        const int input = ::fcntl(0, F_DUPFD_CLOEXEC, 3);
        ::close(0);
        const std::string output = sh("cat; echo end");
        const std::string error = expect("puts -nonewline stderr end");
        ::dup2(input, 0);
        ::close(input);
        QCOMPARE(output, std::string("end\n"));
        QCOMPARE(error, std::string("end"));
    }

    void manyRuns_leaveNoDescriptorAndNoZombie()
    {
        const auto runAll = [] {
            (void)sh("echo a");
            (void)sh("exit 1");
            (void)zsh("print a");
            (void)zsh("exec >&-; sleep 0.1");
            (void)expect("exit");
            (void)SSHController::unixShellWithResultAndArguments({"/no/such/program"});
        };
        runAll();
        const std::size_t before = openDescriptors();
        std::vector<std::thread> threads;
        threads.reserve(8);
        for (int i = 0; i < 8; ++i)
            threads.emplace_back([&] { runAll(); });
        for (std::thread& thread : threads)
            thread.join();
        QCOMPARE(openDescriptors(), before);
        QTRY_COMPARE(children(), std::string());
    }

    // The child reads its input only once nothing of us is left but a file that it holds.
    void input_isCompleteFromTheStart()
    {
        const std::string input(1'000'000, 'x');
        ChildProcess child({"/bin/sh", {"-c", "stat -Lc %s /dev/stdin; wc -c"}, {}, Collected::Both, input});
        QCOMPARE(child.waitForExit().value_or(-1), 0);
        QCOMPARE(child.takeCollected(), std::string("1000000\n1000000\n"));
    }

    void termination_releasesEveryRunner_data()
    {
        const test::Rows<QByteArray, Run, QByteArray> row("mark", "run", "failure");
        row(
            "sh", "4711.1", [] { return sh("echo a; sleep 4711.1; echo b"); }, "");
        row(
            "zsh", "4711.2", [] { return zsh("print a; sleep 4711.2; print b"); }, "nothing");
        row(
            "zsh, output held by another", "4711.3", [] { return zsh("sleep 4711.3 & exit"); }, "nothing");
        row(
            "deaf child", "4711.4", [] { return sh("trap '' TERM; sleep 4711.4; sleep 4711.4; echo b"); },
            "");
        row(
            "deaf and chatty child", "4711.5",
            [] { return zsh("trap '' TERM; while true; do print 4711.5; done"); }, "nothing");
        row(
            "expect and its child", "4711.6",
            [] { return expect("spawn sleep 4711.6\nset timeout -1\nexpect eof\n"); }, "Error in connection");
    }
    void termination_releasesEveryRunner()
    {
        QFETCH(QByteArray, mark);
        QFETCH(Run, run);
        QFETCH(QByteArray, failure);
        // A pattern that does not match itself.
        const std::string pattern = mark.replace('.', "[.]").toStdString();
        const auto isRunning = [&] {
            return sh("grep -l '" + pattern + "' /proc/[0-9]*/cmdline 2>/dev/null || true");
        };
        std::string result = "still running";
        std::thread thread([&] { result = run(); });
        QTRY_VERIFY(!isRunning().empty());
        terminateRunningChildren();
        thread.join();
        const std::string after = sh("echo a");
        acceptNewChildren();
        QCOMPARE(result, failure.toStdString());
        QCOMPARE(after, std::string());
        QTRY_COMPARE(isRunning(), std::string());
        QTRY_COMPARE(children(), std::string());
    }
};

LUMA_TEST(tst_childprocess)
#include "tst_childprocess.moc"
