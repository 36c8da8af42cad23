// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/pagewindow.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/screenshot.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

using namespace luma;

namespace {

constexpr auto head = "<!DOCTYPE html>\n<title>T</title>\n<P>one\n";
constexpr auto foot = "\n<p  class=x>two";

} // namespace

/// Tables in a page's window: from the menu and by keyboard, to the file.
class tst_tables final : public QObject, private luma::test::PageWindow
{
    Q_OBJECT

private slots:
    void cleanup() { close(); }

    void table_isInsertedAtTheCaret_data()
    {
        const test::Rows<int, int, bool, QByteArray> row("rows", "columns", "hasHeader", "table");
        row("header", 2, 2, true,
            "<thead>\n<tr><th scope=\"col\">x</th><th scope=\"col\"><br></th></tr>\n</thead>\n"
            "<tbody>\n<tr><td><br></td><td><br></td></tr>\n</tbody>\n");
        row("body", 1, 1, false, "<tbody>\n<tr><td>x</td></tr>\n</tbody>\n");
        row("header alone", 1, 1, true, "<thead>\n<tr><th scope=\"col\">x</th></tr>\n</thead>\n");
    }
    void table_isInsertedAtTheCaret()
    {
        open(std::string(head) + foot);
        setCaretBehind("one");
        the<QAction>("insertTableAction")->trigger();
        auto* const sheet = the<QDialog>("tableSheet");
        QTRY_VERIFY(sheet->isVisible());
        test::saveScreenshots(*sheet, "table-sheet");
        QFETCH(int, rows);
        QFETCH(int, columns);
        QFETCH(bool, hasHeader);
        the<QSpinBox>("tableRows")->setValue(rows);
        the<QSpinBox>("tableColumns")->setValue(columns);
        the<QCheckBox>("tableHeaderBox")->setChecked(hasHeader);
        QTest::keyClick(the<QSpinBox>("tableRows"), Qt::Key_Return);
        QTRY_COMPARE(window->undoStack()->undoText(), "Insert Table");
        test::saveScreenshots(*window, "table");
        QTRY_VERIFY(!sheet->isVisible());
        window->activateWindow();
        QTRY_VERIFY(window->isActiveWindow());
        focusPage();
        type("x");
        QFETCH(QByteArray, table);
        QTRY_VERIFY2(body().contains("<table style=\"width: 100%;\">\n" + table + "</table>"),
                     body().constData());
    }

    // The rest of the file keeps its bytes.
    void commands_changeTheTableAlone_data()
    {
        const test::Rows<QByteArray, QString, QByteArray> row("cell", "undo", "after");
        row("rowAboveAction", "c", "Add Row",
            "<TABLE>\n<tr><td>a<td>b\n<tr><td><br></td><td><br></td></tr><tr><td>c<td>d\n</table>");
        row("rowBelowAction", "c", "Add Row",
            "<TABLE>\n<tr><td>a<td>b\n<tr><td>c<td>d\n<tr><td><br></td><td><br></td></tr></table>");
        row("removeColumnsAction", "a", "Remove Column", "<TABLE>\n<tr><td>b\n<tr><td>d\n</table>");
        row("removeRowsAction", "a", "Remove Row", "<TABLE>\n<tr><td>c<td>d\n</table>");
        row("columnRightAction", "b", "Add Column",
            "<TABLE>\n<tr><td>a<td>b\n<td><br></td><tr><td>c<td>d\n<td><br></td></table>");
        row("columnLeftAction", "b", "Add Column",
            "<TABLE>\n<tr><td>a<td><br></td><td>b\n<tr><td>c<td><br></td><td>d\n</table>");
        row("headerRowAction", "a", "Header Row",
            "<TABLE>\n<thead>\n<tr><th scope=\"col\">a</th><th scope=\"col\">b\n</th></tr></thead>\n<tr><td>c<td>d\n"
            "</table>");
    }
    void commands_changeTheTableAlone()
    {
        open(std::string(head) + "<TABLE>\n<tr><td>a<td>b\n<tr><td>c<td>d\n</table>" + foot);
        const QByteArray before = body();
        QFETCH(QByteArray, cell);
        click(("<td> " + cell).constData());
        trigger(QTest::currentDataTag());
        QTRY_COMPARE(window->undoStack()->count(), 1);
        QTEST(window->undoStack()->undoText(), "undo");
        QTRY_COMPARE(answer("document.body.innerHTML").toUtf8(), body());
        trigger("saveAction");
        const QByteArray saved = QByteArray::fromStdString(file("page.html"));
        QVERIFY2(saved.startsWith(head), saved.constData());
        QVERIFY2(saved.endsWith(foot), saved.constData());
        QFETCH(QByteArray, after);
        QCOMPARE(saved.mid(qsizetype(qstrlen(head)), saved.size() - qsizetype(qstrlen(head) + qstrlen(foot))),
                 after);
        trigger("undoAction");
        QTRY_COMPARE(body(), before);
    }

    void cellsSelectedInThePage_areMergedAndSplit()
    {
        open("<table><tr><td>a<td>b<tr><td>c<td>d</table>");
        focusPage();
        (void)answer("{ const cells = document.querySelectorAll('td');"
                     "  getSelection().setBaseAndExtent(cells[0].firstChild, 0, cells[3].firstChild, 1) }");
        QTRY_VERIFY(the<QAction>("mergeCellsAction")->isEnabled());
        trigger("mergeCellsAction");
        const QByteArray merged =
            "<table><tbody><tr><td colspan=\"2\" rowspan=\"2\">a<br>b<br>c<br>d</td></tr>"
            "<tr></tr></tbody></table>";
        QTRY_COMPARE(body(), merged);
        QCOMPARE(window->undoStack()->undoText(), "Merge Cells");
        QTRY_COMPARE(answer("document.body.innerHTML").toUtf8(), merged);
        trigger("mergeCellsAction");
        QTRY_COMPARE(the<QLabel>("noticeText")->text(), "Select the cells that are to become one first.");
        trigger("splitCellAction");
        QTRY_COMPARE(body(), QByteArray("<table><tbody><tr><td>a<br>b<br>c<br>d</td><td><br></td></tr>"
                                        "<tr><td><br></td><td><br></td></tr></tbody></table>"));
        QCOMPARE(window->undoStack()->undoText(), "Split Cell");
    }

    void tab_movesThroughTheCellsAndAddsARow()
    {
        open("<table><tr><td>a<td>b</table><p>c");
        setCaretBehind("a");
        QTRY_VERIFY(the<QAction>("rowBelowAction")->isEnabled());
        QWidget* const keys = rendering().webView()->focusProxy();
        QTest::keyClick(keys, Qt::Key_Tab);
        QTRY_COMPARE(answer("getSelection().toString()"), "b");
        // All that is typed before the caret is there waits for it.
        for (const char letter : {'c', 'd', 'e', 'f', 'g'}) {
            QTest::keyClick(keys, Qt::Key_Tab);
            QTest::keyClick(keys, letter);
        }
        const QByteArray first = "<table><tbody><tr><td>a</td><td>b</td></tr>";
        QTRY_COMPARE(body(), first + "<tr><td>c</td><td>d</td></tr><tr><td>e</td><td>f</td></tr>"
                                     "<tr><td>g</td><td><br></td></tr></tbody></table><p>c</p>");
        QCOMPARE(window->undoStack()->text(0), "Add Row");
        while (window->undoStack()->canUndo())
            trigger("undoAction");
        QTRY_COMPARE(body(), first + "</tbody></table><p>c</p>");
    }
};

LUMA_TEST(tst_tables)
#include "tst_tables.moc"
