// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/browserreports.h"
#include "tests/support/registry.h"
#include "tests/support/site.h"

#include <QTest>

using namespace luma;
using luma::test::Files;
using luma::test::Site;

namespace {

// One line for each missing link: page, line, column, place, link, why, suggestion.
std::string missingIn(const Site& site, const WebRules& rules = {})
{
    std::string text;
    const auto done = checkWebLinks(site.root(), rules, FindingsKept::Missing, [&text](const WebPage& page) {
        if (!page.unreadable.empty())
            text += page.path + " unreadable\n";
        for (const WebLink& link : page.links)
            text += page.path + " " + std::to_string(link.line) + ":" + std::to_string(link.column) + " " +
                    std::string(nameOf(link.place)) + " " + link.value + ": " +
                    std::string(textOf(link.why)) + (link.suggestion.empty() ? "" : ": " + link.suggestion) +
                    "\n";
    });
    return done && *done ? text : "failed";
}

std::string unlinkedIn(const Site& site, std::string_view except = {})
{
    std::string text;
    UnlinkedItemsCallbacks callbacks;
    callbacks.row = [&text](const std::string& subpath) { text += subpath + " "; };
    const auto done = findWebUnlinked(site.root(), {}, except, callbacks);
    return done && *done ? text : "failed";
}

const Files& files()
{
    static const Files all = {
        {"index.html", "<p id=a>"}, {"docs/index.htm", ""},      {"docs/other.html", "<a name=b c>"},
        {"img/Photo.png", ""},      {"img/a b%20.png", ""},      {"empty/x.txt", ""},
        {"\xC3\xA9.html", ""},      {"a.php", "<p id=<?= 1 ?>>"}};
    return all;
}

} // namespace

class tst_browserreports final : public QObject
{
    Q_OBJECT

private slots:
    // The page is docs/p.html.
    void missingLinks_sayWhy_data()
    {
        QTest::addColumn<QByteArray>("page");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char* page, const char* expected = "") {
            QTest::newRow(page) << QByteArray(page) << QByteArray(expected);
        };
        row("<a href=../index.html><a href=/><a href=..><a href=.><a href=/docs><a href=''>");
        row("<a href='other.html?x#b'><a href=?q><a href='#'><a href=#TOP><a href=/#a><a href=../#%61>");
        row("<img src='../img/a%20b%2520.png'><a href='/%C3%A9.html'><a href=/\xC3\xA9.html>");
        row("<a href='//other.org/x'><a href=mailto:x><img src=data:x><a href=javascript:x>");
        row("<a href='<?php echo '>' ?>.html'><a href='{{ x }}'><?php '<a href=gone>' ?><a href=/a.php#x>");
        row("<a href=gone-away.html>", "docs/p.html 1:9 href gone-away.html: no such file\n");
        row("<p>\xC3\xA9\n\xC3\xA9<a href=othr.html>",
            "docs/p.html 2:10 href othr.html: no such file: other.html\n");
        row("<img src='../img/photo.png?1'>",
            "docs/p.html 1:11 src ../img/photo.png?1: other letter case: ../img/Photo.png?1\n");
        row("<img src=/photo/Photo.png>",
            "docs/p.html 1:10 src /photo/Photo.png: no such file: /img/Photo.png\n");
        row("<a href=../empty/>", "docs/p.html 1:9 href ../empty/: folder without index page\n");
        row("<a href=other.html/>", "docs/p.html 1:9 href other.html/: no such file: other.html\n");
        row("<a href=../../x>", "docs/p.html 1:9 href ../../x: outside the site\n");
        row("<a href=other.html#c>", "docs/p.html 1:9 href other.html#c: no such place in the page\n");
        row("<a href=other.html#b><a href=other.html#c><a href='other.html#%62'><a href='other.html#b '>"
            "<a href=other.html#b:~:text=x><a href=other.html#:~:text=x><a href='other.html#{{b}}'>"
            "<a href='other.html#b c'><a href=other.html#top><a href=other.html?x#c>",
            "docs/p.html 1:30 href other.html#c: no such place in the page\n"
            "docs/p.html 1:187 href other.html#b c: no such place in the page\n"
            "docs/p.html 1:234 href other.html?x#c: no such place in the page\n");
        row("<a href=#d>", "docs/p.html 1:9 href #d: no such place in the page\n");
        row("<map name=m></map><img usemap=#m><img usemap=#n>",
            "docs/p.html 1:46 usemap #n: no such place in the page\n");
        row("<img srcset='../img/Photo.png 1x, x.png 2x'>", "docs/p.html 1:35 srcset x.png: no such file\n");
        row("<style>a{b:url(y.png)}</style><p style='b:url(#f)'>",
            "docs/p.html 1:16 url() y.png: no such file\n");
        row("<base href=/img/><a href=Photo.png><a href=p.html>",
            "docs/p.html 1:44 href p.html: no such file: /docs/p.html\n");
        // The declared encoding, then what the bytes look like.
        row("<meta charset=latin1><a href=/\xE9.html>");
        row("<meta charset=iso-2022-jp><a href='\x1B$B%=\x1B(B.html'>",
            "docs/p.html 1:36 href \xE3\x82\xBD.html: no such file\n");
        row("<a href=/\xE9.html><a href=\xE8.html>", "docs/p.html 1:25 href \xC3\xA8.html: no such file\n");
    }
    void missingLinks_sayWhy()
    {
        QFETCH(QByteArray, page);
        QFETCH(QByteArray, expected);
        const Site site(files());
        site.put("docs/p.html", page.toStdString());
        QCOMPARE(missingIn(site), expected.toStdString());
    }

    void viewsOfPictures_needNoElement()
    {
        const Site site;
        site.put("a.SVG", "<svg><g id='b'/></svg>");
        site.put("c.html",
                 "<img src='a.SVG#svgView(viewBox(0,0,1,1))'><img src=a.SVG#xywh=0,0,1,1><img src=a.SVG#t=1>"
                 "<img src=a.SVG#b><img src=a.SVG#d><a href=#t=1>");
        QCOMPARE(missingIn(site), std::string("c.html 1:117 src a.SVG#d: no such place in the page\n"
                                              "c.html 1:133 href #t=1: no such place in the page\n"));
    }

    void serverCode_isShownAsAnEllipsis()
    {
        const Site site;
        site.put("a.php", "<a href='b.php?<?= $x,\n $y ?>&<?= 1 ?>#{{z}}'><a href='<% x %>'>");
        QByteArrayList links;
        (void)checkWebLinks(site.root(), {}, FindingsKept::All, [&](const WebPage& page) {
            for (const WebLink& link : page.links)
                links << QByteArray::fromStdString(link.value);
        });
        QCOMPARE(links, (QByteArrayList{"b.php?\u2026&\u2026#{{z}}", "\u2026"}));
    }

    // In one page of a folder they are present, in another they are not.
    void sameAddresses_areJudgedInEachPage()
    {
        const Site site({{"a.html", "<p id=t><a href=#t><a href=b.html><a href='\t#t'><base>"},
                         {"b.html", "<a href=#t><img usemap=b.html><a href='\t#t'>"},
                         {"c/d.html", "<a href=b.html>"},
                         {"e.html", "<base href=c/><a href=b.html>"}});
        QCOMPARE(missingIn(site), std::string("b.html 1:9 href #t: no such place in the page\n"
                                              "b.html 1:24 usemap b.html: no such place in the page\n"
                                              "b.html 1:40 href \t#t: no such place in the page\n"
                                              "c/d.html 1:9 href b.html: no such file: d.html\n"
                                              "e.html 1:23 href b.html: no such file: /c/d.html\n"));
        site.put("a.html", "<a href='f.html#{{x}}'><a href=f.html#y><a href=b.html#x><a href=b.html#y>");
        site.put("e.html", "");
        WebRules rules;
        rules.fragmentsAreChecked = false;
        QCOMPARE(missingIn(site, rules), std::string("a.html 1:32 href f.html#y: no such file: a.html#y\n"
                                                     "c/d.html 1:9 href b.html: no such file: d.html\n"));
    }

    void rules_changeWhatIsMissing()
    {
        const Site site(
            {{"a.html", "<a href=b><a href=b.html#x><a href=docs/><a href=https://e.org/gone.html>"},
             {"b.html", ""},
             {"docs/start.html", ""}});
        QCOMPARE(missingIn(site), std::string("a.html 1:9 href b: no such file\n"
                                              "a.html 1:19 href b.html#x: no such place in the page\n"
                                              "a.html 1:36 href docs/: folder without index page\n"));
        WebRules rules;
        rules.webAddresses = {"https://e.org"};
        rules.indexNames = {"start.html"};
        rules.extensionsMayBeLeftOut = true;
        rules.fragmentsAreChecked = false;
        QCOMPARE(missingIn(site, rules),
                 std::string("a.html 1:50 href https://e.org/gone.html: no such file\n"));
    }

    void sheetsAndOtherPages_areRead()
    {
        const Site site({{"a.CSS", "@import 'gone.css'; b { c: url( x\\2e png ) }"},
                         {"b.xhtml", "<?xml version='1.0'?><a href='gone.html'/><script/><a href='&#x67;'/>"},
                         {"c.svg", "<svg><use xlink:href='d.svg#i'/></svg>"},
                         {"d.svg", "<svg id='j'/>"},
                         {"e.html", std::string("\xFF\xFE<\0a\0 \0h\0r\0e\0f\0=\0x\0>\0", 22)}});
        QCOMPARE(missingIn(site), std::string("a.CSS 1:10 @import gone.css: no such file\n"
                                              "a.CSS 1:33 url() x.png: no such file\n"
                                              "b.xhtml 1:31 href gone.html: no such file\n"
                                              "b.xhtml 1:61 href g: no such file\n"
                                              "c.svg 1:23 xlink:href d.svg#i: no such place in the page\n"
                                              "e.html 1:9 href x: no such file\n"));
    }

    void symbolicLinks_areFollowed()
    {
        const Site site({{"a.html", "<img src=alias/x.png><img src=alias/y.png><a href=alias><a href=broken>"
                                    "<img src=one.png>"},
                         {"img/x.png", ""},
                         {"img/two.png", ""}});
        std::filesystem::create_directory_symlink("img", site.at("alias"));
        std::filesystem::create_symlink("gone", site.at("broken"));
        std::filesystem::create_symlink("img/two.png", site.at("one.png"));
        QCOMPARE(missingIn(site), std::string("a.html 1:31 src alias/y.png: no such file\n"
                                              "a.html 1:51 href alias: folder without index page\n"
                                              "a.html 1:65 href broken: no such file\n"));
        QCOMPARE(unlinkedIn(site), std::string("a.html broken "));
    }

    void unreadablePage_isNamed()
    {
        const Site site(Files{{"a.html", ""}});
        std::filesystem::create_symlink("/proc/self/mem", site.at("b.html"));
        QCOMPARE(missingIn(site), std::string("b.html unreadable\n"));
    }

    void unlinked_leavesOutWhatPagesMention()
    {
        const Site site(
            {{"index.html",
              "<script>load(\"x\\/a.css\"); go('b.html?1')</script><p onclick='location=\"c d.html\"'>"
              "<img data-src='x/%C3%A9.png' data-set='1.jpg 1x,2.jpg 2x' title=n.png>"
              "<iframe srcdoc='&lt;img src=e.gif>'></iframe> n.html <!-- n.gif -->"
              "<!--[if IE]><link href=f.css><![endif]--><script src=n.js></script>"
              "<applet code=k.class archive='l.jar,m.jar'><param name=movie value=o.swf></applet>"},
             {"x.shtml", "<!--#include virtual='/inc/g.html' -->'n.css'"},
             {"y.html", "<?php include 'inc/h.html'; ?><script>'y.html'</script>"}});
        for (const char* const name : {"x/a.css", "b.html", "c d.html", "x/\xC3\xA9.png", "1.jpg", "2.jpg",
                                       "e.gif", "f.css", "inc/g.html", "inc/h.html", "k.class", "l.jar",
                                       "m.jar", "o.swf", "n.png", "n.html", "n.gif", "n.css"})
            site.put(name, "");
        const std::string expected = "n.css n.gif n.html n.png x.shtml y.html ";
        QCOMPARE(unlinkedIn(site), expected);
        std::string pages;
        for (const char* const target : {"b.html", "inc/g.html", "y.html", "n.png"})
            (void)findWebLinksTo(site.root(), site.at(target), {},
                                 [&pages](const WebPage& page) { pages += page.path + " "; });
        QCOMPARE(pages, std::string("index.html x.shtml "));
    }

    void unlinked_leavesOutWhatIsInUse()
    {
        const Site site(
            {{"index.html", "<link rel=manifest href=app.webmanifest><a href=a.html#x><a href=docs>"},
             {"a.html", "<img srcset='i/1.png 1x, i/2.png 2x' style='b:url(i/3.png)'>"},
             {"self.html", "<a href=self.html><a href=#x>"},
             {"docs/index.html", "<link rel=stylesheet href=/s.css>"},
             {"docs/index.htm", ""},
             {"s.css", "@import 't.css';"},
             {"t.css", "a { b: url(i/4%20.png) }"},
             {"app.webmanifest", R"({"src": "i/5.png"})"},
             {"code.js", "load('6.png')"},
             {"i/1.png", ""},
             {"i/2.png", ""},
             {"i/3.png", ""},
             {"i/4 .png", ""},
             {"i/5.png", ""},
             {"i/6.png", ""},
             {"i/7.png", ""},
             {"old/8.png", ""},
             {"robots.txt", ""},
             {"favicon.ico", ""},
             {"sitemap-1.xml", ""},
             {"docs/robots.txt", ""},
             {".git/config", ""},
             {".well-known/x.txt", ""}});
        QCOMPARE(unlinkedIn(site, "old"),
                 std::string("code.js docs/index.htm docs/robots.txt i/7.png self.html "));
    }

    void linksTo_findsPagesSheetsAndTexts()
    {
        const Site site({{"a.html", "<img src=i/x%2Epng#1><a href=i/>"},
                         {"b.css", "a { b: url(/i/x.png) }"},
                         {"c.json", "\"x.png\""},
                         {"d.html", "x.png"},
                         {"i/index.html", ""},
                         {"i/x.png", ""}});
        const auto linksTo = [&site](const char* target) {
            std::string text;
            const auto done = findWebLinksTo(site.root(), site.at(target), {}, [&text](const WebPage& page) {
                text += page.path + " " + std::to_string(page.links.size()) + " ";
            });
            return done ? text : "failed";
        };
        QCOMPARE(linksTo("i/x.png"), std::string("a.html 1 b.css 1 c.json 0 "));
        QCOMPARE(linksTo("i/index.html"), std::string("a.html 1 "));
        QCOMPARE(linksTo("i"), std::string("a.html 1 "));
    }

    void neededFiles_areThoseThatThePageShowsAndTheRestItOffers()
    {
        const Site site(
            {{"docs/p.html", "<link rel=stylesheet href=../a.css><img src=/i.png srcset='big.png 2x'>"
                             "<a href=other.html>1</a><a href=/x.zip>2</a><a href=gone.zip>3</a>"
                             "<iframe src=frame.html></iframe><img src=http://other.org/i.png>"},
             {"a.css", "@import 'b.css'; body { background: url(bg.png) }"},
             {"b.css", "@import 'a.css'; p { background: url('img/p.png') }"},
             {"i.png", ""},
             {"bg.png", ""},
             {"img/p.png", ""},
             {"docs/big.png", ""},
             {"docs/other.html", "<img src=/unneeded.png>"},
             {"docs/frame.html", ""},
             {"unneeded.png", ""},
             {"x.zip", ""}});
        const auto needed = findNeededFiles(site.root(), site.at("docs/p.html"), {});
        QVERIFY(needed);
        QCOMPARE(*needed,
                 (std::vector<std::string>{"a.css", "b.css", "bg.png", "docs/big.png", "docs/frame.html",
                                           "docs/p.html", "i.png", "img/p.png", "x.zip"}));
        QVERIFY(!findNeededFiles(site.root(), "/elsewhere/p.html", {}));
    }
};

LUMA_TEST(tst_browserreports)

#include "tst_browserreports.moc"
