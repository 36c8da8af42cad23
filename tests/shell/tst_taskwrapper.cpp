// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/taskwrapper.h"
#include "tests/support/registry.h"

#include <QTemporaryDir>
#include <QTest>

using namespace luma;

class tst_taskwrapper final : public QObject
{
    Q_OBJECT

private:
    static QByteArray outputOf(const char* command)
    {
        TaskWrapper task;
        task.arguments = {"-c", command};
        const auto output = task.run();
        return output ? QByteArray::fromStdString(*output) : QByteArray("nothing");
    }

private slots:
    void run_losesTheLastCharacter_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<QByteArray>("output");
        QTest::newRow("newline") << QByteArray("print 1.2.3") << QByteArray("1.2.3");
        QTest::newRow("no newline") << QByteArray("print -n abc") << QByteArray("ab");
        QTest::newRow("one character") << QByteArray("print") << QByteArray("");
        QTest::newRow("nothing printed") << QByteArray("true") << QByteArray("nothing");
        QTest::newRow("non-ASCII end") << QByteArray("print -n 'a\xe2\x82\xac'") << QByteArray("a");
        QTest::newRow("not UTF-8") << QByteArray("print 'a\xff'") << QByteArray("nothing");
        QTest::newRow("status does not count") << QByteArray("print abc; exit 3") << QByteArray("abc");
        QTest::newRow("input has ended") << QByteArray("cat; print done") << QByteArray("done");
        QTest::newRow("error not collected")
            << QByteArray("print abc; print x 2>/dev/null >&2") << QByteArray("abc");
        QTest::newRow("it is zsh") << QByteArray("print ${ZSH_VERSION:+yes}") << QByteArray("yes");
        QTest::newRow("later output")
            << QByteArray("(sleep 0.2; print late) &; print soon") << QByteArray("soon\nlate");
        QTest::newRow("long") << QByteArray("head -c 10000000 /dev/zero | tr '\\0' x; print")
                              << QByteArray(10'000'000, 'x');
    }
    void run_losesTheLastCharacter()
    {
        QFETCH(QByteArray, command);
        QFETCH(QByteArray, output);
        QVERIFY(outputOf(command.constData()) == output);
    }

    void run_worksOnce()
    {
        TaskWrapper task;
        QVERIFY(task.arguments.empty());
        task.arguments = {"-c", "print first"};
        QCOMPARE(task.run().value(), std::string("first"));
        QVERIFY(!task.run());
    }

    void run_worksInItsFolder()
    {
        const QTemporaryDir folder;
        TaskWrapper task(folder.path().toStdString());
        task.arguments = {"-c", "pwd"};
        QCOMPARE(task.run().value(), folder.path().toStdString());
        TaskWrapper lost("/nowhere");
        lost.arguments = {"-c", "pwd"};
        QVERIFY(!lost.run());
    }
};

LUMA_TEST(tst_taskwrapper)
#include "tst_taskwrapper.moc"
