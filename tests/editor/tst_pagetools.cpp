// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/pagewindow.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/screenshot.h"
#include "web/boxoverlay.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

#include <cmath>

using namespace luma;

/// What helps to find and make elements in a page's window: the mouse over them, the headings, and the sheet of all elements.
class tst_pagetools final : public QObject, private luma::test::PageWindow
{
    Q_OBJECT

private:
    static void moveMouse(QWidget* widget, const QPoint& to, Qt::KeyboardModifiers keys = {})
    {
        QMouseEvent move(QEvent::MouseMove, to, widget->mapToGlobal(to), Qt::NoButton, Qt::NoButton, keys);
        QApplication::sendEvent(widget, &move);
    }
    [[nodiscard]] BoxOverlay* overlay() const { return the<BoxOverlay>("boxOverlay"); }
    [[nodiscard]] bool isMarked(const char* text) const
    {
        return row(text).data(Qt::BackgroundRole).isValid();
    }
    [[nodiscard]] QString headings() const
    {
        QStringList texts;
        const auto* const list = the<QListWidget>("headingsList");
        for (int i = 0; i < list->count(); ++i)
            texts.append(list->item(i)->text() + (list->item(i)->font().bold() ? "!" : ""));
        return texts.join(u'|');
    }

    [[nodiscard]] QString replaceResult() const { return the<QLabel>("replaceResult")->text(); }

    const std::string box =
        "<!DOCTYPE html><title>T</title><style>body { margin: 0 } #box { width: 200px; height: 40px; "
        "margin: 10px; border: 4px solid #333; padding: 6px }</style>";

private slots:
    void cleanup() { close(); }

    void rowUnderTheMouse_isMarkedInThePage()
    {
        open(box + "<div id=box class=lead>text</div><p hidden>none</p>");
        const QByteArray before = tree();
        QWidget* const rows = outline()->viewport();
        moveMouse(rows, outline()->visualRect(row("<div")).center());
        QTRY_VERIFY(overlay()->isVisible());
        QCOMPARE(overlay()->borderBox(), QRectF(10, 10, 220, 60));
        QCOMPARE(overlay()->label(), QStringLiteral("div#box.lead  220 \u00d7 60"));
        test::saveScreenshots(*window, "hover");
        QCOMPARE(answer("document.documentElement.outerHTML").toUtf8(), tree().mid(tree().indexOf("<html")));

        the<QAction>("zoomInAction")->trigger();
        moveMouse(rows, outline()->visualRect(row("<body")).center());
        moveMouse(rows, outline()->visualRect(row("<div")).center());
        QTRY_VERIFY(std::abs(overlay()->borderBox().width() - 242) < 3); // The engine rounds borders.
        moveMouse(rows, outline()->visualRect(row("<p hidden")).center());
        QTRY_VERIFY(!overlay()->isVisible());
        moveMouse(rows, outline()->visualRect(row("<div")).center());
        QTRY_VERIFY(overlay()->isVisible());
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(rows, &leave);
        QTRY_VERIFY(!overlay()->isVisible());
        QCOMPARE(tree(), before);
        QVERIFY(!window->undoStack()->canUndo());
    }

    void elementUnderTheMouse_isMarkedInTheOutline()
    {
        open(box + "<div id=box>text</div>");
        const QString move = "document.querySelector('#box').dispatchEvent(new MouseEvent('mousemove', "
                             "{ bubbles: true, ctrlKey: %1 }))";
        (void)answer(move.arg("true"));
        QTRY_VERIFY(isMarked("<div"));
        QTRY_VERIFY(overlay()->isVisible());
        QVERIFY(outline()->currentIndex() != row("<div"));
        (void)answer(move.arg("false"));
        QTRY_VERIFY(!isMarked("<div"));
        QTRY_VERIFY(!overlay()->isVisible());
    }

    void headings_areListedAndFollowEdits()
    {
        open("<title>T</title><h1>One</h1><p>x</p><h3>Two <i>and</i> more</h3><h2 hidden>No</h2><h2></h2>");
        trigger("headingsAction");
        const QString all = "h1  One|      h3  Two and more  (after h1)!|   h2  (no text)";
        QTRY_COMPARE(headings(), all);
        auto* const list = the<QListWidget>("headingsList");
        QTRY_VERIFY(list->hasFocus());
        QTest::keyClick(list, Qt::Key_Down);
        QTRY_COMPARE(outline()->currentIndex(), row("<h3"));
        QTRY_COMPARE(answer("getSelection().toString()"), "Two and more");
        test::saveScreenshots(*window, "headings");
        trigger("deleteTagAction");
        QTRY_COMPARE(headings(), QStringLiteral("h1  One|   h2  (no text)"));
        trigger("undoAction");
        QTRY_COMPARE(headings(), all);
        click("<p>");
        QTRY_COMPARE(list->currentRow(), 0);
        list->setFocus();
        QTest::keyClick(list, Qt::Key_Escape);
        QVERIFY(!list->isVisible());
        QVERIFY(!the<QAction>("headingsAction")->isChecked());
    }

    void anyElement_isInsertedFromTheSheet_data()
    {
        const test::Rows<QByteArray, int, QString, QByteArray> row("row", "place", "letters", "result");
        row("body", "<body", 0, "figc", "");
        row("figure", "<body", 0, "figu", "<figure><figcaption>Lorem</figcaption></figure><p>x</p>");
        row("paragraph", "<p", 0, "em", "<p><em>Lorem</em>x</p>");
        row("at the end", "<p", 1, "em", "<p>x<em>Lorem</em></p>");
        row("before", "<p", 2, "hr", "<hr><p>x</p>");
        row("behind", "<p", 3, "hr", "<p>x</p><hr>");
        row("behind a text", "x", 0, "em", "<p>x<em>Lorem</em></p>");
        row("refused", "<p", 1, "table", "");
        row("comment", "<p", 0, "com", "<p><!-- Lorem -->x</p>");
        row("comment by its markup", "<body", 1, "<!", "<p>x</p><!-- Lorem -->");
        row("comment at the caret", "", 0, "com", "<p>x<!-- Lorem --></p>");
        row("element at the caret", "", 0, "em", "<p>x<em>Lorem</em></p>");
        row("refused at the caret", "", 0, "div", "");
    }
    void anyElement_isInsertedFromTheSheet()
    {
        open("<title>T</title><p>x</p>");
        const QByteArray before = body();
        QFETCH(QByteArray, row);
        if (!row.isEmpty())
            the<QAction>("allNodesAction")->trigger();
        QFETCH(int, place);
        QFETCH(QString, letters);
        QFETCH(QByteArray, result);
        if (row.isEmpty())
            setCaretBehind("x");
        else
            click(row.constData());
        QTRY_COMPARE(outline()->currentIndex(), this->row(row.isEmpty() ? "<p" : row.constData()));
        the<QAction>("insertMoreAction")->trigger();
        auto* const sheet = the<QDialog>("elementSheet");
        QTRY_VERIFY(the<QLineEdit>("elementFilter")->hasFocus());
        for (int i = 0; i < place; ++i)
            QTest::keyClick(the<QComboBox>("elementPlace"), Qt::Key_Down);
        QTest::keyClicks(the<QLineEdit>("elementFilter"), letters);
        QCOMPARE(the<QPushButton>("elementButton")->isEnabled(), !result.isEmpty());
        QCOMPARE(the<QLabel>("elementReason")->text().isEmpty(), !result.isEmpty());
        if (result.isEmpty())
            test::saveScreenshots(*sheet, "element-sheet");
        QTest::keyClick(the<QLineEdit>("elementFilter"), result.isEmpty() ? Qt::Key_Escape : Qt::Key_Return);
        QTRY_VERIFY(!sheet->isVisible());
        if (result.isEmpty()) {
            QCOMPARE(body(), before);
            return;
        }
        QTRY_COMPARE(body(), result);
        QCOMPARE(the<QAction>("allNodesAction")->isChecked(), !row.isEmpty() || result.contains("<!"));
        QCOMPARE(window->undoStack()->undoText(),
                 result.contains("<!")
                     ? "Insert Comment"
                     : "Insert <" + the<QListWidget>("elementList")->currentItem()->text() + ">");
        QTRY_COMPARE(answer("document.body.innerHTML"), QString::fromUtf8(result));
        trigger("undoAction");
        QTRY_COMPARE(body(), before);
    }

    void tableCommands_areInTheContextMenuOfTables_data()
    {
        const test::Rows<bool> row("isInTable");
        row("one", false);
        row("two", true);
    }
    void text_isFoundAndReplaced()
    {
        open("<title>one</title><body class=one><p>One o<b>n</b>e</p>\n<script>one</script><p>none</p>");
        const QByteArray before = tree();
        trigger("replaceAction");
        QTRY_VERIFY(the<QLineEdit>("replaceFindField")->hasFocus());
        QTest::keyClicks(the<QLineEdit>("replaceFindField"), "one");
        QTRY_COMPARE(replaceResult(), "1 of 3");
        QTRY_COMPARE(answer("getSelection().toString()"), "One");
        QTest::keyClick(the<QLineEdit>("replaceFindField"), Qt::Key_Return);
        QTRY_COMPARE(replaceResult(), "2 of 3");
        QTRY_COMPARE(answer("getSelection().toString()"), "one");
        QTRY_COMPARE(outline()->currentIndex(), row("<p> One"));
        test::saveScreenshots(*window, "replace");
        QTest::keyClick(the<QLineEdit>("replaceFindField"), Qt::Key_Return, Qt::ShiftModifier);
        QTRY_COMPARE(replaceResult(), "1 of 3");
        trigger("findPreviousAction");
        QTRY_COMPARE(replaceResult(), "3 of 3");
        trigger("findNextAction");
        QTRY_COMPARE(replaceResult(), "1 of 3");

        QTest::keyClick(the<QLineEdit>("replaceFindField"), Qt::Key_Tab);
        QTRY_VERIFY(the<QLineEdit>("replacementField")->hasFocus());
        QTest::keyClicks(the<QLineEdit>("replacementField"), "two");
        QTest::keyClick(the<QLineEdit>("replacementField"), Qt::Key_Return);
        QTRY_VERIFY(body().startsWith("<p>two o<b>n</b>e</p>"));
        QCOMPARE(window->undoStack()->undoText(), "Replace");
        QTRY_COMPARE(replaceResult(), "1 of 2");
        QTRY_COMPARE(answer("getSelection().toString()"), "one");
        QTest::mouseClick(the<QPushButton>("replaceAllButton"), Qt::LeftButton);
        QTRY_COMPARE(body(), QByteArray("<p>two two<b></b></p>\n<script>one</script><p>ntwo</p>"));
        QCOMPARE(window->undoStack()->undoText(), "Replace All");
        QTRY_COMPARE(answer("document.body.innerHTML").toUtf8(), body());
        QTRY_COMPARE(replaceResult(), "Not found");
        QVERIFY(!the<QPushButton>("replaceAllButton")->isEnabled());
        trigger("undoAction");
        trigger("undoAction");
        QTRY_COMPARE(tree(), before);
        QTest::keyClick(the<QLineEdit>("replaceFindField"), Qt::Key_Escape);
        QVERIFY(!the<QWidget>("replaceBar")->isVisible());
    }

    // What is not replaced keeps its bytes.
    void source_isFoundAndReplaced()
    {
        const std::string page = "<TITLE>T</title>\r\n<P Class='a'>one\r\n<P class=b>two <?= 'b' ?>\r\n";
        open(page);
        trigger("replaceAction");
        the<QToolButton>("replaceSourceButton")->click();
        the<QToolButton>("replaceExpressionButton")->click();
        QTest::keyClicks(the<QLineEdit>("replaceFindField"), "class='?(\\w)'?");
        QTRY_COMPARE(replaceResult(), "1 of 2");
        QTRY_COMPARE(outline()->currentIndex(), row("<p class=\"a\""));
        trigger("findNextAction");
        QTRY_COMPARE(outline()->currentIndex(), row("<p class=\"b\""));
        QTest::keyClicks(the<QLineEdit>("replacementField"), "id=$1");
        QTest::mouseClick(the<QPushButton>("replaceAllButton"), Qt::LeftButton);
        QTRY_COMPARE(window->undoStack()->undoText(), "Replace All");
        trigger("saveAction");
        QCOMPARE(file("page.html"), "<TITLE>T</title>\r\n<P id=a>one\r\n<P id=b>two <?= 'b' ?>\r\n");
        trigger("undoAction");
        trigger("saveAction");
        QCOMPARE(file("page.html"), page);
        the<QLineEdit>("replaceFindField")->setText("(a");
        QTRY_VERIFY(replaceResult().startsWith("Not a regular expression"));
    }

    // Lines of a length that makes the first expression slow without its being given up at one place.
    void slowExpressions_leaveTheWindowAlive()
    {
        std::string page = "<title>T</title><p>" + std::string(40, 'a') + "!</p><pre>";
        for (int i = 0; i < 60; ++i)
            page += std::string(450, 'b') + "\n";
        open(page + "one</pre>");
        trigger("replaceAction");
        the<QToolButton>("replaceSourceButton")->click();
        the<QToolButton>("replaceExpressionButton")->click();
        auto* const field = the<QLineEdit>("replaceFindField");
        field->setText("(b|c)*(b|d)*[=%]");
        QTRY_COMPARE(replaceResult(), QStringLiteral("Searching…"));
        field->setText("one");
        QTest::keyClick(field, Qt::Key_Return);
        QTRY_COMPARE(replaceResult(), "1 of 1");
        field->setText("(a+)+$");
        QTRY_VERIFY(replaceResult().startsWith("The expression takes too long"));
    }

    void tableCommands_areInTheContextMenuOfTables()
    {
        open("<title>T</title><p>one</p><table><tr><td>two</table>");
        QFETCH(bool, isInTable);
        setCaretBehind(QTest::currentDataTag());
        QTRY_COMPARE(the<QAction>("rowBelowAction")->isEnabled(), isInTable);
        const QString top = answer("document.querySelector('p, td').getBoundingClientRect().top + 8");
        const QString below = answer("document.querySelector('td').getBoundingClientRect().top + 8");
        QTest::mouseClick(rendering().webView()->focusProxy(), Qt::RightButton, {},
                          QPoint(16, qRound((isInTable ? below : top).toDouble())));
        QTRY_VERIFY(the<QMenu>("webViewMenu"));
        const QAction* const table = the<QMenu>("tableMenu")->menuAction();
        QCOMPARE(the<QMenu>("webViewMenu")->actions().contains(table), isInTable);
    }
};

LUMA_TEST(tst_pagetools)
#include "tst_pagetools.moc"
