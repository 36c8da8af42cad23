// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/percentencoding.h"
#include "links/siteaddresses.h"
#include "tests/support/registry.h"

#include <QRandomGenerator>
#include <QTest>

using namespace luma;

namespace {

QByteArray described(const LinkTarget& target)
{
    using Kind = LinkTarget::Kind;
    std::string text = target.kind == Kind::External    ? "external"
                       : target.kind == Kind::NotJudged ? "not judged"
                       : target.kind == Kind::Outside   ? "outside"
                                                      : "/" + target.path + (target.isFolderForm ? "/" : "");
    if (target.kind == Kind::Inside && target.hasQuery)
        text += "?";
    if (target.kind == Kind::Inside && !target.fragment.empty())
        text += "#" + target.fragment;
    return QByteArray::fromStdString(text);
}

} // namespace

class tst_siteaddresses final : public QObject
{
    Q_OBJECT

private slots:
    void addresses_leadAsInABrowser_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<QByteArray>("base");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char* value, const char* expected, const char* base = "") {
            QTest::addRow("%s on %s", value, base)
                << QByteArray(value) << QByteArray(base) << QByteArray(expected);
        };
        // The page is docs/sub/page.html.
        row("x.html", "/docs/sub/x.html");
        row("", "/docs/sub/page.html");
        row("#top", "/docs/sub/page.html#top");
        row("?q#f", "/docs/sub/page.html?#f");
        row(" ../a//b/./c.html\n", "/docs/a/b/c.html");
        row(".", "/docs/sub/");
        row("..", "/docs/");
        row("../..", "//");
        row("../../..", "outside");
        row("../../../x", "outside");
        row("/x.html", "/x.html");
        row("/", "//");
        row("a%20b%2fc.html", "/docs/sub/a%20b%2fc.html");
        row("a%20b.html", "/docs/sub/a b.html");
        row("100%.html", "/docs/sub/100%.html");
        row("%2e%2E/x", "/docs/x");
        row("..\\x", "/docs/x");
        row("a\tb.ht\nml", "/docs/sub/ab.html");
        row("\xC3\xA9.html", "/docs/sub/\xC3\xA9.html");
        row("%C3%A9.html?x=1", "/docs/sub/\xC3\xA9.html?");
        row("a:b", "external");
        row("./a:b", "/docs/sub/a:b");
        row("mailto:me", "external");
        row("JavaScript:void(0)", "external");
        row("//other.org/x", "external");
        row("http://other.org/x", "external");
        row("https://example.org/docs/x.html#a", "/docs/x.html#a");
        row("http:y.html", "/docs/sub/y.html");
        row("https:y.html", "external");
        row("<?php echo $x ?>", "not judged");
        row("{{ page.url }}.html", "not judged");
        row("a{b}.html", "/docs/sub/a{b}.html");
        row("x.html", "/base/x.html", "/base/");
        row("x.html", "external", "http://other.org/");
        row("#a", "/docs/#a", "..");
        row("x.html", "/docs/sub/x.html", "mailto:me");
    }
    void addresses_leadAsInABrowser()
    {
        QFETCH(QByteArray, value);
        QFETCH(QByteArray, base);
        // The stand-in's name is known for this row alone.
        const bool ownHost = value.startsWith("https://example.org");
        const SiteAddresses site(ownHost ? std::vector<std::string>{"https://example.org"}
                                         : std::vector<std::string>());
        QTEST(
            described(site.resolve(value.toStdString(), site.page("docs/sub/page.html", base.toStdString()))),
            "expected");
    }

    void ownFolderOnTheWeb_isTheRoot()
    {
        const SiteAddresses site({"no address", "https://example.org/docs/", "http://www.example.org"});
        const SiteAddresses::Page page = site.page("a/b.html");
        const std::pair<const char*, const char*> rows[] = {{"x.html", "/a/x.html"},
                                                            {"/docs/x.html", "/x.html"},
                                                            {"/x.html", "outside"},
                                                            {"../../x", "outside"},
                                                            {"../../docs/x", "/x"},
                                                            {"//example.org/docs/x", "/x"},
                                                            {"http://example.org/docs", "//"},
                                                            {"https://example.org/blog/", "outside"},
                                                            {"http://www.example.org/x", "/x"}};
        for (const auto& [value, expected] : rows)
            QCOMPARE(described(site.resolve(value, page)), QByteArray(expected));
    }

    // Ordinary addresses take a short way; it ends where the parser's does.
    void shortWay_endsWhereTheParserDoes()
    {
        const SiteAddresses site({"https://example.org/home"});
        const SiteAddresses::Page page = site.page("d%x/e f/p.html");
        const SiteAddresses::Page parsed =
            site.page("d%x/e f/p.html", "https://example.org/home/d%25x/e%20f/p.html");
        const std::vector<std::string> pieces = {"a",    "..",     ".",     "/",   "//", "b.html",
                                                 "%20",  "%C3%A9", "%",     "?q/", "#f", "%2F",
                                                 "home", " ",      "d%25x", "%2e", "'",  "\xC3\xA9"};
        QRandomGenerator random(7);
        for (int i = 0; i < 20'000; ++i) {
            std::string value;
            for (int count = random.bounded(8); count > 0; --count)
                value += pieces[random.bounded(quint32(pieces.size()))] + (random.bounded(2) == 0 ? "/" : "");
            const LinkTarget target = site.resolve(value, page);
            LinkTarget other = site.resolve(value, parsed);
            // The parser encodes what a fragment can't hold; the short way leaves it as written.
            other.fragment = percentDecoded(other.fragment);
            LinkTarget same = target;
            same.fragment = percentDecoded(same.fragment);
            QVERIFY2(described(same) == described(other),
                     (value + ": " + described(same).toStdString() + ", " + described(other).toStdString())
                         .c_str());
        }
    }
};

LUMA_TEST(tst_siteaddresses)

#include "tst_siteaddresses.moc"
