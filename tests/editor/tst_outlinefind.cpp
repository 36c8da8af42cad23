// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/pagewindow.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/screenshot.h"

#include <QLabel>
#include <QLineEdit>
#include <QTest>

using namespace luma;

/// Finding elements in the outline of a page's window, by keyboard.
class tst_outlinefind final : public QObject, private luma::test::PageWindow
{
    Q_OBJECT

private:
    void find(const char* text) const
    {
        trigger("findAction");
        QTRY_VERIFY(the<QLineEdit>("outlineFindField")->hasFocus());
        QTest::keyClick(field(), Qt::Key_Delete);
        QTest::keyClicks(field(), QString::fromUtf8(text));
    }
    [[nodiscard]] QLineEdit* field() const { return the<QLineEdit>("outlineFindField"); }
    [[nodiscard]] QString result() const { return the<QLabel>("outlineFindResult")->text(); }
    [[nodiscard]] QString selected() const { return outline()->currentIndex().data().toString(); }

private slots:
    void cleanup() { close(); }

    void elements_areFoundByTextSelectorAndXPath_data()
    {
        const test::Rows<QByteArray, QString, QString> row("text", "result", "selected");
        row("text in any letter case", "WELCOME", "1 of 1", "<h1> Welcome");
        row("attribute", "id=\"x", "1 of 1", "<p id=\"x\", class=\"lead\"> one");
        row("selector", "p:not([id])", "1 of 1", "<p> two");
        row("selector and text", "h1", "1 of 2", "<h1> Welcome");
        row("path", "//p[2]", "1 of 1", "<p> two");
        row("path to an attribute", "//@class", "1 of 1", "<p id=\"x\", class=\"lead\"> one");
        row("number, not elements", "count(//p)", "Not found", "<body>");
        row("behind a template", "section > a", "1 of 1", "<a href=\"#h1\"> three");
        row("in a template", "hidden", "1 of 1", "<i> hidden");
        row("quotes", "'\\\"", "Not found", "<body>");
    }
    void elements_areFoundByTextSelectorAndXPath()
    {
        QFETCH(QByteArray, text);
        open("<title>T</title><h1>Welcome</h1><p id=x class=lead>one</p><p>two</p>"
             "<template><p><i>hidden</i></p></template><section><a href='#h1'>three</a></section>");
        QTRY_VERIFY(rendering().isFollowing());
        click("<body>");
        find(text);
        QFETCH(QString, result);
        QTRY_COMPARE(this->result(), result);
        QTEST(selected(), "selected");
    }

    void matches_areWalkedThroughByKeyboard()
    {
        open("<title>T</title><h2>One</h2><p>text</p><h2>Two</h2><p>text</p><h2>Three</h2>");
        QTRY_VERIFY(rendering().isFollowing());
        click("<h2> Two");
        find("H2");
        QTRY_COMPARE(result(), "2 of 3");
        QTRY_COMPARE(answer("getSelection().toString()"), "Two");
        test::saveScreenshots(*window, "outline-find");
        QTest::keyClick(field(), Qt::Key_Return);
        QTRY_COMPARE(selected(), "<h2> Three");
        QTest::keyClick(field(), Qt::Key_Return);
        QTRY_COMPARE(selected(), "<h2> One");
        QTest::keyClick(field(), Qt::Key_Return, Qt::ShiftModifier);
        QTRY_COMPARE(selected(), "<h2> Three");
        QTRY_COMPARE(result(), "3 of 3");
        trigger("deleteTagAction");
        QTRY_COMPARE(result(), "2 found");
        QTest::keyClick(field(), Qt::Key_Escape);
        QVERIFY(!field()->isVisible());
        QVERIFY(outline()->hasFocus());
        trigger("undoAction");
        click("<h2> Two");
        trigger("findNextAction");
        QTRY_COMPARE(selected(), "<h2> Three");
        trigger("findPreviousAction");
        QTRY_COMPARE(selected(), "<h2> Two");
    }
};

LUMA_TEST(tst_outlinefind)
#include "tst_outlinefind.moc"
