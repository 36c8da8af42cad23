// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/pagewindow.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/screenshot.h"
#include "web/codecolours.h"

#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

#include <cstdlib>

using namespace luma;

/// Tags and attributes that are edited in the outline of a page's window, by keyboard.
class tst_outlineediting final : public QObject, private luma::test::PageWindow
{
    Q_OBJECT

private:
    [[nodiscard]] QLineEdit* field() const { return the<QLineEdit>("outlineEditor"); }

    /// Types the words one after the other into the parts of the row: "\t" goes on with the next part, "\n" ends.
    void edit(const char* row, const QString& words) const
    {
        click(row);
        QTest::keyClick(outline(), Qt::Key_F2);
        QTRY_VERIFY(field()->hasFocus());
        for (const QChar letter : words) {
            if (letter == u'\t' || letter == u'\n') {
                QTest::keyClick(field(), letter == u'\t' ? Qt::Key_Tab : Qt::Key_Return);
                QTRY_VERIFY(!field()->isReadOnly());
            } else {
                QTest::keyClick(field(), letter.toLatin1());
            }
        }
    }

private slots:
    void cleanup() { close(); }

    void parts_areEditedOneAfterTheOther_data()
    {
        const test::Rows<QString, QByteArray, QString> row("words", "result", "undo");
        row("tag", "SECTION\n", "<section id=\"a\" title=\"x\">one <b>two</b></section><p>three</p>",
            "Change Tag");
        row("nothing", "\t\t\t\t", "<div id=\"a\" title=\"x\">one <b>two</b></div><p>three</p>", "");
        row("attribute", "\t\tlang=en\n", "<div id=\"a\" lang=\"en\">one <b>two</b></div><p>three</p>",
            "Change Attribute");
        row("quotes", "\t\ttitle='say \"x\"'\n",
            "<div id=\"a\" title=\"say &quot;x&quot;\">one <b>two</b></div><p>three</p>", "Change Attribute");
        row("new ones", "\t\t\thidden\tlang = \"d e\"\t\t",
            "<div id=\"a\" title=\"x\" hidden=\"\" lang=\"d e\">one <b>two</b></div><p>three</p>",
            "Add Attribute");
        row("emptied", "\t\b\n", "<div title=\"x\">one <b>two</b></div><p>three</p>", "Remove Attribute");
        row("tag, then attribute", "main\tid=z\n",
            "<main id=\"z\" title=\"x\">one <b>two</b></main><p>three</p>", "Change Attribute");
    }
    void parts_areEditedOneAfterTheOther()
    {
        open("<title>T</title><div id=a title=x>one <b>two</b></div><p>three</p>");
        const QByteArray before = body();
        QFETCH(QString, words);
        edit("<div", words);
        QFETCH(QByteArray, result);
        QTRY_COMPARE(body(), result);
        QVERIFY(!field()->isVisible());
        QVERIFY(outline()->hasFocus());
        QTEST(window->undoStack()->undoText(), "undo");
        QTRY_COMPARE(answer("document.body.innerHTML"), QString::fromUtf8(result));
        for (int i = window->undoStack()->count(); i > 0; --i)
            trigger("undoAction");
        QTRY_COMPARE(body(), before);
    }

    void refusedEdit_staysInTheFieldWithAReason_data()
    {
        const test::Rows<QByteArray, QString, QString> row("row", "words", "reason");
        const QString place = "<%1> can't stand here, or not with these contents.";
        row("name of a tag", "<p> one", "1x\n", "\u201c1x\u201d is not the name of a tag.");
        row("in itself", "<div> in", "section\n", place.arg("section"));
        row("for the head", "<p> one", "style\n", place.arg("style"));
        row("paragraph around a division", "<section>", "p\n", place.arg("p"));
        row("with contents", "<p> one", "br\n", place.arg("br"));
        row("the body", "<body>", "div\n", "A page needs its <body>.");
        row("name of an attribute", "<p> one", "\ta b=c\n",
            "\u201ca b\u201d is not the name of an attribute.");
        row("second of a name", "<p id", "\t\tid=n\n", "<p> has an attribute id already.");
        row("id of another", "<div> in", "\tid=x\n", "Another element has the ID x already.");
    }
    void refusedEdit_staysInTheFieldWithAReason()
    {
        open("<title>T</title><p>one</p><p id=x>two</p><section><div>in</div></section>");
        const QByteArray before = tree();
        QFETCH(QByteArray, row);
        QFETCH(QString, words);
        QFETCH(QString, reason);
        edit(row.constData(), words);
        QTRY_COMPARE(the<QLabel>("noticeText")->text(), reason);
        QVERIFY(field()->isVisible());
        QVERIFY(field()->hasFocus());
        QCOMPARE(tree(), before);
        if (qstrcmp(QTest::currentDataTag(), "id of another") == 0)
            test::saveScreenshots(*window, "outline-editing");
        QTest::keyClick(field(), Qt::Key_Escape);
        QVERIFY(!field()->isVisible());
        QVERIFY(outline()->hasFocus());
        QCOMPARE(tree(), before);
    }

    void nodes_areEditedInRowsOfTheirOwn_data()
    {
        const test::Rows<QByteArray, QString, QByteArray, QString> row("row", "action", "result", "undo");
        const QByteArray page = "<p>one</p>\n<!--c-->\n<p>two</p>";
        row("comment deleted", "<!--c", "deleteTagAction", "<p>one</p>\n\n<p>two</p>", "Delete Comment");
        row("comment moved up", "<!--c", "moveUpAction", "<!--c-->\n<p>one</p>\n<p>two</p>", "Move Up");
        row("comment moved down", "<!--c", "moveDownAction", "<p>one</p>\n<p>two</p>\n<!--c-->", "Move Down");
        row("comment copied", "<!--c", "duplicateAction", "<p>one</p>\n<!--c-->\n<!--c-->\n<p>two</p>",
            "Duplicate");
        row("text deleted", "two", "deleteTagAction", "<p>one</p>\n<!--c-->\n<p></p>", "Delete Text");
        row("text copied", "two", "duplicateAction", "<p>one</p>\n<!--c-->\n<p>twotwo</p>", "Duplicate");
        row("text of the title", "T", "moveUpAction", page, "");
        row("doctype deleted", "<!DOCTYPE", "deleteTagAction", page, "");
        row("doctype moved", "<!DOCTYPE", "moveDownAction", page, "");
        row("element past a comment", "<p>", "moveDownAction", "<!--c-->\n<p>one</p>\n<p>two</p>",
            "Move Down");
    }
    void nodes_areEditedInRowsOfTheirOwn()
    {
        open("<!DOCTYPE html><title>T</title><body><p>one</p>\n<!--c-->\n<p>two</p>");
        the<QAction>("allNodesAction")->trigger();
        const QByteArray before = tree();
        QFETCH(QByteArray, row);
        QFETCH(QString, action);
        QFETCH(QByteArray, result);
        QFETCH(QString, undo);
        click(row.constData());
        QAction* const command = the<QAction>(action.toLatin1().constData());
        QCOMPARE(command->isEnabled(), !undo.isEmpty());
        command->trigger();
        QTRY_COMPARE(body(), result);
        QCOMPARE(window->undoStack()->undoText(), undo);
        QTRY_COMPARE(answer("document.body.innerHTML"), QString::fromUtf8(result));
        if (undo.isEmpty())
            return;
        trigger("undoAction");
        QTRY_COMPARE(tree(), before);
    }

    void nodes_areDragged_data()
    {
        const test::Rows<QByteArray, QByteArray, int, Qt::DropAction, QByteArray, QString> row(
            "row", "target", "place", "action", "result", "undo");
        row("comment", "<!--c", "<ul", 1, Qt::MoveAction,
            "<p>one <b>two</b> three</p><ul><li>4</li><!--c--></ul>", "Move Comment");
        row("copy of a comment", "<!--c", "<p", 0, Qt::CopyAction,
            "<p><!--c-->one <b>two</b> three</p><!--c--><ul><li>4</li></ul>", "Copy Comment");
        row("text", "three", "<p", 0, Qt::MoveAction,
            "<p> threeone <b>two</b></p><!--c--><ul><li>4</li></ul>", "Move Text");
        row("text into another", "three", "<li", 1, Qt::MoveAction,
            "<p>one <b>two</b></p><!--c--><ul><li>4 three</li></ul>", "Move Text");
        row("element behind a text", "<b>", "<p", 3, Qt::MoveAction,
            "<p>one  three<b>two</b></p><!--c--><ul><li>4</li></ul>", "Move <b>");
    }
    void nodes_areDragged()
    {
        open("<!DOCTYPE html><title>T</title><body><p>one <b>two</b> three</p><!--c--><ul><li>4</li></ul>");
        the<QAction>("allNodesAction")->trigger();
        const QByteArray before = tree();
        QFETCH(QByteArray, row);
        QFETCH(QByteArray, target);
        QFETCH(int, place);
        QFETCH(Qt::DropAction, action);
        QAbstractItemModel& model = *outline()->model();
        const std::unique_ptr<QMimeData> record(model.mimeData({this->row(row.constData())}));
        QVERIFY(record);
        const QModelIndex onto = this->row(target.constData());
        QVERIFY(model.canDropMimeData(record.get(), action, place, 0, onto));
        QVERIFY(!model.canDropMimeData(record.get(), action, 0, 0, this->row("<title")));
        QVERIFY(model.dropMimeData(record.get(), action, place, 0, onto));
        QTRY_VERIFY(tree() != before);
        QTEST(body(), "result");
        QTEST(window->undoStack()->undoText(), "undo");
        QTRY_COMPARE(answer("document.body.innerHTML"), QString::fromUtf8(body()));
        trigger("saveAction");
        QVERIFY(file("page.html").find(body().toStdString()) != std::string::npos);
        trigger("undoAction");
        QTRY_COMPARE(tree(), before);
    }

    void refusedPaste_tellsTheReason_data()
    {
        const test::Rows<QByteArray, QByteArray, QString> row("taken", "target", "reason");
        row("by the rules", "<p>", "<html>", "<p> can't stand in <html>.");
        row("fixed", "<body>", "<head>", "<body> can't be moved. Its place in a page is fixed.");
        row("by the browser", "<div>", "<p>", "A browser would put <div> elsewhere.");
        row("text", "two", "<ul>", "Text can't stand in <ul>.");
    }
    void refusedPaste_tellsTheReason()
    {
        open("<!DOCTYPE html><title>T</title><body><p>one</p><div>two</div><ul><li>3</ul>");
        the<QAction>("allNodesAction")->trigger();
        const QByteArray before = tree();
        QFETCH(QByteArray, taken);
        QFETCH(QByteArray, target);
        click(taken.constData());
        trigger("cutAction");
        click(target.constData());
        trigger("pasteAction");
        QFETCH(QString, reason);
        QTRY_COMPARE(the<QLabel>("noticeText")->text(), reason);
        QCOMPARE(tree(), before);
    }

    void texts_areEditedInTheirRow_data()
    {
        const test::Rows<QByteArray, QString, QByteArray, QString> row("row", "words", "result", "undo");
        row("text", "one", "ones & <i>\n", "<p>ones &amp; &lt;i&gt;</p> x\n y<!-- c --><b>z</b>",
            "Change Text");
        row("spaces", "x y", "x w y\n", "<p>one</p> x\n w y<!-- c --><b>z</b>", "Change Text");
        row("unchanged", "x y", "x y\n", "<p>one</p> x\n y<!-- c --><b>z</b>", "");
        row("emptied", "one", "\b\n", "<p></p> x\n y<!-- c --><b>z</b>", "Change Text");
        row("comment", "<!--", "note\n", "<p>one</p> x\n y<!-- note --><b>z</b>", "Change Text");
        row("refused", "<!--", "a --> b\n", "<p>one</p> x\n y<!-- c --><b>z</b>", "");
    }
    void texts_areEditedInTheirRow()
    {
        open("<title>T</title><body><p>one</p> x\n y<!-- c --><b>z</b>");
        the<QAction>("allNodesAction")->trigger();
        const QByteArray before = body();
        QFETCH(QByteArray, row);
        QFETCH(QString, words);
        edit(row.constData(), words);
        QTEST(body(), "result");
        QTEST(window->undoStack()->undoText(), "undo");
        QTRY_COMPARE(answer("document.body.innerHTML"), QString::fromUtf8(body()));
        const bool isRefused = words.contains("-->");
        QCOMPARE(field()->isVisible(), isRefused);
        QCOMPARE(the<QLabel>("noticeText")->isVisible(), isRefused);
        if (window->undoStack()->canUndo()) {
            trigger("undoAction");
            QTRY_COMPARE(body(), before);
        }
    }

    void markup_isEditedInASheet_data()
    {
        const test::Rows<QByteArray, QByteArray, QByteArray, QString> row("row", "wanted", "result",
                                                                          "reason");
        const QByteArray page = "<div id=\"a\">one <b>two</b></div><p id=\"x\">three</p>";
        row("element", "<div", "<div id=b>1 <i>2</i></div>",
            "<div id=\"b\">1 <i>2</i></div><p id=\"x\">three</p>", "");
        row("several", "<b>", "<i>2</i> and <?= 3 ?>",
            "<div id=\"a\">one <i>2</i> and <?= 3 ?></div><p id=\"x\">three</p>", "");
        row("nothing", "<b>", "", "<div id=\"a\">one </div><p id=\"x\">three</p>", "");
        row("text becomes markup", "three", "<em>3</em>!",
            "<div id=\"a\">one <b>two</b></div><p id=\"x\"><em>3</em>!</p>", "");
        row("for the head", "<b>", "<meta name=a>", page,
            "<meta> can't stand here, or not with these contents.");
        row("division in a paragraph", "three", "<div>3</div>", page,
            "<div> can't stand here, or not with these contents.");
        row("id of another", "<b>", "<i><u id=x></u></i>", page, "Another element has the ID x already.");
        row("id twice", "<div", "<div id=q><u id=q></u></div>", page,
            "Another element has the ID q already.");
    }
    void markup_isEditedInASheet()
    {
        open("<title>T</title><body><div id=\"a\">one <b>two</b></div><p id=\"x\">three</p>");
        the<QAction>("allNodesAction")->trigger();
        const QByteArray before = tree();
        QFETCH(QByteArray, row);
        click(row.constData());
        the<QAction>("editMarkupAction")->trigger();
        auto* const sheet = the<QDialog>("markupSheet");
        QTRY_VERIFY(sheet->isVisible());
        auto* const markup = the<QPlainTextEdit>("markupField");
        QVERIFY(markup->toPlainText().startsWith(QString::fromUtf8(row)));
        QFETCH(QByteArray, wanted);
        markup->setPlainText(QString::fromUtf8(wanted));
        QTest::mouseClick(the<QPushButton>("markupButton"), Qt::LeftButton);
        QFETCH(QString, reason);
        if (!reason.isEmpty()) {
            QTRY_COMPARE(the<QLabel>("markupReason")->text(), reason);
            QVERIFY(sheet->isVisible());
            test::saveScreenshots(*sheet, "markup-sheet");
            QCOMPARE(tree(), before);
            return;
        }
        QTRY_VERIFY(!sheet->isVisible());
        QCOMPARE(window->undoStack()->undoText(), "Change Markup");
        trigger("saveAction");
        QFETCH(QByteArray, result);
        QCOMPARE(file("page.html"), "<title>T</title><body>" + result.toStdString());
        trigger("undoAction");
        QTRY_COMPARE(tree(), before);
    }

    void texts_thatNeedLinesAreEditedInTheSheet()
    {
        open("<title>T</title><style>p {\n  color: red }</style><pre>a\n  b</pre>");
        the<QAction>("allNodesAction")->trigger();
        for (const char* const row : {"p { color", "a b"}) {
            click(row);
            QTest::keyClick(outline(), Qt::Key_F2);
            QTRY_VERIFY(the<QPlainTextEdit>("markupField")->hasFocus());
            QVERIFY(the<QPlainTextEdit>("markupField")->toPlainText().contains(u'\n'));
            QTest::keyClick(the<QPlainTextEdit>("markupField"), Qt::Key_Escape);
            QTRY_VERIFY(!the<QDialog>("markupSheet")->isVisible());
        }
    }

    void allNodes_areRememberedAndFound()
    {
        open("<!DOCTYPE html><title>T</title><header class=top><!-- the menu --><?php menu() ?></header>"
             "<p>A paragraph with <b>some bold</b> text, and with more of it than a row can show</p>");
        the<QAction>("allNodesAction")->trigger();
        const QByteArray layout = window->layoutState();
        the<QAction>("allNodesAction")->trigger();
        QVERIFY(!row("<!--").isValid());
        window->restoreLayoutState(layout);
        QVERIFY(row("<!--").isValid());
        QVERIFY(the<QAction>("allNodesAction")->isChecked());
        the<QAction>("findAction")->trigger();
        QTest::keyClicks(the<QLineEdit>("outlineFindField"), "the menu");
        QTRY_COMPARE(outline()->currentIndex(), row("<!--"));
        test::saveScreenshots(*window, "outline-all-nodes");
    }

    void rows_areColoured()
    {
        open(
            "<title>A page</title><header class=top><a href='https://example.org/a/very/long/address/of/a/page.html' "
            "id=home>Home</a></header><p class='lead intro'>Text that is longer than the row has room for</p>"
            "<img src='pictures/2024/holiday/beach/IMG_20240715_103022.jpeg' alt='Beach'><p lang=en>Short</p>");
        click("<p lang");
        test::saveScreenshots(*window, "outline-rows");
        const QImage image = outline()->viewport()->grab(outline()->visualRect(row("<p class"))).toImage();
        for (const QColor& colour : {codecolours::name, codecolours::number, codecolours::string}) {
            bool isThere = false;
            for (int at = 0; at < image.width() * image.height(); ++at) {
                const QColor pixel = image.pixelColor(at % image.width(), at / image.width());
                isThere |= pixel.hslSaturation() > 60 && std::abs(pixel.hslHue() - colour.hslHue()) < 8;
            }
            QVERIFY2(isThere, qPrintable(colour.name()));
        }
    }
};

LUMA_TEST(tst_outlineediting)
#include "tst_outlineediting.moc"
