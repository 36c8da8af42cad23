// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preferences.h"
#include "tests/support/registry.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace luma;

/// The real program, in a process namespace of its own: at start and at quit it ends every folder watcher it
/// sees.
class tst_quit final : public QObject
{
    Q_OBJECT

    QTemporaryDir m_home;

    // Starts the program, waits until it catches the signal, sends it, and answers the program's exit status.
    int runAndSignal(const QString& signal)
    {
        const QString script =
            QStringLiteral(
                "\"$1\" & pid=$!\n"
                "caught() { echo $((0x$(sed -n 's/^SigCgt:[[:space:]]*//p' /proc/$pid/status) & 0x4000)); }\n"
                "until [ \"$(caught)\" -ne 0 ]; do :; done\n"
                "kill -%1 $pid; wait $pid")
                .arg(signal);
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_home.path());
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        // The user's own LUMA may hold the name on the session bus.
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("disabled:"));
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(QStringLiteral("unshare"),
                      {QStringLiteral("-pf"), QStringLiteral("--mount-proc"), QStringLiteral("--kill-child"),
                       QStringLiteral("sh"), QStringLiteral("-c"), script, QStringLiteral("sh"),
                       qEnvironmentVariable("LUMA_BUILD_DIR") + QStringLiteral("/bin/luma")});
        return process.waitForFinished(-1) ? process.exitCode() : -1;
    }

private slots:
    void initTestCase()
    {
        if (::geteuid() != 0)
            QSKIP("only root gets a process namespace of its own");
    }

    // A job that hangs, or a window that has refused once.
    void whatHoldsItUp_doesNotKeepTheProgram_data()
    {
        QTest::addColumn<QString>("program");
        QTest::newRow("hung job") << "quit_with_hung_job";
        QTest::newRow("refused quit, then another signal") << "quit_after_refusal";
    }
    void whatHoldsItUp_doesNotKeepTheProgram()
    {
        QFETCH(QString, program);
        const QString file = m_home.filePath(program + QStringLiteral(".conf"));
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(qEnvironmentVariable("LUMA_BUILD_DIR") + QStringLiteral("/bin/") + program, {file});
        QVERIFY(process.waitForFinished(-1));
        QCOMPARE(process.exitCode(), 0);
        QVERIFY(Preferences(file).value(QStringLiteral("windows/sites/geometry")).isValid());
    }

    void aSignal_savesAndQuits_data()
    {
        QTest::addColumn<QString>("signal");
        QTest::newRow("end of the session") << "TERM";
        QTest::newRow("Control+C") << "INT";
    }
    void aSignal_savesAndQuits()
    {
        QFETCH(QString, signal);
        const QString file = m_home.filePath(QStringLiteral("luma/luma.conf"));
        QFile::remove(file);
        QCOMPARE(runAndSignal(signal), 0);
        const Preferences preferences(file);
        QVERIFY(preferences.value(QStringLiteral("windows/sites/geometry")).isValid());
        struct stat status = {};
        QCOMPARE(::stat(QFile::encodeName(file).constData(), &status), 0);
        QCOMPARE(status.st_mode & 0777U, mode_t{0600});
    }
};

LUMA_TEST(tst_quit)
#include "tst_quit.moc"
