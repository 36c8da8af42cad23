// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/characterdata.h"
#include "html/element.h"
#include "html/pagecodec.h"
#include "html/pagelanguage.h"
#include "html/pagesource.h"
#include "html/pagewriter.h"
#include "tests/html/pages.h"
#include "tests/html/randomedit.h"
#include "tests/support/registry.h"

#include <QTest>

#include <functional>
#include <map>

using namespace luma;
using namespace luma::html;

class tst_pagewriter final : public QObject
{
    Q_OBJECT

private:
    std::map<std::string, std::map<WritingWay, int>> m_ways;
    int m_strange = 0;
    int m_nextKind = 0;

    // Empty when all is right.
    std::string tryEdits(const test::Page& page, int count, test::RandomEdits& edits)
    {
        const MarkupLanguage language = pageLanguage("page.html", page.source).markup();
        PageCodec codec;
        const auto parsed = codec.read(page.source, language);
        if (!parsed)
            return {};
        Document& document = **parsed;
        auto untouched = codec.write(document, language);
        if (!untouched || untouched->bytes != page.source || untouched->way != WritingWay::Unchanged)
            return page.name + ": not written as it was";
        for (int i = 0; i < count; ++i) {
            const std::optional<test::Edit> edit = edits.make(document, m_nextKind++);
            if (!edit)
                continue;
            const auto written = codec.write(document, language);
            if (!written)
                return page.name + ": not written after " + edit->name + ": " + written.error().text;
            if (!written->parsed)
                ++m_strange;
            else
                ++m_ways[edit->name][written->way];
            std::string difference;
            if (written->parsed && written->way <= WritingWay::TagsSpelledOut &&
                document.origin().source->text() == page.source)
                difference = differenceOutside(*edit, written->bytes, page.source, written->way);
            if (!difference.empty())
                return page.name + ": " + difference + ": " + written->bytes.substr(0, 300);
            const bool isSaved = i % 3 == 0 && written->parsed;
            if (isSaved)
                PageSource::transfer(*written->parsed, document);
            edit->undo();
            const auto back = codec.write(document, language);
            if (!back || back->bytes != page.source)
                return page.name + ": not as it was after " + edit->name + (isSaved ? ", a save" : "") +
                       " and its undo";
            PageSource::transfer(*back->parsed, document);
        }
        return {};
    }

private slots:
    void lineEndBehindPre_staysThere()
    {
        const auto document = parseWithSource("<pre>\r\na</pre>");
        QVERIFY(document);
        Element& pre = *(*document)->select("pre").at(0);
        auto bold = std::make_unique<Element>("b");
        bold->append(pre.firstChild()->detach());
        pre.append(std::move(bold));
        const auto written = writePage(**document);
        QVERIFY(written);
        QCOMPARE(QByteArray::fromStdString(written->text), QByteArray("<pre>\r\n<b>a</b></pre>"));
    }

    void lastRowOfAnInclude_leavesNoTable_data()
    {
        QTest::addColumn<QByteArray>("page");
        QTest::addColumn<QByteArray>("left");
        QTest::newRow("row") << QByteArray("<tr><td>a</td></tr>\n") << QByteArray("\n");
        QTest::newRow("cell") << QByteArray("<td>a</td>") << QByteArray("");
        QTest::newRow("comment and code") << QByteArray("<!-- b -->\n<?php c() ?>\n<tr><td>a</td></tr>")
                                          << QByteArray("<!-- b -->\n<?php c() ?>\n");
    }
    void lastRowOfAnInclude_leavesNoTable()
    {
        QFETCH(QByteArray, page);
        PageCodec codec;
        const auto document = codec.read(page.toStdString(), MarkupLanguage::Html);
        QVERIFY(document);
        const auto rows = (*document)->select(page.contains("<tr") ? "tr" : "td");
        Element& row = *rows.at(0);
        const Position place = row.position();
        NodePtr removed = row.detach();
        const auto written = codec.write(**document, MarkupLanguage::Html);
        QVERIFY(written);
        QTEST(QByteArray::fromStdString(written->bytes), "left");
        ParentNode::insertAt(place, std::move(removed));
        QCOMPARE(QByteArray::fromStdString(codec.write(**document, MarkupLanguage::Html)->bytes), page);
    }

    void edits_leaveTheRest_data()
    {
        using Edit = std::function<void(Document&)>;
        QTest::addColumn<QByteArray>("page");
        QTest::addColumn<QByteArray>("from"); // in the page
        QTest::addColumn<QByteArray>("to");
        QTest::addColumn<Edit>("edit");
        const auto row = [](const char* name, const QByteArray& page, const QByteArray& from, const char* to,
                            const Edit& edit) {
            QTest::newRow(name) << page << from << QByteArray(to) << edit;
        };
        const auto added = [](const char* tag) { return std::make_unique<Element>(tag); };
        const auto remove = [](const char* selector) {
            return [=](Document& d) { d.select(selector).at(0)->remove(); };
        };
        const auto setId = [](const char* selector) {
            return [=](Document& d) { d.select(selector).at(0)->setAttr("id", "x"); };
        };
        const auto after = [=](const char* selector) {
            return [=](Document& d) { d.select(selector).at(0)->after(added("hr")); };
        };
        const QByteArray tail =
            "<html><body><p>a</p>\n</body>\n<?php b() ?>\n</html>\n<?php c() ?>\n<!-- d -->\n";
        row("behind the last paragraph", tail, "</p>", "</p><hr>", after("p"));
        row("text behind the page", tail, "\n</body>\n<?php b() ?>\n</html>",
            "\n\n\ne</body><?php b() ?></html>", [](Document& d) {
                static_cast<CharacterData*>(d.body()->lastChild())->setData("\n\n\ne\n\n\n");
            });
        row("text in front of comments behind the page",
            "<body><p>a</p></body>\n<!-- d -->\n</html>\n<!-- e -->\n",
            "</body>\n<!-- d -->\n</html>\n<!-- e -->\n", "\nf\n\n</body><!-- d --></html><!-- e -->",
            [](Document& d) { static_cast<CharacterData*>(d.body()->lastChild())->setData("\nf\n\n"); });
        const auto append = [=](Document& d) { d.body()->append(added("hr")); };
        row("behind the white space behind the page", tail, tail.mid(tail.indexOf("\n</body>")),
            "\n\n\n\n\n\n<hr></body><?php b() ?></html><?php c() ?><!-- d -->", append);
        row("behind white space behind </body>", "<body><p>a</p></body>\n</html>", "</body>\n",
            "\n<hr></body>", append);
        row("in an empty page", "<html><body>\n</body></html>\n", "\n</body></html>\n",
            "\n\n<hr></body></html>", append);
        row("behind a comment", "<p>a</p>\n<!-- </body> -->\n", "-->\n", "-->\n<hr>", append);
        row("last paragraph", tail, "<p>a</p>", "", remove("p"));
        row("code in front of all", "<?php a() ?>\n<div>b\n<p>c</p>", "<div", "<hr><div",
            [=](Document& d) { d.select("div").at(0)->before(added("hr")); });
        row("text beside a deletion", "<p>caf&eacute; <b>a</b> th&eacute; &nbsp;b</p>", "<b>a</b>", "",
            remove("b"));
        row("values with line ends, elsewhere", "<p title='a\r\nb\n c' alt=\"\n\">d</p>\n<div>e</div>",
            "<div", "<div id=\"x\"", setId("div"));
        row("values with line ends, beside", "<p title='a\r\nb\n c' alt=\"\n\">d</p>", "alt=\"\n\"",
            "alt=\"\n\" id=\"x\"", setId("p"));
        row("text that a table gave up", "<p>a</p> b<table border=0><tr><td>c</tr>${d}</table>",
            " b<table border=0><tr><td>c</tr>${d}", " e${d}<table border=0><tr><td>c</tr>",
            [](Document& d) { static_cast<CharacterData*>(d.select("p").at(0)->next())->setData(" e${d}"); });
        row("dialog in a paragraph", "<p>a<dialog open>b</dialog>c</p>\n<div>d</div>", "<div",
            "<div id=\"x\"", setId("div"));
        row("in the dialog", "<p>a<dialog open>b<i>e</i></dialog>c</p>\n<div>d</div>", "<i>e</i>", "",
            remove("i"));
        const QByteArray open =
            "<?xml version='1.0'?>\n<h1><a id=c>b</h1>\n<div>\n<p>x</p>\n<a id=d>e\n</div>\n<p>y</p>\n";
        row("attribute of open formatting", open, "id=c>b</h1>", "id=x>b</a></h1><a id=\"c\">",
            setId("h1 > a"));
        row("attribute of reopened formatting", open, "<div>\n<p>x</p>\n",
            "</a><div><a id=\"x\">\n<p>x</p>\n</a>", setId("div > a"));
        row("reopened formatting", open, "<div>\n<p>x</p>\n", "</a><div>", remove("div > a"));
        row("copy of reopened formatting", open, "<p>x</p>\n", "<p>x</p>\n</a><a id=\"c\">\n<p>x</p>\n</a>",
            [](Document& d) {
                Element& copied = *d.select("div > a").at(0);
                copied.after(copied.copy());
            });
        const QByteArray deep = QByteArray("<div>").repeated(4080);
        row("deep", deep + "<p>a</p><h1>b" + QByteArray("</div>\n").repeated(4080), "<h1", "<h1 id=\"x\"",
            setId("h1"));
        row("deep without end tags", deep + "<p>a<h1>b", "<p>a", "", remove("p"));
    }
    void edits_leaveTheRest()
    {
        QFETCH(QByteArray, page);
        QFETCH(QByteArray, from);
        QFETCH(QByteArray, to);
        QFETCH(std::function<void(Document&)>, edit);
        const auto document = parseWithSource(page.toStdString());
        QVERIFY(document);
        edit(**document);
        const auto written = writePage(**document);
        QVERIFY(written);
        QCOMPARE(QByteArray::fromStdString(written->text), QByteArray(page).replace(from, to));
        QVERIFY(written->isSame);
    }

    void edits_changeWhatTheyEdit()
    {
        test::RandomEdits edits(11);
        std::vector<std::pair<test::Page, int>> pages;
        for (const test::Page& page : test::writtenPages())
            pages.emplace_back(page, 54);
        for (const test::Page& page : test::allPages(300, 60'000))
            pages.emplace_back(page, 3);
        std::string failures;
        for (const auto& [page, count] : pages) {
            const std::string failure = tryEdits(page, count, edits);
            if (!failure.empty())
                failures += failure + "\n";
        }
        QVERIFY2(failures.empty(), failures.c_str());
        int patched = 0;
        int all = 0;
        for (const auto& [name, ways] : m_ways) {
            std::string line = name + ":";
            for (const auto& [way, count] : ways) {
                line += " " + std::to_string(int(way)) + "=" + std::to_string(count);
                patched += way <= WritingWay::TagsSpelledOut ? count : 0;
                all += count;
            }
            qInfo("%s", line.c_str());
        }
        qInfo("trees that no markup gives: %d", m_strange);
        QVERIFY2(patched * 100 >= all * 99, "too many pages were printed");
    }
};

LUMA_TEST(tst_pagewriter)

#include "tst_pagewriter.moc"
