// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "base/resources.h"
#include "page/csstidy.h"
#include "tests/page/csstokens.h"
#include "tests/support/registry.h"

#include <QDirIterator>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace luma;
using luma::test::cssTokens;

namespace {

const QString resources = qEnvironmentVariable("LUMA_SOURCE_DIR") + QStringLiteral("/resources");

/// The formatting script alone.
std::string formatted(const std::string& css)
{
    QProcess php;
    php.start(QStringLiteral("php"), {resources + QStringLiteral("/LUMAHTMLCSSJS/bin/pcsstidy")});
    php.write(css.data(), static_cast<qint64>(css.size()));
    php.closeWriteChannel();
    php.waitForFinished(-1);
    return php.readAllStandardOutput().toStdString();
}

QString sheetFolder()
{
    return qEnvironmentVariable("LUMA_BUILD_DIR") + QStringLiteral("/sheets");
}

/// Fetches well-known sheets once; without npm or the network there are none. No second try: npm's own ones
/// go on for minutes where no registry answers.
void fetchSheets()
{
    if (QDir(sheetFolder() + QStringLiteral("/node_modules")).exists())
        return;
    QDir().mkpath(sheetFolder());
    QProcess npm;
    npm.start(QStringLiteral("npm"),
              {QStringLiteral("install"), QStringLiteral("--ignore-scripts"), QStringLiteral("--no-audit"),
               QStringLiteral("--fetch-retries=0"), QStringLiteral("--fetch-timeout=60000"),
               QStringLiteral("--prefix"), sheetFolder(), QStringLiteral("bootstrap@5.3.3"),
               QStringLiteral("bulma@1.0.2"), QStringLiteral("normalize.css@8.0.1"),
               QStringLiteral("tailwindcss@2.2.19"), QStringLiteral("water.css@2.1.1")});
    npm.waitForFinished(-1);
}

void verifyTokensStay(const std::string& css)
{
    const std::string once = formatted(css);
    const auto before = cssTokens(css);
    const auto after = cssTokens(once);
    const auto differs = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    QCOMPARE(differs.second == after.end() ? "the end" : QByteArray::fromStdString(*differs.second),
             differs.first == before.end() ? "the end" : QByteArray::fromStdString(*differs.first));
    QCOMPARE(QString::fromStdString(formatted(once)), QString::fromStdString(once));
}

} // namespace

class tst_csstidy final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("php")).isEmpty())
            QSKIP("php is not installed");
    }

    void pcsstidy_formats_data()
    {
        QTest::addColumn<QByteArray>("css");
        QTest::addColumn<QByteArray>("formatted");
        const auto row = [](const char* name, const char* css, const char* formatted) {
            QTest::newRow(name) << QByteArray(css) << QByteArray(formatted);
        };
        row("rules", "a{color:red;margin:0}\n\n\n\nb , i{x:y;}",
            "a {\n    color: red;\n    margin: 0\n}\n\nb ,\ni {\n    x: y;\n}\n");
        row("media", "@media (a){b{c:d}e{}}", "@media (a) {\n    b {\n        c: d\n    }\n\n    e {}\n}\n");
        row("nesting", "a{x:y;&:hover{x:z}.b &{}}",
            "a {\n    x: y;\n\n    &:hover {\n        x: z\n    }\n\n    .b & {}\n}\n");
        row("comments", "/* a */a{x:y;/* b */z:w /* c */}/* d */\n/* e */",
            "/* a */\na {\n    x: y; /* b */\n    z: w /* c */\n} /* d */\n\n/* e */\n");
        row("layers", "@layer a,b;@layer a{b{}}", "@layer a,b;\n\n@layer a {\n    b {}\n}\n");
        row("lines of a value", "a{grid-template-areas:'a b'\n'c d';}",
            "a {\n    grid-template-areas: 'a b'\n        'c d';\n}\n");
        row("custom property", "a{--x:{ b : c };--y:;--z: ;--w:  a  b }",
            "a {\n    --x: { b : c };\n    --y:;\n    --z: ;\n    --w: a  b\n}\n");
        row("selectors", ".\\31  b>c:is(a,b)::before{}", ".\\31  b>c:is(a,b)::before {}\n");
        row("hacks", "a{*zoom:1;_h:1px;color:red\\9;filter:progid:X.Y(a=1,b='2')}",
            "a {\n    *zoom: 1;\n    _h: 1px;\n    color: red\\9;\n    filter: progid:X.Y(a=1,b='2')\n}\n");
        row("nothing", "", "");
    }
    void pcsstidy_formats()
    {
        QFETCH(QByteArray, css);
        QFETCH(QByteArray, formatted);
        QCOMPARE(QByteArray::fromStdString(::formatted(css.toStdString())), formatted);
    }

    void pcsstidy_losesNothing_data()
    {
        QTest::addColumn<QByteArray>("css");
        const QByteArrayList sheets = {"a{content:\"open\n;color:red}b{}",
                                       "a{color:red",
                                       "a{b:c/* open",
                                       "a{b:url(open",
                                       "a{b:(c;d{e}f",
                                       "}}a{b:c}}",
                                       "a{b:c;;;d:e;;}",
                                       ";;",
                                       "<!-- a{} -->",
                                       "a{x:\\\n;y:z}",
                                       "a{x:'a\\\nb';y:z}",
                                       "a\\",
                                       "@media",
                                       "a{:b;c}",
                                       "a{b:c!important;d : e ! important}",
                                       "@x{y}z;@charset 'utf-8';",
                                       "a{b:url( 'c' )url( c )}",
                                       "a/**/b/**/{c/**/:/**/d/**/}",
                                       "a:hover{--b:;}",
                                       "a{b:c}d",
                                       "\xef\xbb\xbf"
                                       "a{b:\xc3\xa9}",
                                       "a{b:\xff}",
                                       "a{--x:{{[(;)]};y:z}",
                                       "@container x (a>b){c{d:e}}",
                                       "a{b:c\r\n;d:e\r\n}\r\n\r\n\r\nf{}",
                                       "/**//**/a{}",
                                       "a{/* x */}",
                                       "a,/* x */b{}",
                                       "a{b:\"\\\"}\"}",
                                       "u\\72l(a;b){}",
                                       "a{b:c}/* x */d{}",
                                       "\"",
                                       "'\\",
                                       "a{--\\}:b}"};
        for (const QByteArray& sheet : sheets)
            QTest::newRow(sheet.toPercentEncoding(" {}:;")) << sheet;
    }
    void pcsstidy_losesNothing()
    {
        QFETCH(QByteArray, css);
        verifyTokensStay(css.toStdString() + "\n");
    }

    // Every cut through a sheet that has everything is broken in its own way.
    void pcsstidy_losesNothingOfCutSheets()
    {
        const std::string sheet =
            "@import url(a b);/* c */@media (a) and (b){.d>e,f:not(.g){--h:{i;j};k:\"l\\\"m\" url('n') "
            "url(o\\)p);q:r(s,t)!important}}@layer u{&:is(v){w:x\\31 y}}";
        for (std::size_t length = 0; length <= sheet.size(); ++length) {
            verifyTokensStay(sheet.substr(0, length) + "\n");
            if (QTest::currentTestFailed())
                return;
        }
    }

    void pcsstidy_keepsRealSheets()
    {
        fetchSheets();
        int count = 0;
        QDirIterator sheets(sheetFolder(), {QStringLiteral("*.css")}, QDir::Files,
                            QDirIterator::Subdirectories);
        while (sheets.hasNext()) {
            const auto css = readFile(sheets.next().toStdString());
            QVERIFY(css);
            verifyTokensStay(*css);
            if (QTest::currentTestFailed())
                QFAIL(qPrintable(sheets.filePath()));
            ++count;
        }
        if (count == 0)
            QSKIP("no sheets: npm or the network is not there");
        qInfo("%d sheets", count);
    }

    void tidyCSS_takesARealSheetOfMegabytes()
    {
        fetchSheets();
        const std::string path =
            (sheetFolder() + QStringLiteral("/node_modules/tailwindcss/dist/tailwind.min.css")).toStdString();
        const auto css = readFile(path);
        if (!css)
            QSKIP("no sheet: npm or the network is not there");
        QVERIFY(css->size() > 1'000'000);
        std::string plain = *css;
        std::replace(plain.begin(), plain.end(), '"', '\'');
        QCOMPARE(plain.find("&amp;"), std::string::npos);
        QVERIFY(tidyCSS(*css) + '\n' == formatted(plain + '\n'));
    }

    void linkPhp_putsTheInterpreterWhereItIsCalled()
    {
        const QTemporaryDir root;
        const QString script = qEnvironmentVariable("LUMA_SOURCE_DIR") + QStringLiteral("/scripts/link-php");
        const QString link = root.path() + QString::fromStdString(std::string(tidyInterpreter));
        QCOMPARE(QProcess::execute(script, {root.path()}), 0);
        QProcess php;
        php.start(link, {QStringLiteral("-r"), QStringLiteral("echo 6 * 7;")});
        QVERIFY(php.waitForFinished(-1));
        QCOMPARE(php.readAllStandardOutput(), QByteArray("42"));
        // What stands there is somebody's, also a link that leads nowhere.
        QVERIFY(QFile::remove(link));
        QVERIFY(QFile::link(QStringLiteral("/nowhere/php"), link));
        QCOMPARE(QProcess::execute(script, {root.path()}), 0);
        QCOMPARE(QFile::symLinkTarget(link), QStringLiteral("/nowhere/php"));
    }

    void tidyCommand_isTheLineForOrdinaryTexts()
    {
        QCOMPARE(
            tidyCommand("a{b:\"c\";d:url(x?y&amp;z)}"),
            std::string(
                "echo \"a{b:'c';d:url(x?y&z)}\" | /opt/homebrew-palisan/bin/php LUMAHTMLCSSJS/bin/pcsstidy"));
    }

    void tidyCSS_isNotExpanded_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("variables") << QByteArray("a{b:$HOME ${HOME} $(id) $((1+1)) $$}");
        QTest::newRow("backquotes") << QByteArray("a{b:`touch RAN`}");
        QTest::newRow("backslashes") << QByteArray("a{b:'\\201c\\n\\t\\\\\\c\\0101\\x41\\e';c:red\\9}");
        QTest::newRow("backslash before a dollar") << QByteArray("a{b:\\$HOME \\` \\\\$HOME}");
        QTest::newRow("leaving the quotes") << QByteArray("a{b:'\\'; touch RAN; #'}");
        QTest::newRow("history and globs") << QByteArray("a{b:c!important;d:* ? [a-z] ~ !! %}");
        QTest::newRow("option") << QByteArray("-n");
        QTest::newRow("not ASCII") << QByteArray("a{b:'\xc3\xa9 \xf0\x9f\x98\x80'}");
    }
    void tidyCSS_isNotExpanded()
    {
        QFETCH(QByteArray, text);
        const std::string expected = formatted(text.toStdString() + "\n");
        QCOMPARE(tidyCSS(text.toStdString()) + '\n', expected);
        QVERIFY(!itemExists(resourceFolder() / "RAN"));
    }

    void tidyCSS_replacesQuotesAndReferences()
    {
        QCOMPARE(tidyCSS("a{b:\"c\";d:'&amp;amp;'}"), std::string("a {\n    b: 'c';\n    d: '&amp;'\n}"));
        QCOMPARE(tidyCSS(""), std::string());
    }

    void tidyCSS_takesBigSheets()
    {
        std::string sheet;
        for (int i = 0; i < 50'000; ++i)
            sheet += ".c" + std::to_string(i) + "{a:'$HOME\\31 `'}\n";
        const std::string tidied = tidyCSS(sheet);
        QVERIFY(sheet.size() > 1'000'000);
        QCOMPARE(tidied.size() + 1, formatted(sheet).size());
        QVERIFY(tidied.find(".c49999 {\n    a: '$HOME\\31 `'\n}") != std::string::npos);
    }
};

LUMA_TEST(tst_csstidy)
#include "tst_csstidy.moc"
