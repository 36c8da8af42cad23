// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/lumaappdelegate.h"
#include "shell/taskwrapper.h"
#include "tests/support/registry.h"

#include <QProcess>
#include <QTest>

#include <unistd.h>

using namespace luma;

// The pipeline ends every process with the watcher's name, so the test starts itself again in a process
// namespace and does the work there.
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
        LUMAAppDelegate::endStrayWatchers(shellRunner());
        QVERIFY(watcher.waitForFinished(60'000));
        QCOMPARE(watcher.exitStatus(), QProcess::CrashExit);
        QCOMPARE(other.state(), QProcess::Running);
        other.kill();
        QVERIFY(other.waitForFinished(60'000));
    }

private slots:
    void pipeline_endsWatchersOnly()
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
                     QStringLiteral("pipeline_endsWatchersOnly")});
        QVERIFY(again.waitForFinished(120'000));
        const QByteArray said = again.readAll();
        if (again.exitCode() != 0 && said.contains("unshare:"))
            QSKIP("no process namespace here");
        QVERIFY2(again.exitCode() == 0, said.constData());
        QVERIFY(said.contains("PASS   : tst_watcherkill::pipeline"));
    }
};

LUMA_TEST(tst_watcherkill)
#include "tst_watcherkill.moc"
