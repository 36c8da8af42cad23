// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/links/site.h"
#include "tests/support/registry.h"

#include <QProcess>
#include <QTest>

using test_site = luma::test::Site;

namespace {

struct Answer
{
    int code = -1;
    QByteArray output;
    QByteArray errors;
};

// In an environment without a display and a session bus. Arguments are bytes, so a shell hands them on.
Answer lumactl(const test_site& site, const QByteArray& arguments)
{
    QProcess process;
    QProcessEnvironment environment;
    environment.insert(QStringLiteral("PATH"), QStringLiteral("/usr/bin:/bin"));
    environment.insert(QStringLiteral("LUMACTL"),
                       qEnvironmentVariable("LUMA_BUILD_DIR") + QLatin1String("/bin/lumactl"));
    environment.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(QString::fromStdString(site.root().native()));
    process.start(QStringLiteral("sh"),
                  {QStringLiteral("-c"), QLatin1String("exec \"$LUMACTL\" ") + QString::fromUtf8(arguments)});
    Answer answer;
    if (process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit)
        answer.code = process.exitCode();
    answer.output = process.readAllStandardOutput();
    answer.errors = process.readAllStandardError();
    return answer;
}

} // namespace

class tst_lumactl final : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        if (qEnvironmentVariableIsEmpty("LUMA_BUILD_DIR"))
            QSKIP("LUMA_BUILD_DIR names no build folder");
    }

    void commands_data()
    {
        QTest::addColumn<QByteArray>("arguments");
        QTest::addColumn<int>("code");
        QTest::addColumn<QByteArray>("output");
        const auto row = [](const char* arguments, int code, const char* output) {
            QTest::newRow(arguments) << QByteArray(arguments) << code << QByteArray(output);
        };
        row("links-from index.html", 0,
            "index.html\n    href : sub/x.html\n    href : gone    *** MISSING ***\n    src : p.png\n");
        row("links-from gone.html", 2, "");
        row("links-from p.png", 2, "");
        row("check site", 2, "");
        row("check . --missing", 1, "ROOT/index.html\n    href : gone    *** MISSING ***\n");
        row("check --missing sub", 0, "");
        row("check sub", 0, "ROOT/sub/x.html\n    href : ../index.html\n");
        row("check", 2, "");
        row("check . --all", 2, "");
        row("links-to . sub/x.html", 0, "index.html\n");
        row("links-to \"$PWD\" \"$PWD/index.html\"", 0, "sub/x.html\n");
        row("links-to . nothing", 2, "");
        row("unlinked .", 1, "lonely.png\nsub/lonely.png\n");
        row("unlinked . --except 'sub, x'", 1, "lonely.png\n");
        row("unlinked . --except=.*,lonely.png", 1, "lonely.png\n");
        row("unlinked sub", 1, "lonely.png\nx.html\n");
        row("unlinked", 2, "");
        row("move . sub/x.html p.png", 2, "");
        row("move . sub", 2, "");
        row("move . lonely.png sub", 1, "\nDone\n");
        row("move . p.png sub", 0, "Updating links to: p.png\n\n\nDone\n");
        row("copy . sub/x.html .", 0, "Updating links to: x.html\n\n\nDone\n");
        row("rename . p.png q.png", 0,
            "Updating links from: p.png to q.png\n\nUpdating links to: p.png\n\n\nDone\n");
        row("rename . p.png lonely.png", 1, "");
        row("rename . p.png a/b", 2, "");
        row("rename . gone.png b", 1, "");
        row("nonsense", 2, "");
        row("", 2, "");
        row("--version", 0, "lumactl 1.0\n");
    }
    void commands()
    {
        QFETCH(QByteArray, arguments);
        QFETCH(int, code);
        QFETCH(QByteArray, output);
        const test_site site({{"index.html", "<img src=p.png><a href=sub/x.html><a href=gone>"},
                              {"sub/x.html", "<a href=../index.html>"},
                              {"p.png", ""},
                              {"lonely.png", ""},
                              {"sub/lonely.png", ""}});
        const Answer answer = lumactl(site, arguments);
        QCOMPARE(answer.output, output.replace("ROOT", QByteArray::fromStdString(site.root().native())));
        QCOMPARE(answer.code, code);
        QCOMPARE(answer.errors.isEmpty(),
                 code != 2 && !output.startsWith("\nDone") && !(code == 1 && output.isEmpty()));
    }

    void clash_isNamedOnStandardError()
    {
        const test_site site({{"a.png", "1"}, {"b/a.png", "2"}});
        const Answer answer = lumactl(site, "move . a.png b");
        QCOMPARE(answer.code, 1);
        QCOMPARE(answer.errors, QByteArray("lumactl: File a.png exists, not overwritten\n"));
        QCOMPARE(site.bytesOf("b/a.png"), std::string("2"));
    }

    // Nobody's alphabet: capitals come first, '-' comes before '/', and letters beyond ASCII come last.
    void names_areBytesInByteOrder()
    {
        const std::vector<std::string> names = {
            "Z.html",   "a b.html",      "a-.html",   "a.html",          "a/b.html",     "a0.html",
            "z\n.html", "\xC3\xA9.html", "\xFF.html", "\xFF/x\xFE.html", "\xFF\x80.html"};
        const test_site site(luma::test::Files{{"old/target.png", ""}});
        QByteArray lines;
        QByteArray report;
        for (const std::string& name : names) {
            const bool isBelow = name.find('/') != std::string::npos;
            const std::string link = isBelow ? "../old/target.png" : "old/target.png";
            site.put(name, "<a href=" + link + ">");
            lines += QByteArray::fromStdString(name + "\n");
            report += QByteArray::fromStdString(site.at(name).native() + "\n    href : " + link + "\n");
        }
        QCOMPARE(lumactl(site, "unlinked . --except old").output, lines);
        QCOMPARE(lumactl(site, "links-to . old/target.png").output, lines);
        QCOMPARE(lumactl(site, "check .").output, report);
        QCOMPARE(lumactl(site, "links-from \"$(printf '\\377.html')\"").output,
                 QByteArray("\xFF.html\n    href : old/target.png\n"));
    }

    void help_isThereForEachCommand()
    {
        const test_site site;
        const QByteArray help = lumactl(site, "--help").output;
        for (const char* const command :
             {"links-from", "check", "links-to", "unlinked", "move", "copy", "rename"}) {
            QVERIFY(help.contains(command));
            const Answer answer = lumactl(site, QByteArray(command) + " --help");
            QCOMPARE(answer.code, 0);
            QVERIFY(answer.output.startsWith(QByteArray("Usage: lumactl ") + command));
            QVERIFY(answer.errors.isEmpty());
        }
    }

    // It has to start on machines without a desktop.
    void program_needsNoDesktopLibraries()
    {
        QProcess readelf;
        readelf.start(
            QStringLiteral("readelf"),
            {QStringLiteral("-d"), qEnvironmentVariable("LUMA_BUILD_DIR") + QLatin1String("/bin/lumactl")});
        if (!readelf.waitForFinished() || readelf.exitCode() != 0)
            QSKIP("no readelf");
        const QByteArray libraries = readelf.readAllStandardOutput();
        QVERIFY(libraries.contains("libQt6Core"));
        for (const char* const library :
             {"Qt6Gui", "Qt6Widgets", "Qt6DBus", "Qt6WebEngine", "gio-2", "libX11"})
            QVERIFY2(!libraries.contains(library), library);
    }
};

LUMA_TEST(tst_lumactl)
#include "tst_lumactl.moc"
