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
    if (const PageFindings findings = findLinksFrom(page); findings.isPage)
        appendLines(text, findings);
    return text;
}

std::string checked(const Site& site, FindingsKept kept)
{
    std::string text;
    const auto done =
        findMissingLinks(site.root(), kept, [&](const PageFindings& page) { appendLines(text, page); });
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

// What another program may do to a page, by the last digit of its number.
void changePage(const std::filesystem::path& page, int turn, const std::string& source)
{
    if (turn % 10 == 7) {
        std::ofstream(page) << source; // written over in place
    } else if (turn % 10 < 7) {
        (void)writeFile(page, source);
    } else { // gone and back (8), a folder and back (9)
        const bool isPage = std::filesystem::is_regular_file(page);
        std::filesystem::remove(page);
        if (!isPage)
            (void)writeFile(page, source);
        else if (turn % 10 == 9)
            std::filesystem::create_directory(page);
    }
}

} // namespace

class tst_linkreports final : public QObject
{
    Q_OBJECT

private slots:
    void findLinksFrom_marksWhatIsMissing()
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

    // The report on a site looks links up in the tree; the report on a page looks on the disk.
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
    void pages_comeInOrderUntilStopped()
    {
        test::Files files = {{"f1.html", ""}, {"f1-.html", ""}};
        for (int i = 0; i < 600; ++i)
            files["f" + std::to_string(i % 7) + (i % 2 ? "-/p" : "/p") + std::to_string(i) + ".html"] = "";
        const Site site(files);
        std::vector<std::string> pages;
        std::size_t most = files.size() + 1;
        const auto find = [&] {
            pages.clear();
            std::atomic<std::size_t> count = 0; // asked on several threads
            return findMissingLinks(
                site.root(), FindingsKept::All,
                [&](const PageFindings& page) {
                    pages.push_back(page.path);
                    ++count;
                },
                [&] { return count < most; });
        };
        QVERIFY(find() && pages.size() == files.size());
        QVERIFY(std::is_sorted(pages.begin(), pages.end()));
        most = 1;
        const auto stopped = find();
        QVERIFY(stopped && !*stopped);
        QCOMPARE(pages.size(), std::size_t{1});
    }

    // Pages are replaced, emptied, deleted and turned into folders while the reports read them. A page that is
    // replaced in one step is reported with all its old links or all its new ones.
    void pagesThatChangeMeanwhile_doNoHarm()
    {
        test::Files files;
        const std::array<std::string, 2> sources = {pageOf("old", 400), pageOf("new", 700)};
        for (int i = 0; i < 60; ++i)
            files[std::to_string(i) + ".html"] = sources[0];
        const Site site(files);
        std::atomic<bool> stop = false;
        std::thread other([&] {
            for (int turn = 0; !stop; ++turn)
                changePage(site.at(std::to_string(turn % 60) + ".html"), turn,
                           sources[static_cast<std::size_t>(turn / 60 % 2)]);
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

    void findLinksTo_looksWhereAFileKindCanRefer()
    {
        const Site site({{"a/x.html", "<a href=x.html>"},
                         {"a/p.png", ""},
                         {"a/q(.png", ""},
                         {"sub/index.html", ""},
                         {"b.html", "<a href=A/X.HTML#top><a href=subway><style>b{c:url( a/P.png )}</style>"},
                         {"s.css", "URL(p.png)"},
                         {"c.txt", "see x.html and q(.png"},
                         {"d.html", "<a href=../b/x.html>P.png"}});
        // A prefix, letter case, the page itself; an index page by its folder; a style sheet and a style
        // element; a name that is no valid pattern.
        QCOMPARE(linksTo(site, "a/x.html"), std::string("a/x.html b.html c.txt "));
        QCOMPARE(linksTo(site, "sub/index.html"), std::string("b.html "));
        QCOMPARE(linksTo(site, "a/p.png"), std::string("b.html s.css "));
        QCOMPARE(linksTo(site, "a/q(.png"), std::string("c.txt "));
    }
};

LUMA_TEST(tst_linkreports)
#include "tst_linkreports.moc"
