// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/sshcontroller.h"
#include "tests/support/registry.h"

#include <QTest>

#include <map>

using namespace luma;

class tst_unixshell final : public QObject
{
    Q_OBJECT

private:
    static QByteArray resultOf(const std::string& command)
    {
        return QByteArray::fromStdString(
            SSHController::unixShellWithResultAndArguments({"/bin/sh", "-c", command}));
    }

private slots:
    void status_isJudgedBeforeOutput_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<QByteArray>("result");
        QTest::newRow("whole output") << QByteArray("echo a; echo b") << QByteArray("a\nb\n");
        QTest::newRow("fails after printing") << QByteArray("echo a; exit 1") << QByteArray();
        QTest::newRow("killed after printing") << QByteArray("echo a; kill -9 $$") << QByteArray();
        QTest::newRow("unknown command") << QByteArray("luma-no-such-command 2>/dev/null") << QByteArray();
        QTest::newRow("bytes as they are")
            << QByteArray(R"(printf '\303\244\377')") << QByteArray("\xc3\xa4\xff");
        QTest::newRow("long") << QByteArray("head -c 10000000 /dev/zero | tr '\\0' x")
                              << QByteArray(10'000'000, 'x');
        QTest::newRow("long, then fails") << QByteArray("head -c 10000000 /dev/zero; exit 1") << QByteArray();
        QTest::newRow("output closed early")
            << QByteArray("echo a; exec >&-; sleep 0.2; exit 0") << QByteArray("a\n");
        // Without the drain of exactly what is there, each of these would wait for what never ends.
        QTest::newRow("daemon left behind")
            << QByteArray("tail --pid=$PPID -f /dev/null & echo a") << QByteArray("a\n");
        QTest::newRow("chatty daemon left behind")
            << QByteArray("(trap '' PIPE; yes b 2>/dev/null) & printf a; exit 1") << QByteArray();
    }
    void status_isJudgedBeforeOutput()
    {
        QFETCH(QByteArray, command);
        QFETCH(QByteArray, result);
        QVERIFY(resultOf(command.toStdString()) == result);
    }

    void arguments_reachTheProgramAsTheyAre()
    {
        const auto run = &SSHController::unixShellWithResultAndArguments;
        QCOMPARE(run({"/usr/bin/printf", "[%s]", "", "a b", "$HOME;'\"", "\xff\n"}),
                 std::string("[][a b][$HOME;'\"][\xff\n]"));
        QCOMPARE(run({"/no/such/program", "a"}), std::string());
        QCOMPARE(run({}), std::string());
    }

    // File names come back from rsync and its like as they are only in such a locale.
    void locale_isUtf8WhateverOursIs_data()
    {
        QTest::addColumn<QByteArray>("variable");
        QTest::addColumn<QByteArray>("value");
        QTest::newRow("none") << QByteArray("LANG") << QByteArray();
        QTest::newRow("C") << QByteArray("LANG") << QByteArray("C");
        QTest::newRow("C over all") << QByteArray("LC_ALL") << QByteArray("C");
        QTest::newRow("not installed") << QByteArray("LC_CTYPE") << QByteArray("xx_XX.UTF-8");
        QTest::newRow("UTF-8") << QByteArray("LANG") << QByteArray("C.UTF-8");
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
        const QByteArray characters = resultOf("locale charmap");
        for (const char* name : names)
            qputenv(name, old[name]);
        QCOMPARE(characters, QByteArray("UTF-8\n"));
    }
};

LUMA_TEST(tst_unixshell)
#include "tst_unixshell.moc"
