// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/watcherkill.h"
#include "shell/taskwrapper.h"
#include "tests/support/registry.h"

#include <QProcess>
#include <QTest>

#include <unistd.h>

using namespace luma;

// The pipeline ends whatever carries the watcher's name, so it runs only where all processes are this test's
// own: the test starts itself again inside a process namespace, and does the work there.
class tst_watcherkill final : public QObject
{
    Q_OBJECT

    static constexpr const char* insideMark = "LUMA_TEST_OWN_PROCESSES";

    static bool startNamed(QProcess& process, const char* name)
    {
        process.start(
            QStringLiteral("/bin/bash"),
            {QStringLiteral("-c"), QStringLiteral("exec -a %1 sleep 600").arg(QLatin1StringView(name))});
        return process.waitForStarted();
    }

private slots:
    void command_isTheFixedOne()
    {
        std::vector<std::string> arguments;
        endStrayWatchers([&](const std::vector<std::string>& given) {
            arguments = given;
            return std::string();
        });
        const std::string command =
            "ps aux | grep -v grep | grep LUMAWatcher | awk '{print $2}' | xargs kill";
        QVERIFY(arguments == std::vector<std::string>({"-c", command}));
    }

    void pipeline_endsWatchersAndNobodyElse()
    {
        if (::geteuid() != 0)
            QSKIP("a process namespace needs root");
        if (qEnvironmentVariableIsSet(insideMark)) {
            inside();
            return;
        }
        QProcess again;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QLatin1StringView(insideMark), QStringLiteral("1"));
        again.setProcessEnvironment(environment);
        again.setProcessChannelMode(QProcess::MergedChannels);
        again.start(QStringLiteral("unshare"),
                    {QStringLiteral("-pf"), QStringLiteral("--mount-proc"),
                     QCoreApplication::applicationFilePath(), QStringLiteral("tst_watcherkill"),
                     QStringLiteral("pipeline_endsWatchersAndNobodyElse")});
        QVERIFY(again.waitForFinished(120'000));
        const QByteArray said = again.readAll();
        if (again.exitCode() != 0 && said.contains("unshare:"))
            QSKIP("no process namespace here");
        QVERIFY2(again.exitCode() == 0, said.constData());
        QVERIFY(said.contains("PASS   : tst_watcherkill::pipeline"));
    }

private:
    static void inside()
    {
        QProcess watcher;
        QProcess other;
        QVERIFY(startNamed(watcher, "/usr/share/luma/LUMAWatcher"));
        QVERIFY(startNamed(other, "SomethingElse"));
        // The shell has become its command once the name shows.
        const QString name = QStringLiteral("/proc/%1/cmdline").arg(watcher.processId());
        QTRY_VERIFY([&name] {
            QFile file(name);
            return file.open(QFile::ReadOnly) && file.readAll().startsWith("/usr/share/luma/LUMAWatcher");
        }());
        endStrayWatchers(shellRunner());
        QVERIFY(watcher.waitForFinished(60'000));
        QCOMPARE(watcher.exitStatus(), QProcess::CrashExit);
        QCOMPARE(other.state(), QProcess::Running);
        other.kill();
        QVERIFY(other.waitForFinished(60'000));
    }
};

LUMA_TEST(tst_watcherkill)
#include "tst_watcherkill.moc"
