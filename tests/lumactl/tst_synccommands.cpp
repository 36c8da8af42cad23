// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/site/twofolders.h"
#include "tests/support/registry.h"

#include <QProcess>
#include <QTest>

using luma::test::TwoFolders;

/// The real lumactl, as a script calls it.
class tst_synccommands final : public QObject
{
    Q_OBJECT

private:
    struct Outcome
    {
        int status;
        QByteArray output;
        QByteArray complaints;
    };

    static Outcome lumactl(const TwoFolders& folders, const QStringList& arguments)
    {
        QProcess process;
        process.setWorkingDirectory(QString::fromStdString(folders.root().string()));
        process.start(qEnvironmentVariable("LUMA_BUILD_DIR") + QStringLiteral("/bin/lumactl"), arguments);
        process.waitForFinished(-1);
        return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
    }

    static QStringList words(const char* text) { return QString::fromUtf8(text).split(QLatin1Char('|')); }

private slots:
    void changedListsWhatPublishCopies()
    {
        const TwoFolders folders;
        folders.put("sending/new\npage \xc3\xbc.html");
        folders.put("sending/index.html", "new", 10);
        folders.put("receiving/index.html", "old", 20);
        folders.put("sending/kept back.html");
        folders.put("receiving/only here.html");
        const Outcome changed = lumactl(folders, words("changed|sending|receiving"));
        QCOMPARE(changed.status, 0);
        QCOMPARE(changed.output, QByteArray("index.html\nkept back.html\nnew\\#012page \xc3\xbc.html\n"));
        QCOMPARE(lumactl(folders, words("changed|sending|receiving|--download")).output,
                 QByteArray("only here.html\n"));
        const Outcome published = lumactl(
            folders,
            words("publish|--except|kept back.html|--except=new\\#012page \u00fc.html|sending|receiving"));
        QCOMPARE(published.status, 0);
        QCOMPARE(published.output + published.complaints, QByteArray());
        QCOMPARE(folders.listing("receiving"), std::string("index.html\nonly here.html\n"));
        QCOMPARE(lumactl(folders, words("publish|--download|sending|receiving")).status, 0);
        QCOMPARE(folders.bytes("sending/only here.html"), std::string("text"));
    }

    void whatCannotBeCopiedIsNamed()
    {
        const TwoFolders folders;
        folders.put("sending/a.html");
        folders.put("sending/b.html");
        folders.put("receiving/a.html/in the way");
        const Outcome published = lumactl(folders, words("publish|sending|receiving"));
        QCOMPARE(published.status, 1);
        QCOMPARE(published.complaints,
                 QByteArray("lumactl: a.html: a folder stands where the file should be\n"));
        QCOMPARE(folders.listing("receiving"), std::string("a.html/in the way\nb.html\n"));
    }

    void unusableArguments_data()
    {
        QTest::addColumn<QString>("arguments");
        QTest::newRow("no folder") << QStringLiteral("changed");
        QTest::newRow("one folder") << QStringLiteral("publish|sending");
        QTest::newRow("three folders") << QStringLiteral("changed|sending|receiving|sending");
        QTest::newRow("missing folder") << QStringLiteral("changed|sending|gone");
        QTest::newRow("unknown option") << QStringLiteral("publish|sending|receiving|--force");
        QTest::newRow("option of the other") << QStringLiteral("changed|sending|receiving|--except|a");
        QTest::newRow("missing value") << QStringLiteral("publish|sending|receiving|--except");
    }
    void unusableArguments()
    {
        QFETCH(QString, arguments);
        const TwoFolders folders;
        folders.put("sending/a.html");
        const Outcome outcome = lumactl(folders, arguments.split(QLatin1Char('|')));
        QCOMPARE(outcome.status, 2);
        QVERIFY(outcome.output.isEmpty());
        QVERIFY(outcome.complaints.startsWith("lumactl: "));
        QCOMPARE(folders.listing("receiving"), std::string());
    }
};

LUMA_TEST(tst_synccommands)
#include "tst_synccommands.moc"
