// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/shell/runners.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"

#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <map>

using namespace luma;
using namespace luma::test;

// What each of the three runners makes of a command's output and status.
class tst_runners final : public QObject
{
    Q_OBJECT

    using Runner = std::function<std::string(const std::string&)>;

    static void addColumns()
    {
        QTest::addColumn<Runner>("run");
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<QByteArray>("result");
    }

private:
    static void compare()
    {
        QFETCH(Runner, run);
        QFETCH(QByteArray, command);
        QFETCH(QByteArray, result);
        QVERIFY(QByteArray::fromStdString(run(command.toStdString())) == result);
    }

private slots:
    void sh_givesTheOutputOfSuccess_data()
    {
        addColumns();
        const auto row = [](const char* name, const QByteArray& command, const QByteArray& result) {
            QTest::newRow(name) << Runner(sh) << command << result;
        };
        row("whole output", "echo a; echo b", "a\nb\n");
        row("fails after printing", "echo a; exit 1", "");
        row("killed after printing", "echo a; kill -9 $$", "");
        row("unknown command", "luma-no-such-command 2>/dev/null", "");
        row("any bytes", R"(printf '\303\244\377')", "\xc3\xa4\xff");
        row("long", "head -c 10000000 /dev/zero | tr '\\0' x", QByteArray(10'000'000, 'x'));
        row("long, then fails", "head -c 10000000 /dev/zero; exit 1", "");
        row("output closed early", "echo a; exec >&-; sleep 0.2; exit 0", "a\n");
        // These would block for ever if more than the child's own output were awaited.
        row("daemon left behind", "tail --pid=$PPID -f /dev/null & echo a", "a\n");
        row("chatty daemon left behind", "(trap '' PIPE; yes b 2>/dev/null) & printf a; exit 1", "");
    }
    void sh_givesTheOutputOfSuccess() { compare(); }

    void zsh_losesTheLastCharacter_data()
    {
        addColumns();
        const auto row = [](const char* name, const QByteArray& command, const QByteArray& result) {
            QTest::newRow(name) << Runner(zsh) << command << result;
        };
        row("newline", "print 1.2.3", "1.2.3");
        row("no newline", "print -n abc", "ab");
        row("one character", "print", "");
        row("nothing printed", "true", "nothing");
        row("non-ASCII end", "print -n 'a\xe2\x82\xac'", "a");
        row("not UTF-8", "print 'a\xff'", "nothing");
        row("status does not count", "print abc; exit 3", "abc");
        row("input has ended", "cat; print done", "done");
        row("error not collected", "print abc; print x 2>/dev/null >&2", "abc");
        row("it is zsh", "print ${ZSH_VERSION:+yes}", "yes");
        row("later output", "(sleep 0.2; print late) &; print soon", "soon\nlate");
        row("long", "head -c 10000000 /dev/zero | tr '\\0' x; print", QByteArray(10'000'000, 'x'));
    }
    void zsh_losesTheLastCharacter() { compare(); }

    void expect_givesStandardError_data()
    {
        addColumns();
        const auto row = [](const char* name, const QByteArray& script, const QByteArray& result) {
            QTest::newRow(name) << Runner(expect) << script << result;
        };
        row("message", "puts -nonewline stderr {fail - timeout}", "fail - timeout");
        row("silence", "set a 1", "");
        row("empty script", "", "");
        row("status 1", "puts stderr message; exit 1", "Error in connection");
        row("faulty script", "no such command", "Error in connection");
        row("killed", "exec kill -9 [pid]", "Error in connection");
        row("non-ASCII", "puts -nonewline stderr \xc3\xa4", "\xc3\xa4");
        row("expect itself",
            "spawn -noecho sh -c {read a; echo got $a}\nlog_user 0\nsend hello\\r\nexpect -re {got (\\w+)}\n"
            "puts -nonewline stderr $expect_out(1,string)",
            "hello");
        row("comment first", "#!/usr/bin/expect -f\nputs stderr a", "a\n");
        // The daemon lives as long as this test's process.
        row("daemon left behind",
            "puts stderr a\nexec sh -c {tail --pid=$(ps -o ppid= -p $PPID) -f /dev/null} >@stdout 2>@stderr &\n"
            "exit\n",
            "a\n");
        row("long", "puts -nonewline stderr [string repeat x 10000000]", QByteArray(10'000'000, 'x'));
        row("long script", QByteArray(5'000'000, '\n') + "puts -nonewline stderr end", "end");
        row("script not read to its end", "exit\n" + QByteArray(5'000'000, '\n'), "");
    }
    void expect_givesStandardError() { compare(); }

    void zsh_runsOnceInItsFolder()
    {
        const QTemporaryDir folder;
        TaskWrapper task(folder.path().toStdString());
        QVERIFY(task.arguments.empty());
        task.arguments = {"-c", "pwd"};
        QCOMPARE(task.run().value(), folder.path().toStdString());
        QVERIFY(!task.run());
        TaskWrapper lost("/nowhere");
        lost.arguments = {"-c", "pwd"};
        QVERIFY(!lost.run());
    }

    // Some of these would be code for Tcl or options for expect.
    void arguments_arriveUnchanged()
    {
        const auto run = &SSHController::unixShellWithResultAndArguments;
        QCOMPARE(run({"/usr/bin/printf", "[%s]", "", "a b", "$HOME;'\"", "\xff\n"}),
                 std::string("[][a b][$HOME;'\"][\xff\n]"));
        QCOMPARE(run({"/no/such/program", "a"}), std::string());
        QCOMPARE(run({}), std::string());

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

    void expectsArguments_areNotVisibleToOthers()
    {
        const std::string script = "puts -nonewline stderr [lindex $argv 0]:\n"
                                   "exec tr {\\0} { } < /proc/[pid]/cmdline >@stderr\n"
                                   "exec cat /proc/[pid]/environ >@stderr";
        const std::string seen = SSHController::runExpectScript(script, {"secret"});
        QVERIFY(seen.starts_with("secret:"));
        QVERIFY(seen.find("expect -f -") != std::string::npos);
        QVERIFY(seen.find("secret", 1) == std::string::npos);
    }

    // rsync and others print file names unescaped only in a UTF-8 locale.
    void locale_isUtf8WhateverOursIs_data()
    {
        const test::Rows<QByteArray, QByteArray> row("variable", "value");
        row("none", "LANG", "");
        row("C", "LANG", "C");
        row("C over all", "LC_ALL", "C");
        row("not installed", "LC_CTYPE", "xx_XX.UTF-8");
        row("UTF-8", "LANG", "C.UTF-8");
    }
    void locale_isUtf8WhateverOursIs()
    {
        QFETCH(QByteArray, variable);
        QFETCH(QByteArray, value);
        const auto names = {"LANG", "LC_ALL", "LC_CTYPE"};
        std::map<const char*, QByteArray> old;
        for (const char* name : names) {
            old[name] = qgetenv(name);
            qunsetenv(name);
        }
        qputenv(variable.constData(), value);
        const std::string characters = sh("locale charmap");
        for (const char* name : names)
            qputenv(name, old[name]);
        QCOMPARE(characters, std::string("UTF-8\n"));
    }
};

LUMA_TEST(tst_runners)
#include "tst_runners.moc"
