// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/savedsites.h"
#include "site/sitearchive.h"
#include "tests/support/obstacle.h"
#include "tests/support/registry.h"
#include "tests/support/site.h"

#include <QProcess>
#include <QRegularExpression>
#include <QSettings>
#include <QTest>

using luma::test::Files;
using luma::test::Site;

namespace {

struct Answer
{
    int code = -1;
    QByteArray output;
    QByteArray errors;
};

// Without a display and a session bus. The arguments go through a shell, which passes any bytes on.
Answer lumactl(const Site& site, const QByteArray& arguments)
{
    QProcess process;
    QProcessEnvironment environment;
    environment.insert(QStringLiteral("PATH"), QStringLiteral("/usr/bin:/bin"));
    environment.insert(QStringLiteral("LUMACTL"),
                       qEnvironmentVariable("LUMA_BUILD_DIR") + QLatin1String("/bin/lumactl"));
    environment.insert(QStringLiteral("XDG_STATE_HOME"), qEnvironmentVariable("XDG_STATE_HOME"));
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), qEnvironmentVariable("XDG_CONFIG_HOME"));
    environment.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(QString::fromStdString(site.root().native()));
    process.start(QStringLiteral("sh"),
                  {QStringLiteral("-c"), QLatin1String("\"$LUMACTL\" ") + QString::fromUtf8(arguments)});
    Answer answer;
    if (process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit)
        answer.code = process.exitCode();
    answer.output = process.readAllStandardOutput();
    answer.errors = process.readAllStandardError();
    return answer;
}

} // namespace

/// The real lumactl, called as a script calls it.
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
        QTest::addColumn<int>("code");
        QTest::addColumn<QByteArray>("output");
        QTest::addColumn<bool>("complains");
        const auto succeeds = [](const char* arguments, const char* output) {
            QTest::newRow(arguments) << 0 << QByteArray(output) << false;
        };
        const auto finds = [](const char* arguments, const char* output) {
            QTest::newRow(arguments) << 1 << QByteArray(output) << false;
        };
        const auto fails = [](const char* arguments, const char* output) {
            QTest::newRow(arguments) << 1 << QByteArray(output) << true;
        };
        succeeds("links-from index.html --by-letter",
                 "index.html\n    href : sub/x.html\n    href : gone    *** MISSING ***\n    src : p.png\n");
        finds("check . --missing --by-letter", "ROOT/index.html\n    href : gone    *** MISSING ***\n");
        succeeds("check --by-letter --missing sub", "");
        succeeds("check sub --by-letter", "ROOT/sub/x.html\n    href : ../index.html\n");
        succeeds("links-to . sub/x.html --by-letter", "index.html\n");
        succeeds("links-to \"$PWD\" \"$PWD/index.html\"", "sub/x.html\n");
        finds("unlinked . --by-letter", "lonely.png\nsub/lonely.png\n");
        finds("unlinked . --except 'sub, x'", "lonely.png\n");
        finds("unlinked . --except=.*,lonely.png", "lonely.png\n");
        finds("unlinked sub --by-letter", "lonely.png\nx.html\n");
        succeeds("links-from index.html --site .",
                 "index.html\n    1:10  src : p.png\n    1:24  href : sub/x.html\n"
                 "    1:43  href : gone    *** MISSING *** no such file\n");
        finds("check . --missing",
              "ROOT/index.html\n    1:43  href : gone    *** MISSING *** no such file\n");
        finds("check sub",
              "ROOT/sub/x.html\n    1:9  href : ../index.html    *** MISSING *** outside the site\n");
        succeeds("check sub --web-address=https://example.org/sub/",
                 "ROOT/sub/x.html\n    1:9  href : ../index.html\n");
        finds("check . --missing --json",
              "{\"page\":\"index.html\",\"line\":1,\"column\":43,\"place\":\"href\",\"link\":\"gone\","
              "\"state\":\"missing\",\"why\":\"no such file\",\"suggestion\":null}\n");
        succeeds("links-to . sub/x.html --json",
                 "{\"page\":\"index.html\",\"line\":1,\"column\":24,\"place\":\"href\","
                 "\"link\":\"sub/x.html\",\"state\":\"present\",\"why\":null,\"suggestion\":null}\n");
        finds("unlinked .", "lonely.png\nsub/lonely.png\n");
        finds("unlinked . --json", "{\"file\":\"lonely.png\"}\n{\"file\":\"sub/lonely.png\"}\n");
        fails("move . lonely.png sub --by-letter", "\nDone\n");
        succeeds("move . p.png sub --by-letter", "Updating links to: p.png\n\n\nDone\n");
        succeeds("copy --by-letter . sub/x.html .", "Updating links to: x.html\n\n\nDone\n");
        succeeds("rename . p.png q.png --by-letter",
                 "Updating links from: p.png to q.png\n\nUpdating links to: p.png\n\n\nDone\n");
        fails("move . lonely.png sub", "");
        fails("move . lonely.png p.png sub", "moved p.png to sub/p.png\nrewrote index.html: 1 link\n");
        succeeds("copy . sub/x.html .", "copied sub/x.html to x.html\nrewrote x.html: 1 link\n");
        succeeds("rename . p.png q.png && \"$LUMACTL\" undo .",
                 "renamed p.png to q.png\nrewrote index.html: 1 link\n"
                 "took back: Rename p.png to q.png\nrewrote index.html\n");
        succeeds("move . sub/x.html . --dry-run",
                 "would move sub/x.html to x.html\nindex.html:1: sub/x.html -> x.html\n"
                 "sub/x.html:1: ../index.html -> index.html\n");
        succeeds("relink . gone sub/x.html --dry-run", "index.html:1: gone -> sub/x.html\n");
        succeeds(
            "relink . gone sub/x.html && \"$LUMACTL\" undo .",
            "rewrote index.html: 1 link\ntook back: Change links to gone to x.html\nrewrote index.html\n");
        succeeds("relink . gone sub/x.html && \"$LUMACTL\" undo . --skip",
                 "rewrote index.html: 1 link\nleft as it is: Change links to gone to x.html\n");
        fails("relink . gone none.html", "");
        succeeds("find . '(?<=s)ub/(\\w)' --regex --source --replace '$1/' --dry-run",
                 "index.html:1:25: ub/x -> x/\n");
        succeeds("find . X.HTML --source --folder index.html --json",
                 "{\"column\":28,\"file\":\"index.html\",\"line\":1,\"text\":\"x.html\"}\n");
        finds("find . nowhere", "");
        fails("undo .", "");
        fails("rename . p.png lonely.png", "");
        fails("rename . gone.png b", "");
        finds("changed . sub", "index.html\np.png\nsub/lonely.png\nsub/x.html\n");
        finds("changed . sub --download", "x.html\n");
        succeeds("changed sub sub", "");
        finds(
            "changed . sub --download -0 | tr '\\0' '|'; \"$LUMACTL\" changed -0 . sub --download >/dev/null",
            "x.html|");
        finds("unlinked -0 . | tr '\\0' '|'; exit 1", "lonely.png|sub/lonely.png|");
        for (const char* const unusable : {"",
                                           "nonsense",
                                           "links-from gone.html",
                                           "links-from p.png",
                                           "check",
                                           "check site",
                                           "check . --all",
                                           "check . --json --by-letter",
                                           "links-from index.html --site sub",
                                           "links-to . nothing",
                                           "unlinked",
                                           "move . sub",
                                           "move . sub/x.html p.png",
                                           "rename . p.png a/b",
                                           "rename . p.png q.png --dry-run --by-letter",
                                           "relink . gone",
                                           "undo",
                                           "find .",
                                           "find . '(' --regex",
                                           "find gone x",
                                           "changed",
                                           "publish .",
                                           "changed . sub .",
                                           "changed . gone",
                                           "publish . sub --force",
                                           "edit index.html p",
                                           "edit index.html --remove",
                                           "edit index.html p --remove --text x",
                                           "edit index.html p --attr x",
                                           "edit gone.html p --remove",
                                           "changed . sub --except a",
                                           "changed . sub --ssh host",
                                           "changed . sub -0 --json",
                                           "unlinked . -0 --json",
                                           "help nonsense",
                                           "help check move",
                                           "sites .",
                                           "publish . sub --ssh me@host:port",
                                           "publish . sub --except",
                                           "publish . sub --keep -1",
                                           "publish . sub --keep 1d",
                                           "restore . sub"})
            QTest::newRow(*unusable ? unusable : "no command") << 2 << QByteArray() << true;
    }
    void commands()
    {
        QFETCH(int, code);
        QFETCH(QByteArray, output);
        QFETCH(bool, complains);
        const Site site({{"index.html", "<img src=p.png><a href=sub/x.html><a href=gone>"},
                         {"sub/x.html", "<a href=../index.html>"},
                         {"p.png", ""},
                         {"lonely.png", ""},
                         {"sub/lonely.png", ""}});
        for (const auto& [subpath, bytes] : site.contents())
            site.setAge(subpath, 100);
        const QByteArray arguments = QTest::currentDataTag();
        const Answer answer = lumactl(site, arguments == "no command" ? QByteArray() : arguments);
        QCOMPARE(answer.output, output.replace("ROOT", QByteArray::fromStdString(site.root().native())));
        QCOMPARE(answer.code, code);
        QCOMPARE(answer.errors.startsWith("lumactl: "), complains);
        QCOMPARE(answer.errors.isEmpty(), !complains);
        if (code == 2)
            QCOMPARE(site.contents().size(), std::size_t{5});
    }

    void version_namesTheCommit()
    {
        const QByteArray output = lumactl(Site(), "--version").output;
        const QRegularExpression form(QStringLiteral(R"(^lumactl \d+\.\d+( \([0-9a-f]{10}(-dirty)?\))?\n$)"));
        QVERIFY2(form.match(QString::fromUtf8(output)).hasMatch(), output);
    }

    void clash_isNamedOnStandardError()
    {
        const Site site({{"a.png", "1"}, {"b/a.png", "2"}});
        const Answer answer = lumactl(site, "move . a.png b");
        QCOMPARE(answer.code, 1);
        QCOMPARE(answer.errors, QByteArray("lumactl: File a.png exists, not overwritten\n"));
        QCOMPARE(site.bytesOf("b/a.png"), std::string("2"));
    }

    void pageThatCannotBeWritten_stopsAMove()
    {
        const Site site(
            {{"index.html", "<a href=x.html class=a>"}, {"x.html", "<p class=a>"}, {"sub/z", ""}});
        const luma::test::Files before = site.contents();
        const luma::test::Obstacle obstacle(site, "index.html", luma::test::Obstacle::forAll());
        if (!obstacle.isThere())
            QSKIP("no page can be made immutable here");
        for (const char* const command :
             {"move . x.html sub", "rename . x.html y.html", "relink . x.html sub/z",
              "find . href --source --replace HREF", "rename-class . a b"}) {
            const Answer answer = lumactl(site, command);
            QCOMPARE(answer.code, 1);
            QVERIFY2(answer.errors.contains("index.html: ") && answer.errors.contains("--anyway"),
                     answer.errors);
            QCOMPARE(answer.output, QByteArray());
            QCOMPARE(site.contents(), before);
        }
        const Answer answer = lumactl(site, "move . x.html sub --anyway");
        QCOMPARE(answer.code, 1);
        QCOMPARE(answer.output, QByteArray("moved x.html to sub/x.html\n"));
        QVERIFY(answer.errors.contains("index.html: "));
        QCOMPARE(site.listing(), std::string("index.html\nsub/x.html\nsub/z\n"));
    }

    void renameClass_changesElementsAndRules()
    {
        const luma::test::Files files = {{"index.html", "<link href=s.css><p class='a b' id=a>a"},
                                         {"s.css", ".a, #a { color: red }"},
                                         {"x.html", "<script>let a</script>"}};
        const Site site(files);
        const Answer planned = lumactl(site, "rename-class . a '\xC3\xBC.1' --dry-run");
        QCOMPARE(planned.output,
                 QByteArray("index.html:1: .a -> .\xC3\xBC.1\ns.css:1: .a -> .\xC3\xBC.1\n"
                            "x.html: A script here mentions \"a\"; scripts are not changed\n"));
        QCOMPARE(site.contents(), files);
        QCOMPARE(lumactl(site, "rename-class . a '\xC3\xBC.1'").code, 0);
        QCOMPARE(site.bytesOf("index.html"), std::string("<link href=s.css><p class='\xC3\xBC.1 b' id=a>a"));
        QCOMPARE(site.bytesOf("s.css"), std::string(".\xC3\xBC\\.1, #a { color: red }"));
        QCOMPARE(lumactl(site, "rename-class . a d --id").code, 0);
        QCOMPARE(site.bytesOf("s.css"), std::string(".\xC3\xBC\\.1, #d { color: red }"));
        QCOMPARE(lumactl(site, "undo . && \"$LUMACTL\" undo .").code, 0);
        QCOMPARE(site.contents(), files);
        QCOMPARE(lumactl(site, "rename-class . none d").code, 1);
        QCOMPARE(lumactl(site, "rename-class . a 'x y'").code, 2);
    }

    void edit_changesOneElement_data()
    {
        QTest::addColumn<QByteArray>("arguments");
        QTest::addColumn<int>("code");
        QTest::addColumn<QByteArray>("from"); // in the page
        QTest::addColumn<QByteArray>("to");
        const auto row = [](const char* arguments, int code, const char* from = "", const char* to = "") {
            QTest::newRow(arguments) << QByteArray(arguments) << code << QByteArray(from) << QByteArray(to);
        };
        row("'#a' --text '2 < 3'", 0, ">caf\xE9<", ">2 &lt; 3<");
        row("'#a' --text='caf\xC3\xA9 \xD0\x96'", 0, "caf\xE9", "caf\xE9 &#1046;");
        row("ul --html '<li>x'", 0, "<LI>1\r\n<LI>2\r\n", "<li>x</li>");
        row("'#a' --attr class=b", 0, ">caf", " class=\"b\">caf");
        row("'#a' --remove-attr title", 0, " TITLE='t'");
        row("'#a' --remove", 0, "<P ID=a TITLE='t'>caf\xE9</P>");
        row("'#a' --before '<hr>'", 0, "<P ID=a", "<hr><P ID=a");
        row("'#a' --after '<hr>'", 0, "</P>", "</P><hr>");
        row("li --attr value=3 --all", 0, "<LI>1\r\n<LI>2", "<LI value=\"3\">1\r\n<LI value=\"3\">2");
        row("'body *' --remove --all", 0, "<P ID=a TITLE='t'>caf\xE9</P>\r\n<UL><LI>1\r\n<LI>2\r\n</UL>",
            "\r\n");
        row("ul --html '<li class=\"<?= $c ?>\"><?php f(\"<b>\") ?>'", 0, "<LI>1\r\n<LI>2\r\n",
            "<li class=\"<?= $c ?>\"><?php f(\"<b>\") ?></li>");
        row("'#a' --text '<?= $t ?>'", 0, ">caf\xE9<", ">&lt;?= $t ?&gt;<");
        row("'#a' --attr title=t", 0);
        row("li --remove", 1);
        row("'#b' --remove", 1);
        row("'#a' --html '<div>x</div><p>y'", 1);
        row("html --before x", 1);
    }
    void edit_changesOneElement()
    {
        QFETCH(QByteArray, arguments);
        QFETCH(int, code);
        QFETCH(QByteArray, from);
        QFETCH(QByteArray, to);
        const QByteArray page = "<TITLE>t</TITLE>\r\n<BODY><P ID=a TITLE='t'>caf\xE9</P>\r\n"
                                "<UL><LI>1\r\n<LI>2\r\n</UL>\r\n";
        const Site site(Files{{"page.html", page.toStdString()}});
        QByteArray expected = page;
        if (!from.isEmpty())
            expected.replace(from, to);
        const Answer dry = lumactl(site, "edit page.html --dry-run " + arguments);
        QCOMPARE(dry.code, code);
        QCOMPARE(dry.output.isEmpty(), expected == page);
        QCOMPARE(QByteArray::fromStdString(site.bytesOf("page.html")), page);
        const Answer answer = lumactl(site, "edit page.html " + arguments);
        QCOMPARE(answer.code, code);
        QCOMPARE(answer.output, QByteArray());
        QCOMPARE(answer.errors.startsWith("lumactl: page.html: "), code != 0);
        QCOMPARE(QByteArray::fromStdString(site.bytesOf("page.html")), expected);
    }

    void edit_removesTheLastRowOfAnInclude()
    {
        const Site site(Files{{"rows.inc", "<!-- rows -->\n<tr><td>one</td></tr>\n"}});
        QCOMPARE(lumactl(site, "edit rows.inc tr --remove").code, 0);
        QCOMPARE(site.bytesOf("rows.inc"), std::string("<!-- rows -->\n\n"));
    }
    void edit_passesServerCodeOver()
    {
        const Site site(Files{{"page.php", "<?php a() ?><p>b<?= c() ?></p><template>d</template>\n"}});
        QCOMPARE(lumactl(site, "edit page.php template --attr id=e").code, 0);
        QCOMPARE(lumactl(site, "edit page.php 'p *' --remove").code, 1);
        QCOMPARE(site.bytesOf("page.php"),
                 std::string("<?php a() ?><p>b<?= c() ?></p><template id=\"e\">d</template>\n"));
        const Site parts(Files{{"page.php", "<?php head() ?>\n<h1>a</h1>\n<p>b</p>\n<?php foot() ?>\n"}});
        QCOMPARE(lumactl(parts, "edit page.php h1 --remove").code, 0);
        QCOMPARE(parts.bytesOf("page.php"), std::string("<?php head() ?>\n\n<p>b</p>\n<?php foot() ?>\n"));
    }
    void dryEdit_printsTheLines()
    {
        const Site site(Files{{"page.html", "<h1>a</h1>\n<p>1\n<p>x\n<p>2\n<div>d</div>"}});
        QCOMPARE(
            lumactl(site, "edit page.html p --attr id=y --all --dry-run").output,
            QByteArray("--- page.html\n+++ page.html\n@@ -2,3 +2,3 @@\n-<p>1\n-<p>x\n-<p>2\n+<p id=\"y\">1\n"
                       "+<p id=\"y\">x\n+<p id=\"y\">2\n"));
        QCOMPARE(
            lumactl(site, "edit page.html div --after '<hr>' --dry-run").output,
            QByteArray("--- page.html\n+++ page.html\n@@ -5,1 +5,1 @@\n-<div>d</div>\n"
                       "\\ No newline at end of file\n+<div>d</div><hr>\n\\ No newline at end of file\n"));
    }

    void publish_copiesWhatChangedLists()
    {
        const Site site({{"from/new\npage \xc3\xbc.html", "text"},
                         {"from/index.html", "new"},
                         {"from/kept back.html", ""},
                         {"to/index.html", "old"},
                         {"to/only here.html", "text"}});
        site.setAge("from/index.html", 10);
        site.setAge("to/index.html", 20);
        QCOMPARE(lumactl(site, "changed from to").output,
                 QByteArray("index.html\nkept back.html\nnew\\#012page \xc3\xbc.html\n"));
        QCOMPARE(lumactl(site, "changed from to --download").output, QByteArray("only here.html\n"));
        QCOMPARE(lumactl(site, "publish --dry-run --except=index.html from to").output,
                 QByteArray("kept back.html\nnew\\#012page \xc3\xbc.html\n"));
        const Answer published =
            lumactl(site, "publish --except 'kept back.html' --except='new\\#012page \xc3\xbc.html' from to");
        QCOMPARE(published.code, 0);
        QCOMPARE(published.output + published.errors, QByteArray());
        QCOMPARE(site.listing("to"), std::string("index.html\nonly here.html\n"));
        QCOMPARE(lumactl(site, "publish --download from to").code, 0);
        QCOMPARE(site.bytesOf("from/only here.html"), std::string("text"));
    }

    void publish_namesWhatCannotBeCopied()
    {
        const Site site({{"from/a.html", ""}, {"from/b.html", ""}, {"to/a.html/in the way", ""}});
        const Answer published = lumactl(site, "publish from to");
        QCOMPARE(published.code, 1);
        QCOMPARE(published.errors, QByteArray("lumactl: a.html: a folder stands where the file should be\n"));
        QCOMPARE(site.listing("to"), std::string("a.html/in the way\nb.html\n"));
    }

    void changed_countsWhatItIgnores()
    {
        const Site site({{"from/.git/config", ""},
                         {"from/a~", ""},
                         {"from/draft/x.html", ""},
                         {"from/b.html", ""},
                         {"to/c.html", ""}});
        const Answer answer = lumactl(site, "changed from to --ignore=draft/");
        QCOMPARE(answer.output, QByteArray("b.html\n"));
        QCOMPARE(answer.errors, QByteArray("lumactl: 3 ignored\n"));
        QCOMPARE(lumactl(site, "publish from to --ignore '*.html'").code, 0);
        QCOMPARE(site.listing("to"), std::string("c.html\n"));
    }

    void restore_putsBackWhatPublishKept()
    {
        const Site site(
            {{"from/a.html", "new"}, {"from/b.css", "new"}, {"to/a.html", "old"}, {"to/b.css", "old"}});
        for (const char* path : {"to/a.html", "to/b.css"})
            site.setAge(path, 100);
        QCOMPARE(lumactl(site, "publish from to --keep 5").code, 0);
        QCOMPARE(lumactl(site, "restore from to --list").output.count('\n'), 1);
        QCOMPARE(lumactl(site, "restore from to --dry-run").output, QByteArray("a.html\nb.css\n"));
        QCOMPARE(lumactl(site, "restore from to --only b.css").code, 0);
        QCOMPARE(QByteArray::fromStdString(site.bytesOf("to/a.html") + site.bytesOf("to/b.css")),
                 QByteArray("newold"));

        const QByteArray first = lumactl(site, "restore from to --list").output.split('\n')[1].split(' ')[0];
        site.put("to/a.html", "by hand");
        const Answer asked = lumactl(site, "restore from to --publish " + first);
        QCOMPARE(asked.errors, QByteArray("lumactl: a.html: Changed there since the last publish\n"));
        QCOMPARE(asked.code, 1);
        QCOMPARE(QByteArray::fromStdString(site.bytesOf("to/a.html")), QByteArray("by hand"));
        QCOMPARE(lumactl(site, "restore from to --yes --publish " + first).code, 0);
        QCOMPARE(QByteArray::fromStdString(site.bytesOf("to/a.html")), QByteArray("old"));
    }

    void publish_holdsBackWhatMayBeWrong()
    {
        const Site site({{"from/a.html", "1"}, {"to/b.html", ""}, {"to/c.html", ""}});
        const Answer answer = lumactl(site, "publish --delete from to");
        QCOMPARE(answer.code, 1);
        QVERIFY2(answer.errors.contains("More than a third") && answer.errors.contains("no file in common"),
                 answer.errors.constData());
        QCOMPARE(site.listing("to"), std::string("b.html\nc.html\n"));
        QCOMPARE(lumactl(site, "publish --delete --yes from to").code, 0);
        QCOMPARE(site.listing("to"), std::string("a.html\n"));

        site.put("to/a.html", "theirs");
        site.setAge("to/a.html", 10);
        site.put("from/a.html", "mine");
        site.setAge("from/a.html", 5);
        QCOMPARE(
            lumactl(site, "changed from to --json").output,
            QByteArray("{\"asks\":true,\"file\":\"a.html\",\"size\":4,\"sizeThere\":6,\"time\":1767225595,"
                       "\"timeThere\":1767225590,\"what\":\"conflict\","
                       "\"why\":\"Changed on both sides since the last publish\"}\n"));
        const Answer left = lumactl(site, "publish from to");
        QCOMPARE(left.errors, QByteArray("lumactl: a.html: Changed on both sides since the last publish\n"));
        QCOMPARE(site.bytesOf("to/a.html"), std::string("theirs"));
        QCOMPARE(lumactl(site, "publish from to --yes").code, 0);
        QCOMPARE(site.bytesOf("to/a.html"), std::string("mine"));
    }

    void savedSite_isMeantByItsName()
    {
        const Site site({{"from/a.html", "<a href=https://example.org/b.html>"},
                         {"from/kept.png", ""},
                         {"from/draft.txt", ""},
                         {"from/left out.html", ""},
                         {"from/lonely.png", ""},
                         {"to/c.html", ""}});
        const auto endpoint = [&site](const char* folder) {
            return QVariantMap{{QStringLiteral("protocol"), QStringLiteral("file://")},
                               {QStringLiteral("password"), QStringLiteral("secret")},
                               {QStringLiteral("path"), QString::fromStdString(site.at(folder).native())}};
        };
        luma::SiteRecord record({{QStringLiteral("siteID"), QStringLiteral("My site")},
                                 {QStringLiteral("sourceDict"), endpoint("from")},
                                 {QStringLiteral("destinationDict"), endpoint("to")}});
        record.setWebAddressText(QStringLiteral("example.org"));
        record.setKeptItems({"kept.png"});
        record.setIgnoredNames(QStringLiteral("*.txt"));
        record.setUntickedNames(luma::Direction::Upload, {QStringLiteral("left out.html")});
        luma::SiteRecord twin({{QStringLiteral("siteID"), QStringLiteral("Twins")}});
        QSettings preferences(luma::defaultPreferencesFile(), QSettings::IniFormat);
        preferences.setValue(luma::sitesArrayKey,
                             luma::archiveSites({record.values(), twin.values(), twin.values()}));
        preferences.sync();

        QCOMPARE(lumactl(site, "sites").output, QByteArray("My site\nTwins\nTwins\n"));
        QVERIFY(!lumactl(site, "sites --json").output.contains("secret"));
        QVERIFY(lumactl(site, "check 'My site' --missing").output.contains("MISSING *** no such file"));
        QCOMPARE(lumactl(site, "unlinked 'My site'").output,
                 QByteArray("a.html\ndraft.txt\nleft out.html\nlonely.png\n"));
        QCOMPARE(lumactl(site, "changed 'My site'").output,
                 QByteArray("a.html\nkept.png\nleft out.html\nlonely.png\n"));
        QCOMPARE(lumactl(site, "publish 'My site' --yes").code, 0);
        QCOMPARE(site.listing("to"), std::string("a.html\nc.html\nkept.png\nlonely.png\n"));
        QCOMPARE(lumactl(site, "changed 'My site' --download").output, QByteArray("c.html\n"));
        for (const char* const wrong :
             {"check Twins", "changed Twins", "check 'No site'", "publish 'No site'"})
            QCOMPARE(lumactl(site, wrong).code, 2);
        QVERIFY(QFile::remove(luma::defaultPreferencesFile()));
    }

    // A name with a line feed, and the name that looks like its printed form.
    void except_meetsOneFile()
    {
        const Site site({{"from/a\nb", ""}, {"from/a\\#012b", ""}, {"to/c/d", ""}});
        QCOMPARE(lumactl(site, "changed from to").output, QByteArray("a\\#012b\na\\#134#012b\n"));
        QCOMPARE(lumactl(site, "publish from to --yes --except 'a\\#012b'").code, 0);
        QCOMPARE(site.listing("to"), std::string("a\\#012b\nc/d\n"));
    }

    // Capitals come first, '-' comes before '/', and letters beyond ASCII come last.
    void names_areBytesInByteOrder()
    {
        const std::vector<std::string> names = {
            "Z.html",   "a b.html",      "a-.html",   "a.html",          "a/b.html",     "a0.html",
            "z\n.html", "\xC3\xA9.html", "\xFF.html", "\xFF/x\xFE.html", "\xFF\x80.html"};
        const Site site(Files{{"old/target.png", ""}});
        QByteArray lines;
        QByteArray report;
        for (const std::string& name : names) {
            const bool isBelow = name.find('/') != std::string::npos;
            const std::string link = isBelow ? "../old/target.png" : "old/target.png";
            site.put(name, "<a href=" + link + ">");
            lines += QByteArray::fromStdString(name + "\n");
            report += QByteArray::fromStdString(site.at(name).native() + "\n    href : " + link + "\n");
        }
        QCOMPARE(lumactl(site, "unlinked . --except old --by-letter").output, lines);
        QCOMPARE(lumactl(site, "links-to . old/target.png --by-letter").output, lines);
        QCOMPARE(lumactl(site, "check . --by-letter").output, report);
        QCOMPARE(lumactl(site, "links-from --by-letter \"$(printf '\\377.html')\"").output,
                 QByteArray("\xFF.html\n    href : old/target.png\n"));
    }

    void help_describesEachCommand()
    {
        const Site site;
        const QString help = QString::fromUtf8(lumactl(site, "--help").output);
        QByteArrayList listed;
        static const QRegularExpression command(QStringLiteral("^  ([a-z-]+) "),
                                                QRegularExpression::MultilineOption);
        for (auto match = command.globalMatch(help); match.hasNext();)
            listed << match.next().captured(1).toUtf8();
        QCOMPARE(listed.size(), 16);
        for (const QByteArray& name : listed) {
            const Answer answer = lumactl(site, name + " --help");
            QCOMPARE(lumactl(site, "help " + name).output, answer.output);
            QCOMPARE(answer.code, 0);
            QVERIFY2(answer.output.startsWith("Usage: lumactl " + name + " "), name.constData());
            QVERIFY2(answer.output.contains("\n\n") && answer.errors.isEmpty(), name.constData());
        }
    }

    // It has to start on machines without a desktop.
    void program_needsNoDesktopLibraries()
    {
#ifdef __SANITIZE_ADDRESS__
        QSKIP("the sanitizers' checks refer to types that lumactl doesn't use");
#endif
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
