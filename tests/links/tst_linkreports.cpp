// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "links/linkreports.h"
#include "links/unlinkeditems.h"
#include "tests/support/registry.h"
#include "tests/support/site.h"

#include <QTest>

#include <array>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <thread>

using namespace luma;
using test::Site;

namespace {

std::string linesFrom(const std::filesystem::path& page)
{
    std::string text;
    listLinksFrom(page, [&text](std::string_view line) { text += line; });
    return text;
}

std::string checked(const Site& site, FindingsKept kept)
{
    std::string text;
    const auto done = findMissingLinks(site.root(), kept, [&](const PageFindings& page) {
        appendHeaderLine(text, page);
        for (const LinkFinding& link : page.links)
            appendLinkLine(text, page, link);
    });
    return done && *done ? text : "error";
}

std::string linksTo(const Site& site, const char* target)
{
    std::string text;
    const auto done = findLinksTo(site.root(), site.at(target),
                                  [&text](const std::string& subpath) { text += subpath + " "; });
    return done ? text : "error";
}

std::string pageOf(const std::string& name, int links)
{
    std::string page;
    for (int i = 0; i < links; ++i)
        page += "<a href=" + name + std::to_string(i) + ">";
    return page;
}

// What somebody else may do to the page of this number, by its last digit.
void changePage(const Site& site, int turn, const std::string& source)
{
    const std::filesystem::path page = site.at(std::to_string(turn % 60) + ".html");
    switch (turn % 10) {
    case 7: // written over in place
        std::ofstream(page) << source;
        break;
    case 8: // gone, then back
        if (!std::filesystem::remove(page))
            (void)writeFile(page, source);
        break;
    case 9: // a folder, then a page again
        if (std::filesystem::is_directory(page)) {
            std::filesystem::remove(page);
            (void)writeFile(page, source);
        } else {
            std::filesystem::remove(page);
            std::filesystem::create_directory(page);
        }
        break;
    default:
        (void)writeFile(page, source);
    }
}

} // namespace

class tst_linkreports final : public QObject
{
    Q_OBJECT

private slots:
    void listLinksFrom_marksWhatIsMissing()
    {
        const Site site(
            {{"a/x.html",
              "<img src=p.png><a href='../b'><a href=q.html><a href=http://x><a href=x.html?y>"
              "<a href=../shop.php?id=3&amp;x><a href=../b/index><a href=/x.html><body background=''>"},
             {"b/y.html", ""},
             {"shop.php", ""}});
        QCOMPARE(linesFrom(site.at("a/x.html")), site.at("a/x.html").native() + "\n" +
                                                     "    href : ../b\n"
                                                     "    href : q.html    *** MISSING ***\n"
                                                     "    href : http://x\n"
                                                     "    href : x.html?y    *** MISSING ***\n"
                                                     "    href : ../shop.php\n"
                                                     "    href : ../b/index\n"
                                                     "    href : /x.html\n"
                                                     "    src : p.png    *** MISSING ***\n"
                                                     "    background : \n");
        QCOMPARE(linesFrom(site.at("shop.php")), std::string());
        QCOMPARE(linesFrom(site.at("gone.html")), std::string());
    }

    // The report on a whole site looks links up in the listing; the one on a page asks the disk.
    void findMissingLinks_agreesWithTheDisk()
    {
        const Site site(
            {{"a/x.html", "<a href=../a/x.html><a href=../gone/../a/x.html><a href=x.html/><a href=./x.html>"
                          "<a href=x.html/.><a href=..//a/x.html><a href=../../><a href=link/y.html>"
                          "<a href=link/../a/x.html><a href=broken><a href=dangling/../x.html><a href=''>"
                          "<a href=X.html><a href='../b/'><a href=../b/../b/y.html><a href=index>"},
             {"b/y.html", "<a href=../a/link/y.html>"},
             {"z.xml", "<a href=.DS_Store><a href=a/x.html/../x.html>"},
             {".DS_Store", "x"}});
        std::filesystem::create_directory_symlink("../b", site.at("a/link"));
        std::filesystem::create_symlink("nowhere", site.at("a/broken"));
        std::string expected;
        for (const char* const page : {"a/x.html", "b/y.html", "z.xml"})
            expected += linesFrom(site.at(page));
        QCOMPARE(checked(site, FindingsKept::All), expected);
        QVERIFY(expected.find("MISSING") != std::string::npos);
    }

    void findMissingLinks_canBeKeptToTheMissing()
    {
        const Site site({{"a.html", "<a href=b.html><a href=gone>"}, {"b.html", "<a href=a.html>"}});
        QCOMPARE(checked(site, FindingsKept::Missing),
                 site.at("a.html").native() + "\n    href : gone    *** MISSING ***\n");
    }

    // Subpaths are compared as bytes, in which '-' and '.' come before '/'.
    void order_isThatOfTheSubpaths()
    {
        std::map<std::string, std::string> files;
        for (int i = 0; i < 600; ++i)
            files[QStringLiteral("f%1%2/p%3.html")
                      .arg(i % 7)
                      .arg(QLatin1String(i % 2 ? "-" : ""))
                      .arg(i)
                      .toStdString()] = "";
        files["f1.html"] = files["f1-.html"] = "";
        const Site site(files);
        std::vector<std::string> pages;
        QVERIFY(findMissingLinks(site.root(), FindingsKept::All,
                                 [&](const PageFindings& page) { pages.push_back(page.path); }));
        QCOMPARE(pages.size(), files.size());
        QVERIFY(std::is_sorted(pages.begin(), pages.end()));
    }

    void stopping_endsTheReport()
    {
        std::map<std::string, std::string> files;
        for (int i = 0; i < 500; ++i)
            files[std::to_string(i) + ".html"] = "";
        const Site site(files);
        int pages = 0;
        std::atomic<bool> stop = false;
        const auto done = findMissingLinks(
            site.root(), FindingsKept::All,
            [&](const PageFindings&) {
                ++pages;
                stop = true;
            },
            [&stop] { return !stop; });
        QVERIFY(done && !*done);
        QCOMPARE(pages, 1);
    }

    // Pages are replaced, emptied, deleted and made folders while the reports read them. A page that is
    // replaced in one step is reported as it was or as it is, not as both.
    void pagesThatChangeMeanwhile_doNoHarm()
    {
        std::map<std::string, std::string> files;
        const std::array<std::string, 2> sources = {pageOf("old", 400), pageOf("new", 700)};
        for (int i = 0; i < 60; ++i)
            files[std::to_string(i) + ".html"] = sources[0];
        const Site site(files);
        std::atomic<bool> stop = false;
        std::thread other([&] {
            for (int turn = 0; !stop; ++turn)
                changePage(site, turn, sources[static_cast<std::size_t>(turn / 60 % 2)]);
        });
        bool whole = true;
        for (int run = 0; run < 20; ++run) {
            const auto done = findMissingLinks(site.root(), FindingsKept::All, [&](const PageFindings& page) {
                const std::size_t links = page.links.size();
                const bool emptied = page.path.ends_with("7.html");
                whole = whole && (emptied || links == 400 || links == 700);
            });
            whole = whole && done && *done;
            whole = whole && findLinksTo(site.root(), site.at("old1"), [](const std::string&) {});
            whole = whole && findUnlinkedItems(site.root(), "", {});
        }
        stop = true;
        other.join();
        QVERIFY(whole);
    }

    void findLinksTo_looksWhereAFileKindCanRefer_data()
    {
        QTest::addColumn<QByteArray>("target");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("prefix, letter case, self")
            << QByteArray("a/x.html") << QByteArray("a/x.html b.html c.txt ");
        QTest::newRow("index page by its folder") << QByteArray("sub/index.html") << QByteArray("b.html ");
        QTest::newRow("sheet and style element") << QByteArray("a/p.png") << QByteArray("b.html s.css ");
        QTest::newRow("name that is no pattern") << QByteArray("a/q(.png") << QByteArray("c.txt ");
    }
    void findLinksTo_looksWhereAFileKindCanRefer()
    {
        QFETCH(QByteArray, target);
        QFETCH(QByteArray, expected);
        const Site site({{"a/x.html", "<a href=x.html>"},
                         {"a/p.png", ""},
                         {"a/q(.png", ""},
                         {"sub/index.html", ""},
                         {"b.html", "<a href=A/X.HTML#top><a href=subway><style>b{c:url( a/P.png )}</style>"},
                         {"s.css", "URL(p.png)"},
                         {"c.txt", "see x.html and q(.png"},
                         {"d.html", "<a href=../b/x.html>P.png"}});
        QCOMPARE(QByteArray::fromStdString(linksTo(site, target.constData())), expected);
    }
};

LUMA_TEST(tst_linkreports)
#include "tst_linkreports.moc"
