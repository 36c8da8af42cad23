// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/element.h"
#include "html/parse.h"
#include "page/pagelinkcheck.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/site.h"

#include <QTest>

using namespace luma;

namespace {

QByteArray written(const std::vector<PageFinding>& findings)
{
    static constexpr const char* names[] = {"title", "lang",   "alt",     "id",      "heading",
                                            "link",  "button", "missing", "contrast"};
    QByteArrayList lines;
    for (const PageFinding& each : findings) {
        QByteArray line = names[static_cast<int>(each.fault)];
        line += " " + QByteArray::fromStdString(each.element->tagName());
        lines.append(each.detail.empty() ? line : line + " " + QByteArray::fromStdString(each.detail));
    }
    return lines.join(", ");
}

} // namespace

/// What the check of a page finds.
class tst_pagecheck final : public QObject
{
    Q_OBJECT

private slots:
    void page_isChecked_data()
    {
        const test::Rows<QByteArray, QByteArray> row("markup", "findings");
        const QByteArray good = "<!DOCTYPE html><html lang=en><title>T</title>";
        row("nothing wrong", good + "<h1 id=a>A</h1><h2>B</h2><h1>C</h1><a href=x>y</a><img alt=''>", "");
        row("empty page", "<!DOCTYPE html>", "title head, lang html");
        row("blank title and language", "<!DOCTYPE html><html lang=''><title> </title>",
            "title head, lang html");
        row("part of a page", "<p>x", "");
        row("language in XHTML", "<!DOCTYPE html><html xml:lang=en><title>T</title>", "");
        row("images",
            good + "<img><map><area href=x><area alt=y href=x></map><input type=image><img role=none>",
            "alt img, alt area, alt input");
        row("ids", good + "<p id=a><b id=a><i id=A><template><i id=a></i></template><u id=a>",
            "id b a, id u a");
        row("headings", good + "<h2>a</h2><h4>b</h4><h5 hidden>c</h5><h6>c</h6><h1>d</h1>",
            "heading h4 h2 \u2192 h4, heading h6 h4 \u2192 h6");
        row("empty links",
            good + "<a href=x> </a><a href=x><img alt=''></a><a href=x><svg></svg></a><a name=x></a>",
            "link a, link a, link a");
        row("named links",
            good + "<a href=x><img alt=y></a><a href=x title=y></a><a href=x><svg><title>y</title></svg></a>",
            "");
        row("buttons", good + "<button><i class=icon></i></button><button aria-label=x></button>",
            "button button");
        row("server code",
            "<!DOCTYPE html><html <?php lang() ?>><head><?php title() ?></head><a href=x><?= $x ?></a>", "");
    }
    void page_isChecked()
    {
        QFETCH(QByteArray, markup);
        auto page = html::parseWithSource(markup.toStdString());
        QVERIFY(page);
        QTEST(written(checkPage(**page)), "findings");
    }

    void missingLinks_areFoundOnTheDisk()
    {
        const test::Site site(
            {{"a/page.html", ""}, {"b/c d.html", ""}, {"b/index.html", ""}, {"x.css", ""}, {"app.php", ""}});
        auto page = html::parse(
            "<link rel=stylesheet href=/x.css><style>p { background: url(no.png) }</style>"
            "<a href='../b/c%20d.html#anywhere'>1</a><a href=../b/>2</a><a href=../c>3</a>"
            "<a href='#here' id=here>4</a><a href='#there'>5</a><a href=page.html#top>6</a>"
            "<a href='https://example.org/no'>7</a><a href='{{ link }}'>8</a>"
            "<img srcset='no.png 1x, ../x.css 2x'><a href=/app.php/entry>9</a><template><a href=no>9</a></template>");
        QVERIFY(page);
        const PageLinkCheck check(**page, SiteFolder(site.at("a/page.html"), site.root()));
        QCOMPARE(written(check.missing()),
                 QByteArray("missing style no.png, missing a ../c, missing a #there, missing img no.png"));
        site.put("c.html", "");
        WebRules rules;
        rules.webAddresses = {"https://example.org"};
        rules.extensionsMayBeLeftOut = true;
        rules.fragmentsAreChecked = false;
        const SiteFolder place(site.at("a/page.html"), site.root());
        QCOMPARE(written(PageLinkCheck(**page, place, rules).missing()),
                 QByteArray("missing style no.png, missing a https://example.org/no, missing img no.png"));
    }

    void missingLinks_countFromTheBase()
    {
        const test::Site site({{"a/page.html", ""}, {"b/x.html", ""}});
        auto page = html::parse("<base href='../b/'><a href=x.html>1</a><a href=page.html>2</a>");
        QVERIFY(page);
        QCOMPARE(written(PageLinkCheck(**page, SiteFolder(site.at("a/page.html"), site.root())).missing()),
                 QByteArray("missing a page.html"));
    }
};

LUMA_TEST(tst_pagecheck)
#include "tst_pagecheck.moc"
