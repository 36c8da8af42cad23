// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/selectornames.h"
#include "links/sitemoves.h"
#include "links/sitenames.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/site.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

using namespace luma;
using test::Files;
using test::Site;
namespace fs = std::filesystem;

namespace {

std::string textOf(const std::vector<SiteName::Place>& places)
{
    std::string text;
    for (const SiteName::Place& place : places)
        text += " " + place.file + ":" + std::to_string(place.line) + "x" + std::to_string(place.count);
    return text;
}

std::string listed(const Site& site)
{
    std::string text;
    const auto names = findSiteNames(site.root(), {});
    for (const SiteName& name : *names) {
        text += (name.isId ? "#" : ".") + name.name + " rules" + textOf(name.rules) + " elements" +
                textOf(name.elements) + " references" + textOf(name.references);
        for (const std::string& script : name.scripts)
            text += " script " + script;
        text += "\n";
    }
    return text;
}

} // namespace

/// The classes and ids of a site, and how they are renamed.
class tst_sitenames final : public QObject
{
    Q_OBJECT

private slots:
    void selectors_areRead_data()
    {
        const test::Rows<std::string, std::string> row("sheet", "names");
        row("simple", ".a, #b.c > d.e:hover{color:#fff;margin:.5em}", ".a #b .c .e ");
        row("functions", "p:not(.a:is(#b,.c)):nth-child(2n of .d){}", ".a #b .c .d ");
        row("attributes", "[class~=a] [class='b'] [id=\"c\"] [href='.x'] [class*=y] [ id = d ]{}",
            ".a .b #c #d ");
        row("escapes", ".\\31 a .a\\:b .\\.x{}", ".1a .a:b ..x ");
        row("at-rules",
            "@media (min-width:.5em){.a{}} @layer x.y{.b{}} @supports selector(.c){.d{}}"
            "@scope (.e) to (.f){.g{}} @import url(.x) layer(q.r);",
            ".a .b .c .d .e .f .g ");
        row("nested", ".a{color:red;.b &{c:d} &.e{} > .f{} background:url(x.y) #abc}", ".a .b .e .f ");
        row("not selectors", "/*.a{}*/ p{content:'.b{'} p::after{c:\"}.d{\"}.e{", ".e ");
        row("damaged", "p{;.a{}}}.b{ .c", ".a .b ");
    }
    void selectors_areRead()
    {
        QFETCH(std::string, sheet);
        QFETCH(std::string, names);
        std::string found;
        for (const SelectorName& name : selectorNames(sheet))
            found += (name.isId ? "#" : ".") + name.name + " ";
        QCOMPARE(found, names);
    }

    void names_areListed()
    {
        const Site site({{"index.html", "<style>.a{}\n#x{}</style><p class='a b\nb'><a id=x href=q.html#y>"
                                        "<label for=x><script>f('b')</script>"},
                         {"q.html", "<p id=y class=<?php ?>><a href=./#x><a href=#none>"},
                         {"s.css", "\n.a .a, .c{}"},
                         {"t.js", "el.classList.add('c')"}});
        QCOMPARE(listed(site),
                 std::string(".a rules index.html:1x1 s.css:2x2 elements index.html:2x1 references\n"
                             ".b rules elements index.html:2x2 references script index.html\n"
                             ".c rules s.css:2x1 elements references script t.js\n"
                             "#x rules index.html:2x1 elements index.html:3x1 references"
                             " index.html:3x1 q.html:1x1\n"
                             "#y rules elements q.html:1x1 references index.html:3x1\n"));
    }

    void name_isRenamed_data()
    {
        const test::Rows<std::string, std::string, std::string, std::string, std::string> row(
            "file", "bytes", "from", "to", "result");
        row("class", "p.html", "<p class='a ab&#32;a'><b CLASS=a>a<i class=\"x&amp;y a\">", ".a", ".n",
            "<p class='n ab&#32;n'><b CLASS=n>a<i class=\"x&amp;y n\">");
        row("style element", "p.html", "<style>.a:not(.b.a){color:#abc}</style><p title=a>", ".a", ".n",
            "<style>.n:not(.b.n){color:#abc}</style><p title=a>");
        row("sheet", "s.css", ".a{}.\\61{}\n.ab{} #a{} a{} .x{.a &{}}", ".a", ".1",
            ".\\31 {}.\\31 {}\n.ab{} #a{} a{} .x{.\\31  &{}}");
        row("id", "p.html",
            "<p id=a><label for=a><td headers='a b'><p aria-labelledby='b a' class=a name=a>"
            "<a href=#a><a href='p.html?x#a'><a href=o.html#a><svg><use xlink:href='#a'/>",
            "#a", "#n",
            "<p id=n><label for=n><td headers='n b'><p aria-labelledby='b n' class=a name=a>"
            "<a href=#n><a href='p.html?x#n'><a href=o.html#a><svg><use xlink:href='#n'/>");
        row("id elsewhere", "p.html", "<label for=a><a href=#a>", "#a", "#n", "<label for=a><a href=#a>");
        row("letters", "p.html", "<meta charset=latin1><p class=\xE4><p class=\"b \xE4\">", ".\u00e4",
            ".\u00f6", "<meta charset=latin1><p class=\xF6><p class=\"b \xF6\">");
        row("a frame's page, whose ids are its own", "p.html",
            "<p class=a id=a><iframe srcdoc=\"<p class='b &#97; a&amp;#98;' id=a><style>.a{}#a{}</style><a href=#a>"
            "&lt;i class=a&gt;<iframe srcdoc='<i class=a>'>\">",
            ".a", ".n",
            "<p class=n id=a><iframe srcdoc=\"<p class='b n a&amp;#98;' id=a><style>.n{}#a{}</style><a href=#a>"
            "&lt;i class=n&gt;<iframe srcdoc='<i class=a>'>\">");
        row("server code", "p.php", "<p class='a <?= $a ?> a<?= 1 ?>'><?php a ?>", ".a", ".n",
            "<p class='n <?= $a ?> a<?= 1 ?>'><?php a ?>");
    }
    void name_isRenamed()
    {
        QFETCH(std::string, file);
        QFETCH(std::string, bytes);
        QFETCH(std::string, from);
        QFETCH(std::string, to);
        const Site site(Files{{file, bytes}});
        const auto plan = planNameChange(site.root(), from.front() == '#', from.substr(1), to.substr(1), {});
        QVERIFY(plan);
        QVERIFY2(plan->problems.empty(), plan->problems.empty() ? "" : plan->problems.front().text.c_str());
        (void)SiteMoves::open(site.root())->carryOut(*plan);
        QFETCH(std::string, result);
        QCOMPARE(site.bytesOf(file), result);
        if (result == bytes)
            return;
        QVERIFY(SiteMoves::open(site.root())->undo().isDone);
        QCOMPARE(site.bytesOf(file), bytes);
    }

    void plan_tellsWhatStays()
    {
        const Site site(
            {{"p.html", "<p id=a><p id=n>"}, {"t.js", "get('a')"}, {"q.html", "<a href=p.html#a>"}});
        const auto plan = planNameChange(site.root(), true, "a", "n", {});
        QCOMPARE(plan->pages.size(), 2U);
        QCOMPARE(plan->notes.size(), 2U);
        QCOMPARE(plan->notes[0].text, std::string("Another element has the id \"n\" already"));
        QCOMPARE(plan->notes[1].text, std::string("A script here mentions \"a\"; scripts are not changed"));
        QCOMPARE(*plan->text->updated("<p id=a><p class=a>", site.at("p.html"), site.at("p.html")),
                 std::string("<p id=n><p class=a>"));
        QVERIFY(!planNameChange(site.root(), true, "a", "two words", {}));
        site.put("s.css", ".a{}\n.b{}");
        QCOMPARE(planNameChange(site.root(), false, "a", "b", {})->notes.front().text,
                 std::string("The class \"b\" exists already; both will be one"));
    }

    void renamedThereAndBack_everyByteIsAsBefore()
    {
        const fs::path folder = "/usr/share/doc/postgresql-doc-15/html";
        if (!fs::exists(folder))
            QSKIP("the package is not installed");
        const Site site;
        int count = 0;
        for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
            if (entry.is_regular_file() && (count++ % 25 == 0 || entry.path().extension() == ".css"))
                fs::copy_file(entry.path(), site.at(entry.path().filename().native()));
        }
        const Files before = site.contents();
        const auto names = findSiteNames(site.root(), {});
        QRandomGenerator random(5);
        std::size_t changed = 0;
        for (int i = 0; i < 10; ++i) {
            const SiteName& name = (*names)[random.bounded(quint32(names->size()))];
            for (const auto& [from, to] : {std::pair(name.name, std::string("anew:n\u00e4me")),
                                           std::pair(std::string("anew:n\u00e4me"), name.name)}) {
                const auto plan = planNameChange(site.root(), name.isId, from, to, {});
                QVERIFY(plan && plan->problems.empty());
                changed += plan->text->places;
                QVERIFY(SiteMoves::open(site.root())->carryOut(*plan).isDone);
            }
            QVERIFY(site.contents() == before);
        }
        qInfo("%zu places changed", changed);
    }
};

LUMA_TEST(tst_sitenames)
#include "tst_sitenames.moc"
