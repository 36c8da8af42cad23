// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/pagewindow.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/screenshot.h"

#include <QLabel>
#include <QListWidget>
#include <QTest>

using namespace luma;

/// The page check of a page's window.
class tst_checkpanel final : public QObject, private luma::test::PageWindow
{
    Q_OBJECT

private:
    [[nodiscard]] QListWidget* list() const { return the<QListWidget>("checkList"); }
    [[nodiscard]] QString result() const { return the<QLabel>("checkResult")->text(); }
    [[nodiscard]] QString rows() const
    {
        QStringList texts;
        for (int row = 0; row < list()->count(); ++row)
            texts.append(list()->item(row)->text().simplified());
        return texts.join(u'\n');
    }

private slots:
    void cleanup() { close(); }

    void findings_selectTheirElementsAndFollowEdits()
    {
        open("<!DOCTYPE html><html lang=en><title>T</title><h1>One</h1><h3 id=a>Two</h3><p id=a>"
             "<img src=no.png></p><p style='color: #ccc'>pale</p>");
        trigger("pageCheckAction");
        QTRY_COMPARE(result(), QStringLiteral("Problems: 5"));
        QCOMPARE(rows(), QStringLiteral("Heading levels are left out: h1 \u2192 h3 <h3 id=\"a\"> Two\n"
                                        "The id \"a\" is used more than once <p id=\"a\">\n"
                                        "Image without alternative text <img src=\"no.png\">\n"
                                        "Missing link: no.png <img src=\"no.png\">\n"
                                        "Contrast of the text is 1.60:1, 4.50:1 is needed "
                                        "<p style=\"color: #ccc\"> pale"));
        QVERIFY(list()->hasFocus());
        QTest::keyClick(list(), Qt::Key_Down);
        QTRY_COMPARE(outline()->currentIndex().data().toString(), QStringLiteral("<h3 id=\"a\"> Two"));
        QTRY_COMPARE(answer("getSelection().toString()"), "Two");
        QVERIFY(list()->hasFocus());
        test::saveScreenshots(*window, QStringLiteral("page-check"));

        QTest::keyClick(list(), Qt::Key_End);
        put("no.png", "");
        trigger("deleteTagAction"); // the pale paragraph
        QTRY_COMPARE(result(), QStringLiteral("Problems: 3"));
        QVERIFY(!rows().contains(QStringLiteral("Missing")));
        trigger("undoAction");
        QTRY_COMPARE(result(), QStringLiteral("Problems: 4"));
        QTest::keyClick(list(), Qt::Key_Escape);
        QVERIFY(!list()->isVisible());
        QVERIFY(!the<QAction>("pageCheckAction")->isChecked());
        QTRY_VERIFY(rendering().webView()->focusProxy()->hasFocus());
    }

    void contrast_isJudgedWhereItCanBeTold_data()
    {
        const test::Rows<QByteArray, int> row("body", "findings");
        row("black on white", "<p>x</p>", 0);
        row("just enough", "<p style='color: #767676'>x</p>", 0);
        row("just too little", "<p style='color: #777'>x</p>", 1);
        row("large text needs less", "<p style='color: #777; font-size: 24px'>x</p>", 0);
        row("bold text counts as large sooner", "<p style='color: #777; font: bold 19px serif'>x</p>", 0);
        row("background of a parent",
            "<div style='background: #000'><p style='color: #555'><b>x</b></p></div>", 1);
        row("translucent",
            "<div style='background: #000'><p style='background: #fff8'>x</p></div>"
            "<p style='color: #0004'>x</p>",
            1);
        row("image", "<div style='background: url(a.png)'><p style='color: #ccc'>x</p></div>", 0);
        row("out of place", "<p style='color: #ccc; position: absolute'>x</p>", 0);
        row("not shown", "<p style='color: #ccc; display: none'>x</p>", 0);
        row("disabled", "<button disabled style='color: #ccc'>x</button>", 0);
        row("style sheet of the site", "<link rel=stylesheet href=a.css><p class=pale>x</p>", 1);
    }
    void contrast_isJudgedWhereItCanBeTold()
    {
        QFETCH(QByteArray, body);
        put("a.css", ".pale { color: #ccc }");
        put("a.png", "");
        open("<!DOCTYPE html><html lang=en><title>T</title>" + body.toStdString());
        trigger("pageCheckAction");
        QFETCH(int, findings);
        QTRY_COMPARE(result(),
                     findings > 0 ? QStringLiteral("Problems: 1") : QStringLiteral("No problems found"));
        QCOMPARE(rows().count(QStringLiteral("Contrast")), findings);
    }

    void windowMayCloseInTheMiddle()
    {
        std::string page = "<!DOCTYPE html>";
        for (int link = 0; link < 5000; ++link)
            page += "<p><a href=no" + std::to_string(link) + ">x</a></p>";
        open(page);
        trigger("pageCheckAction");
        QTRY_VERIFY(result().startsWith(QStringLiteral("Problems: 5,00")));
        QCOMPARE(list()->count(), 1000);
        setTitle("T");
        QTRY_COMPARE(result(), QStringLiteral("Checking..."));
        delete window;
    }
};

LUMA_TEST(tst_checkpanel)
#include "tst_checkpanel.moc"
