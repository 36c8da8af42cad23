// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/pagewindow.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/screenshot.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QUndoStack>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>

using namespace luma;

/// Editing in the rendering of a page's window: what reaches the tree, under which name, and what is never
/// lost.
class tst_pageediting final : public QObject, private luma::test::PageWindow
{
    Q_OBJECT

private:
    QWidget* keys() const { return rendering().webView()->focusProxy(); }
    /// The box's entry and the pressed buttons of the bar.
    QString shownFormats() const
    {
        QStringList shown = {the<QComboBox>("blockFormatBox")->currentText()};
        for (const char* action :
             {"boldAction", "italicAction", "underlineAction", "Unordered List", "Ordered List"}) {
            if (the<QAction>(action)->isChecked())
                shown.append(the<QAction>(action)->text());
        }
        shown.removeAll(QString());
        return shown.join(QStringLiteral(", "));
    }
    QString undoText() const { return the<QAction>("undoAction")->text(); }
    /// Typing may be several steps on a slow machine.
    void undoAll() const
    {
        while (window->undoStack()->canUndo())
            trigger("undoAction");
    }
    /// As a pane or another program would drop it on the first letters of the page.
    void drop(const QList<QUrl>& files) const
    {
        QMimeData data;
        data.setUrls(files);
        MyWebView* const view = rendering().webView();
        QDragEnterEvent enter(QPoint(20, 30), Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(view, &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent event(QPointF(20, 30), Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(view, &event);
        QVERIFY(event.isAccepted());
    }

private slots:
    void cleanup() { close(); }

    void commandKeys_areStepsOfTheirName_data()
    {
        const test::Rows<Qt::Key, QString, QByteArray> row("key", "name", "tag");
        row("bold", Qt::Key_B, "Bold", "b");
        row("italic", Qt::Key_I, "Italic", "i");
        row("underline", Qt::Key_U, "Underline", "u");
    }
    void commandKeys_areStepsOfTheirName()
    {
        QFETCH(Qt::Key, key);
        QFETCH(QString, name);
        QFETCH(QByteArray, tag);
        open("<p>one two</p>");
        setCaretBehind("two");
        type("s");
        rendering().catchUp();
        select("one");
        QTest::keyClick(keys(), key, Qt::ControlModifier);
        QTRY_COMPARE(body(), "<p><" + tag + ">one</" + tag + "> twos</p>");
        QCOMPARE(undoText(), "&Undo " + name);
        trigger("undoAction");
        QTRY_COMPARE(undoText(), "&Undo Typing");
        QTRY_COMPARE(body(), QByteArray("<p>one twos</p>"));
        trigger("undoAction");
        QTRY_COMPARE(body(), QByteArray("<p>one two</p>"));
        QTRY_COMPARE(undoText(), "&Undo");
    }

    // Every item of both menus does what it says, as a step of that name.
    void menuItems_areStepsOfTheirName_data()
    {
        const test::Rows<QByteArray, QByteArray> row("before", "after");
        const char* const plain = "<p>word</p>";
        row("Bold", plain, "<p><b>word</b></p>");
        row("Italic", plain, "<p><i>word</i></p>");
        row("Underline", plain, "<p><u>word</u></p>");
        row("Strike Through", plain, "<p><s>word</s></p>");
        row("Superscript", plain, "<p><sup>word</sup></p>");
        row("Subscript", plain, "<p><sub>word</sub></p>");
        row("Code", plain, "<p><code>word</code></p>");
        row("Paragraph", "<h1>word</h1>", "<p>word</p>");
        row("Heading 1", plain, "<h1>word</h1>");
        row("Heading 6", plain, "<h6>word</h6>");
        row("Block Quote", plain, "<blockquote><p>word</p></blockquote>");
        row("Preformatted", plain, "<pre>word</pre>");
        row("Ordered List", plain, "<ol><li>word</li></ol>");
        row("Unordered List", plain, "<ul><li>word</li></ul>");
        row("Indent", plain, "<blockquote><p>word</p></blockquote>");
        row("Outdent", "<ul><li>word</li></ul>", "<p>word</p>");
        row("Remove Format", "<p><b><i>word</i></b></p>", "<p>word</p>");
        row("Justify Left", "<p align=\"right\">word</p>", "<p>word</p>");
        row("Justify Center", plain, "<p style=\"text-align: center;\">word</p>");
        row("Justify Right", plain, "<p style=\"text-align: right;\">word</p>");
        row("Justify Full", plain, "<p style=\"text-align: justify;\">word</p>");
        row("Remove Justification", "<p style=\"text-align: right\">word</p>", "<p>word</p>");
        row("Remove Link", "<p><a href=\"x.html\">word</a></p>", "<p>word</p>");
    }
    void menuItems_areStepsOfTheirName()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        open(before.toStdString());
        select("word");
        const bool isOfWindow = QTest::currentDataTag() == "Remove Link"_qba;
        the<QAction>(isOfWindow ? "removeLinkAction" : QTest::currentDataTag())->trigger();
        QTRY_COMPARE(body(), after);
        QCOMPARE(undoText(), "&Undo " + QLatin1String(QTest::currentDataTag()));
        trigger("undoAction");
        QTRY_COMPARE(body(), before);
    }

    void formatBar_showsFormatsOfTheSelection_data()
    {
        const test::Rows<QByteArray, QString> row("body", "formats");
        row("paragraph", "<p>word</p>", "Paragraph");
        row("in a heading", "<h2><b>word</b></h2>", "Heading 2, Bold");
        row("in a list", "<ul><li><i><u>word</u></i></li></ul>", "Italic, Underline, Unordered List");
        row("partly", "<ol><li><p><b>wo</b></p></li><li><p><b>r</b>d</p></li></ol>",
            "Paragraph, Ordered List");
        row("different blocks", "<h1>wo</h1><p>rd</p>", "");
        row("many", QByteArray("<h3>word</h3>").repeated(3000), "Heading 3");
    }
    void formatBar_showsFormatsOfTheSelection()
    {
        QFETCH(QByteArray, body);
        QFETCH(QString, formats);
        open("<p><s>none</s></p>" + body.toStdString());
        select("none");
        QTRY_COMPARE(shownFormats(), QStringLiteral("Paragraph"));
        (void)answer(
            "{ const range = document.createRange();"
            "  range.setStartBefore(document.body.children[1]); range.setEndAfter(document.body.lastChild);"
            "  getSelection().removeAllRanges(); getSelection().addRange(range); }");
        QTRY_COMPARE(shownFormats(), formats);
    }

    void formatBar_followsEdits()
    {
        open("<p style=\"text-align: right\">word</p>");
        trigger("boldAction"); // does nothing without a selection
        QTRY_VERIFY(!the<QAction>("boldAction")->isChecked());
        setCaretBehind("word");
        QTRY_COMPARE(shownFormats(), QStringLiteral("Paragraph"));
        QTRY_VERIFY(the<QAction>("Justify Right")->isChecked());
        trigger("boldAction"); // for what is typed next
        QTRY_COMPARE(shownFormats(), QStringLiteral("Paragraph, Bold"));
        type("s");
        QTRY_VERIFY(body().endsWith("<b>s</b></p>"));
        QTRY_COMPARE(shownFormats(), QStringLiteral("Paragraph, Bold"));
        auto* const blocks = the<QComboBox>("blockFormatBox");
        emit blocks->activated(blocks->findText("Heading 3"));
        QTRY_COMPARE(shownFormats(), QStringLiteral("Heading 3, Bold"));
        QTRY_COMPARE(undoText(), QStringLiteral("&Undo Heading 3"));
        trigger("undoAction");
        QTRY_COMPARE(blocks->currentText(), QStringLiteral("Paragraph"));
        QVERIFY(test::screenshot(*window, "format-bar"));
    }

    void keysAndTheClipboard_areStepsOfTheirName()
    {
        open("<p>one two</p>");
        const std::pair<Qt::Key, const char*> steps[] = {{Qt::Key_X, "Cut"},
                                                         {Qt::Key_V, "Paste"},
                                                         {Qt::Key_Return, "Enter"},
                                                         {Qt::Key_Backspace, "Delete"}};
        select("two");
        for (const auto& [key, name] : steps) {
            QTest::keyClick(keys(), key, key < Qt::Key_Escape ? Qt::ControlModifier : Qt::NoModifier);
            QTRY_COMPARE(undoText(), QStringLiteral("&Undo ") + name);
        }
        undoAll();
        QTRY_COMPARE(body(), QByteArray("<p>one two</p>"));
    }

    // The engine has commands of its own for some of them.
    void keysOfTheWindow_reachTheirCommands()
    {
        open("<p>one two</p>");
        select("two");
        const auto press = [this](Qt::Key key) { QTest::keyClick(keys(), key, Qt::ControlModifier); };
        type("2");
        QTRY_COMPARE(body(), QByteArray("<p>one 2</p>"));
        press(Qt::Key_Z);
        QTRY_COMPARE(body(), QByteArray("<p>one two</p>"));
        press(Qt::Key_Y);
        QTRY_COMPARE(body(), QByteArray("<p>one 2</p>"));
        press(Qt::Key_S);
        QTRY_COMPARE(file("page.html"), std::string("<p>one 2</p>"));
        auto* const quit = the<QAction>("quitAction");
        quit->disconnect();
        QSignalSpy quits(quit, &QAction::triggered);
        press(Qt::Key_Q);
        QTRY_COMPARE(quits.count(), 1);
        press(Qt::Key_K);
        QTRY_VERIFY(the<QWidget>("linkSheet"));
        QTRY_VERIFY(the<QWidget>("linkSheet")->isVisible());
        QCOMPARE(body(), QByteArray("<p>one 2</p>"));
    }

    // Forward from the last cell there is another row, see tst_tables.
    void backTab_movesBetweenCellsAndLeavesTheFirst()
    {
        open("<table><tbody><tr><td>a</td><td>b</td></tr></tbody></table>");
        setCaretBehind("b");
        QTRY_COMPARE(the<QWidget>("elementPath")->property("text").toString().right(2), "td");
        QTest::keyClick(keys(), Qt::Key_Backtab, Qt::ShiftModifier);
        type("x");
        QTRY_COMPARE(body(), QByteArray("<table><tbody><tr><td>x</td><td>b</td></tr></tbody></table>"));
        QTest::keyClick(keys(), Qt::Key_Backtab, Qt::ShiftModifier);
        QTRY_VERIFY(!keys()->hasFocus());
    }

    void scriptThatNeverEnds_isStopped()
    {
        open("<p>one</p>");
        const qint64 process = page().renderProcessPid();
        trigger("scriptConsoleAction");
        the<QPlainTextEdit>("jsSourceField")->setPlainText("for (;;);");
        the<QAbstractButton>("runJSButton")->click();
        QTRY_VERIFY(the<QPlainTextEdit>("jsResultField")->toPlainText().contains("was stopped"));
        QTRY_VERIFY(page().renderProcessPid() != process);
        waitUntilShown();
        the<QWidget>("jsResultField")->window()->close();
        window->activateWindow();
        setCaretBehind("one");
        type("x");
        QTRY_COMPARE(body(), QByteArray("<p>onex</p>"));
    }

    void droppedFiles_becomeImagesAndLinks()
    {
        put("images/a b.png", "");
        put("other.html", "");
        open("<body style=\"margin: 0; font-size: 60px\"><p style=\"margin: 0\">one</p>");
        drop({QUrl::fromLocalFile(QString::fromStdString(at("images/a b.png").native()))});
        QTRY_VERIFY(body().contains("<img src=\"images/a%20b.png\" alt=\"\">"));
        QCOMPARE(undoText(), "&Undo Drop");
        trigger("undoAction");
        QTRY_COMPARE(answer("document.images.length + document.body.innerText.trim()"), "0one");
        drop({QUrl::fromLocalFile(QString::fromStdString(at("other.html").native()))});
        QTRY_VERIFY(body().contains("<a href=\"other.html\">other.html</a>"));
        QCOMPARE(page().url().fileName(), "page.html");
    }

    void mouse_changesNothingButTheSelection_data()
    {
        const test::Rows<QByteArray> row("markup");
        row("video", "<video controls width=200 height=100></video>");
        row("select", "<select><option>a<option selected>b</select>");
        row("field", "<input value=x>");
        row("box", "<input type=checkbox>");
        row("button", "<button type=button>b</button>");
        row("summary", "<details><summary>s</summary>d</details>");
        row("area of text", "<textarea>t</textarea>");
    }
    void mouse_changesNothingButTheSelection()
    {
        QFETCH(QByteArray, markup);
        open(("<body style=\"margin: 0\"><div>" + markup + "</div><p>one</p>").toStdString());
        focusPage();
        const QByteArray before = tree();
        QWidget* const input = rendering().webView()->focusProxy();
        QTest::mouseClick(input, Qt::LeftButton, {}, QPoint(8, 8));
        QTest::mouseClick(input, Qt::LeftButton, {}, QPoint(8, 8));
        rendering().catchUp();
        QCOMPARE(tree(), before);
        QVERIFY(!window->isWindowModified());
        QCOMPARE(file("page.html"),
                 ("<body style=\"margin: 0\"><div>" + markup + "</div><p>one</p>").toStdString());
    }

    void mouseDrag_selectsWhatIsTypedOver()
    {
        open(
            "<body style=\"margin: 0; font: 40px monospace\"><p style=\"margin: 0\">one <b>two</b> three</p>");
        focusPage();
        const double letter =
            answer("document.querySelector('b').getBoundingClientRect().width / 3").toDouble();
        const auto place = [letter](double letters) { return QPointF(letters * letter, 20).toPoint(); };
        QWidget* const input = rendering().webView()->focusProxy();
        QTest::mousePress(input, Qt::LeftButton, {}, place(2));
        QTest::mouseMove(input, place(4));
        QTest::mouseMove(input, place(6));
        QTest::mouseRelease(input, Qt::LeftButton, {}, place(6));
        QTRY_COMPARE(answer("getSelection().toString()"), "e tw");
        type("x");
        QTRY_COMPARE(body(), QByteArray("<p style=\"margin: 0\">onx<b>o</b> three</p>"));
    }

    // Beside a picture of the site that has its name, the copy gets a number.
    void droppedPicture_isCopiedIntoTheSiteIfTheUserWants_data()
    {
        const test::Rows<QString, QByteArray, bool> row("button", "address", "isCopied");
        row("copy", "Copy Into Site", "src=\"img/cat-2.png\"", true);
        row("no copy", "Insert Without Copy", "cat.png\" alt=\"\"", false);
    }
    void droppedPicture_isCopiedIntoTheSiteIfTheUserWants()
    {
        put("outside/cat.png", "theirs");
        put("site/img/cat.png", "ours");
        put("site/page.html", "<body style=\"margin: 0; font-size: 60px\"><p style=\"margin: 0\">one</p>");
        open(at("site/page.html"), at("site"));
        drop({QUrl::fromLocalFile(QString::fromStdString(at("outside/cat.png").native()))});
        QFETCH(QString, button);
        QFETCH(QByteArray, address);
        QFETCH(bool, isCopied);
        answerQuestion("pictureQuestion", qPrintable(button));
        QTRY_VERIFY2(body().contains(address), body().constData());
        QCOMPARE(std::filesystem::exists(at("site/img/cat-2.png")), isCopied);
        QCOMPARE(file("site/img/cat.png"), std::string("ours"));
        if (isCopied)
            QCOMPARE(file("site/img/cat-2.png"), std::string("theirs"));
    }

    // What a process that replaced a killed one may be without.
    void deafPage_isEditedAllTheSame_data()
    {
        QTest::addColumn<bool>("hasScripts");
        QTest::newRow("without its channel") << true;
        QTest::newRow("without the editor's scripts") << false;
    }
    void deafPage_isEditedAllTheSame()
    {
        QFETCH(bool, hasScripts);
        open("<p>one</p><p>two</p>");
        page().setWebChannel(nullptr, QWebEngineScript::ApplicationWorld);
        if (!hasScripts)
            page().scripts().clear();
        trigger("reloadAction");
        waitUntilShown();
        setCaretBehind("two");
        type("s");
        QTRY_COMPARE(body(), QByteArray("<p>one</p><p>twos</p>"));
        QTRY_COMPARE(the<QWidget>("elementPath")->property("text").toString(), "html \u203a body \u203a p");
    }

    void processKilledTwice_losesNothing()
    {
        open("<p>one</p>");
        setCaretBehind("one");
        type("a");
        QTRY_COMPARE(body(), QByteArray("<p>onea</p>"));
        for (const char* typed : {"b", "c"}) {
            replaceRenderer();
            QTRY_COMPARE(answer("document.hasFocus()"), "true");
            QVERIFY(!answer("document.body.innerText").isEmpty());
            setCaretBehind(answer("document.body.innerText.trim()").toUtf8().constData());
            type(typed);
            QTRY_VERIFY(body().contains(typed));
        }
        replaceRenderer();
        QCOMPARE(answer("document.body.innerText.trim()"), "oneabc");
        undoAll();
        QTRY_COMPARE(body(), QByteArray("<p>one</p>"));
    }

    void typedWhileThePageIsShownAnew_comesIn()
    {
        open("<p>one</p>");
        setCaretBehind("one");
        trigger("reloadAction");
        type("ab");
        QVERIFY(rendering().webView()->heldInput().isHolding());
        QTRY_COMPARE(body(), QByteArray("<p>oneab</p>"));
        QCOMPARE(window->undoStack()->count(), 1);
    }

    // Letters, an undo and letters again at full speed, also while the undo waits for the page.
    void typedAroundAnUndo_comesInItsOrder()
    {
        open("<p>one</p>");
        setCaretBehind("one");
        type(" two");
        QTest::keyClick(keys(), Qt::Key_Z, Qt::ControlModifier);
        type(" thr");
        QTimer::singleShot(0, this, [this] { type("ee"); });
        QTRY_COMPARE(body(), QByteArray("<p>one three</p>"));
        undoAll();
        QTRY_COMPARE(body(), QByteArray("<p>one</p>"));
    }

    // A command waits as keys do, and an edit of the tree is not undone by what the old rendering still
    // tells.
    void editsAtOnce_allStay()
    {
        open("<title>T</title><section><p>one</p></section>");
        select("one");
        trigger("reloadAction");
        trigger("boldAction");
        type("x");
        trigger("italicAction");
        type("y");
        QTRY_COMPARE(body(), QByteArray("<section><p><b>x<i>y</i></b></p></section>"));
    }
};

LUMA_TEST(tst_pageediting)
#include "tst_pageediting.moc"
