// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "tests/editor/pagewindow.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/screenshot.h"
#include "web/codeedit.h"
#include "web/codehighlighter.h"
#include "web/linksheet.h"
#include "web/scriptconsole.h"
#include "web/sourcepanel.h"

#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTextBlock>
#include <QTextLayout>
#include <QTreeView>
#include <QUndoStack>

using namespace luma;
namespace fs = std::filesystem;

/// The sheets and fields around the rendering: style sheets, link, source, script console.
class tst_editorsheets final : public QObject, private luma::test::PageWindow
{
    Q_OBJECT

private:
    QPushButton* button(const char* name) const { return the<QPushButton>(name); }
    QPlainTextEdit* cssField() const { return the<QPlainTextEdit>("cssField"); }
    void press(const char* name) const { QTest::mouseClick(button(name), Qt::LeftButton); }
    QColor colourOf(QPlainTextEdit* field, int line, int at) const
    {
        const auto formats = field->document()->findBlockByNumber(line).layout()->formats();
        for (const auto& format : formats) {
            if (at >= format.start && at < format.start + format.length)
                return format.format.foreground().color();
        }
        return {};
    }

private slots:
    void cleanup() { close(); }

    void coloursOfASheet_areRead_data()
    {
        const test::Rows<QString, QString> row("line", "colour");
        row("short", "a { color: #f80; }", "#ffff8800");
        row("long", "color: #12AB34", "#ff12ab34");
        row("with opacity", "color: #12ab3480", "#8012ab34");
        row("short with opacity", "color:#f808", "#88ff8800");
        row("function", "background: rgb(255, 128, 0) url(x.png)", "#ffff8000");
        row("function with blanks", "color: rgb(100% 0% 0% / 50%)", "#80ff0000");
        row("hue", "color: hsl(120deg, 100%, 50%)", "#ff00ff00");
        row("name", "border: 1px solid tomato", "#ffff6347");
        row("selector", "#fade {", "");
        row("name of a class", ".red { margin: 0 }", "");
        row("part of a name", "font-family: red-hat", "");
    }
    void coloursOfASheet_areRead()
    {
        QFETCH(QString, line);
        const QColor found = CodeEdit::colourIn(line);
        QTEST(found.isValid() ? found.name(QColor::HexArgb) : QString(), "colour");
    }

    void bracketsThatMatch_areMarked()
    {
        open("<head><style>a { b: c(d[e]) }</style></head><p>x</p>");
        QPlainTextEdit& field = *cssField();
        const auto marked = [&field](const QString& in) {
            field.setPlainText(QString(in).remove(u'|'));
            QTextCursor cursor = field.textCursor();
            cursor.setPosition(static_cast<int>(in.indexOf(u'|')));
            field.setTextCursor(cursor);
            QStringList places;
            for (const auto& mark : field.extraSelections())
                places.append(QString::number(mark.cursor.anchor()));
            return places.join(u' ');
        };
        QCOMPARE(marked(u"a |{ b: (c) }"_qs), "2 11");
        QCOMPARE(marked(u"a { b: (c)| }"_qs), "9 7");
        QCOMPARE(marked(u"a |{ b: (c)"_qs), "");
        QCOMPARE(marked(u"a| { b }"_qs), "");
    }

    void linkedSheet_isShownTidiedAndSaved()
    {
        put("css/a.css", "p{color:red;background:url(\"x.png\")}");
        open("<head><style>i{}</style><link rel=stylesheet href=\"css/a.css\"></head><p>x</p>");
        auto* const menu = the<QComboBox>("cssMenu");
        QCOMPARE(menu->currentText(), "<style> [0]");
        menu->setCurrentIndex(0);
        emit menu->activated(0);
        QCOMPARE(button("cssButton")->text(), "Save CSS");
        QCOMPARE(cssField()->toPlainText(), "p {\n    color: red;\n    background: url('x.png')\n}");
        QVERIFY(!button("cssButton")->isEnabled());
        cssField()->moveCursor(QTextCursor::End);
        QTest::keyClicks(cssField(), "p{color:rgb(0,0,255)}");
        press("cssButton");
        QVERIFY(!button("cssButton")->isEnabled());
        QVERIFY(file("css/a.css").ends_with("}\n\np {\n    color: rgb(0,0,255)\n}"));
        QCOMPARE(cssField()->toPlainText().toStdString(), file("css/a.css"));
        QTRY_COMPARE(answer("getComputedStyle(document.querySelector('p')).color"), "rgb(0, 0, 255)");
        QVERIFY(!window->isWindowModified());
    }

    // The field shows it tidied.
    void placeOfASheet_isShown()
    {
        put("css/\u00fc & %.css", "/* \u00fc */ i{}\nb{color:red}  p{margin:0;background:url(\"x.png\")}");
        put("css/a.css", "p{}");
        open(
            "<link rel=stylesheet href=\"css/%C3%BC%20&amp;%20%25.css\"><link rel=stylesheet href=css/a.css><p>x</p>");
        trigger("stylesAction");
        QVERIFY(!cssField()->isVisible());
        QVERIFY(!window->showSheetPlace(at("css/none.css"), 1, 1));
        QVERIFY(window->showSheetPlace(at("css/\u00fc & %.css"), 2, 26));
        QTRY_VERIFY(cssField()->isVisible());
        QVERIFY2(cssField()
                     ->textCursor()
                     .block()
                     .text()
                     .mid(cssField()->textCursor().positionInBlock())
                     .startsWith("background"),
                 qPrintable(cssField()->textCursor().block().text()));
        QVERIFY(window->showSheetPlace(at("css/a.css"), 99, 99));
        QVERIFY(cssField()->textCursor().atEnd());
        QVERIFY(!window->isWindowModified());
    }

    // What can't be stored stays, and nothing is said.
    void sheetThatCantBeWritten_staysInTheField()
    {
        put("css/a.css", "p{color:red}");
        open("<head><link rel=stylesheet href=\"css/a.css\"></head><p>x</p>");
        QTest::keyClicks(cssField(), "/**/");
        fs::remove_all(at("css"));
        press("cssButton");
        QVERIFY(cssField()->toPlainText().startsWith("/**/") || !cssField()->isEnabled());
        QVERIFY(window->isWindowModified());
        QVERIFY(!the<QWidget>("noticeBar")->isVisible());
        fs::create_directory(at("css"));
        put("css/a.css", "p{color:red}");
        auto* const menu = the<QComboBox>("cssMenu");
        emit menu->activated(0);
        QVERIFY(cssField()->toPlainText().startsWith("/**/"));
        QVERIFY(button("cssButton")->isEnabled());
        press("cssButton");
        QVERIFY(file("css/a.css").starts_with("/**/"));
        QVERIFY(!window->isWindowModified());
    }

    void sheetInAnotherEncoding_staysInIt_data()
    {
        const test::Rows<std::string, QString, std::string> row("bytes", "shown", "saved");
        row("mark", "\xEF\xBB\xBFq{}", "q {}",
            "\xEF\xBB\xBFq {}\n\ni:after {\n    content: '\xE2\x82\xAC\xC5\x82'\n}");
        row("declared", "@charset \"iso-8859-2\";q:after{content:'\xb3'}",
            QString::fromUtf8("@charset \"iso-8859-2\";\n\nq:after {\n    content: '\xC5\x82'\n}"),
            "@charset \"iso-8859-2\";\n\nq:after {\n    content: '\xb3'\n}\n\ni:after {\n    content: '\\20AC \xb3'\n}");
        row("guessed", "q:after{content:'\xe9'}", QString::fromUtf8("q:after {\n    content: '\xC3\xA9'\n}"),
            "q:after {\n    content: '\xe9'\n}\n\ni:after {\n    content: '\x80\\142 '\n}");
    }
    void sheetInAnotherEncoding_staysInIt()
    {
        QFETCH(std::string, bytes);
        QFETCH(std::string, saved);
        put("a.css", bytes);
        open("<head><link rel=stylesheet href=a.css></head><p>x</p>");
        QTEST(cssField()->toPlainText(), "shown");
        cssField()->appendPlainText(QString::fromUtf8("i:after{content:'\xE2\x82\xAC\xC5\x82'}"));
        press("cssButton");
        QCOMPARE(file("a.css"), saved);
    }

    void sheetChangedByAnotherProgram_isNotOverwrittenUnasked()
    {
        put("a.css", "p{color:red}");
        open("<head><link rel=stylesheet href=a.css></head><p>x</p>");
        put("a.css", "q{color:red}");
        QTRY_VERIFY(cssField()->toPlainText().startsWith("q"));
        QTest::keyClicks(cssField(), "/**/");
        put("a.css", "b{color:red}");
        press("cssButton");
        answerQuestion("overwriteQuestion", "Cancel");
        QCOMPARE(file("a.css"), std::string("b{color:red}"));
        QVERIFY(cssField()->toPlainText().startsWith("/**/"));
        // A draft outlives the page's own version; saving the page saves it, too, and asks again.
        window->revertDocumentToSaved();
        waitUntilShown();
        QVERIFY(cssField()->toPlainText().startsWith("/**/"));
        setTitle("new");
        the<QAction>("saveAction")->trigger();
        answerQuestion("overwriteQuestion", "Replace");
        QTRY_VERIFY(!window->isWindowModified());
        QVERIFY(file("a.css").starts_with("/**/"));
        QVERIFY(file("page.html").find("<title>new") != std::string::npos);
    }

    void sheetSavedInAnotherWindow_isNotOverwrittenUnasked()
    {
        const char* const page = "<head><link rel=stylesheet href=a.css></head><p>x</p>";
        put("a.css", "p{color:red}");
        put("other.html", page);
        open(page);
        luma::test::PageWindow other;
        other.open(at("other.html"), at(""));
        QTest::keyClicks(cssField(), "/*mine*/");
        other.the<QPlainTextEdit>("cssField")->setPlainText("p{color:rgb(0, 0, 255)}");
        QTest::mouseClick(other.the<QPushButton>("cssButton"), Qt::LeftButton);
        QTRY_VERIFY(file("a.css").find("255") != std::string::npos);
        press("cssButton");
        answerQuestion("overwriteQuestion", "Cancel");
        QVERIFY(file("a.css").find("255") != std::string::npos);
        QVERIFY(cssField()->toPlainText().startsWith("/*mine*/"));
        QTRY_VERIFY(!the<QMessageBox>("overwriteQuestion"));
        press("cssButton");
        answerQuestion("overwriteQuestion", "Replace");
        QTRY_VERIFY(file("a.css").starts_with("/*mine*/"));
        QTRY_COMPARE(other.answer("getComputedStyle(document.querySelector('p')).color"), "rgb(255, 0, 0)");
    }

    void undo_showsTheStyleBlocksOldText()
    {
        open("<head><style>i{}</style></head><p>x</p>");
        cssField()->setPlainText("b{}");
        press("cssButton");
        QTRY_VERIFY(tree().contains("b{}"));
        waitUntilShown();
        trigger("undoAction");
        QTRY_COMPARE(cssField()->toPlainText(), "i {}");
        QVERIFY(!button("cssButton")->isEnabled());
    }

    void pageWithoutSheets_hasAnEmptyMenuAndField()
    {
        open("<p>x</p>");
        QCOMPARE(the<QComboBox>("cssMenu")->count(), 0);
        QVERIFY(cssField()->toPlainText().isEmpty());
        QVERIFY(!button("cssButton")->isEnabled());
    }

    // No-break spaces and line separators are what they are.
    void oddSpaces_stayInStylesAndSource()
    {
        const QByteArray odd = "\xc2\xa0|\xe2\x80\xa8|";
        open("<head><style>q::before{content:'" + odd.toStdString() + "'}</style></head><p>x</p>");
        cssField()->moveCursor(QTextCursor::End);
        QTest::keyClicks(cssField(), "b{}");
        press("cssButton");
        QTRY_VERIFY(tree().contains("b{}"));
        QVERIFY(tree().contains(odd));
        waitUntilShown();
        trigger("showSourceAction");
        auto* const source = the<QPlainTextEdit>("sourceField");
        QTRY_VERIFY(source->isVisible());
        QTest::keyClicks(source, "<!-- -->");
        press("saveSourceButton");
        QVERIFY(tree().contains(odd));
    }

    void linkAddress_losesLineEnds()
    {
        open("<p>one</p>");
        select("one");
        trigger("makeLinkAction");
        the<QLineEdit>("linkAddress")->setText(" http://example.org/a\n b\r\n?c\td ");
        press("linkButton");
        QTRY_COMPARE(body(), QByteArray("<p><a href=\"http://example.org/a%20b?cd\">one</a></p>"));
        trigger("editLinkAction");
        QTRY_COMPARE(the<QLineEdit>("linkAddress")->text(), "http://example.org/a%20b?cd");
        the<QLineEdit>("linkAddress")->setText("c.html");
        press("linkButton");
        QTRY_COMPARE(body(), QByteArray("<p><a href=\"c.html\">one</a></p>"));
        QCOMPARE(window->undoStack()->undoText(), "Edit Link");
        trigger("makeLinkAction");
        the<QLineEdit>("linkAddress")->setText("java\nscript:alert(1)");
        QVERIFY(!button("linkButton")->isEnabled());
    }

    void typedAddress_isWrittenAsOne_data()
    {
        const test::Rows<QString, QByteArray> row("typed", "written");
        row("as it is", "other.html?a=1#b", "other.html?a=1#b");
        row("blank", "not there.html", "not%20there.html");
        row("name of a file", "50% off #1?.html", "50%25%20off%20%231%3F.html");
        row("the same from the root", "/sub/50% #1.html", "/sub/50%25%20%231.html");
        row("encoded already", "50%25%20off%20%231%3F.html", "50%25%20off%20%231%3F.html");
    }
    void typedAddress_isWrittenAsOne()
    {
        put("other.html", "");
        put("50% off #1?.html", "");
        put("sub/50% #1.html", "");
        QFETCH(QString, typed);
        QFETCH(QByteArray, written);
        open("<p>one</p>");
        select("one");
        trigger("makeLinkAction");
        the<QLineEdit>("linkAddress")->setText(typed);
        press("linkButton");
        QTRY_COMPARE(body(), "<p><a href=\"" + written + "\">one</a></p>");
        (void)answer("getSelection().collapse(document.querySelector('p'), 1)");
        trigger("insertImageAction");
        the<QLineEdit>("linkAddress")->setText(typed);
        press("linkButton");
        QTRY_VERIFY2(body().contains("<img src=\"" + written + "\""), body().constData());
        QCOMPARE(window->undoStack()->undoText(), "Insert Image");
    }

    void imageChooser_beginsInTheSite()
    {
        put("images/100% #1?.png", "");
        open("<p>one</p>");
        setCaretBehind("one");
        trigger("insertImageAction");
        QVERIFY(button("linkChooseButton")->isVisible());
        press("linkChooseButton");
        auto* const panel = the<QFileDialog>("imagePanel");
        QVERIFY(panel);
        QCOMPARE(QDir(panel->directory()).canonicalPath().toStdString(), fs::canonical(at("")).native());
        emit panel->fileSelected(QString::fromStdString(at("images/100% #1?.png").native()));
        panel->close();
        QVERIFY(the<QLabel>("linkComplaint")->text().isEmpty());
        press("linkButton");
        QTRY_COMPARE(body(), QByteArray("<p>one<img src=\"images/100%25%20%231%3F.png\" alt=\"\"></p>"));
        trigger("makeLinkAction");
        QVERIFY(!button("linkChooseButton")->isVisible());
    }

    void sourcePanel_showsTheSelectedElementThereAndBack()
    {
        std::string lines;
        for (int i = 0; i < 3000; ++i)
            lines += "<p id=p" + std::to_string(i) + ">gr\xC3\xBCn</p>\r\n";
        open("<title>t</title>\r\n" + lines);
        setTitle("other");
        outline()->setCurrentIndex(row("<p id=\"p2500\""));
        trigger("showSourceAction");
        auto* const source = the<QPlainTextEdit>("sourceField");
        const auto isAt = [source](const char* line) {
            return source->textCursor().block().text() == QString::fromUtf8(line);
        };
        QTRY_VERIFY(isAt("<p id=p2500>gr\xC3\xBCn</p>") && !source->isReadOnly());
        QCOMPARE(source->textCursor().positionInBlock(), 0);
        QVERIFY(!button("saveSourceButton")->isEnabled() && !source->document()->isUndoAvailable());
        QCOMPARE(source->document()->blockCount(), 3002);
        QVERIFY(source->viewport()->rect().contains(source->cursorRect()));
        source->moveCursor(QTextCursor::PreviousBlock);
        for (int i = 0; i < 2; ++i)
            source->moveCursor(QTextCursor::NextWord);
        source->insertPlainText("class=c ");
        QTest::mouseClick(button("saveSourceButton"), Qt::LeftButton);
        QTRY_VERIFY(!source->isVisible());
        QTRY_VERIFY(outline()->currentIndex().data().toString().startsWith("<p class=\"c\", id=\"p2499\""));
    }

    void sourceThatIsNoPage_staysInThePanel()
    {
        open("<p>one</p>");
        trigger("showSourceAction");
        auto* const source = the<QPlainTextEdit>("sourceField");
        QTRY_VERIFY(source->isVisible());
        const QString typed = QStringLiteral("<p>\u00FC\n<div>").repeated(20'000);
        source->setPlainText(typed);
        QVERIFY(!the<QLabel>("sourceTrouble")->isVisible());
        press("saveSourceButton");
        // In html and body 4094 levels are left, and each line begins one.
        QTRY_COMPARE(the<QLabel>("sourceTrouble")->text(),
                     QStringLiteral("Line 4095, column 6: Its elements are nested too deeply."));
        QVERIFY(source->isVisible());
        press("sourceTroubleButton");
        QCOMPARE(source->textCursor().blockNumber(), 4094);
        QCOMPARE(source->textCursor().positionInBlock(), 5);
        QVERIFY(source->hasFocus() && source->viewport()->rect().contains(source->cursorRect()));
        test::saveScreenshots(*the<QDialog>("sourcePanel"), QStringLiteral("source trouble"));
        QCOMPARE(source->toPlainText(), typed);
        QCOMPARE(body(), QByteArray("<p>one</p>"));
        source->setPlainText("<p>two</p>");
        press("saveSourceButton");
        QTRY_VERIFY(!source->isVisible());
        QTRY_COMPARE(body(), QByteArray("<p>two</p>"));
    }

    void sourcePanel_findsBothWaysAndAround()
    {
        open("<p>word</p><p>Word</p>");
        trigger("showSourceAction");
        auto* const source = the<QPlainTextEdit>("sourceField");
        QTRY_VERIFY(source->isVisible());
        source->activateWindow();
        QTRY_VERIFY(source->isActiveWindow());
        QTest::keyClick(source, Qt::Key_F, Qt::ControlModifier);
        auto* const find = the<QLineEdit>("sourceFindField");
        QTRY_VERIFY(find->hasFocus());
        QTest::keyClicks(find, "word");
        QList<int> places;
        const auto note = [&] { places.append(source->textCursor().selectionStart()); };
        QTest::keyClick(find, Qt::Key_Return);
        note();
        press("sourceFindNextButton");
        note();
        press("sourceFindNextButton");
        note();
        press("sourceFindPreviousButton");
        note();
        QVERIFY(places[0] < places[1]);
        QCOMPARE(places[2], places[0]);
        QCOMPARE(places[3], places[1]);
        QVERIFY(source->isVisible());
        QCOMPARE(source->textCursor().selectedText(), "Word");
        find->setText("nowhere");
        QTest::keyClick(find, Qt::Key_Return);
        QCOMPARE(the<QLabel>("sourceFindResult")->text(), "Not found");
    }

    void scriptConsole_runsAndKeepsScripts()
    {
        open("<p>one</p>");
        trigger("scriptConsoleAction");
        auto* const source = the<QPlainTextEdit>("jsSourceField");
        auto* const result = the<QPlainTextEdit>("jsResultField");
        const auto answerTo = [&](const char* script) {
            source->setPlainText(QString::fromUtf8(script));
            press("runJSButton");
        };
        answerTo("[1, {a: 'b'}]");
        QTRY_VERIFY(result->toPlainText().contains("\"a\": \"b\""));
        answerTo("console.log('said'); 6 * 7");
        QTRY_COMPARE(result->toPlainText(), "said\n42");
        answerTo("nonsense(");
        QTRY_VERIFY(result->toPlainText().contains("SyntaxError"));
        answerTo("document.querySelector('p').textContent = 'two'");
        QTRY_COMPARE(body(), QByteArray("<p>two</p>"));
        QTRY_COMPARE(the<QAction>("undoAction")->text(), "&Undo Script");
        press("saveJSButton");
        const QStringList kept = QDir(ScriptConsole::scriptFolder()).entryList({"*.js"});
        QCOMPARE(kept.size(), 1);
        const auto bytes = readFile((ScriptConsole::scriptFolder() + u'/' + kept.first()).toStdString());
        QVERIFY(bytes);
        QCOMPARE(*bytes, source->toPlainText().toStdString());
        QVERIFY(result->toPlainText().contains(kept.first()));
    }

    // The rendering, the outline, the source panel and the style blocks have one history.
    void history_isOneForAll()
    {
        open("<head><title>t</title><style>p{}</style></head><section><p>one</p></section>");
        const QByteArray first = tree();
        setCaretBehind("one");
        type("s");
        QTRY_VERIFY(body().contains("ones"));
        outline()->setCurrentIndex(row("<section>"));
        insertFirstTag();
        QTRY_VERIFY(body().contains("<article>"));
        waitUntilShown();
        cssField()->setPlainText("b{}");
        press("cssButton");
        QTRY_VERIFY(tree().contains("<style>b{}</style>"));
        waitUntilShown();
        trigger("showSourceAction");
        auto* const source = the<QPlainTextEdit>("sourceField");
        QTRY_VERIFY(source->isVisible());
        source->setPlainText(source->toPlainText().replace("Lorem", "Ipsum"));
        press("saveSourceButton");
        QTRY_VERIFY(body().contains("Ipsum"));
        const QByteArray last = tree();
        QStringList names;
        while (the<QAction>("undoAction")->isEnabled() && names.size() < 9) {
            names.append(the<QAction>("undoAction")->text().mid(6));
            trigger("undoAction");
            waitUntilShown();
        }
        QCOMPARE(names, (QStringList{"Edit Source", "Update CSS", "Insert <article>", "Typing"}));
        QCOMPARE(tree(), first);
        for (int i = 0; i < 4; ++i)
            trigger("redoAction");
        QTRY_COMPARE(tree(), last);
    }

    // Words that belong to no title change nothing.
    void textOfThePage_becomesTheTitleOnly()
    {
        open("<head><title>t</title></head><p>one</p>");
        outline()->setCurrentIndex(row("<p>"));
        (void)answer("post('callback_text', 'New'); 1");
        outline()->setCurrentIndex(row("<title>"));
        (void)answer("post('callback_text', 'Newer'); 1");
        QTRY_COMPARE(window->tree().document()->title(), std::string("Newer"));
        QCOMPARE(body(), QByteArray("<p>one</p>"));
        QCOMPARE(window->undoStack()->count(), 1);
        QVERIFY(outline()->currentIndex().data().toString().startsWith("<title> Newer"));
    }

    void serverCode_hasOneColour()
    {
        const QString code = "<?php if ($a > 1) echo '<b>'; ?>";
        QPlainTextEdit field("<p>" + code + "</p>");
        new CodeHighlighter(CodeHighlighter::Language::Html, &field);
        const QColor colour = colourOf(&field, 0, 3);
        for (int i = 3; i < 3 + code.size(); ++i)
            QCOMPARE(colourOf(&field, 0, i), colour);
        QVERIFY(colourOf(&field, 0, 0) != colour);
    }

    void colours_suitTheTheme()
    {
        open("<head><style>p{color:red}</style></head><p>x</p>");
        const int line = 1;
        const int name = 5;
        const QColor light = colourOf(cssField(), line, name);
        QVERIFY(light.isValid());
        QPalette dark = window->palette();
        dark.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x1e));
        dark.setColor(QPalette::Text, Qt::white);
        window->setPalette(dark);
        QTRY_VERIFY(colourOf(cssField(), line, name).lightness() > 128);
        QVERIFY(light.lightness() < 128);
        QVERIFY(!button("cssButton")->isEnabled());
        QVERIFY(!window->isWindowModified());
    }
};

LUMA_TEST(tst_editorsheets)
#include "tst_editorsheets.moc"
