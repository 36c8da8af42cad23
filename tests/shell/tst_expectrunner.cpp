// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/sshcontroller.h"
#include "tests/support/registry.h"

#include <QFile>
#include <QTest>

using namespace luma;

class tst_expectrunner final : public QObject
{
    Q_OBJECT

private slots:
    void result_isWhatTheScriptWroteToStandardError_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<QByteArray>("result");
        QTest::newRow("message") << QByteArray("puts -nonewline stderr {fail - timeout}")
                                 << QByteArray("fail - timeout");
        QTest::newRow("silence") << QByteArray("set a 1") << QByteArray();
        QTest::newRow("empty script") << QByteArray() << QByteArray();
        QTest::newRow("status 1") << QByteArray("puts stderr message; exit 1")
                                  << QByteArray("Error in connection");
        QTest::newRow("faulty script") << QByteArray("no such command") << QByteArray("Error in connection");
        QTest::newRow("killed") << QByteArray("exec kill -9 [pid]") << QByteArray("Error in connection");
        QTest::newRow("non-ASCII") << QByteArray("puts -nonewline stderr \xc3\xa4") << QByteArray("\xc3\xa4");
        QTest::newRow("expect itself") << QByteArray("spawn -noecho sh -c {read a; echo got $a}\nlog_user 0\n"
                                                     "send hello\\r\nexpect -re {got (\\w+)}\n"
                                                     "puts -nonewline stderr $expect_out(1,string)")
                                       << QByteArray("hello");
        QTest::newRow("comment first")
            << QByteArray("#!/usr/bin/expect -f\nputs stderr a") << QByteArray("a\n");
        // The daemon lives as long as this test's process.
        QTest::newRow("daemon left behind")
            << QByteArray(
                   "puts stderr a\n"
                   "exec sh -c {tail --pid=$(ps -o ppid= -p $PPID) -f /dev/null} >@stdout 2>@stderr &\n"
                   "exit\n")
            << QByteArray("a\n");
        QTest::newRow("long") << QByteArray("puts -nonewline stderr [string repeat x 10000000]")
                              << QByteArray(10'000'000, 'x');
        QTest::newRow("long script") << QByteArray(5'000'000, '\n') + "puts -nonewline stderr end"
                                     << QByteArray("end");
        QTest::newRow("script not read to its end") << "exit\n" + QByteArray(5'000'000, '\n') << QByteArray();
    }
    void result_isWhatTheScriptWroteToStandardError()
    {
        QFETCH(QByteArray, script);
        QFETCH(QByteArray, result);
        const std::string answer = SSHController::runExpectScript(script.toStdString(), {});
        QVERIFY(QByteArray::fromStdString(answer) == result);
    }

    // Some of these would be code for Tcl or options for expect.
    void arguments_areTheScriptsArgumentVector()
    {
        const std::vector<std::string> arguments = {"user@host", "-c", "exit 1",   "",     "$argv [exit 1] {",
                                                    "\\",        "--", "\xc3\xa4", "a\nb", "}; exit 1; {"};
        const std::string script = "puts -nonewline stderr $argc\n"
                                   "foreach a $argv {puts -nonewline stderr |$a}\n"
                                   "if {[info exists argument]} {exit 1}\n";
        std::string expected = std::to_string(arguments.size());
        for (const std::string& argument : arguments)
            expected += "|" + argument;
        QCOMPARE(SSHController::runExpectScript(script, arguments), expected);
    }

    void arguments_areNotSeenFromOutside()
    {
        const std::string script = "puts -nonewline stderr [lindex $argv 0]:\n"
                                   "exec tr {\\0} { } < /proc/[pid]/cmdline >@stderr\n"
                                   "exec cat /proc/[pid]/environ >@stderr";
        const std::string seen = SSHController::runExpectScript(script, {"secret"});
        QVERIFY(seen.starts_with("secret:"));
        QVERIFY(seen.find("expect -f -") != std::string::npos);
        QVERIFY(seen.find("secret", 1) == std::string::npos);
    }
};

LUMA_TEST(tst_expectrunner)
#include "tst_expectrunner.moc"
