// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "editor/outlinemodel.h"
#include "editor/templatesheet.h"
#include "page/pagecommands.h"
#include "tests/editor/pagewindow.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/screenshot.h"
#include "tests/support/tabwalk.h"
#include "web/viewcontroller.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFileDialog>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSplitter>
#include <QTest>
#include <QThreadPool>
#include <QToolBar>
#include <QUndoStack>

#include <set>

using namespace luma;
namespace fs = std::filesystem;

/// The window of a page with the real rendering, driven as a user drives it.
class tst_htmldocument final : public QObject, private luma::test::PageWindow
{
    Q_OBJECT

private:
    QString selectionInPage() const { return answer("getSelection().toString()"); }

    void openFromTemplate(const PageTemplate& from)
    {
        window = new HTMLDocument;
        window->mountPath = at("site");
        window->useTemplate(from);
        window->show();
        window->windowDidLoad();
        QTRY_VERIFY(window->tree().document());
        waitUntilShown();
    }
    /// Also while files come and go.
    std::set<fs::path> contentsOfSite() const
    {
        std::set<fs::path> contents;
        std::error_code error;
        for (fs::recursive_directory_iterator each(at("site"), error), end; !error && each != end;
             each.increment(error))
            contents.insert(each->path());
        return contents;
    }

private slots:
    void cleanup() { close(); }

    void selection_isShownInThePage()
    {
        open("<title>T</title><section><h2>Head</h2><p>one</p></section>");
        QCOMPARE(the<QPushButton>("deleteTagButton")->isEnabled(), false);
        click("<p>");
        QTRY_COMPARE(selectionInPage(), "one");
        QVERIFY(the<QPushButton>("deleteTagButton")->isEnabled());
        const auto insertable = [this] {
            emit the<QMenu>("insertMenu")->aboutToShow();
            return the<QPushButton>("addTagButton")->isEnabled() ? the<QMenu>("insertMenu")->actions()
                                                                 : QList<QAction*>();
        };
        QCOMPARE(insertable().size(), 1);
        QCOMPARE(insertable().first()->text(), "&More...");
        QVERIFY(the<QLabel>("elementPath")->text().endsWith("section \u203a p"));
        click("<section>");
        QCOMPARE(insertable().first()->text(), "article");
        click("<html>");
        QCOMPARE(insertable().size(), 1);
        QVERIFY(!the<QPushButton>("deleteTagButton")->isEnabled());
    }

    void showPlace_selectsTheElementInBoth()
    {
        open("<title>T</title>\n<p>one\n<p>two <a href='gone.html'>link</a>");
        window->showPlace(3, 18);
        QVERIFY(the<QLabel>("elementPath")->text().endsWith("p \u203a a"));
        QTRY_COMPARE(selectionInPage(), "link");
        // In a page that is still loading, too.
        openWindow(at("page.html"), at(""));
        window->showPlace(2, 2);
        waitUntilShown();
        QVERIFY(the<QLabel>("elementPath")->text().endsWith("body \u203a p"));
        QTRY_COMPARE(selectionInPage().trimmed(), "one");
    }

    void newPage_showsTheSitesImages_beforeAndAfterItIsSaved()
    {
        put("pages/x", "");
        put("images/a.png", "");
        QImage image(2, 2, QImage::Format_RGB32);
        image.fill(Qt::red);
        QVERIFY(image.save(QString::fromStdString(at("images/a.png").string())));
        openWindow({}, at(""));
        waitUntilShown();
        (void)answer("doCommand('Insert Image', 'images/a.png')");
        QTRY_COMPARE(answer("document.images[0].naturalWidth.toString()"), "2");
        QTRY_VERIFY(tree().contains("src=\"images/a.png\""));
        QVERIFY(window->saveToURL(at("pages/new.html")));
        QVERIFY(file("pages/new.html").find("src=\"../images/a.png\"") != std::string::npos);
        waitUntilShown();
        QTRY_COMPARE(answer("document.images[0].naturalWidth.toString()"), "2");
    }

    // Sheets show divisions in lines; the scripts are ones whose letters join, or that write without blanks.
    void tidying_changesNothingThatIsSeen_data()
    {
        const test::Rows<QByteArray> row("markup");
        row("inline blocks that touch",
            "<style>div.t div{display:inline-block;border:1px solid}</style>"
            "<div class=t><div>a</div><div>b</div> <div>c</div></div>x<div>y</div>");
        row("items in a line",
            "<style>li{display:inline}</style><ul><li>a</li><li>b</li></ul><ul><li>c</li></ul>");
        row("contents", "<style>section{display:contents}</style>a<section><b>b</b><p>c</p></section>d");
        row("blanks kept", "<style>div{white-space:pre-wrap}</style><div>a<p>b</p>\n  <p>c</p></div>");
        row("Arabic",
            "<div dir=rtl>\xD8\xB3<b>\xD9\x84</b>\xD8\xA7\xD9\x85<p>\xD8\xB9\xD9\x84\xD9\x8A</p>\xD9\x83\xD9\x85</div>");
        row("Hebrew",
            "<div dir=rtl>\xD7\xA9\xD7\x9C<i>\xD7\x95\xD7\x9D</i><p>\xD7\xA2\xD7\x9C</p>\xD7\x99</div>");
        row("Chinese", "<div>\xE4\xBD\xA0<b>\xE5\xA5\xBD</b><p>\xE4\xB8\x96</p>\xE7\x95\x8C</div>");
        row("Thai",
            "<div>\xE0\xB8\xAA\xE0\xB8\xA7<b>\xE0\xB8\xB1\xE0\xB8\xAA</b><p>\xE0\xB8\x94\xE0\xB8\xB5</p></div>");
    }
    void tidying_changesNothingThatIsSeen()
    {
        QFETCH(QByteArray, markup);
        open("<!doctype html><body>" + markup.toStdString());
        const QString shown =
            "(() => { const range = document.createRange(); const boxes = [document.body.innerText];"
            "const texts = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);"
            "while (texts.nextNode()) { const text = texts.currentNode;"
            "for (let i = 0; i < text.length; ++i) { if (/\\s/.test(text.data[i])) continue;"
            "range.setStart(text, i); range.setEnd(text, i + 1);"
            "const box = range.getBoundingClientRect(); boxes.push([box.x, box.y, box.width].join()); } }"
            "return boxes.join(' '); })()";
        const QString before = answer(shown);
        QVERIFY(before.size() > 10);
        window->tidySource();
        QTRY_VERIFY(window->undoStack()->canUndo());
        waitUntilShown();
        QCOMPARE(answer(shown), before);
    }

    void insertDeleteUndo_goToOutlineAndPage()
    {
        open("<title>T</title><section><p>one</p></section>");
        click("<section>");
        insertFirstTag();
        QTRY_VERIFY(row("<article>").isValid());
        QTRY_COMPARE(answer("document.querySelector('article > p').textContent"), "Lorem");
        QVERIFY(window->isWindowModified());
        click("<article>");
        QTest::keyClick(outline(), Qt::Key_Delete);
        QTRY_VERIFY(!row("<article>").isValid());
        trigger("undoAction");
        QTRY_VERIFY(row("<article>").isValid());
        trigger("undoAction");
        QTRY_COMPARE(body(), QByteArray("<section><p>one</p></section>"));
        QTRY_COMPARE(answer("document.querySelectorAll('article').length"), "0");
        QVERIFY(!window->isWindowModified());
    }

    void typing_comesToTheOutlineAndIsSaved()
    {
        open("<title>T</title><p>one</p>");
        typeInto("p", " two");
        QTRY_COMPARE(row("<p>").data().toString(), "<p> one two");
        QTRY_COMPARE(outline()->currentIndex(), row("<p>"));
        trigger("saveAction");
        QCOMPARE(file("page.html"), std::string("<title>T</title><p>one two</p>"));
        QVERIFY(!window->isWindowModified());
        trigger("undoAction");
        QTRY_VERIFY(row("<p> one").isValid());
        QVERIFY(window->isWindowModified());
    }

    void titleSheet_changesTheTitle()
    {
        open("<title>Old</title><p>x");
        outline()->setCurrentIndex(row("<title>"));
        QTest::keyClick(outline(), Qt::Key_Return);
        auto* field = the<QLineEdit>("metaSheetTextField");
        QTRY_VERIFY(field->isVisible());
        QCOMPARE(field->text(), "Old");
        QTest::keyClicks(field, "New");
        QTest::mouseClick(the<QPushButton>("metaSheetOKButton"), Qt::LeftButton);
        QTRY_VERIFY(row("<title> New").isValid());
        QCOMPARE(window->tree().document()->title(), std::string("New"));
        QCOMPARE(window->undoStack()->undoText(), "Change Title");
        trigger("revertAction");
        QTRY_VERIFY(row("<title> Old").isValid());
        QCOMPARE(window->undoStack()->undoText(), "Revert");
    }

    void contextMenu_isUsedByKeyboard_data()
    {
        const test::Rows<QByteArray, QByteArray, QString> row("entry", "result", "undo");
        row("class", "Add Class", "<section class=\"box big\"></section>", "Add Class");
        row("no class", "Remove Class", "<section></section>", "Remove Class");
        row("ID", "Add ID", "<section class=\"box\" id=\"one\"></section>", "Add ID");
        row("no ID", "Remove ID", "<section class=\"box\"></section>", "Remove ID");
        row("tag", "Insert",
            "<section class=\"box\"><article> <h2>Header</h2><p>Lorem</p></article></section>",
            "Insert <article>");
        row("nothing", "Delete", "", "Delete <section>");
    }
    void contextMenu_isUsedByKeyboard()
    {
        QFETCH(QByteArray, entry);
        const std::string id = entry == "Remove ID" ? " id=one" : "";
        open("<title>T</title><style>.big{color:red} #one{color:blue}</style><section class=box" + id +
             "></section>");
        const QByteArray before = body();
        click("<section");
        QAction* action = nullptr;
        QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, {});
        QTRY_VERIFY2(
            [&] {
                delete the<QMenu>("outlineMenu");
                QApplication::sendEvent(outline(), &event);
                for (QAction* const each : the<QMenu>("outlineMenu")->actions())
                    action = each->text() == QLatin1String(entry) ? each : action;
                return action;
            }(),
            "the sheets' classes and IDs are known");
        luma::test::screenshot(*the<QMenu>("outlineMenu"), "outline menu");
        (action->menu() ? action->menu()->actions().first() : action)->trigger();
        the<QMenu>("outlineMenu")->close();
        QTRY_VERIFY2(body() != before, "the menu's entry is performed");
        QTEST(body(), "result");
        QTEST(window->undoStack()->undoText(), "undo");
    }

    void styleBlock_isUpdated()
    {
        open("<title>T</title><style>p{color:red}</style><p>x</p>");
        auto* field = the<QPlainTextEdit>("cssField");
        QVERIFY(field->toPlainText().contains("color: red"));
        QCOMPARE(the<QPushButton>("cssButton")->text(), "Update CSS");
        QVERIFY(!the<QPushButton>("cssButton")->isEnabled());
        field->selectAll();
        QTest::keyClicks(field, "p{color:rgb(0,0,255)}");
        QVERIFY(window->isWindowModified());
        QTest::mouseClick(the<QPushButton>("cssButton"), Qt::LeftButton);
        QTRY_COMPARE(window->tree().document()->select("style").front()->html(),
                     std::string("p{color:rgb(0,0,255)}"));
        QTRY_COMPARE(answer("getComputedStyle(document.querySelector('p')).color"), "rgb(0, 0, 255)");
    }

    void closing_asksAboutUnsavedEdits()
    {
        open("<title>Old</title><p>x");
        setTitle("New");
        window->close();
        answerQuestion("saveQuestion", "Cancel");
        QVERIFY(window->isVisible());
        QTRY_VERIFY(!the<QMessageBox>("saveQuestion"));
        window->close();
        answerQuestion("saveQuestion", "Save");
        QTRY_VERIFY(!window);
        QVERIFY(file("page.html").find("<title>New</title>") != std::string::npos);
    }

    void changedFile_isReadOrAskedFor()
    {
        open("<title>Old</title><p>x</p>");
        put("page.html", "<title>Theirs</title><p>x</p>");
        QTRY_COMPARE(window->tree().document()->title(), std::string("Theirs"));
        QVERIFY(!window->isWindowModified());
        setTitle("Mine");
        put("page.html", "<title>Again theirs</title><p>x</p>");
        QTRY_VERIFY(the<QWidget>("noticeBar")->isVisible());
        trigger("saveAction");
        answerQuestion("overwriteQuestion", "Cancel");
        QVERIFY(file("page.html").find("Again theirs") != std::string::npos);
        QTRY_VERIFY(!the<QMessageBox>("overwriteQuestion"));
        trigger("saveAction");
        answerQuestion("overwriteQuestion", "Replace");
        QTRY_VERIFY(file("page.html").find("Mine") != std::string::npos);
    }

    void xhtml_isSavedAsHtmlOnlyWhenAgreed()
    {
        const std::string page =
            "<?xml version=\"1.0\"?>\n<html><head><title>Old</title></head><body><br/></body></html>";
        open(page);
        setTitle("New");
        trigger("saveAction");
        QTRY_COMPARE(QByteArray::fromStdString(file("page.html")),
                     QByteArray::fromStdString(page).replace("Old", "New"));
        const std::string saved = file("page.html");
        html::Document& document = *window->tree().document();
        PageCommands(window->tree(), *window->undoStack())
            .insert(std::make_unique<html::Element>("hr"), {document.body(), nullptr}, QString());
        trigger("saveAction");
        answerQuestion("xhtmlQuestion", "Cancel");
        QTRY_VERIFY(!the<QMessageBox>("xhtmlQuestion"));
        QCOMPARE(file("page.html"), saved);
        QVERIFY(window->isWindowModified());
        trigger("saveAction");
        QTRY_VERIFY(the<QMessageBox>("xhtmlQuestion"));
        luma::test::screenshot(*the<QMessageBox>("xhtmlQuestion"), "xhtml question");
        answerQuestion("xhtmlQuestion", "Save as HTML");
        QTRY_VERIFY(file("page.html").find("<hr>") != std::string::npos);
        QTRY_VERIFY(!the<QMessageBox>("xhtmlQuestion"));
        trigger("undoAction");
        QVERIFY(window->isWindowModified());
        trigger("saveAction");
        QVERIFY(!the<QMessageBox>("xhtmlQuestion"));
        QCOMPARE(file("page.html"), saved);
    }

    void elementsThatAreLost_areAskedAbout()
    {
        open("<title>T</title><select><option>a</option><hr></select><p>one</p>");
        const std::string page = file("page.html");
        trigger("saveAction");
        QVERIFY(!the<QMessageBox>("lossQuestion"));
        QCOMPARE(file("page.html"), page);
        html::Element& select = *window->tree().document()->select("select").front();
        PageCommands(window->tree(), *window->undoStack()).remove(select);
        trigger("saveAction");
        QTRY_VERIFY(the<QMessageBox>("lossQuestion"));
        luma::test::screenshot(*the<QMessageBox>("lossQuestion"), "loss question");
        answerQuestion("lossQuestion", "Cancel");
        QCOMPARE(file("page.html"), page);
        QTRY_VERIFY(!the<QMessageBox>("lossQuestion"));
        trigger("saveAction");
        answerQuestion("lossQuestion", "Leave Out");
        QTRY_COMPARE(file("page.html"), std::string("<title>T</title><p>one</p>"));
    }

    void tidySource_printsThePageAsOneStep()
    {
        const std::string page = "<TITLE>T</TITLE><section><P>one</section>";
        const std::string tidied = "<html>\n <head>\n  <title>T</title>\n </head>\n <body>\n  <section>\n   "
                                   "<p>one</p>\n  </section>\n </body>\n</html>\n";
        open(page);
        click("<section>");
        trigger("tidySourceAction");
        QTRY_COMPARE(window->undoStack()->undoText(), QStringLiteral("Tidy Page Source"));
        trigger("saveAction");
        QTRY_COMPARE(file("page.html"), tidied);
        QVERIFY(row("<p> one").isValid());
        trigger("undoAction");
        trigger("saveAction");
        QTRY_COMPARE(file("page.html"), page);
        window->setTidyChoice([] { return true; });
        trigger("saveAction");
        QTRY_COMPARE(file("page.html"), tidied);
        QTRY_VERIFY(isShown());
        typeInto("p", " two");
        QTRY_VERIFY(row("<p> one two").isValid());
        trigger("saveAction");
        QTRY_COMPARE(QByteArray::fromStdString(file("page.html")),
                     QByteArray::fromStdString(tidied).replace("one", "one two"));
    }

    void badPage_isToldInTheWindow()
    {
        put("page.html", std::string_view("\x89PNG\0", 5));
        openWindow(at("page.html"), at(""));
        QVERIFY(the<QWidget>("noticeBar")->isVisible());
        window->close();
        QTRY_VERIFY(!window);
    }

    void darkTheme_isTakenOver()
    {
        const QPalette light = QApplication::palette();
        open("<!DOCTYPE html><title>T</title><style>p { color: #444 }</style><section><p>one</p></section>");
        typeInto("p", " two");
        QTRY_COMPARE(outline()->currentIndex(), row("<p>"));
        QPalette dark(QColor(0x31, 0x36, 0x3b), QColor(0x2a, 0x2e, 0x32));
        dark.setColor(QPalette::Base, QColor(0x1b, 0x1e, 0x20));
        dark.setColor(QPalette::Text, Qt::white);
        dark.setColor(QPalette::Link, QColor(0x1d, 0x99, 0xf3));
        QApplication::setPalette(dark);
        QTRY_COMPARE(row("<p>").data(Qt::ForegroundRole).value<QColor>(), dark.color(QPalette::Link));
        QVERIFY(qGray(outline()->viewport()->grab().toImage().pixel(200, outline()->viewport()->height() -
                                                                             5)) < 60);
        luma::test::screenshot(*window, "dark");
        QApplication::setPalette(light);
    }

    // Every control that can be on is on, so that each has its turn.
    void tab_walksEveryStopBothWays()
    {
        open("<title>T</title><style>p{}</style><section>one</section>");
        click("<section>");
        the<QPlainTextEdit>("cssField")->insertPlainText("/* */");
        put("page.html", "<title>Theirs</title>");
        QTRY_VERIFY(the<QPushButton>("noticeReloadButton")->isVisible());
        for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) {
            outline()->setFocus();
            QCOMPARE(luma::test::tabWalk(key), luma::test::tabStops(*window));
        }
        QVERIFY(luma::test::tabStops(*window).size() >= 10);
    }

    void hiddenPanes_areRemembered()
    {
        open("<title>T</title><p>one</p>");
        const QByteArray before = window->layoutState();
        trigger("outlineAction");
        trigger("attributesAction");
        QVERIFY(the<QWidget>("stylePane")->isVisible());
        trigger("stylesAction");
        QVERIFY(!the<QWidget>("sideView")->isVisible());
        QVERIFY(!outline()->isVisible());
        QVERIFY(!the<QWidget>("stylePane")->isVisible());
        luma::test::saveScreenshots(*window, "page-alone");
        const QByteArray alone = window->layoutState();
        openWindow(at("page.html"), at(""));
        window->restoreLayoutState(alone);
        QVERIFY(!outline()->isVisible());
        QVERIFY(!the<QAction>("stylesAction")->isChecked());
        QVERIFY(!the<QAction>("attributesAction")->isChecked());
        trigger("findAction");
        QVERIFY(outline()->isVisible());
        window->restoreLayoutState(before);
        QVERIFY(the<QWidget>("stylePane")->isVisible());
        QVERIFY(the<QWidget>("attributesPane")->isVisible());
        QVERIFY(outline()->width() >= 179);
        window->restoreLayoutState(alone.chopped(4));
        QVERIFY(outline()->isVisible());
    }

    // What the user wants to see is kept meanwhile, also for the next window.
    void sides_giveWayInANarrowWindow()
    {
        open("<title>T</title><p>one</p>");
        window->resize(1100, 700);
        const auto widths = [this] { return the<QSplitter>("splitView")->sizes(); };
        QTRY_VERIFY2(outline()->isVisible() && the<QWidget>("sideView")->isVisible(),
                     "there is room for both");
        const QList<int> wide = widths();
        window->resize(700, 700);
        QTRY_VERIFY2(widths()[1] >= 300, "the sides shrink");
        QVERIFY(outline()->isVisible() && the<QWidget>("sideView")->isVisible());
        window->resize(500, 700);
        QTRY_VERIFY2(!the<QWidget>("sideView")->isVisible(), "one side gives way");
        QCOMPARE(window->width(), 500);
        QTRY_VERIFY2(widths()[1] >= 300, qPrintable(QString::number(widths()[1])));
        QVERIFY(outline()->isVisible());
        QVERIFY(!the<QAction>("stylesAction")->isChecked());
        luma::test::saveScreenshots(*window, "page-narrow");
        const QByteArray narrow = window->layoutState();
        trigger("attributesAction");
        QTRY_VERIFY2(the<QWidget>("attributesPane")->isVisible(), "what is opened replaces the other side");
        QVERIFY(!outline()->isVisible());
        QVERIFY(!the<QAction>("outlineAction")->isChecked());
        trigger("attributesAction");
        QTRY_VERIFY2(outline()->isVisible(), "closed again, it gives the place back");
        trigger("outlineAction");
        QVERIFY2(!the<QWidget>("sideView")->isVisible(), "the page can have all the room");
        trigger("attributesAction");
        trigger("findAction");
        QTRY_VERIFY2(outline()->isVisible(), "the outline is needed");
        window->resize(1100, 700);
        QTRY_VERIFY2(the<QWidget>("stylePane")->isVisible(), "there is room again");
        QVERIFY(the<QWidget>("attributesPane")->isVisible());
        QTRY_COMPARE(widths(), wide);
        openWindow(at("page.html"), at(""));
        window->restoreLayoutState(narrow);
        window->resize(1100, 700);
        QTRY_VERIFY2(the<QWidget>("stylePane")->isVisible(), "the choice is remembered");
        QTRY_COMPARE(widths(), wide);
    }

    void commands_areOnWhereTheyWork_data()
    {
        const test::Rows<QString, QString> row("page", "off");
        const QString whileFresh =
            "undo redo deleteTag duplicate moveUp moveDown hide editMarkup insertMore "
            "rowAbove rowBelow columnLeft columnRight removeRows removeColumns mergeCells "
            "splitCell headerRow ";
        row("page", "page.html", whileFresh);
        row("new page", QString(), whileFresh + "revert findInSite siteNames");
        row("no page", "damaged.html",
            whileFresh +
                "save saveAs saveTemplate publish find findNext findPrevious replace pageTitle reload tidySource showSource "
                "scriptPreview inspectElement pageCheck headings bold italic underline "
                "makeLink editLink removeLink insertImage insertCharacter insertTable");
    }
    void commands_areOnWhereTheyWork()
    {
        QFETCH(QString, page);
        QFETCH(QString, off);
        put("page.html", "<p>one</p>");
        put("damaged.html", std::string_view("\x89PNG\0", 5));
        openWindow(page.isEmpty() ? fs::path() : at(page.toStdString()), at(""));
        QStringList found;
        int count = 0;
        const QList<QAction*> actions = window->findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly);
        for (const QAction* action : actions) {
            if (!action->objectName().endsWith("Action"))
                continue;
            ++count;
            if (!action->isEnabled())
                found.append(action->objectName().chopped(6));
        }
        QCOMPARE(count, 74);
        QStringList expected = off.split(u' ', Qt::SkipEmptyParts);
        found.sort();
        expected.sort();
        QCOMPARE(found, expected);
        QCOMPARE(the<QToolBar>("formatBar")->isEnabled(), page != "damaged.html");
    }

    // By a key of its own, or letter by letter through the menus. Two commands of one key would do nothing.
    void commands_areReachedByKeyboard()
    {
        open("<title>T</title><p>one</p>");
        QMap<QKeySequence, QString> keys;
        QStringList faults;
        const auto hasLetter = [](const QString& text) { return !QKeySequence::mnemonic(text).isEmpty(); };
        const QList<QAction*> actions = window->findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly);
        for (const QAction* const action : actions) {
            const auto places = action->associatedObjects();
            const bool isInMenu = std::any_of(places.begin(), places.end(), [&](const QObject* place) {
                const auto* const menu = qobject_cast<const QMenu*>(place);
                return menu && hasLetter(menu->title()) && hasLetter(action->text());
            });
            if (action->objectName().endsWith("Action") &&
                (action->text().isEmpty() || !(isInMenu || !action->shortcut().isEmpty())))
                faults.append(action->objectName());
            for (const QKeySequence& key : action->shortcuts()) {
                if (keys.contains(key))
                    faults.append(action->objectName() + " has the key of " + keys[key]);
                keys[key] = action->objectName();
            }
        }
        QCOMPARE(faults, QStringList());
    }

    void panes_areReachedByKeyboard()
    {
        open("<title>T</title><style>p{}</style><p>one</p><h1><a href=x>two</a></h1>");
        trigger("rulesAction");
        trigger("pageCheckAction");
        click("<p>");
        QTRY_VERIFY2(the<QWidget>("newRuleButton")->isEnabled(), "the rules are read");
        // The engine takes the focus in its own time, in a widget of its own.
        const auto isIn = [this](const char* pane) {
            return the<QWidget>(pane)->isAncestorOf(QApplication::focusWidget());
        };
        const char* const panes[] = {"outlinePane",    "contentView", "checkPane",
                                     "attributesPane", "rulesPane",   "stylePane"};
        QVERIFY(isIn("outlinePane"));
        for (const char* const pane :
             {panes[1], panes[2], panes[3], panes[4], panes[5], panes[0], panes[1]}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_F6);
            QTRY_VERIFY2(isIn(pane),
                         qPrintable(pane + (" not " + QApplication::focusWidget()->objectName())));
            QVERIFY(test::tabStops(*window).contains(test::nameOfStop(*QApplication::focusWidget())));
        }
        for (const char* const pane : {panes[0], panes[5], panes[4], panes[3]}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_F6, Qt::ShiftModifier);
            QTRY_VERIFY2(isIn(pane),
                         qPrintable(pane + (" not " + QApplication::focusWidget()->objectName())));
        }
        for (const char* const field : {"myOutlineView", "blockFormatBox", "elementPath", "attributesView",
                                        "rulesView", "newRuleButton", "cssField", "checkList"}) {
            the<QWidget>(field)->setFocus();
            QTRY_VERIFY2(the<QWidget>(field)->hasFocus(), field);
            QTest::keyClick(the<QWidget>(field), Qt::Key_Escape);
            QTRY_VERIFY2(isIn("contentView"), field);
        }
        QCOMPARE(answer("getSelection().anchorNode.textContent"), "one");
    }

    void page_takesKeysWithoutAClick_data()
    {
        const test::Rows<QByteArray, QByteArray> row("chosen", "result");
        row("nothing", "", "<p>xone</p><h1>two</h1>");
        row("a row", "<h1>", "<p>one</p><h1>x</h1>");
    }
    void page_takesKeysWithoutAClick()
    {
        open("<title>T</title><p>one</p><h1>two</h1>");
        QFETCH(QByteArray, chosen);
        if (!chosen.isEmpty()) {
            click(chosen.constData());
            QTRY_COMPARE(answer("getSelection().toString()"), "two");
        }
        outline()->setFocus();
        QTRY_VERIFY(outline()->hasFocus());
        QTest::keyClick(outline(), Qt::Key_Escape);
        QTRY_VERIFY(rendering().webView()->focusProxy()->hasFocus());
        QTRY_COMPARE(answer("document.hasFocus()"), "true");
        type("x");
        QFETCH(QByteArray, result);
        QTRY_COMPARE(body(), result);
    }

    void commandsOfTheProgram_areAskedFor_data()
    {
        const test::Rows<QByteArray> row("signal");
        row("newAction", SIGNAL(newRequested()));
        row("siteNamesAction", SIGNAL(siteNamesRequested(std::filesystem::path)));
        row("publishAction", SIGNAL(publishRequested(std::filesystem::path)));
        row("closeAction", SIGNAL(destroyed()));
    }
    void commandsOfTheProgram_areAskedFor()
    {
        open("<title>T</title><p>one</p>");
        typeInto("p", "s");
        QTRY_VERIFY(window->isWindowModified());
        if (QTest::currentDataTag() == "closeAction"_qba)
            trigger("saveAction");
        QFETCH(QByteArray, signal);
        QSignalSpy requests(window, signal.constData());
        the<QAction>(QTest::currentDataTag())->trigger();
        QTRY_COMPARE(requests.count(), 1);
        QCOMPARE(file("page.html").find("ones") != std::string::npos, signal.contains("publish") || !window);
    }

    void newPageFromAnother_hasItsLinksRight()
    {
        const std::string markup =
            "<title>T</title><p><a href=\"../x.html#a\">x</a><a href=\"b.html\">b</a></p>\n";
        put("news/a.html", markup);
        put("news/b.html", "");
        put("x.html", "");
        open(at("news/a.html"), at(""));
        QSignalSpy requests(window, &HTMLDocument::newFromRequested);
        trigger("newFromAction");
        auto* const panel = the<QFileDialog>("newFromPanel");
        QVERIFY(panel);
        emit panel->fileSelected(QString::fromStdString(at("news/a.html").native()));
        panel->close();
        QCOMPARE(requests.count(), 1);
        QCOMPARE(requests.first().first().value<PageTemplate>().page, at("news/a.html"));
        delete window;
        window = new HTMLDocument;
        window->mountPath = at("");
        window->useTemplate({at("news/a.html")});
        window->show();
        window->windowDidLoad();
        waitUntilShown();
        QCOMPARE(window->windowTitle(), "Untitled[*]");
        QVERIFY(!window->isWindowModified());
        QVERIFY(window->saveToURL(at("c.html")));
        QCOMPARE(
            file("c.html"),
            std::string("<title>T</title><p><a href=\"x.html#a\">x</a><a href=\"news/b.html\">b</a></p>\n"));
        QCOMPARE(file("news/a.html"), markup);
        QCOMPARE(window->windowTitle(), "c.html[*]");
    }

    void template_keepsItsLinksAndShowsTheSite()
    {
        const fs::path folder = at("my <b>templates</b>");
        QVERIFY(TemplateSheet::usualFolder() != folder);
        put("site/css/main.css", "p { color: rgb(1, 2, 3) }");
        put("site/news/page.html", "<title>News</title><link rel=stylesheet href=../css/main.css><p>one</p>");
        open(at("site/news/page.html"), at("site"));
        window->setTemplateFolder([folder] { return folder; });
        trigger("newFromTemplateAction");
        auto* const sheet = the<TemplateSheet>("templateSheet");
        QVERIFY(the<QLabel>("noTemplates")->isVisible());
        QVERIFY(!the<QPushButton>("templateButton")->isEnabled());
        test::saveScreenshots(*sheet, "templates-none");
        sheet->close();
        trigger("saveTemplateAction");
        QTRY_VERIFY(the<QFileDialog>("saveTemplatePanel"));
        auto* const panel = the<QFileDialog>("saveTemplatePanel");
        emit panel->fileSelected(QString::fromStdString((folder / "News.html").native()));
        panel->close();
        QTRY_VERIFY(fs::exists(folder / "News.html"));
        QCOMPARE(window->docURL(), at("site/news/page.html"));
        QSignalSpy requests(window, &HTMLDocument::newFromRequested);
        trigger("newFromTemplateAction");
        QCOMPARE(the<QListWidget>("templateList")->item(0)->text(),
                 QString::fromUtf8("News\nNews \u2013 one"));
        sheet->close();
        put("my <b>templates</b>/<i>&\n \u00fc%.html", "<p>" + std::string(500, 'x'));
        put("my <b>templates</b>/Empty.html", "");
        trigger("newFromTemplateAction");
        QCOMPARE(the<QListWidget>("templateList")->count(), 3);
        test::saveScreenshots(*sheet, "templates");
        the<QListWidget>("templateList")->setCurrentRow(2);
        QCOMPARE(the<QListWidget>("templateList")->currentItem()->text().section('\n', 0, 0), "News");
        QTest::keyClick(the<QListWidget>("templateList"), Qt::Key_Return);
        QTRY_COMPARE(requests.count(), 1);
        QCOMPARE(requests.first().first().value<PageTemplate>().page, folder / "News.html");
        delete window;
        window = new HTMLDocument;
        window->mountPath = at("site");
        window->useTemplate({folder / "News.html", folder});
        window->show();
        window->windowDidLoad();
        waitUntilShown();
        QTRY_COMPARE(answer("getComputedStyle(document.querySelector('p')).color"), "rgb(1, 2, 3)");
        QVERIFY(!window->isWindowModified());
        QVERIFY(window->saveToURL(at("site/news/next.html")));
        QCOMPARE(file("site/news/next.html"), file("site/news/page.html"));
    }

    void filesOfTemplate_comeAlong()
    {
        const fs::path folder = at("templates");
        put("templates/News.html", "<link rel=stylesheet href=css/main.css><p>one</p><img src=logo.png>");
        put("templates/css/main.css", "p { color: rgb(1, 2, 3) }");
        put("templates/logo.png", "logo");
        put("site/images/logo.png", "another");
        put("site/news/a.html", "");
        put("site/page.html", "<p>page</p>");
        const auto before = contentsOfSite();
        open(at("site/page.html"), at("site"));
        window->setTemplateFolder([folder] { return folder; });
        trigger("newFromTemplateAction");
        auto* const box = the<QCheckBox>("templateFilesBox");
        QTRY_COMPARE(box->text(), "&Copy the files that it uses into the site (2)");
        test::saveScreenshots(*the<TemplateSheet>("templateSheet"), "templates-files");
        QSignalSpy requests(window, &HTMLDocument::newFromRequested);
        the<QPushButton>("templateButton")->click();
        QTRY_COMPARE(requests.count(), 1);
        const auto from = requests.first().first().value<PageTemplate>();
        QCOMPARE(from.folder, folder);
        trigger("newFromTemplateAction");
        box->setChecked(false);
        the<QPushButton>("templateButton")->click();
        QCOMPARE(requests.last().first().value<PageTemplate>().folder, fs::path());

        delete window;
        openFromTemplate(from);
        QTRY_COMPARE(answer("getComputedStyle(document.querySelector('p')).color"), "rgb(1, 2, 3)");
        QVERIFY(!window->isWindowModified() && !the<QWidget>("noticeBar")->isVisible());
        const auto after = contentsOfSite();
        // A second page has the same files, which go only with the last one.
        const QPointer<HTMLDocument> first = window;
        openFromTemplate(from);
        QVERIFY(contentsOfSite() == after);
        first->close();
        QTRY_VERIFY(!first);
        QVERIFY(QThreadPool::globalInstance()->waitForDone());
        QVERIFY(contentsOfSite() == after);
        window->close();
        QTRY_VERIFY(contentsOfSite() == before);

        openFromTemplate(from);
        QVERIFY(window->saveToURL(at("site/news/next.html")));
        QCOMPARE(file("site/news/next.html"),
                 "<link rel=stylesheet href=../css/main.css><p>one</p><img src=../images/logo-2.png>");
        window->close();
        QTRY_VERIFY(!window);
        QVERIFY(QThreadPool::globalInstance()->waitForDone());
        QCOMPARE(file("site/css/main.css") + file("site/images/logo-2.png"), "p { color: rgb(1, 2, 3) }logo");
    }
    void filesOfTemplate_stayIfOneCannotBeCopied()
    {
        put("templates/News.html", "<p>one</p><img src=a.png><img src=b/b.png>");
        put("templates/a.png", "a");
        put("templates/b/b.png", "b");
        put("site/b", "no folder");
        const auto before = contentsOfSite();
        openFromTemplate({at("templates/News.html"), at("templates")});
        QTRY_VERIFY(the<QLabel>("noticeText")->text().contains("were not copied into the site"));
        QVERIFY(the<QLabel>("noticeText")->isVisible());
        QCOMPARE(body(), "<p>one</p><img src=\"../templates/a.png\"><img src=\"../templates/b/b.png\">");
        QVERIFY(contentsOfSite() == before);
    }

    void pagesOfOneName_tellTheirFolders()
    {
        put("a/page.html", "<p>two</p>");
        open("<p>one</p>");
        QCOMPARE(window->windowTitle(), "page.html[*]");
        const auto titleIn = [this](const char* folder) {
            return QStringLiteral("page.html \u2013 %1[*]").arg(QString::fromStdString(at(folder).native()));
        };
        {
            HTMLDocument other;
            other.setAttribute(Qt::WA_DeleteOnClose, false);
            other.mountPath = at("");
            other.readFromURL(at("a/page.html"));
            other.show();
            other.windowDidLoad();
            QCOMPARE(other.windowTitle(), titleIn("a"));
            QCOMPARE(window->windowTitle(), titleIn("").replace(QStringLiteral("/["), QStringLiteral("[")));
            other.close();
        }
        window->activateWindow();
        QTRY_COMPARE(window->windowTitle(), "page.html[*]");
    }

    void print_doesNothing()
    {
        open("<title>Old</title><p>x</p>");
        setTitle("New");
        window->printDocument();
        QVERIFY(std::filesystem::remove(at("page.html")));
        window->printDocument();
        QCOMPARE(window->tree().document()->title(), std::string("New"));
        QVERIFY(window->isWindowModified());
        QVERIFY(!the<QWidget>("noticeBar")->isVisible());
    }

    void newPage_isSavedUnderAName()
    {
        openWindow({}, at(""));
        waitUntilShown();
        QCOMPARE(window->windowTitle(), "Untitled[*]");
        for (const char* const action : {"saveAsAction", "saveAction"}) {
            trigger(action);
            auto* panel = the<QFileDialog>("savePanel");
            QVERIFY(panel);
            panel->close();
            QTRY_VERIFY2(!the<QFileDialog>("savePanel"), "the panel is gone");
        }
        QSignalSpy located(window, &HTMLDocument::locationChanged);
        QVERIFY(window->saveToURL(at("new.html")));
        QCOMPARE(located.size(), 1);
        QCOMPARE(window->windowTitle(), "new.html[*]");
        QVERIFY(file("new.html").starts_with("<!DOCTYPE html>"));
    }
};

LUMA_TEST(tst_htmldocument)
#include "tst_htmldocument.moc"
