// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "base/resources.h"
#include "page/csstidy.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"

#include <QDirIterator>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace luma;

namespace {

const QString script = qEnvironmentVariable("LUMA_SOURCE_DIR") + "/resources/LUMAHTMLCSSJS/bin/pcsstidy";

QByteArray outputOfPhp(const QStringList& arguments, const QByteArray& input)
{
    QProcess php;
    php.start("php", arguments);
    php.write(input);
    php.closeWriteChannel();
    php.waitForFinished(-1);
    return php.readAllStandardOutput();
}

/// The formatting script alone.
std::string formatted(const std::string& css)
{
    return outputOfPhp({script}, QByteArray::fromStdString(css)).toStdString();
}

/// All sheets formatted by the script's classes in one process.
QByteArrayList allFormatted(const QByteArrayList& sheets)
{
    const QString code = "$sheets = explode(\"\\0\", stream_get_contents(STDIN));"
                         "ob_start(); require $argv[1]; ob_end_clean();"
                         "foreach ($sheets as &$css) $css = (new Formatter(new Tokens($css)))->format();"
                         "echo implode(\"\\0\", $sheets);";
    return outputOfPhp({"-r", code, script}, sheets.join('\0')).split('\0');
}

/// The tokens of a style sheet after CSS Syntax Level 3, section 4, each as the number of its kind and its
/// text, comments included, white space left out.
QStringList cssTokens(const QByteArray& css)
{
    const QString escape = R"((?:\\(?:[0-9a-fA-F]{1,6}(?:\r\n|[ \t\r\n\f])?|[^0-9a-fA-F\r\n\f])))";
    const QString name = R"((?:[-\w\x80-\xff]|)" + escape + ")";
    const QString start = R"((?=-?(?:[a-zA-Z_\x80-\xff]|)" + escape + ")|--)";
    const QString string = R"((?:[^%1\\\r\n\f]++|\\(?:\r\n|[\s\S])?)*+)";
    const QString quoted = '"' + string.arg('"') + "%1|'" + string.arg("'") + "%2";
    const QStringList kinds{R"(/\*(?:[\s\S]*?\*/|[\s\S]*+))",
                            quoted.arg("\"", "'"),
                            quoted.arg("(?=[\r\n\f])", "(?=[\r\n\f])"),
                            quoted.arg("", ""),
                            R"([-+]?(?:\d+(?:\.\d+)?|\.\d+)(?:[eE][-+]?\d+)?(?:%|)" + start + name + "*+)?",
                            "<!--|-->",
                            '#' + name + "++|@" + start + name + "*+",
                            R"([uU][rR][lL]\((?![ \t\r\n\f]*+["'])(?:\\[^\r\n\f]|[^)])*+\)?)",
                            start + name + R"(*+\()",
                            start + name + "*+",
                            R"([\s\S])"};
    static const QRegularExpression token(R"([ \t\r\n\f]++|()" + kinds.join(")|(") + ')');
    QStringList tokens;
    for (auto matches = token.globalMatch(QString::fromLatin1(css)); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        if (match.lastCapturedIndex() > 0)
            tokens.append(QString::number(match.lastCapturedIndex()) + ' ' + match.captured());
    }
    return tokens;
}

QString sheetFolder()
{
    return qEnvironmentVariable("LUMA_BUILD_DIR") + "/sheets";
}

/// Fetches well-known sheets once; without npm or the network there are none. No second try: npm's own ones
/// go on for minutes where no registry answers.
void fetchSheets()
{
    if (QDir(sheetFolder() + "/node_modules").exists())
        return;
    QDir().mkpath(sheetFolder());
    QProcess npm;
    npm.start("npm", {"install", "--ignore-scripts", "--no-audit", "--fetch-retries=0",
                      "--fetch-timeout=60000", "--prefix", sheetFolder(), "bootstrap@5.3.3", "bulma@1.0.2",
                      "normalize.css@8.0.1", "tailwindcss@2.2.19", "water.css@2.1.1"});
    npm.waitForFinished(-1);
}

void verifyTokensStay(const QByteArrayList& sheets)
{
    const QByteArrayList once = allFormatted(sheets);
    const QByteArrayList twice = allFormatted(once);
    QCOMPARE(once.size(), sheets.size());
    QCOMPARE(twice.size(), sheets.size());
    for (qsizetype i = 0; i < sheets.size(); ++i) {
        const QStringList before = cssTokens(sheets[i]);
        const QStringList after = cssTokens(once[i]);
        const auto [was, is] = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
        QVERIFY2(was == before.end() && is == after.end(),
                 "sheet " + QByteArray::number(i) + " " + sheets[i].left(200) + ": " +
                     (was == before.end() ? "the end" : was->toUtf8()) + " became " +
                     (is == after.end() ? "the end" : is->toUtf8()));
        QCOMPARE(twice[i], once[i]);
    }
}

} // namespace

class tst_csstidy final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (QStandardPaths::findExecutable("php").isEmpty())
            QSKIP("php is not installed");
    }

    void pcsstidy_formats_data()
    {
        const test::Rows<QByteArray, QByteArray> row("css", "formatted");
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

    void pcsstidy_losesNothing()
    {
        QByteArrayList sheets =
            QByteArray("a{content:\"open\n;color:red}b{}|a{color:red|a{b:c/* open|a{b:url(open|a{b:(c;d{e}f|"
                       "}}a{b:c}}|a{b:c;;;d:e;;}|;;|<!-- a{} -->|a{x:\\\n;y:z}|a{x:'a\\\nb';y:z}|a\\|@media|"
                       "a{:b;c}|a{b:c!important;d : e ! important}|@x{y}z;@charset 'utf-8';|"
                       "a{b:url( 'c' )url( c )}|a/**/b/**/{c/**/:/**/d/**/}|a:hover{--b:;}|a{b:c}d|"
                       "\357\273\277a{b:\xc3\xa9}|a{b:\xff}|a{--x:{{[(;)]};y:z}|@container x (a>b){c{d:e}}|"
                       "a{b:c\r\n;d:e\r\n}\r\n\r\n\r\nf{}|/**//**/a{}|a{/* x */}|a,/* x */b{}|"
                       "a{b:\"\\\"}\"}|u\\72l(a;b){}|a{b:c}/* x */d{}|\"|'\\|a{--\\}:b}")
                .split('|');
        // Every cut through a sheet that has everything is broken in its own way.
        const QByteArray sheet =
            "@import url(a b);/* c */@media (a) and (b){.d>e,f:not(.g){--h:{i;j};k:\"l\\\"m\" url('n') "
            "url(o\\)p);q:r(s,t)!important}}@layer u{&:is(v){w:x\\31 y}}";
        for (qsizetype length = 0; length <= sheet.size(); ++length)
            sheets.append(sheet.left(length));
        for (QByteArray& each : sheets)
            each += '\n';
        verifyTokensStay(sheets);
    }

    void pcsstidy_keepsRealSheets_data()
    {
        fetchSheets();
        QTest::addColumn<QString>("file");
        QDirIterator files(sheetFolder(), {"*.css"}, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString file = files.next();
            if (files.fileInfo().size() < 1'000'000) // larger ones repeat their rules in variants
                QTest::newRow(qPrintable(QDir(sheetFolder()).relativeFilePath(file))) << file;
        }
    }
    void pcsstidy_keepsRealSheets()
    {
        if (!QTest::currentDataTag())
            QSKIP("no sheets: npm or the network is not there");
        QFETCH(QString, file);
        const auto css = readFile(file.toStdString());
        QVERIFY(css);
        verifyTokensStay({QByteArray::fromStdString(*css)});
    }

    void tidyCSS_takesARealSheetOfMegabytes()
    {
        fetchSheets();
        const std::string path =
            (sheetFolder() + "/node_modules/tailwindcss/dist/tailwind.min.css").toStdString();
        const auto css = readFile(path);
        if (!css)
            QSKIP("no sheet: npm or the network is not there");
        QVERIFY(css->size() > 1'000'000);
        QCOMPARE(css->find("&amp;"), std::string::npos);
        // But for the quotes, most of which become single ones.
        std::string tidied = tidyCSS(*css) + '\n';
        std::string plain = formatted(*css + '\n');
        std::replace(tidied.begin(), tidied.end(), '"', '\'');
        std::replace(plain.begin(), plain.end(), '"', '\'');
        QVERIFY(tidied == plain);
    }

    void linkPhp_putsTheInterpreterWhereItIsCalled()
    {
        const QTemporaryDir root;
        const QString script = qEnvironmentVariable("LUMA_SOURCE_DIR") + "/scripts/link-php";
        const QString link = root.path() + QString::fromStdString(std::string(tidyInterpreter));
        QCOMPARE(QProcess::execute(script, {root.path()}), 0);
        QProcess php;
        php.start(link, {"-r", "echo 6 * 7;"});
        QVERIFY(php.waitForFinished(-1));
        QCOMPARE(php.readAllStandardOutput(), QByteArray("42"));
        // What stands there is somebody's, also a link that leads nowhere.
        QVERIFY(QFile::remove(link));
        QVERIFY(QFile::link("/nowhere/php", link));
        QCOMPARE(QProcess::execute(script, {root.path()}), 0);
        QCOMPARE(QFile::symLinkTarget(link), "/nowhere/php");
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
        QTest::newRow("quotes in strings") << QByteArray(
            "a{b:url(\"data:image/svg+xml,<svg x='$HOME'/>\");c:\"it's \\\" `\";d:'\"'}/* don't */");
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
        QCOMPARE(tidyCSS("/* don't */a{b:\"c\"}"), std::string("/* don't */\na {\n    b: 'c'\n}"));
        QCOMPARE(tidyCSS(""), std::string());
    }

    void tidyCSS_readsNoStartFileOfTheUser()
    {
        const QTemporaryDir folder;
        QVERIFY(writeFile(folder.filePath(".zshenv").toStdString(), "echo personal\n"));
        qputenv("ZDOTDIR", folder.path().toUtf8());
        const std::string tidied = tidyCSS("a{}");
        qunsetenv("ZDOTDIR");
        QCOMPARE(tidied, std::string("a {}"));
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
