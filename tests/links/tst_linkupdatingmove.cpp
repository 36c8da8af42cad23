// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/linkupdatingmove.h"
#include "tests/support/registry.h"
#include "tests/support/site.h"

#include <QTest>

using namespace luma;
using test::Files;
using test::Site;
Q_DECLARE_METATYPE(Files)

namespace {

struct Run
{
    MoveOutcome outcome;
    std::string log;
};

Run run(const Site& site, MoveOperation operation, const QByteArrayList& items, const char* folder,
        StillWanted stillWanted = {})
{
    Run result;
    LinkUpdatingMove::Callbacks callbacks;
    callbacks.log = [&result](const std::string& text) { result.log += text; };
    callbacks.stillWanted = std::move(stillWanted);
    site.makeFolder(folder);
    std::vector<std::filesystem::path> paths;
    for (const QByteArray& item : items)
        paths.push_back(site.at(item.toStdString()));
    result.outcome = LinkUpdatingMove(site.root(), callbacks).run(operation, paths, site.at(folder));
    return result;
}

void compare(const Site& site, const Files& expected)
{
    for (const auto& [subpath, bytes] : expected)
        QCOMPARE(subpath + ": " + site.bytesOf(subpath), subpath + ": " + bytes);
    QCOMPARE(site.contents().size(), expected.size());
}

} // namespace

class tst_linkupdatingmove final : public QObject
{
    Q_OBJECT

private slots:
    void move_keepsLinksRight_data()
    {
        QTest::addColumn<Files>("before");
        QTest::addColumn<QByteArrayList>("items");
        QTest::addColumn<Files>("after");
        const auto row = [](const char* name, const Files& before, const QByteArrayList& items,
                            const Files& after) { QTest::newRow(name) << before << items << after; };
        row("a page",
            {{"a/x.html", "<a href=img/p.png><a href=x.html><a href=../b/z.html>"},
             {"a/y.html", "<a href=x.html#t>"},
             {"b/z.html", ""}},
            {"a/x.html"},
            {{"b/x.html", "<a href=../a/img/p.png><a href=x.html><a href=z.html>"},
             {"a/y.html", "<a href=../b/x.html#t>"},
             {"b/z.html", ""}});
        row("pages that stay together",
            {{"a/x.html", "<a href=y.html><a href='./y.html?q'>"}, {"a/y.html", "<a href=x.html>"}},
            {"a/x.html", "a/y.html"},
            {{"b/x.html", "<a href=y.html><a href='./y.html?q'>"}, {"b/y.html", "<a href=x.html>"}});
        row("a folder",
            {{"a/x.html", "<a href=sub/y.html><a href=../o.html><a href=http://h/>"},
             {"a/sub/y.html", "<a href=../x.html><a href=../../o.html>"},
             {"o.html", "<a href=a/sub/y.html><a href=a><a href=a/>"}},
            {"a"},
            {{"b/a/x.html", "<a href=sub/y.html><a href=../../o.html><a href=http://h/>"},
             {"b/a/sub/y.html", "<a href=../x.html><a href=../../../o.html>"},
             {"o.html", "<a href=b/a/sub/y.html><a href=b/a><a href=b/a/>"}});
        row("names that begin alike",
            {{"doc/x.html", ""},
             {"docs/x.html", ""},
             {"a.htm", ""},
             {"a.html", ""},
             {"o.html",
              "<a href=docs/x.html#t><a href=doc/x.html><a href=a.html><a href=a.htm><a href=a.html?q>"}},
            {"doc", "a.htm"},
            {{"b/doc/x.html", ""},
             {"docs/x.html", ""},
             {"b/a.htm", ""},
             {"a.html", ""},
             {"o.html", "<a href=docs/x.html#t><a href=b/doc/x.html><a href=a.html><a href=b/a.htm><a "
                        "href=a.html?q>"}});
        row("name within its own path",
            {{"a/a.html", ""},
             {"o.html", "<a href=a/a.html><a href=a/a.html#a>"},
             {"x.html", ""},
             {"p.html", "<a href='x.html?next=x.html'>"}},
            {"a", "x.html"},
            {{"b/a/a.html", ""},
             {"o.html", "<a href=b/a/a.html><a href=b/a/a.html#a>"},
             {"b/x.html", ""},
             {"p.html", "<a href='b/x.html?next=b/x.html'>"}});
        const std::string noLinks = "x.png<script>'x.png'</script><a title=x.png><a href='#x.png'>"
                                    "<a href='http://h/x.png'><!-- <a href=x.png> -->";
        row("what must not change, and references",
            {{"x.png", ""},
             {"x y.png", ""},
             {"no links.html", noLinks},
             {"no UTF-8.html", "<img src=x.png>\xE9"},
             {"references.html", "<img src='x&#32;y.png'><img src='x y&period;png'>"}},
            {"x.png", "x y.png"},
            {{"b/x.png", ""},
             {"b/x y.png", ""},
             {"no links.html", noLinks},
             {"no UTF-8.html", "<img src=x.png>\xE9"},
             {"references.html", "<img src='b/x&#32;y.png'><img src='b/x y&period;png'>"}});
    }
    void move_keepsLinksRight()
    {
        QFETCH(Files, before);
        QFETCH(QByteArrayList, items);
        QFETCH(Files, after);
        const Site site(before);
        const Run result = run(site, MoveOperation::Move, items, "b");
        QVERIFY(result.outcome.problems.empty() && result.outcome.complete);
        compare(site, after);
    }

    void copy_leadsLinksToTheCopy()
    {
        const Site site({{"a/x.html", "<a href=x.html><a href=p.png>"},
                         {"a/y.html", "<a href=x.html>"},
                         {"d/m.html", "<a href=n.html>"},
                         {"d/n.html", "<a href=../d/m.html>"}});
        const Run result = run(site, MoveOperation::Copy, {"a/x.html", "d"}, "b");
        QVERIFY(result.outcome.problems.empty());
        compare(site, {{"a/x.html", "<a href=../b/x.html><a href=p.png>"},
                       {"b/x.html", "<a href=x.html><a href=../a/p.png>"},
                       {"a/y.html", "<a href=../b/x.html>"},
                       {"d/m.html", "<a href=n.html>"},
                       {"d/n.html", "<a href=../d/m.html>"},
                       {"b/d/m.html", "<a href=n.html>"},
                       {"b/d/n.html", "<a href=../d/m.html>"}});
    }

    void log_hasABlockForEachItem()
    {
        const Site site({{"x.html", ""}, {"y.html", ""}, {"b/y.html", "old"}});
        const Run result = run(site, MoveOperation::Move, {"x.html", "y.html", "gone.html"}, "b");
        QCOMPARE(QByteArray::fromStdString(result.log), QByteArray("Updating links to: x.html\n\n\nDone"));
        QCOMPARE(result.outcome.problems.size(), std::size_t{2});
        QCOMPARE(result.outcome.problems[0].text, std::string("File y.html exists, not overwritten"));
        QVERIFY(result.outcome.problems[0].kind == MoveProblem::Kind::Clash);
        QVERIFY(result.outcome.problems[1].text.find("gone.html") != std::string::npos);
        compare(site, {{"b/x.html", ""}, {"y.html", ""}, {"b/y.html", "old"}});
    }

    void rename_updatesLinksToTheItem()
    {
        struct Row
        {
            Files before;
            std::string item;
            std::string name;
            Files after;
        };
        for (const auto& [before, item, name, after] :
             {Row{{{"a/x.html", "<a href=x.html><a href=/abs>"}, {"o.html", "<a href=a/x.html>"}},
                  "a/x.html",
                  "y.html",
                  {{"a/y.html", "<a href=y.html><a href=/abs>"}, {"o.html", "<a href=a/y.html>"}}},
              Row{{{"a/x.html", "<a href=../a/y.png><a href=../o.html><a href=y.png>"},
                   {"o.html", "<a href=a/x.html>"}},
                  "a/",
                  "new",
                  {{"new/x.html", "<a href=y.png><a href=../o.html><a href=y.png>"},
                   {"o.html", "<a href=new/x.html>"}}}}) {
            const Site site(before);
            std::string log;
            LinkUpdatingMove::Callbacks callbacks;
            callbacks.log = [&log](const std::string& text) { log += text; };
            QVERIFY(LinkUpdatingMove(site.root(), callbacks).rename(site.at(item), name).problems.empty());
            compare(site, after);
            const std::string old = item == "a/" ? "a" : "x.html";
            QCOMPARE(log, "Updating links from: " + old + " to " + name + "\n\nUpdating links to: " + old +
                              "\n\n\nDone");
        }
    }

    void rename_refusesUnusableNames()
    {
        const Site site({{"a/x.html", ""}, {"a/y.html", ""}});
        for (const char* const name : {"", ".", "..", "../x.html", "y.html"})
            QVERIFY(!LinkUpdatingMove(site.root(), {}).rename(site.at("a/x.html"), name).problems.empty());
        compare(site, {{"a/x.html", ""}, {"a/y.html", ""}});
    }

    // The relative path to the item only climbs, so no link begins with it.
    void rename_aboveThePage_rewritesNothing()
    {
        const Site site(Files{{"a/x.html", "<a href=y.html><a href=../y.html><a href=''>"}});
        LinkUpdatingMove move(site.root(), {});
        QVERIFY(move.updateAfterRename(site.at("a"), site.at("b")).rewritten.empty());
        QVERIFY(move.updateAfterRename(site.root(), site.at("b")).rewritten.empty());
    }

    void moveThere_andBack_changesNoByte()
    {
        const Files files = {{"a/x.html", "<A HREF = y.html?a&b=1 ><img src='&amp;&#x61;\"'>\r\n<a "
                                          "href=''><a href=../o.html#t><a href=//h/x><a href='./s/'>"},
                             {"a/y.html", "\uFEFF<a href='x.html'/><a href=\"x.html\"><a href=x.html>"},
                             {"o.html", "<a href=\"a/x.html?p=1&amp;q='2'&r\">"}};
        const Site site(files);
        run(site, MoveOperation::Move, {"a/x.html"}, "b c");
        QVERIFY(site.contents() != files);
        run(site, MoveOperation::Move, {"b c/x.html"}, "a");
        Files expected = files;
        // A value that needed quotes keeps them.
        expected["a/y.html"] = "\uFEFF<a href='x.html'/><a href=\"x.html\"><a href=\"x.html\">";
        compare(site, expected);
    }

    void symbolicLinks_areWrittenOnce()
    {
        const Site site({{"a/x.html", "<a href=p.png>"}, {"a/p.png", ""}});
        site.makeFolder("b");
        std::filesystem::create_symlink("../a/x.html", site.at("b/x.html"));
        run(site, MoveOperation::Move, {"a/p.png"}, "b");
        QVERIFY(std::filesystem::is_symlink(site.at("b/x.html")));
        QCOMPARE(site.bytesOf("a/x.html"), std::string("<a href=../b/p.png>"));
    }

    void stopped_leavesPagesAsTheyAre()
    {
        const Site site({{"x.png", ""}, {"o.html", "<img src=x.png>"}});
        int asked = 0;
        const Run result = run(site, MoveOperation::Move, {"x.png"}, "b", [&asked] { return asked++ == 0; });
        QVERIFY(!result.outcome.complete);
        compare(site, {{"b/x.png", ""}, {"o.html", "<img src=x.png>"}});
    }
};

LUMA_TEST(tst_linkupdatingmove)
#include "tst_linkupdatingmove.moc"
