// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/document.h"
#include "html/element.h"
#include "html/parse.h"
#include "page/elementplaces.h"
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
    }
    void reason_isTold()
    {
        const auto document = html::parse(page);
        QFETCH(QByteArray, parent);
        QFETCH(QString, tag);
        const auto found = (*document)->select(parent.toStdString());
        QVERIFY(!found.empty());
        QTEST(reasonAgainst(*found.front(), tag), "reason");
    }

    /// Law: where no reason is told, a browser reads the page with the new element as it stands in the tree.
    void offers_areReadAsTheyStand()
    {
        const auto document = html::parse(page);
        int count = 0;
        for (html::Element* const parent : (*document)->select("*")) {
            for (const ElementOffer& offer : elementOffers(*parent)) {
                if (!offer.reason.isEmpty())
                    continue;
                html::Node& added = parent->insert(sampleElement(offer.tag), parent->firstChild());
                const auto again = html::parse((*document)->outerHtml());
                QVERIFY2(html::sameTree(**document, **again),
                         qPrintable(offer.tag + QStringLiteral(" in ") +
                                    QString::fromStdString(parent->tagName())));
                added.remove();
                ++count;
            }
        }
        QVERIFY(count > 500);
    }
};

LUMA_TEST(tst_elementplaces)
#include "tst_elementplaces.moc"
