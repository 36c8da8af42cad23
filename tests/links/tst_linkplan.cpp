// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/linkplan.h"
#include "tests/support/registry.h"
#include "tests/support/site.h"

#include <QTest>

#include <array>

using namespace luma;
using test::Files;
using test::Site;
Q_DECLARE_METATYPE(Files)
Q_DECLARE_METATYPE(luma::WebRules)

namespace {

// "a/x.html > b/x.html"
MovedItem itemOf(const Site& site, const std::string& text)
{
    const std::size_t arrow = text.find(" > ");
    return {site.at(text.substr(0, arrow)), site.at(text.substr(arrow + 3))};
}

MoveRequest requestOf(const Site& site, MoveOperation operation, const QByteArrayList& moves)
{
    MoveRequest request{site.root(), {}, operation, {}, {}};
    for (const QByteArray& move : moves) {
        request.items.push_back(itemOf(site, move.toStdString()));
        std::filesystem::create_directories(request.items.back().to.parent_path());
    }
    return request;
}

// The pages that the plan changes, at their new places.
Files changedPages(const Site& site, const LinkPlan& plan)
{
    Files pages;
    for (const PageRewrite& page : plan.pages) {
        const std::string old = page.oldPage.lexically_relative(site.root()).native();
        pages[page.page.lexically_relative(site.root()).native()] = withEdits(site.bytesOf(old), page.edits);
    }
    return pages;
}

const QByteArrayList renameIndex = {"d/index.html > d/start.html"};

} // namespace

/// What a move, rename or copy would change, in which form.
class tst_linkplan final : public QObject
{
    Q_OBJECT

private slots:
    void move_keepsTheFormOfLinks_data()
    {
        QTest::addColumn<Files>("before");
        QTest::addColumn<QByteArrayList>("moves");
        QTest::addColumn<Files>("changed");
        const auto row = [](const char* name, const Files& before, const QByteArrayList& moves,
                            const Files& changed) { QTest::newRow(name) << before << moves << changed; };
        row("relative, from the root, in dots, with slashes",
            {{"a/x.html",
              "<a href=x.html><a href='?q'><a href=\"#t\"><a href=''><a href=/a/x.html>"
              "<a href=y.png#t><a href=./y.png?v=1><a href=../a/y.png><a href=/a/y.png><a href=./>"},
             {"a/y.png", ""},
             {"a/index.html", ""},
             {"o.html",
              "<a href=a/x.html?q#t><a href=./a//x.html><a href=/a/./x.html><a href='a\\x.html'>"
              "<a href=' a/x.html '><a href=//other.org/a/x.html><a href=a/X.html><a href=xa/x.html>"}},
            {"a/x.html > b/c/x.html"},
            {{"b/c/x.html", "<a href=x.html><a href='?q'><a href=\"#t\"><a href=''><a href=/b/c/x.html>"
                            "<a href=../../a/y.png#t><a href=./../../a/y.png?v=1><a href=../../a/y.png>"
                            "<a href=/a/y.png><a href=./../../a/>"},
             {"o.html",
              "<a href=b/c/x.html?q#t><a href=./b/c/x.html><a href=/b/c/x.html><a href='b/c/x.html'>"
              "<a href=' b/c/x.html '><a href=//other.org/a/x.html><a href=a/X.html><a href=xa/x.html>"}});
        row("a rename changes the name alone",
            {{"library/x.html", "<a href=../library/y.html><a href=y.html#library>"},
             {"library/y.html", ""},
             {"o.html", "<a href=library/x.html#ctypes.util.find_library><a href=library?library>"
                        "<a href=.//library/../library/x.html><a href=mylibrary/x.html>library"}},
            {"library > lib"},
            {{"lib/x.html", "<a href=../lib/y.html><a href=y.html#library>"},
             {"o.html", "<a href=lib/x.html#ctypes.util.find_library><a href=lib?library>"
                        "<a href=.//library/../lib/x.html><a href=mylibrary/x.html>library"}});
        row("percent-encoding",
            {{"bread/rye bread.html", ""},
             {"bread/100%.html", ""},
             {"o.html",
              "<a href=bread/rye%20bread.html><a href='bread/rye bread.html'><a href=%62read/100%.html>"
              "<a href=bread/%31%30%30%25.html?a%20b>"}},
            {"bread > l\xC3\xB6\xC3\xA4v & #1?"},
            {{"o.html", "<a href=l%C3%B6%C3%A4v%20%26%20%231%3F/rye%20bread.html><a "
                        "href='l%C3%B6%C3%A4v%20%26%20%231%3F/rye bread.html'>"
                        "<a href=l%C3%B6%C3%A4v%20%26%20%231%3F/100%.html>"
                        "<a href=l%C3%B6%C3%A4v%20%26%20%231%3F/%31%30%30%25.html?a%20b>"}});
        row("names within their own path, and what only looks alike",
            {{"a/a/x.html", ""},
             {"data/x.png", ""},
             {"o.html", "<a href=a/a/x.html><img src=data/x.png><img src=data:image/png;base64,data/>"
                        "<a href=database.php><a href='javascript:data/x.png'><a href=tel:data>data/x.png"}},
            {"a > b", "data > figures"},
            {{"o.html", "<a href=b/a/x.html><img src=figures/x.png><img src=data:image/png;base64,data/>"
                        "<a href=database.php><a href='javascript:data/x.png'><a href=tel:data>data/x.png"}});
        row("every place",
            {{"p.png", ""},
             {"s.css",
              "@import 'p.png';a{b:url( p.png )}/* url(p.png) */b{c:image-set('p.png' 1x,\"p\\.png\" 2x)}"},
             {"i.svg", "<svg xmlns:xlink='x'><image xlink:href='p.png'/><use href='&#x70;.png'/></svg>"},
             {"o.HTM",
              "<img srcset='p.png 1x, p.png?a,b 2x'><meta http-equiv=refresh content='0; url=p.png'>"
              "<p style='a:url(&quot;p.png&quot;)'><style>a{b:url(p.png)}</style><object data=p.png>"
              "<video poster=p.png><form action=p.png><a ping='p.png /p.png'><!-- <a href=p.png> -->"
              "<meta property=og:image content=p.png><script>'<a href=p.png>'</script><b title=p.png>"}},
            {"p.png > i/p,1.png"},
            {{"s.css", "@import 'i/p%2C1.png';a{b:url( i/p%2C1.png )}/* url(p.png) */"
                       "b{c:image-set('i/p%2C1.png' 1x,\"i/p%2C1.png\" 2x)}"},
             {"i.svg",
              "<svg xmlns:xlink='x'><image xlink:href='i/p%2C1.png'/><use href='i/p%2C1.png'/></svg>"},
             {"o.HTM",
              "<img srcset='i/p%2C1.png 1x, i/p%2C1.png?a,b 2x'><meta http-equiv=refresh content='0; "
              "url=i/p%2C1.png'>"
              "<p style='a:url(&quot;i/p%2C1.png&quot;)'><style>a{b:url(i/p%2C1.png)}</style><object "
              "data=i/p%2C1.png>"
              "<video poster=i/p%2C1.png><form action=i/p%2C1.png><a ping='i/p%2C1.png /i/p%2C1.png'><!-- "
              "<a href=p.png> -->"
              "<meta property=og:image content=i/p%2C1.png><script>'<a href=p.png>'</script><b "
              "title=p.png>"}});
        row("the page in a frame",
            {{"p.png", ""},
             {"o.html",
              "<iframe srcdoc=\"<a href='p.png#a'><a href=#p.png><img src=&quot;p.png?a&amp;amp;b&quot; "
              "srcset='p.png 2x'><p style='a:url(p.png)'>\"></iframe><iframe srcdoc='<img src=p.png>'>"}},
            {"p.png > i/l'&.png"},
            {{"o.html",
              "<iframe srcdoc=\"<a href='i/l%27%26.png#a'><a href=#p.png>"
              "<img src=&quot;i/l%27%26.png?a&amp;amp;b&quot; srcset='i/l%27%26.png 2x'>"
              "<p style='a:url(i/l%27%26.png)'>\"></iframe><iframe srcdoc='<img src=i/l%27%26.png>'>"}});
        row("server code behind the path",
            {{"v.php", "<a href='v.php?<?= $a && '\"' ?>'>"},
             {"o.php", "<a href=\"v.php?id=<?= $x->id ?>&amp;<?= '&lt;' ?>#v.php\"><a href=v.php#{{v.php}}>"
                       "<a href='v.p<?= $x ?>?v.php'><a href='v&#46;php?<?= 1 ?>'><a href='?<?= $v ?>'>"
                       "<a href=v&period;php&quest;a&#35;<?= 1 ?>><a href='v&#37;2Ephp&#63;<?= '>' ?>'>"}},
            {"v.php > d/w x.php"},
            {{"d/w x.php", "<a href='w%20x.php?<?= $a && '\"' ?>'>"},
             {"o.php", "<a href=\"d/w%20x.php?id=<?= $x->id ?>&amp;<?= '&lt;' ?>#v.php\">"
                       "<a href=d/w%20x.php#{{v.php}}>"
                       "<a href='v.p<?= $x ?>?v.php'><a href='d/w%20x&#46;php?<?= 1 ?>'>"
                       "<a href='?<?= $v ?>'>"
                       "<a href=d/w%20x&period;php&quest;a&#35;<?= 1 ?>>"
                       "<a href='d/w%20x.php&#63;<?= '>' ?>'>"}});
        row("server code behind the path in other places",
            {{"i.png", ""},
             {"o.html", "<img srcset='i.png?v={{ v }} 1x, i.png?<?= 1 ?> 2x'><p style='a:url(i.png?{{v}})'>"
                        "<p style='a:url(&quot;i.png?{{v}}&quot;)'><style>a{b:url(i.png?<?= $v ?>)}"
                        "c{d:url(\"i.png#{{v}}\")}e{f:url(i\\.png?{{v}})}</style>"
                        "<meta http-equiv=refresh content='1;url=i.png?{{v}}'>"}},
            {"i.png > n/a \"b.png"},
            {{"o.html",
              "<img srcset='n/a%20%22b.png?v={{ v }} 1x, n/a%20%22b.png?<?= 1 ?> 2x'>"
              "<p style='a:url(n/a%20%22b.png?{{v}})'><p style='a:url(&quot;n/a%20%22b.png?{{v}}&quot;)'>"
              "<style>a{b:url(n/a%20%22b.png?<?= $v ?>)}c{d:url(\"n/a%20%22b.png#{{v}}\")}"
              "e{f:url(n/a%20%22b.png?{{v}})}</style><meta http-equiv=refresh content='1;url=n/a%20%22b.png?{{v}}'>"}});
        row("CSS escapes and server code",
            {{"i.png", ""},
             {"s.css",
              "a{b:url(i\\.png)}c{d:url({{v}})}e{f:url(i\\2e png\\?{{v}})}g{h:url('i\\2epng\\23 {{v}}')}"
              "@import 'x\\2e css?<?= 1 ?>';"},
             {"x.css", ""},
             {"o.html", "<p style='a:url(i\\.png?{{v}})'><p style='a:url(&quot;i&bsol;.png&#63;{{v}}&quot;)'>"
                        "<p style='a:url(i\\.png)'><p style='a:url(\\69.png?\\{{v}})'><?= 1 ?>"}},
            {"i.png > n.png", "x.css > y.css"},
            {{"s.css", "a{b:url(n.png)}c{d:url({{v}})}e{f:url(n.png\\?{{v}})}g{h:url('n.png\\23 {{v}}')}"
                       "@import 'y.css?<?= 1 ?>';"},
             {"o.html", "<p style='a:url(n.png?{{v}})'><p style='a:url(&quot;n.png&#63;{{v}}&quot;)'>"
                        "<p style='a:url(n.png)'><p style='a:url(n.png?\\{{v}})'><?= 1 ?>"}});
        row("server code and other encodings",
            {{"p.png", ""},
             {"o.php",
              "<?php '<a href=p.png>' ?><a href=p.png><a href='<?=$x?>p.png'><a href='{{x}}/p.png'>"},
             {"latin.html", "\xE4<img src=p.png alt='\xFC'>\xDF<img src='\xFC/../p.png'>"},
             {"jis.html", "<meta charset=iso-2022-jp>\x1B$B%=\x1B(B<img src=p.png alt='\x1B$B'p.png\x1B(B'>"},
             {"big.html", std::string("\xFE\xFF\0\xE4\0<\0a\0 \0h\0r\0e\0f\0=\0p\0.\0p\0n\0g\0>", 32)},
             {"wide.html", std::string("\xFF\xFE<\0a\0 \0h\0r\0e\0f\0=\0p\0.\0p\0n\0g\0>\0\xE4\0", 32)}},
            {"p.png > q.png"},
            {{"o.php",
              "<?php '<a href=p.png>' ?><a href=q.png><a href='<?=$x?>p.png'><a href='{{x}}/p.png'>"},
             {"latin.html", "\xE4<img src=q.png alt='\xFC'>\xDF<img src='\xFC/../q.png'>"},
             {"jis.html", "<meta charset=iso-2022-jp>\x1B$B%=\x1B(B<img src=q.png alt='\x1B$B'p.png\x1B(B'>"},
             {"big.html", std::string("\xFE\xFF\0\xE4\0<\0a\0 \0h\0r\0e\0f\0=\0q\0.\0p\0n\0g\0>", 32)},
             {"wide.html", std::string("\xFF\xFE<\0a\0 \0h\0r\0e\0f\0=\0q\0.\0p\0n\0g\0>\0\xE4\0", 32)}});
        row("entities of a page",
            {{"i/a.svg", ""},
             {"x.svg", "<!DOCTYPE svg [<!ENTITY e 'i/'>]><use href='&e;a.svg#&e;'/><use href='&e;b'/>"
                       "<style>a{b:url(&quot;i/a.svg&quot;)}</style><g fill='url(i/a.svg#i)'/>"}},
            {"i/a.svg > i/ba&<\".svg"},
            {{"x.svg",
              "<!DOCTYPE svg [<!ENTITY e 'i/'>]><use href='i/ba%26%3C%22.svg#i/'/><use href='&e;b'/>"
              "<style>a{b:url(&quot;i/ba%26%3C%22.svg&quot;)}</style><g fill='url(i/ba%26%3C%22.svg#i)'/>"}});
        row("a base",
            {{"a/x.html", ""}, {"p.html", "<base href=a/><a href=x.html><a href=../o.html>"}, {"o.html", ""}},
            {"a > b", "p.html > c/p.html"},
            {{"c/p.html", "<base href=../b/><a href=x.html><a href=../o.html>"}});
        row("an index page that gets another name",
            {{"d/index.html", "<a href=./><a href=../d/><a href=x.html>"},
             {"d/x.html", "<a href=.><a href=../d><a href=index.html>"},
             {"o.html", "<a href=d/><a href='d#t'><a href=/d/?q>"}},
            renameIndex,
            {{"d/start.html", "<a href=./start.html><a href=start.html><a href=x.html>"},
             {"d/x.html", "<a href=start.html><a href=start.html><a href=start.html>"},
             {"o.html", "<a href=d/start.html><a href='d/start.html#t'><a href=/d/start.html?q>"}});
        row("an index page that moves",
            {{"d/index.html", ""}, {"o.html", "<a href=d/><a href=d/index.html>"}},
            {"d/index.html > e/index.html"}, {{"o.html", "<a href=e/><a href=e/index.html>"}});
        row("folders",
            {{"d/e/index.html", "<a href=../><a href=..><a href=.>"}, {"d/o.html", "<a href=e><a href=e/>"}},
            {"d/e > e"},
            {{"e/index.html", "<a href=../d/><a href=../d/><a href=.>"},
             {"d/o.html", "<a href=../e><a href=../e/>"}});
    }
    void move_keepsTheFormOfLinks()
    {
        QFETCH(Files, before);
        QFETCH(QByteArrayList, moves);
        QFETCH(Files, changed);
        const Site site(before);
        const auto plan = planMove(requestOf(site, MoveOperation::Move, moves));
        QVERIFY(plan && plan->problems.empty());
        const Files found = changedPages(site, *plan);
        for (const auto& [path, bytes] : found)
            QCOMPARE(path + ": " + bytes,
                     path + ": " + (changed.contains(path) ? changed.at(path) : "not expected"));
        QCOMPARE(found.size(), changed.size());
    }

    void copy_leavesLinksToTheOriginalsAlone()
    {
        const Site site({{"a/x.html", "<a href=x.html><a href=y.html><a href=../o.html>"},
                         {"a/y.html", "<a href=x.html>"},
                         {"o.html", "<a href=a/x.html><a href=a/y.html>"}});
        const auto page = planMove(requestOf(site, MoveOperation::Copy, {"a/x.html > b/x.html"}));
        QCOMPARE(changedPages(site, *page),
                 Files({{"b/x.html", "<a href=x.html><a href=../a/y.html><a href=../o.html>"}}));
        const auto folder = planMove(requestOf(site, MoveOperation::Copy, {"a > b/c/a"}));
        QCOMPARE(changedPages(site, *folder),
                 Files({{"b/c/a/x.html", "<a href=x.html><a href=y.html><a href=../../../o.html>"}}));
    }

    void renamedAlready_isPlannedAsBefore()
    {
        using Pair = std::array<const char*, 2>;
        for (const auto& [from, to] :
             {Pair{"d", "n.html"}, Pair{"d/index.html", "d/n.html"}, Pair{"d/index.html", "e/f/x.html"},
              Pair{"d", "e/f/d"}, Pair{"d/index.html", "d.html"}, Pair{"g/d", "d"}}) {
            const Site site({{"d/index.html", "<a href=./><a href=../o.html>"},
                             {"g/d/x.html", "<a href=../../o.html>"},
                             {"o.html", "<a href=d/><a href=d/index.html><a href=g/d/x.html>"}});
            if (std::string_view(to) == "d")
                std::filesystem::remove_all(site.at("d"));
            std::filesystem::create_directories(site.at(to).parent_path());
            MoveRequest request{site.root(), {}, MoveOperation::Move, {{site.at(from), site.at(to)}}, {}};
            const Files files = changedPages(site, *planMove(request));
            QVERIFY(!files.empty());
            std::filesystem::rename(request.items[0].from, request.items[0].to);
            std::error_code error;
            std::filesystem::remove(request.items[0].from.parent_path(), error); // if it is empty
            request.isRenamedAlready = true;
            const auto plan = planMove(request);
            Files after;
            for (const PageRewrite& page : plan->pages) {
                const std::string path = page.page.lexically_relative(site.root()).native();
                after[path] = withEdits(site.bytesOf(path), page.edits);
            }
            QCOMPARE(after, files);
        }
    }

    void linksThroughASymbolicLink_keepIt_data()
    {
        QTest::addColumn<QByteArray>("move");
        QTest::addColumn<std::string>("page");
        const auto row = [](const char* move, const char* page) {
            QTest::newRow(move) << QByteArray(move) << std::string(page);
        };
        row("v1 > v2", "<a href=current/x.html><a href=far/a/x.html><a href=v2/x.html><a href=current/>");
        row("v1/x.html > v1/y.html",
            "<a href=current/y.html><a href=far/a/y.html><a href=v1/y.html><a href=current/>");
        row("v1/x.html > x.html", "<a href=x.html><a href=x.html><a href=x.html><a href=current/>");
        row("v1/index.html > v1/start.html", "<a href=current/x.html><a href=far/a/x.html><a href=v1/x.html>"
                                             "<a href=current/start.html>");
        row("current > now", "<a href=now/x.html><a href=far/a/x.html><a href=v1/x.html><a href=now/>");
    }
    void linksThroughASymbolicLink_keepIt()
    {
        QFETCH(QByteArray, move);
        QFETCH(std::string, page);
        const Site site({{"o.html", "<a href=current/x.html><a href=far/a/x.html><a href=v1/x.html>"
                                    "<a href=current/>"},
                         {"v1/x.html", ""},
                         {"v1/index.html", ""},
                         {"far/o.txt", ""}});
        std::filesystem::create_directory_symlink("v1", site.at("current"));
        std::filesystem::create_directory_symlink("../v1/.", site.at("far/b"));
        std::filesystem::create_directory_symlink(site.at("far/b"), site.at("far/a"));
        std::filesystem::create_directory_symlink("circle", site.at("circle"));
        MoveRequest request = requestOf(site, MoveOperation::Move, {move});
        QCOMPARE(changedPages(site, *planMove(request)).at("o.html"), page);
        std::filesystem::rename(request.items[0].from, request.items[0].to);
        request.isRenamedAlready = true;
        QCOMPARE(changedPages(site, *planMove(request)).at("o.html"), page);
    }

    // A place in the one folder stands for that in the other.
    void copyFromAnotherRoot_keepsRelations()
    {
        const Site site({{"source/a/x.html", "<a href=y.html><a href=/o.html><a href=../../out.html>"},
                         {"target/a/y.html", ""}});
        MoveRequest request{site.at("target"), site.at("source"), MoveOperation::Copy, {}, {}};
        request.items = {itemOf(site, "source/a/x.html > target/a/x.html")};
        QVERIFY(planMove(request)->pages.empty());
        request.items = {itemOf(site, "source/a/x.html > target/x.html")};
        QCOMPARE(changedPages(site, *planMove(request)),
                 Files({{"target/x.html", "<a href=a/y.html><a href=/o.html><a href=../out.html>"}}));
    }

    void linksToWhatLeavesItsSite_areCounted()
    {
        const Site site({{"source/a/x.html", "<a href=y.html>"},
                         {"source/a/y.html", ""},
                         {"source/index.html", "<a href=a/x.html><a href=/a/><a href=b.html>"},
                         {"source/b.html", ""},
                         {"target/o.html", ""}});
        MoveRequest request{site.at("target"), site.at("source"), MoveOperation::Move, {}, {}};
        request.items = {itemOf(site, "source/a > target/a")};
        const auto plan = planMove(request);
        QCOMPARE(plan->lost.links, std::size_t(2));
        QCOMPARE(plan->lost.pages, std::size_t(1));
        QCOMPARE(plan->notes.at(0).text,
                 std::string("leaves its site; 2 links on 1 page will be missing there"));
        request.items = {itemOf(site, "source/index.html > target/index.html")};
        QVERIFY(planMove(request)->notes.empty());
        request.items = {itemOf(site, "source/a > target/a")};
        request.operation = MoveOperation::Copy;
        QVERIFY(planMove(request)->notes.empty());
        // Out of every site.
        request = {site.at("source"), {}, MoveOperation::Move, {}, {}};
        request.items = {itemOf(site, "source/a > out"), itemOf(site, "source/b.html > out.html")};
        QCOMPARE(planMove(request)->notes.at(0).text,
                 std::string("leaves its site with 1 other item; 3 links on 1 page will be missing there"));
        QCOMPARE(planMove(request)->lost.links, std::size_t(3));
    }

    void ownAddressesAndShortAddresses_keepTheirForm()
    {
        const Site site(
            {{"a/x.html", "<a href=../o.html>"},
             {"o.html", "<a href=https://example.org/docs/a/x.html#t><a href=//example.org/docs/a/x>"
                        "<a href=/docs/a/x.html><a href=a/x><a href=https://example.org/a/x.html>"
                        "<a href=../a/x.html>"}});
        MoveRequest request = requestOf(site, MoveOperation::Move, {"a/x.html > y.html"});
        request.rules.webAddresses = {"https://example.org/docs/"};
        request.rules.extensionsMayBeLeftOut = true;
        QCOMPARE(changedPages(site, *planMove(request)),
                 Files({{"y.html", "<a href=o.html>"},
                        {"o.html", "<a href=https://example.org/docs/y.html#t><a href=//example.org/docs/y>"
                                   "<a href=/docs/y.html><a href=y><a href=https://example.org/a/x.html>"
                                   "<a href=../a/x.html>"}}));
    }

    void whatCannotBeMoved_isLeftOutAndNamed()
    {
        const Site site({{"x.html", ""}, {"a/y.html", ""}, {"b/x.html", ""}});
        const auto plan =
            planMove(requestOf(site, MoveOperation::Move,
                               {"x.html > b/x.html", "a > a/b/c", "gone > b/gone", "b > c", "b/x.html > d"}));
        QCOMPARE(plan->problems.size(), std::size_t{3});
        QCOMPARE(plan->problems[0].text, std::string("File x.html exists, not overwritten"));
        QCOMPARE(plan->request.items.size(), std::size_t{1});
    }
};

LUMA_TEST(tst_linkplan)
#include "tst_linkplan.moc"
