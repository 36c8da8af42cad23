// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/linkrules.h"
#include "tests/support/registry.h"
#include "tests/support/site.h"

#include <QRegularExpression>
#include <QTest>

using namespace luma;

class tst_linkrules final : public QObject
{
    Q_OBJECT

private slots:
    void relativePath_reachesTheTarget()
    {
        struct Row
        {
            const char* target;
            const char* base;
            std::string expected;
        };
        for (const auto& [target, base, expected] : {Row{"/s/a/c/x.html", "/s/a/b", "../c/x.html"},
                                                     {"/s/a/img/p.png", "/s/a", "img/p.png"},
                                                     {"/s/index.html", "/s", "index.html"},
                                                     {"/s/a", "/s/a", ""},
                                                     {"/s", "/s/a/b", "../../"},
                                                     {"/s/Img/p", "/s/img", "../Img/p"},
                                                     {"/t/x", "/s/a", "../../t/x"},
                                                     {"/x", "/", "x"},
                                                     {"x/y", "/s", "x/y"},
                                                     {"/s/x", "", "/s/x"},
                                                     {"/s/a/x", "/s/a/", "x"},
                                                     {"/s/ab/x", "/s/a", "../ab/x"}})
            QCOMPARE(relativePath(target, base), expected);
    }

    void resolveRelativeLink_walksPieces()
    {
        for (const auto& [link, expected] :
             std::vector<std::pair<std::string, std::string>>{{"", "/s/a"},
                                                              {"x.html", "/s/a/x.html"},
                                                              {"../x.html", "/s/x.html"},
                                                              {"../../../../x", "/x"},
                                                              {"b/../c", "/s/a/c"},
                                                              {"./x", "/s/a/./x"},
                                                              {"./../x", "/s/x"},
                                                              {"/abs/../x", "/abs/../x"},
                                                              {"a%20b.html#top?q", "/s/a/a%20b.html#top?q"},
                                                              {"sub/", "/s/a/sub/"}})
            QCOMPARE(resolveRelativeLink(link, "/s/a").native(), expected);
    }

    // The functions below are written by hand for speed; the expressions define them.
    void isExternalLink_agreesWithTheExpression()
    {
        const QRegularExpression external(QStringLiteral("^(https{0,1}://)|(mailto:)|(^#).*"),
                                          QRegularExpression::CaseInsensitiveOption);
        int count = 0;
        for (const char* const link : {"http://x", "HTTPS://x", "https:/x", " http://x", "ftp://x", "#top",
                                       "a#top", "mailto:me", "x?MailTo:y", "mailto", "", "//host/x",
                                       "httpss://x", "h", "javascript:x", "a:b", "http:/", "\nhttp://x"}) {
            const bool expected = external.match(QString::fromLatin1(link)).hasMatch();
            QVERIFY2(isExternalLink(link) == expected, link);
            count += expected ? 1 : 0;
        }
        QCOMPARE(count, 5);
    }

    void withoutPhpQuery_agreesWithTheExpression()
    {
        const QRegularExpression query(QStringLiteral(".php\\?.*"));
        for (const char* const link : {"shop.php?id=3", "shopXphp?id=3", "a.php?b.php?c", "php?x", "x.html?y",
                                       "\nphp?x", "a.php?1\nb.php?2\nc", "\xC3\xA4php?x", "", "aphp"})
            QCOMPARE(QString::fromStdString(withoutPhpQuery(link)),
                     QString::fromUtf8(link).replace(query, QStringLiteral(".php")));
    }

    void linkedPrefix_agreesWithTheExpression()
    {
        const QRegularExpression index(QStringLiteral("/index\\..*html"));
        for (const char* const path :
             {"sub/index.html", "index.html", "../index.html", "sub/index.xhtml", "sub/index.htm",
              "a/index.d/x.html", "a/index.html5", "a/index.html/index.html", "a/index.\nhtml",
              "a/index.htm\n/index.html", "Index.html"})
            QCOMPARE(QString::fromStdString(linkedPrefix(path)), QString::fromLatin1(path).remove(index));
    }

    void checkedPath_takesIndexAsItsFolder()
    {
        QCOMPARE(checkedPath("/s", "sub/index"), std::string("/s/sub/"));
        QCOMPARE(checkedPath("/s", "index"), std::string("/s/"));
        QCOMPARE(checkedPath("/s", "subindex"), std::string("/s/subindex"));
        QCOMPARE(checkedPath("/s", "/x"), std::string("/s//x"));
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

    // Every attribute of the table is found, in any letter case, and nothing else.
    void linkAttributeIndex_followsTheTable()
    {
        for (std::size_t i = 0; i < linkAttributes.size(); ++i) {
            const QByteArray name = QByteArray::fromStdString(std::string(linkAttributes.at(i)));
            QCOMPARE(linkAttributeIndex(linkAttributes.at(i)), std::optional(i));
            QCOMPARE(linkAttributeIndex(name.toUpper().toStdString()), std::optional(i));
            QVERIFY(!linkAttributeIndex(name.chopped(1).toStdString()));
        }
        for (const char* const name : {"", "alt", "href2", "content", "data-src"})
            QVERIFY2(!linkAttributeIndex(name), name);
        QVERIFY(!linkAttributeIndex(std::string(200, 'x')));
    }
};

LUMA_TEST(tst_linkrules)
#include "tst_linkrules.moc"
