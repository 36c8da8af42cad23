// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "shell/sshcontroller.h"
#include "site/rsyncjob.h"
#include "tests/site/twofolders.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/sshserver.h"

#include <QProcess>
#include <QScopeGuard>
#include <QTest>

#include <sys/mount.h>

#include <algorithm>
#include <csignal>
#include <random>
#include <regex>
#include <thread>
#include <utility>

namespace fs = std::filesystem;
using namespace luma;

namespace {

const WorkItem item;

enum class Victim { Lumactl, RsyncHere, RsyncThere, Connection };

// Nothing that ssh or rsync could make shorter.
std::string noise(std::size_t size)
{
    std::string bytes;
    for (std::mt19937_64 random; bytes.size() < size;) {
        const std::uint64_t number = random();
        bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
    }
    return bytes;
}

std::string join(const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& line : lines)
        text += line + "\n";
    return text;
}

} // namespace

/// Publishes over a real ssh server and a real rsync of which something is killed, stopped or full.
class tst_publishbaddays final : public QObject
{
    Q_OBJECT

private:
    test::SshServer m_server;
    std::unique_ptr<test::TwoFolders> m_folders;

    // With a server that does not answer for some seconds, a run ends.
    RsyncArguments arguments() const
    {
        return {m_folders->sending().native() + '/',
                m_server.login() + ':' + m_folders->receiving().native() + '/', Direction::Upload,
                m_server.port(), std::chrono::seconds(4)};
    }
    RsyncJob job() const { return {arguments(), &runProgram}; }
    // What went wrong.
    std::string publish(const StillWanted& stillWanted = {}) const
    {
        const auto report = job().compare(IgnoredNames(), Deletions::Ignored, item);
        if (!report)
            return report.error().text;
        return join(job().transfer(report->rows, {}, stillWanted, stillWanted).problems);
    }
    // The processes of rsync, here or on the server, that work on our folders.
    std::vector<pid_t> rsyncProcesses(bool onServer) const
    {
        std::vector<pid_t> found;
        for (const auto& entry : fs::directory_iterator("/proc")) {
            const auto line = readFile(entry.path() / "cmdline");
            if (line && line->starts_with("rsync") &&
                line->find(m_folders->receiving()) != std::string::npos &&
                (line->find("--server") != std::string::npos) == onServer)
                found.push_back(std::stoi(entry.path().filename()));
        }
        return found;
    }
    void kill(Victim victim, QProcess& lumactl) const
    {
        if (victim == Victim::Lumactl)
            lumactl.kill();
        else if (victim == Victim::Connection)
            m_server.signal(SIGKILL, test::SshServer::Part::Sessions);
        else
            for (const pid_t process : rsyncProcesses(victim == Victim::RsyncThere))
                ::kill(process, SIGKILL);
    }
    void startLumactl(QProcess& process) const
    {
        process.start(qEnvironmentVariable("LUMA_BUILD_DIR") + "/bin/lumactl",
                      {"publish", "--ssh", QString::fromStdString(m_server.login() + ":" + m_server.port()),
                       QString::fromStdString(m_folders->sending()),
                       QString::fromStdString(m_folders->receiving())});
    }
    std::size_t count(const char* folder, const std::string& bytes) const
    {
        const test::Files files = m_folders->contents(folder);
        return static_cast<std::size_t>(std::count_if(
            files.begin(), files.end(), [&bytes](const auto& file) { return file.second == bytes; }));
    }
    // Of the files on the server, those whose path and size fit.
    template <class Fits>
    std::size_t countThere(Fits fits) const
    {
        std::size_t found = 0;
        std::error_code error;
        for (fs::recursive_directory_iterator entry(m_folders->receiving(), error), end;
             !error && entry != end; entry.increment(error)) {
            const std::string name = entry->path().filename();
            const auto size = entry->file_size(error);
            found += !error && fits(name.starts_with('.'), size) ? 1 : 0;
        }
        return found;
    }
    std::size_t temporaries() const
    {
        return countThere([](bool isTemporary, std::uintmax_t) { return isTemporary; });
    }

private slots:
    void initTestCase()
    {
        if (!m_server.start())
            QSKIP(qPrintable(m_server.skipReason()));
        QCOMPARE(SSHController::setUpRemoteLogin(m_server.login(), m_server.port(), m_server.password()),
                 std::string());
    }
    void init()
    {
        m_folders = std::make_unique<test::TwoFolders>();
        fs::permissions(m_folders->root(), fs::perms(0755));
        m_server.giveToUser(m_folders->receiving());
    }

    // 200 files, half of them there in an old version; what is killed, and when.
    void killed_everyFileIsOldOrNew_andTheNextRunFinishes_data()
    {
        const test::Rows<Victim, int> row("victim", "published");
        for (const int published : {0, 100}) {
            const std::string at = " at " + std::to_string(published);
            row(("lumactl" + at).c_str(), Victim::Lumactl, published);
            row(("rsync here" + at).c_str(), Victim::RsyncHere, published);
            row(("rsync on the server" + at).c_str(), Victim::RsyncThere, published);
            row(("the connection" + at).c_str(), Victim::Connection, published);
        }
    }
    void killed_everyFileIsOldOrNew_andTheNextRunFinishes()
    {
        QFETCH(Victim, victim);
        QFETCH(int, published);
        const std::string bytes = noise(60'000);
        for (int i = 0; i < 200; ++i) {
            const std::string name = "s" + std::to_string(i / 50) + "/" + std::to_string(i) + ".html";
            m_folders->put("sending/" + name, bytes, 10);
            if (i % 2 == 0)
                m_folders->put("receiving/" + name, "old", 20);
        }
        m_server.giveToUser(m_folders->receiving());
        QProcess process;
        startLumactl(process);
        const auto isDue = [&] {
            return temporaries() > 0 && countThere([](bool isTemporary, std::uintmax_t size) {
                                            return !isTemporary && size > 3;
                                        }) >= std::size_t(published);
        };
        while (!isDue() && !process.waitForFinished(0))
            std::this_thread::yield();
        kill(victim, process);
        QTRY_COMPARE_WITH_TIMEOUT(process.state(), QProcess::NotRunning, 60'000);
        QTRY_VERIFY(rsyncProcesses(true).empty() && rsyncProcesses(false).empty());
        const std::size_t sent = count("receiving", bytes);
        const std::size_t left = temporaries();
        // Those that are not there yet are neither; of the temporary files, at most one is whole.
        const std::size_t whole =
            sent + count("receiving", "old") + left - m_folders->contents("receiving").size();
        QVERIFY2(whole <= std::min<std::size_t>(left, 1), std::to_string(whole).c_str());
        qInfo("%zu of 200 were sent, %zu temporary files left", sent, left);
        startLumactl(process);
        QVERIFY(process.waitForFinished(-1));
        QCOMPARE(process.exitCode(), 0);
        QCOMPARE(m_folders->listing("receiving"), m_folders->listing("sending"));
        QCOMPARE(count("receiving", bytes), std::size_t{200});
    }

    // The first bytes of a large file have arrived, then nothing comes any more.
    void unanswered_endsWithAMessage_data()
    {
        const test::Rows<int, test::SshServer::Part, std::string> row("signal", "part", "message");
        row("a stopped server", SIGSTOP, test::SshServer::Part::All, std::string("not responding"));
        row("a stopped connection", SIGSTOP, test::SshServer::Part::Sessions, std::string("not responding"));
        // It depends on who notices first.
        row("a lost connection", SIGKILL, test::SshServer::Part::Sessions,
            std::string("disconnect|closed|reset|[Bb]roken pipe"));
    }
    void unanswered_endsWithAMessage()
    {
        QFETCH(int, signal);
        QFETCH(test::SshServer::Part, part);
        QFETCH(std::string, message);
        m_folders->put("sending/big.bin", noise(30'000'000), 10);
        m_folders->put("receiving/big.bin", "old", 20);
        m_server.giveToUser(m_folders->receiving());
        bool isSent = false;
        const std::string problems = publish([&] {
            if (!std::exchange(isSent, isSent || temporaries() > 0) && isSent)
                m_server.signal(signal, part);
            return true;
        });
        const auto compared = job().compare(IgnoredNames(), Deletions::Ignored, item);
        m_server.signal(SIGCONT, test::SshServer::Part::All);
        QVERIFY(isSent);
        QVERIFY2(std::regex_search(problems, std::regex(message)), problems.c_str());
        QCOMPARE(m_folders->bytesOf("receiving/big.bin"), std::string("old"));
        // The server as a whole answers no comparison either.
        QCOMPARE(bool(compared), part == test::SshServer::Part::Sessions);
        QTRY_COMPARE(m_server.processesAtPort(), 0);
        QCOMPARE(publish(), std::string());
        QCOMPARE(m_folders->listing("receiving"), std::string("big.bin\n"));
    }

    // The server's limit is not waited for, and it is asked once what has arrived.
    void stop_endsATransferToAStoppedServer()
    {
        m_folders->put("sending/big.bin", noise(30'000'000), 10);
        RsyncArguments patient = arguments();
        patient.patience = std::chrono::hours(24);
        bool isStopped = false;
        int questions = 0;
        const RsyncJob job(patient,
                           [&](const auto& words, std::string_view input, const StillWanted& wanted) {
                               questions += isStopped ? 1 : 0;
                               return runProgram(words, input, wanted);
                           });
        const auto report = job.compare(IgnoredNames(), Deletions::Ignored, item);
        QVERIFY(report);
        const StillWanted untilStopped = [&] {
            if (!isStopped && temporaries() > 0) {
                m_server.signal(SIGSTOP, test::SshServer::Part::All);
                isStopped = true;
                return true;
            }
            return !isStopped;
        };
        const RsyncReport sent = job.transfer(report->rows, {}, untilStopped, {});
        QVERIFY(isStopped);
        QCOMPARE(questions, 1);
        QVERIFY(sent.done.empty() && sent.problems.empty());
        m_server.signal(SIGCONT, test::SshServer::Part::All);
        QTRY_COMPARE(m_folders->listing("receiving"), std::string());
    }

    void fullOrReadOnlyDisk_costsNothing_data()
    {
        const test::Rows<bool, std::string> row("isFull", "message");
        row("full", true, std::string("No space left on device|may be full"));
        row("read-only", false, std::string("Read-only file system"));
    }
    void fullOrReadOnlyDisk_costsNothing()
    {
        QFETCH(bool, isFull);
        QFETCH(std::string, message);
        const fs::path folder = m_folders->receiving();
        if (::mount("luma", folder.c_str(), "tmpfs", 0, "size=64k") != 0)
            QSKIP("needs the right to mount");
        const auto unmount = qScopeGuard([&folder] { ::umount(folder.c_str()); });
        m_folders->put("sending/big.html", noise(200'000), 10);
        m_folders->put("sending/small.html", "new", 10);
        m_folders->put("receiving/big.html", "old", 20);
        m_server.giveToUser(m_folders->receiving());
        if (!isFull)
            QCOMPARE(::mount("luma", folder.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, "size=64k"), 0);
        const std::string problems = publish();
        QVERIFY2(std::regex_search(problems, std::regex(message)), problems.c_str());
        QCOMPARE(m_folders->bytesOf("receiving/big.html"), std::string("old"));
        QCOMPARE(m_folders->listing("receiving"), std::string("big.html\n"));
        QCOMPARE(::mount("luma", folder.c_str(), "tmpfs", MS_REMOUNT, "size=1m"), 0);
        QCOMPARE(publish(), std::string());
        QCOMPARE(m_folders->listing("receiving"), std::string("big.html\nsmall.html\n"));
    }

    void missingFolder_isNamed_notMade()
    {
        m_folders->put("sending/a.html");
        fs::remove(m_folders->receiving());
        const std::string problems = publish();
        QVERIFY2(problems.find("No such file or directory") != std::string::npos, problems.c_str());
        QVERIFY(!fs::exists(m_folders->receiving()));
    }
};

LUMA_TEST(tst_publishbaddays)
#include "tst_publishbaddays.moc"
