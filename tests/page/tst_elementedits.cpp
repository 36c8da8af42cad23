// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/element.h"
#include "html/parse.h"
#include "page/classedits.h"
#include "page/cssmenu.h"
#include "page/tagrules.h"
#include "tests/support/registry.h"

#include <QTest>

using namespace luma;

class tst_elementedits final : public QObject
{
    Q_OBJECT

private:
    static std::unique_ptr<html::Document> page(std::string_view source)
    {
        auto parsed = html::parse(source);
        return parsed ? std::move(*parsed) : nullptr;
    }

private slots:
    void drop_isAllowedByTheRules_data()
    {
        QTest::addColumn<QByteArray>("dragged");
        QTest::addColumn<QByteArray>("target");
        QTest::addColumn<bool>("allowed");
        const auto row = [](const char* dragged, const char* target, bool allowed) {
            QTest::addRow("%s onto %s", dragged, target)
                << QByteArray(dragged) << QByteArray(target) << allowed;
        };
        row("p", "section", true);
        row("p", "head", true);
        row("p", "html", false);
        row("p", "none", false);
        row("none", "section", false);
        row("meta", "head", true);
        row("meta", "body", false);
        row("#out", "#in", false);
        row("section", "section", false);
        row("section", "i", false);
        row("i", "section", true);
        row("div", "body", true);
    }
    void drop_isAllowedByTheRules()
    {
        QFETCH(QByteArray, dragged);
        QFETCH(QByteArray, target);
        const auto document =
            page("<meta name=a><div id=out><p></p></div><div id=in></div><section><b><i></i></b></section>");
        const auto find = [&document](const QByteArray& selector) {
            const auto found = document->select(selector.toStdString());
            return found.empty() ? nullptr : found.front();
        };
        QTEST(TagRules().canDrop(find(dragged), find(target)), "allowed");
    }

    void drop_landsWhereTheLineIs_data()
    {
        QTest::addColumn<QByteArray>("moved");
        QTest::addColumn<int>("childIndex");
        QTest::addColumn<QByteArray>("order");
        const auto row = [](const char* moved, int childIndex, const char* order) {
            QTest::addRow("%s to %d", moved, childIndex)
                << QByteArray(moved) << childIndex << QByteArray(order);
        };
        row("x", -1, "xabc");
        row("x", 0, "xabc");
        row("x", 1, "axbc");
        row("x", 2, "abxc");
        row("x", 3, "abcx");
        row("x", 9, "abcx");
        row("b", 1, "abc");
        row("b", 2, "abc");
        row("b", 3, "acb");
        row("a", 0, "abc");
        row("a", 2, "bac");
        row("a", 3, "bca");
        row("c", 0, "cab");
        row("c", 2, "abc");
        row("c", 3, "abc");
    }
    void drop_landsWhereTheLineIs()
    {
        QFETCH(QByteArray, moved);
        QFETCH(int, childIndex);
        const auto document = page("<p id=x></p><div>1<i id=a></i>2<i id=b></i>3<i id=c></i>4</div>");
        html::Element& target = *document->select("div").front();
        html::Element& element = *document->select("#" + moved.toStdString()).front();
        const auto children = target.children();
        const html::Position place =
            TagRules::dropPosition(target, {children.begin(), children.end()}, childIndex, &element);
        html::ParentNode::insertAt(place, element.detach());
        QByteArray found;
        for (const html::Element* child : target.children())
            found += QByteArray::fromStdString(std::string(child->attr("id")));
        QTEST(found, "order");
    }

    void classes_areAddedAndTakenOut_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("added");
        QTest::addColumn<QByteArray>("removed");
        const auto row = [](const char* before, const char* added, const char* removed) {
            QTest::newRow(before) << QByteArray(before) << QByteArray(added) << QByteArray(removed);
        };
        row("<p>", "<p class=\"nav\"></p>", "<p></p>");
        row("<p class>", "<p class=\"nav\"></p>", "<p class=\"\"></p>");
        row("<p class='nav' id=i>", "<p class=\"nav nav\" id=\"i\"></p>", "<p id=\"i\"></p>");
        row("<p class='nav navbar'>", "<p class=\"nav navbar nav\"></p>", "<p class=\"bar\"></p>");
        row("<p class='box nav'>", "<p class=\"box nav nav\"></p>", "<p class=\"box\"></p>");
        row("<p class='box'>", "<p class=\"box nav\"></p>", "<p class=\"box\"></p>");
        row("<p class='a nanavv'>", "<p class=\"a nanavv nav\"></p>", "<p class=\"a nav\"></p>");
    }
    void classes_areAddedAndTakenOut()
    {
        QFETCH(QByteArray, before);
        const auto document = page(before.toStdString());
        html::Element& element = *document->body()->firstElement();
        auto attributes = withClass(element.attributes(), "nav");
        element.swapAttributes(attributes);
        QTEST(QByteArray::fromStdString(element.outerHtml()), "added");
        element.swapAttributes(attributes);
        attributes = withoutClass(element.attributes(), "nav");
        element.swapAttributes(attributes);
        QTEST(QByteArray::fromStdString(element.outerHtml()), "removed");
    }

    void ids_areSetAndRemoved()
    {
        const auto document = page("<p id=old class=c>");
        html::Element& element = *document->body()->firstElement();
        auto attributes = withID(element.attributes(), "new");
        element.swapAttributes(attributes);
        QCOMPARE(element.outerHtml(), std::string("<p id=\"new\" class=\"c\"></p>"));
        attributes = withoutID(element.attributes());
        element.swapAttributes(attributes);
        QCOMPARE(element.outerHtml(), std::string("<p class=\"c\"></p>"));
    }

    void cssMenu_listsSheetsAndBlocks()
    {
        const auto document =
            page("<head><style>a{}</style><link rel=StyleSheet href='a b.css'><link rel=icon href=i>"
                 "<link href=c.css rel=stylesheet><style>b{}</style></head><p></p><style>body</style>");
        QCOMPARE(cssMenuTitles(*document),
                 QStringList({u"a b.css"_qs, u"c.css"_qs, u"<style> [0]"_qs, u"<style> [1]"_qs}));
        QCOMPARE(styleBlock(*document, u"<style> [1]"_qs)->html(), std::string("b{}"));
        for (const QString& title : {u"<style> [2]"_qs, u"<style> [x]"_qs, u"<style> 1"_qs, u"<style> [1"_qs,
                                     u"<style> []"_qs, u"a[0].css"_qs})
            QVERIFY(!styleBlock(*document, title));
        QVERIFY(cssMenuTitles(*page("")).isEmpty());
    }
};

LUMA_TEST(tst_elementedits)
#include "tst_elementedits.moc"
