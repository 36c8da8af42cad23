// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/characterdata.h"
#include "html/element.h"
#include "html/elementat.h"
#include "html/parse.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"

#include <QTest>

using namespace luma::html;

class tst_node final : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Document> m_page;

    Element& find(std::string_view selector) const { return *m_page->select(selector).front(); }
    std::string body() const { return m_page->body()->html(); }

private slots:
    void elementAt_isWhoseTagOrTextStandsThere_data()
    {
        const luma::test::Rows<int, int, QByteArray> row("line", "column", "name");
        row("a tag without attributes", 1, 2, "p");
        row("a value, behind a letter of two bytes", 2, 14, "a");
        row("a text", 2, 17, "a");
        row("an end tag", 2, 21, "");
        row("a style sheet", 3, 18, "style");
        row("behind the page", 9, 1, "");
    }
    void elementAt_isWhoseTagOrTextStandsThere()
    {
        QFETCH(int, line);
        QFETCH(int, column);
        auto page = parseWithSource("<p>\n<a id=ä href=x>text</a><style>\np{background:url(y)}</style>");
        QVERIFY(page);
        const Element* found = elementAt(**page, unsigned(line), unsigned(column));
        QTEST(QByteArray::fromStdString(found ? found->tagName() : std::string()), "name");
    }

    void init()
    {
        auto page = parse(
            "<title> A  page </title><div id=d>a<p id=p>b<i>c</i></p><!--x--><p id=q> d\n e </p></div>");
        QVERIFY(page);
        m_page = std::move(*page);
    }

    void move_keepsIdentity()
    {
        Element& p = find("#p");
        Element& q = find("#q");
        q.after(p.detach());
        QCOMPARE(&find("#p"), &p);
        QCOMPARE(
            body(),
            std::string("<div id=\"d\">a<!--x--><p id=\"q\"> d\n e </p><p id=\"p\">b<i>c</i></p></div>"));
        find("#d").insertChildren(0, q.detach());
        q.before(p.copy());
        QCOMPARE(find("#d").children().size(), std::size_t{3});
        QCOMPARE(find("#d").firstElement()->attr("id"), std::string_view("p"));
        QVERIFY(find("#d").firstElement() != &p);
        QVERIFY(p.isInside(find("#d")) && !find("#d").isInside(p));
    }

    // As undo commands do: edits taken back in reverse order restore the page.
    void edits_areUndoneInReverse()
    {
        const std::string before = body();
        Element& p = find("#p");
        const Position oldPlace = p.position();
        NodePtr held = p.detach();
        Element& q = find("#q");
        const Position qPlace = q.position();
        Element& heldElement = *held->asElement();
        heldElement.append(q.detach());
        std::vector<Attribute> attributes = {{"class", "new"}};
        heldElement.swapAttributes(attributes);
        NodeList inner;
        inner.push_back(CharacterData::text("only"));
        find("#d").swapChildren(inner);
        QCOMPARE(body(), std::string("<div id=\"d\">only</div>"));

        find("#d").swapChildren(inner);
        heldElement.swapAttributes(attributes);
        ParentNode::insertAt(qPlace, q.detach());
        ParentNode::insertAt(oldPlace, std::move(held));
        QCOMPARE(body(), before);
        QCOMPARE(&find("#p"), &p);
        QCOMPARE(&find("#q"), &q);
    }

    void text_isSimplified()
    {
        QCOMPARE(m_page->title(), std::string("A page"));
        QCOMPARE(find("#d").ownText(), std::string("a"));
        QCOMPARE(find("#d").text(), std::string("abc d e"));
        QCOMPARE(find("#q").ownText(), std::string("d e"));
        m_page->setTitle("a < b");
        QCOMPARE(find("title").outerHtml(), std::string("<title>a &lt; b</title>"));
        find("title").remove();
        QCOMPARE(m_page->title(), std::string());
        m_page->setTitle("new");
        QCOMPARE(m_page->head()->html(), std::string("<title>new</title>"));
    }

    void attributes_keepTheirOrder()
    {
        Element& p = find("#p");
        p.setAttr("class", "a \"b\"");
        p.setAttr("id", "z");
        QVERIFY(p.hasAttr("class") && !p.hasAttr("lang"));
        QCOMPARE(p.outerHtml(), std::string("<p id=\"z\" class=\"a &quot;b&quot;\">b<i>c</i></p>"));
        p.removeAttr("id");
        QCOMPARE(p.attr("id"), std::string_view());
    }

    void copy_isTheSameTree()
    {
        const NodePtr copy = m_page->copy();
        QVERIFY(sameTree(*copy, *m_page));
        copy->asParent()->select("i").front()->setAttr("x", "");
        QVERIFY(!sameTree(*copy, *m_page));
        copy->asParent()->select("i").front()->remove();
        QVERIFY(!sameTree(*copy, *m_page));
    }

    // Copying, comparing, writing, searching and destroying must not recurse.
    void deepTree_needsNoStack()
    {
        constexpr std::size_t depth = 100'000;
        auto top = std::make_unique<Element>("div");
        ParentNode* parent = top.get();
        for (std::size_t i = 1; i < depth; ++i)
            parent = parent->append(std::make_unique<Element>("div")).asParent();
        const NodePtr copy = top->copy();
        QVERIFY(sameTree(*copy, *top));
        QCOMPARE(copy->outerHtml().size(), depth * std::string_view("<div></div>").size());
        QCOMPARE(top->select("div div").size(), depth - 1);
    }

    void select_findsWhatItSays_data()
    {
        QTest::addColumn<QByteArray>("selector");
        QTest::addColumn<QByteArray>("found");
        const auto row = [](const char* selector, const char* found) {
            QTest::newRow(selector) << QByteArray(selector) << QByteArray(found);
        };
        row("head link[rel=stylesheet]", "ac");
        row("head link[rel='stylesheet']", "ac");
        row("head style", "d");
        row("LINK", "abce");
        row("[href]", "abf");
        row("[href^=HTTP:]", "af");
        row("a[HREF^=\"http://\"]", "f");
        row("*[href^=x]", "b");
        row("#F", "");
        row("#f", "f");
        row("body p a#f", "f");
        row("p body a", "");
        row("clippath", "g");
        row("a, style ,#c", "cdf");
        row("p > a", "f");
        row("body > a", "");
        row("html>body p>a", "f");
        row("link:nth-of-type(2)", "b");
        row("head > :nth-child(3)", "c");
        row(":root > head > .y.x", "a");
        row(".X", "");
        for (const char* odd :
             {"", "a >", "> a", "a,", "a,,b", "[href", "[]", "a[=x]", ".", "#", "a[href*=x]", "[href^=]",
              "a:hover", "a:nth-child(0)", "a:nth-child(n", "a ~ b"})
            row(odd, "");
    }
    void select_findsWhatItSays()
    {
        QFETCH(QByteArray, selector);
        const auto page =
            parse("<head><link id=a class='x y' rel=stylesheet href='http://a'><link id=b rel=icon href=xa>"
                  "<link id=c rel=StyleSheet><style id=d></style></head><body><link id=e "
                  "rel=alternate><p><a id=f href='Http://b'></a><svg><clipPath id=g></svg>");
        QVERIFY(page);
        QByteArray ids;
        for (const Element* element : (*page)->select(selector.toStdString()))
            ids += QByteArray::fromStdString(std::string(element->attr("id")));
        QTEST(ids, "found");
    }

    void cssSelector_escapesAndNames_data()
    {
        const luma::test::Rows<QByteArray, QByteArray> row("page", "selector");
        row("id", "<p id=a x>", "#a");
        row("odd id", "<p id='1 a:b' x>", "#\\31 \\ a\\:b");
        row("id of two", "<p id=a><p id=A x>", ":root > body > p:nth-child(2)");
        row("alone", "<div><p><b x>", ":root > body > div > p > b");
        row("classes", "<b></b><p class=' a.b  c\n-1 '></p><p class=d x>", ":root > body > p.d:nth-child(3)");
        row("below an id", "<div id=n><p class='-1 -'><b x>", "#n > p.-\\31 .\\- > b");
        row("odd tag", "<o:p x>", ":root > body > o\\:p");
        row("in a template", "<template><p x></template>", "");
    }
    void cssSelector_escapesAndNames()
    {
        QFETCH(QByteArray, page);
        const auto document = parse(page.toStdString());
        QVERIFY(document);
        const std::vector<Element*> wanted = (*document)->select("[x]");
        const std::string selector = wanted.front()->cssSelector();
        QTEST(QByteArray::fromStdString(selector), "selector");
        if (!selector.empty())
            QVERIFY((*document)->select(selector) == std::vector<Element*>{wanted.front()});
    }
};

LUMA_TEST(tst_node)
#include "tst_node.moc"
