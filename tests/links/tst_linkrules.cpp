// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/linkrules.h"
#include "tests/support/registry.h"

#include <QRegularExpression>
#include <QTest>

using namespace luma;

class tst_linkrules final : public QObject
{
    Q_OBJECT

private slots:
    void relativePath_reachesTheTarget_data()
    {
        QTest::addColumn<QByteArray>("target");
        QTest::addColumn<QByteArray>("base");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char* target, const char* base, const char* expected) {
            QTest::newRow(
                qPrintable(QString::fromLatin1(target) + QLatin1Char(' ') + QString::fromLatin1(base)))
                << QByteArray(target) << QByteArray(base) << QByteArray(expected);
        };
        row("/s/a/c/x.html", "/s/a/b", "../c/x.html");
        row("/s/a/img/p.png", "/s/a", "img/p.png");
        row("/s/index.html", "/s", "index.html");
        row("/s/a", "/s/a", "");
        row("/s", "/s/a/b", "../../");
        row("/s/Img/p", "/s/img", "../Img/p");
        row("/t/x", "/s/a", "../../t/x");
        row("/x", "/", "x");
        row("x/y", "/s", "x/y");
        row("/s/x", "", "/s/x");
        row("/s/a/x", "/s/a/", "x");
        row("/s/ab/x", "/s/a", "../ab/x");
    }
    void relativePath_reachesTheTarget()
    {
        QFETCH(QByteArray, target);
        QFETCH(QByteArray, base);
        QFETCH(QByteArray, expected);
        QCOMPARE(QByteArray::fromStdString(relativePath(target.toStdString(), base.toStdString())), expected);
    }

    void resolveRelativeLink_walksPieces_data()
    {
        QTest::addColumn<QByteArray>("link");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char* link, const char* expected) {
            QTest::newRow(*link ? link : "empty") << QByteArray(link) << QByteArray(expected);
        };
        row("", "/s/a");
        row("x.html", "/s/a/x.html");
        row("../x.html", "/s/x.html");
        row("../../../../x", "/x");
        row("b/../c", "/s/a/c");
        row("./x", "/s/a/./x");
        row("./../x", "/s/x");
        row("/abs/../x", "/abs/../x");
        row("a%20b.html#top?q", "/s/a/a%20b.html#top?q");
        row("sub/", "/s/a/sub/");
    }
    void resolveRelativeLink_walksPieces()
    {
        QFETCH(QByteArray, link);
        QFETCH(QByteArray, expected);
        QCOMPARE(QByteArray::fromStdString(resolveRelativeLink(link.toStdString(), "/s/a").native()),
                 expected);
    }

    // The quick test must agree with the expression that defines it.
    void isExternalLink_agreesWithThePattern()
    {
        const QRegularExpression pattern(
            QString::fromUtf8(externalLinkPattern.data(), static_cast<qsizetype>(externalLinkPattern.size())),
            QRegularExpression::CaseInsensitiveOption);
        int external = 0;
        for (const char* const link : {"http://x", "HTTPS://x", "https:/x", " http://x", "ftp://x", "#top",
                                       "a#top", "mailto:me", "x?MailTo:y", "mailto", "", "//host/x",
                                       "httpss://x", "h", "javascript:x", "a:b", "http:/", "\nhttp://x"}) {
            const bool expected = pattern.match(QString::fromLatin1(link)).hasMatch();
            QVERIFY2(isExternalLink(link) == expected, link);
            external += expected ? 1 : 0;
        }
        QCOMPARE(external, 5);
    }

    void withoutPhpQuery_agreesWithTheExpression()
    {
        const QRegularExpression expression(QStringLiteral(".php\\?.*"));
        for (const char* const link : {"shop.php?id=3", "shopXphp?id=3", "a.php?b.php?c", "php?x", "x.html?y",
                                       "\nphp?x", "a.php?1\nb.php?2\nc", "\xC3\xA4php?x", "", "aphp"}) {
            const QString expected = QString::fromUtf8(link).replace(expression, QStringLiteral(".php"));
            QCOMPARE(QString::fromStdString(withoutPhpQuery(link)), expected);
        }
    }

    void checkedPath_takesIndexAsItsFolder()
    {
        QCOMPARE(checkedPath("/s", "sub/index"), std::string("/s/sub/"));
        QCOMPARE(checkedPath("/s", "index"), std::string("/s/"));
        QCOMPARE(checkedPath("/s", "subindex"), std::string("/s/subindex"));
        QCOMPARE(checkedPath("/s", "/x"), std::string("/s//x"));
    }

    void linkedPrefix_agreesWithTheExpression()
    {
        const QRegularExpression expression(QStringLiteral("/index\\..*html"));
        for (const char* const path :
             {"sub/index.html", "index.html", "../index.html", "sub/index.xhtml", "sub/index.htm",
              "a/index.d/x.html", "a/index.html5", "a/index.html/index.html", "a/index.\nhtml",
              "a/index.htm\n/index.html", "Index.html"}) {
            QCOMPARE(QString::fromStdString(linkedPrefix(path)),
                     QString::fromLatin1(path).remove(expression));
        }
    }

    void fileKind_goesByTheExactExtension()
    {
        QCOMPARE(fileKind("a.html"), FileKind::Page);
        QCOMPARE(fileKind("a.b.xml"), FileKind::Page);
        for (const char* const name : {"a.HTML", "a.htm", "html", ".html", "a.html.", ".DS_Store"})
            QVERIFY2(fileKind(name) == FileKind::Other, name);
        QCOMPARE(fileKind("a.css"), FileKind::StyleSheet);
        QCOMPARE(fileKind("a.js"), FileKind::PlainText);
    }
};

LUMA_TEST(tst_linkrules)
#include "tst_linkrules.moc"
