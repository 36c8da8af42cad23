// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/outlineview.h"
#include "html/element.h"
#include "tests/editor/pagewindow.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/screenshot.h"
#include "web/viewcontroller.h"

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>
#include <QTest>

using namespace luma;

namespace {

std::string repeated(const std::string& text, int count)
{
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

} // namespace

/// How the outline scrolls, and what is selected in it after an edit, in the window of a page.
class tst_outlineview final : public QObject, private luma::test::PageWindow
{
    Q_OBJECT

private:
    void drop(const char* dragged, const char* target, Qt::DropAction action) const
    {
        QAbstractItemModel& model = *outline()->model();
        const std::unique_ptr<QMimeData> record(model.mimeData({row(dragged)}));
        QVERIFY(record);
        QVERIFY(model.dropMimeData(record.get(), action, -1, 0, row(target)));
    }

private slots:
    void cleanup() { close(); }

    void deepRow_isScrolledIntoView()
    {
        open("<title>T</title>" + repeated("<div><span>", 40) + "<b>deepest</b>");
        const QScrollBar& bar = *outline()->horizontalScrollBar();
        QCOMPARE(bar.value(), 0);
        outline()->setCurrentIndex(row("<b>"));
        const QRect deepest = outline()->visualRect(row("<b>"));
        QVERIFY(deepest.left() >= 0);
        QVERIFY(deepest.left() + outline()->fontMetrics().horizontalAdvance("<b> deep") <
                outline()->viewport()->width());
        outline()->setCurrentIndex(row("<html>"));
        QCOMPARE(bar.value(), 0);
    }

    void shallowPage_hasNoHorizontalScrollBar()
    {
        open("<title>T</title><section class='" + repeated("long ", 100) + "'><p>one</p></section>");
        QCOMPARE(outline()->horizontalScrollBar()->maximum(), 0);
    }

    void copiedElement_isSelected()
    {
        open("<title>T</title><section><p>one</p></section><article></article>");
        click("<p>");
        drop("<p>", "<article>", Qt::CopyAction);
        QTRY_COMPARE(body(), QByteArray("<section><p>one</p></section><article><p>one</p></article>"));
        QCOMPARE(outline()->currentIndex().parent(), row("<article>"));
        drop("<article>", "<section>", Qt::MoveAction);
        QTRY_COMPARE(body(), QByteArray("<section><article><p>one</p></article><p>one</p></section>"));
        QCOMPARE(outline()->currentIndex(), row("<article>"));
    }

    void elements_areMovedAndCopiedByKeyboard()
    {
        open("<title>T</title><section><p>one</p></section><article></article>");
        const auto paste = [this](const char* taken, const char* action, const char* target) {
            click(taken);
            trigger(action);
            click(target);
            trigger("pasteAction");
            QCoreApplication::processEvents();
        };
        paste("<p>", "copyAction", "<article>");
        QTRY_COMPARE(body(), QByteArray("<section><p>one</p></section><article><p>one</p></article>"));
        paste("<article>", "cutAction", "<section>");
        const QByteArray moved = "<section><article><p>one</p></article><p>one</p></section>";
        QTRY_COMPARE(body(), moved);
        trigger("pasteAction"); // it was moved once
        paste("<section>", "cutAction", "<article>");
        paste("<title>", "copyAction", "<section>");
        paste("<body>", "cutAction", "<head>");
        QCOMPARE(body(), moved);
        trigger("undoAction");
        trigger("undoAction");
        QTRY_COMPARE(body(), QByteArray("<section><p>one</p></section><article></article>"));
    }

    void element_isDuplicatedAndMovedAmongItsSiblings_data()
    {
        const test::Rows<QByteArray, QByteArray, QByteArray, QByteArray, QString> row("page", "row", "action",
                                                                                      "result", "name");
        row("copy in a line of its own", "<b>0</b>\n <p>1</p>\n <i>2</i>", "<p>", "duplicateAction",
            "<b>0</b>\n <p>1</p>\n <p>1</p>\n <i>2</i>", "Duplicate");
        row("ids and what refers to them",
            "<p id=\"a-2\">x</p><form id=\"a\"><input id=\"b\"><label for=\"b\"></label><a href=\"#a\"></a>"
            "<a href=\"#c\"></a></form>",
            "<form", "duplicateAction",
            "<p id=\"a-2\">x</p><form id=\"a\"><input id=\"b\"><label for=\"b\"></label><a href=\"#a\"></a>"
            "<a href=\"#c\"></a></form><form id=\"a-3\"><input id=\"b-2\"><label for=\"b-2\"></label>"
            "<a href=\"#a-3\"></a><a href=\"#c\"></a></form>",
            "Duplicate");
        row("up", "<b>0</b>\n <p>1</p><i>2</i>", "<p>", "moveUpAction", "<p>1</p>\n <b>0</b><i>2</i>",
            "Move Up");
        row("down", "<b>0</b><p>1</p>\n<i>2</i> 3", "<p>", "moveDownAction", "<b>0</b><i>2</i>\n<p>1</p> 3",
            "Move Down");
        row("up over text", "<b>0</b> and <i>1</i>", "<i>", "moveUpAction", "<i>1</i><b>0</b> and ",
            "Move Up");
        row("first", "<b>0</b><i>1</i>", "<b>", "moveUpAction", "<b>0</b><i>1</i>", "");
        row("last", "<b>0</b><i>1</i>", "<i>", "moveDownAction", "<b>0</b><i>1</i>", "");
    }
    void element_isDuplicatedAndMovedAmongItsSiblings()
    {
        QFETCH(QByteArray, page);
        QFETCH(QByteArray, row);
        QFETCH(QByteArray, action);
        open("<title>T</title>" + page.toStdString());
        const QByteArray before = body();
        click(row.constData());
        trigger(action.constData());
        QFETCH(QByteArray, result);
        QTRY_COMPARE(body().trimmed(), result.trimmed());
        QTEST(window->undoStack()->undoText(), "name");
        QVERIFY(outline()->currentIndex().data().toString().startsWith(QString::fromUtf8(row)));
        QTRY_COMPARE(answer("document.body.innerHTML").trimmed(), QString::fromUtf8(result).trimmed());
        trigger("undoAction");
        QTRY_COMPARE(body(), before);
    }

    void keysOfElements_leaveFieldsAlone()
    {
        open("<title>T</title><b>0</b><i>1</i>");
        click("<i>");
        QTest::keyClick(outline(), Qt::Key_Up, Qt::AltModifier);
        QTRY_COMPARE(body(), "<i>1</i><b>0</b>");
        trigger("findAction");
        QTest::keyClick(the<QWidget>("outlineFindField"), Qt::Key_D, Qt::ControlModifier);
        QTest::keyClick(the<QWidget>("outlineFindField"), Qt::Key_Down, Qt::AltModifier);
        rendering().catchUp();
        QCOMPARE(body(), "<i>1</i><b>0</b>");
        QTest::keyClick(the<QWidget>("outlineFindField"), Qt::Key_Escape);
        QTest::keyClick(outline(), Qt::Key_D, Qt::ControlModifier);
        QTRY_COMPARE(body(), "<i>1</i><i>1</i><b>0</b>");
    }

    void fixedElements_areNeitherMovedNorDuplicated_data()
    {
        const test::Rows<QByteArray, QByteArray, QString> row("row", "action", "reason");
        row("body up", "<body>", "moveUpAction", "<body> can't be moved. Its place in a page is fixed.");
        row("second title", "<title>", "duplicateAction", "A page may have only one <title> like this.");
    }
    void fixedElements_areNeitherMovedNorDuplicated()
    {
        open("<title>T</title><p>one</p>");
        const QByteArray before = tree();
        QFETCH(QByteArray, row);
        QFETCH(QByteArray, action);
        click(row.constData());
        trigger(action.constData());
        QTEST(the<QLabel>("noticeText")->text(), "reason");
        QVERIFY(the<QLabel>("noticeText")->isVisible());
        QCOMPARE(tree(), before);
    }

    void hiddenElement_staysInThePage()
    {
        open("<title>T</title><p>one</p><p id=x>two <b>bold</b></p>");
        const QByteArray before = tree();
        const auto look = [this](const char* selector) {
            return answer(QStringLiteral("getComputedStyle(document.querySelector('%1')).visibility")
                              .arg(QLatin1String(selector)));
        };
        click("<p id");
        QTest::keyClick(outline(), Qt::Key_H);
        QTRY_COMPARE(look("#x b"), "hidden");
        QCOMPARE(look("p"), "visible");
        QCOMPARE(row("<p id").data(Qt::AccessibleDescriptionRole), "Hidden");
        trigger("reloadAction");
        QTRY_VERIFY(isShown());
        QTRY_COMPARE(look("#x"), "hidden");
        QCOMPARE(tree(), before);
        QVERIFY(!window->isWindowModified());
        trigger("hideAction");
        QTRY_COMPARE(look("#x"), "visible");
    }

    void keys_goThroughTheRows()
    {
        open("<title>T</title><section><p>one</p><ul><li>2</ul></section><footer>f</footer>");
        const auto press = [this](Qt::Key key) {
            QTest::keyClick(outline(), key);
            return outline()->currentIndex().data().toString();
        };
        QCOMPARE(press(Qt::Key_End), "<footer> f");
        QCOMPARE(press(Qt::Key_Up), "<li> 2");
        QCOMPARE(press(Qt::Key_Left), "<ul>"); // its row has nothing to close
        QCOMPARE(press(Qt::Key_Left), "<ul>");
        QVERIFY(!outline()->isExpanded(row("<ul>")));
        QCOMPARE(press(Qt::Key_Left), "<section>");
        QCOMPARE(press(Qt::Key_Asterisk), "<section>");
        QVERIFY(outline()->isExpanded(row("<ul>")));
        QCOMPARE(press(Qt::Key_F), "<footer> f"); // the asterisk is no part of a name
        QCOMPARE(press(Qt::Key_Home), "<html>");
    }

    void refusedKey_tellsTheReason_data()
    {
        const test::Rows<QByteArray, Qt::Key, QString> row("row", "key", "reason");
        row("delete the body", "<body", Qt::Key_Delete, "A page needs its <body>.");
        row("delete the title", "<title", Qt::Key_Delete, "A page needs its <title>.");
        row("delete the doctype", "<!DOCTYPE", Qt::Key_Delete, "This is edited in the page's source.");
        row("edit the doctype", "<!DOCTYPE", Qt::Key_F2, "This is edited in the page's source.");
        row("edit server code", "<?php", Qt::Key_F2, "This is edited in the page's source.");
        row("hide the head", "<head", Qt::Key_H, "Only elements in <body> can be hidden.");
    }
    void refusedKey_tellsTheReason()
    {
        open("<!DOCTYPE html><title>T</title><body><p>one</p><?php 2 ?>");
        the<QAction>("allNodesAction")->trigger();
        QFETCH(QByteArray, row);
        QFETCH(Qt::Key, key);
        click(row.constData());
        QTest::keyClick(outline(), key);
        QTRY_VERIFY(the<QWidget>("noticeBar")->isVisible());
        QTEST(the<QLabel>("noticeText")->text(), "reason");
        click("<p");
        QVERIFY(!the<QWidget>("noticeBar")->isVisible());
        QVERIFY(!window->undoStack()->canUndo());
    }

    void typedName_selectsTheNextRowOfThatName()
    {
        const int interval = QApplication::keyboardInputInterval();
        QApplication::setKeyboardInputInterval(60'000);
        const auto restore = qScopeGuard([interval] { QApplication::setKeyboardInputInterval(interval); });
        open(
            "<title>T</title><i id=here></i><i id=-h>some  text<!-- A comment --></i><b class='lead nav-top'></b>"
            "<b class=nav-bar></b><section><p>one</p><table><tr><th>H</th></tr></table><p>two</p></section>");
        click("<section>");
        const auto type = [this](const char* letters) {
            QTest::keyClicks(outline(), QString::fromLatin1(letters));
            return outline()->currentIndex().data().toString();
        };
        QCOMPARE(type("p"), "<p> one");
        QCOMPARE(type("p"), "<p> two");
        QCOMPARE(type("p"), "<p> one");
        click("<html>");
        QCOMPARE(type("th"), "<th> H");
        QCOMPARE(tree().count("style"), 0);
        trigger("allNodesAction");
        for (const auto& [letters, found] :
             {std::pair("#he", "<i id=\"here"), std::pair("#-h", "<i id=\"-h"),
              std::pair(".NA", "<b class=\"lead"), std::pair(".nav-b", "<b class=\"nav-bar"),
              std::pair(".nav-x", "<b class=\"lead"), std::pair("some t", "some text"),
              std::pair("a co", "<!-- A comment"), std::pair("two", "two")}) {
            click("<html>");
            QVERIFY2(type(letters).startsWith(QLatin1String(found)), letters);
        }
        trigger("allNodesAction");
        click("<section>");
        outline()->collapse(row("<section>"));
        QTest::keyClick(outline(), Qt::Key_Asterisk);
        QTest::keyClick(outline(), Qt::Key_End);
        QCOMPARE(outline()->currentIndex(), row("<p> two"));
    }

    void stepsOfThePath_areChosen()
    {
        open("<title>T</title><section><p>one</p></section><article id=a><p>two</p></article>");
        click("<p> one");
        auto& path = *the<QLabel>("elementPath");
        QCOMPARE(path.text(), "html \u203a body \u203a section \u203a p");
        test::saveScreenshots(*window, "element-path");
        const QPoint section(path.fontMetrics().horizontalAdvance("html \u203a body \u203a s"),
                             path.height() / 2);
        QTest::mouseClick(&path, Qt::LeftButton, {}, section);
        QCOMPARE(outline()->currentIndex(), row("<section>"));
        QContextMenuEvent request(QContextMenuEvent::Mouse, section, path.mapToGlobal(section));
        QApplication::sendEvent(&path, &request);
        QTRY_VERIFY(the<QMenu>("siblingMenu"));
        const QList<QAction*> siblings = the<QMenu>("siblingMenu")->actions();
        QCOMPARE(siblings.size(), 2);
        QVERIFY(siblings.first()->isChecked());
        siblings.last()->trigger();
        the<QMenu>("siblingMenu")->close();
        QTRY_COMPARE(outline()->currentIndex(), row("<article"));
        QCOMPARE(path.text(), "html \u203a body \u203a article#a");
        QTRY_COMPARE(answer("getSelection().toString()"), "two");
        path.setFocus();
        QTest::keyClick(&path, Qt::Key_Left);
        QTest::keyClick(&path, Qt::Key_Return);
        QCOMPARE(outline()->currentIndex(), row("<body>"));
    }

    void scrollPositions_stayOverEditUndoAndReload()
    {
        open("<title>T</title>" + repeated("<section><h2>Head</h2><p>text</p></section>", 300));
        outline()->setCurrentIndex(row("<body>"));
        outline()->setCurrentIndex(outline()->model()->index(100, 0, row("<body>")));
        outline()->scrollTo(outline()->currentIndex(), QTreeView::PositionAtCenter);
        QTRY_VERIFY(answer("getSelection().toString()").startsWith("Head"));
        const QString before = answer("document.body.scrollTop");
        QVERIFY(before.toDouble() > 1000);
        const int rows = outline()->verticalScrollBar()->value();
        for (const char* action :
             {"deleteTagAction", "undoAction", "redoAction", "undoAction", "reloadAction"}) {
            const QByteArray markup = body();
            trigger(action);
            QTRY_VERIFY(isShown());
            QTRY_COMPARE(answer("document.body.scrollTop"), before);
            QCOMPARE(outline()->verticalScrollBar()->value(), rows);
            QCOMPARE(body() == markup, qstrcmp(action, "reloadAction") == 0);
        }
    }
};

LUMA_TEST(tst_outlineview)
#include "tst_outlineview.moc"
