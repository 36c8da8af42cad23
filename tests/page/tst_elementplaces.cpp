// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/document.h"
#include "html/element.h"
#include "html/parse.h"
#include "page/elementplaces.h"
#include "page/tagrules.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"

#include <QTest>

using namespace luma;

/// Where the standard's elements may be inserted.
class tst_elementplaces final : public QObject
{
    Q_OBJECT

private:
    const std::string page =
        "<!DOCTYPE html><title>T</title><p>one <a href=x>two</a></p><ul><li>three</ul><table><tr><td>four</table>"
        "<form><label>five</label></form><dl></dl><select></select><img><h1>six</h1><figure></figure>"
        "<article><header></header></article><details></details><video></video><picture></picture>";

private slots:
    void reason_isTold_data()
    {
        const test::Rows<QByteArray, QString, QString> row("parent", "tag", "reason");
        row("in the body", "body", "figure", "");
        row("in the head", "head", "link", "");
        row("not in the head", "head", "p",
            "<head> takes only <base>, <link>, <meta>, <noscript>, <style>, <title>.");
        row("head's own", "body", "meta", "<meta> stands only in <head>.");
        row("second title", "head", "title", "A page may have only one <title> like this.");
        row("in the root", "html", "p", "<html> takes only <head>, <body>.");
        row("item", "ul", "li", "");
        row("item elsewhere", "body", "li", "<li> stands only in <ul>, <ol>, <menu>.");
        row("list of others", "ul", "p", "<ul> takes only <li>.");
        row("block in a paragraph", "p", "div", "<p> takes only what belongs into a line of text.");
        row("line in a paragraph", "p", "em", "");
        row("link in a link", "a", "a", "<a> can't stand in <a>.");
        row("form in a form", "label", "form", "<label> takes only what belongs into a line of text.");
        row("button in a link", "a", "button", "<button> can't stand in <a>.");
        row("void", "img", "b", "<img> has no elements in it.");
        row("cell", "tr", "td", "");
        row("cell elsewhere", "table", "td", "<td> stands only in <tr>.");
        row("row", "tbody", "tr", "");
        row("header in a header", "header", "footer", "<footer> can't stand in <header>.");
        row("script in a list", "ul", "script", "");
        row("comment in a table", "table", "!--", "");
        row("comment in the title", "title", "!--", "A comment can't stand in <title>.");
    }
    void reason_isTold()
    {
        const auto document = html::parse(page);
        QFETCH(QByteArray, parent);
        QFETCH(QString, tag);
        const auto found = (*document)->select(parent.toStdString());
        QVERIFY(!found.empty());
        QTEST(reasonAgainst(*found.front(), InsertPlace::First, tag), "reason");
    }

    void reason_isOfThePlace_data()
    {
        const test::Rows<QByteArray, InsertPlace, QString, QString> row("beside", "place", "tag", "reason");
        row("behind a paragraph", "p", InsertPlace::After, "div", "");
        row("in front of a link", "a", InsertPlace::Before, "div",
            "<p> takes only what belongs into a line of text.");
        row("behind an image", "img", InsertPlace::After, "p", "");
        row("behind the body", "body", InsertPlace::After, "div", "<html> takes only <head>, <body>.");
        row("item", "li", InsertPlace::Before, "li", "");
        row("caption first", "tbody", InsertPlace::Before, "caption", "");
        row("caption last", "table", InsertPlace::Last, "caption", "<caption> stands first in <table>.");
        row("caption behind", "tbody", InsertPlace::After, "caption", "<caption> stands first in <table>.");
        row("summary alone", "details", InsertPlace::Last, "summary", "");
    }
    void reason_isOfThePlace()
    {
        const auto document = html::parse(page);
        QFETCH(QByteArray, beside);
        QFETCH(InsertPlace, place);
        QFETCH(QString, tag);
        QTEST(reasonAgainst(*(*document)->select(beside.toStdString()).front(), place, tag), "reason");
    }

    void drop_ofCommentsAndTextsIsAllowedWhereTheyAreRead_data()
    {
        const test::Rows<QByteArray, QString, QString> row("target", "comment", "text");
        row("paragraph", "p", "", "");
        row("table", "table", "", "Text can't stand in <table>.");
        row("list", "ul", "", "Text can't stand in <ul>.");
        row("head", "head", "", "Text can't stand in <head>.");
        row("script", "script", "A comment can't stand in <script>.", "Text can't stand in <script>.");
        row("image", "img", "A comment can't stand in <img>.", "Text can't stand in <img>.");
    }
    void drop_ofCommentsAndTextsIsAllowedWhereTheyAreRead()
    {
        const auto document = html::parse("<title>T</title><div>x<!--c--><?php y ?></div><p>one<ul><li>2</ul>"
                                          "<table></table><img><script>3</script>");
        QFETCH(QByteArray, target);
        const html::Element* const into = (*document)->select(target.toStdString()).front();
        const html::Node* const text = (*document)->select("div").front()->firstChild();
        QTEST(reasonAgainstDrop(TagRules(), text->next(), into), "comment");
        QTEST(reasonAgainstDrop(TagRules(), text, into), "text");
        const html::Node* const script = (*document)->select("script").front()->firstChild();
        QVERIFY(!reasonAgainstDrop(TagRules(), script, (*document)->select("p").front()).isEmpty());
    }

    /// Law: where no reason is told, a browser reads the page with the new element as it stands in the tree.
    void offers_areReadAsTheyStand()
    {
        const auto document = html::parse(page);
        int count = 0;
        for (html::Element* const node : (*document)->select("*")) {
            for (const InsertPlace place : insertPlaces(*node)) {
                for (const ElementOffer& offer : elementOffers(*node, place)) {
                    if (!offer.reason.isEmpty())
                        continue;
                    const html::Position at = positionAt(*node, place);
                    html::Node& added = html::ParentNode::insertAt(at, sampleElement(offer.tag));
                    const auto again = html::parse((*document)->outerHtml());
                    QVERIFY2(html::sameTree(**document, **again),
                             qPrintable(offer.tag + QStringLiteral(" at ") +
                                        QString::fromStdString(node->tagName())));
                    added.remove();
                    ++count;
                }
            }
        }
        QVERIFY(count > 2000);
    }
};

LUMA_TEST(tst_elementplaces)
#include "tst_elementplaces.moc"
