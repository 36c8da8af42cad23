// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/parse.h"
#include "page/pagetree.h"
#include "page/tableedits.h"
#include "page/tablegrid.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"

#include <QTest>
#include <QUndoStack>

using namespace luma;

namespace {

/// A table in short: rows in "/", groups in "|", cells by their ids or, without one, "-" for td and "+" for th, with the
/// numbers of columns and rows that they span. "h" before a group is a thead, "f" a tfoot.
QByteArray shape(const html::Element& table)
{
    QByteArray text;
    for (const html::Element* const group : table.children()) {
        if (group->is("colgroup"))
            continue;
        text += text.isEmpty() ? "" : "|";
        text += group->is("thead") ? "h " : group->is("tfoot") ? "f " : "";
        for (const html::Element* const row : group->children()) {
            text += row == group->firstElement() ? "" : "/";
            for (const html::Element* const cell : row->children()) {
                const std::string_view id = cell->attr("id");
                text += id.empty() ? (cell->is("th") ? "+" : "-") : std::string(id).c_str();
                for (const char* const span : {"colspan", "rowspan"}) {
                    if (cell->hasAttr(span))
                        text += span[0] + QByteArray::fromStdString(std::string(cell->attr(span)));
                }
            }
        }
    }
    return text;
}

} // namespace

/// Rows, columns and cells of tables, with cells that span several.
class tst_tableedits final : public QObject
{
    Q_OBJECT

private:
    PageTree m_tree;
    QUndoStack m_stack;

    html::Element& find(const QByteArray& selector) const
    {
        return *m_tree.document()->select(selector.toStdString()).front();
    }
    void load(const QByteArray& markup)
    {
        m_stack.clear();
        m_tree.setDocument(std::move(*html::parse(markup.toStdString())));
    }
    /// Makes the edit between the cells with these ids ("ab").
    Result<const html::Element*> perform(TableEdit edit, const QByteArray& cells)
    {
        return TableEdits(m_tree, m_stack)
            .perform(edit, find('#' + cells.left(1)), find('#' + cells.right(1)));
    }

private slots:
    void edits_respectCellsThatSpanOthers_data()
    {
        using enum TableEdit;
        const test::Rows<QByteArray, TableEdit, QByteArray, QByteArray, QByteArray> row(
            "rows", "edit", "cells", "result", "selected");
        const char* const plain = "<tr><td id=a><td id=b><tr><td id=c><td id=d>";
        row("row above", plain, RowAbove, "d", "ab/--/cd", "-");
        row("row below", plain, RowBelow, "b", "ab/--/cd", "-");
        row("last row below", plain, RowBelow, "c", "ab/cd/--", "-");
        row("column left", plain, ColumnLeft, "a", "-ab/-cd", "-");
        row("column right", plain, ColumnRight, "b", "ab-/cd-", "-");
        row("remove row", plain, RemoveRows, "a", "cd", "c");
        row("remove last row", plain, RemoveRows, "c", "ab", "a");
        row("remove column", plain, RemoveColumns, "d", "a/c", "c");
        row("merge all", plain, MergeCells, "ad", "ac2r2/", "a");
        row("merge backwards", plain, MergeCells, "cb", "ac2r2/", "a");
        row("merge a row", plain, MergeCells, "ab", "ac2/cd", "a");

        const char* const spans = "<tr><td id=a rowspan=2><td id=b colspan=2><tr><td id=c><td id=d>"
                                  "<tr><td id=e colspan=2><td id=f>";
        row("row in a high cell", spans, RowAbove, "c", "ar3bc2/--/cd/ec2f", "-");
        row("row below a high cell", spans, RowBelow, "a", "ar2bc2/cd/---/ec2f", "-");
        row("row above all", spans, RowAbove, "a", "---/ar2bc2/cd/ec2f", "-");
        row("column in wide cells", spans, ColumnRight, "c", "ar2bc3/c-d/ec2-f", "-");
        row("column left of a cell in a wide one", spans, ColumnLeft, "c", "ar2-bc2/-cd/ec3f", "-");
        row("column behind a high cell", spans, ColumnRight, "a", "ar2-bc2/-cd/ec3f", "-");
        row("remove the row of a high cell", spans, RemoveRows, "b", "acd/ec2f", "c");
        row("remove a row of a high cell", spans, RemoveRows, "d", "abc2/ec2f", "f");
        row("remove all columns but one", spans, RemoveColumns, "cd", "ar2//e", "a");
        row("merge widens to whole cells", spans, MergeCells, "ce", "ac3r3//", "a");
        row("split a high cell", spans, SplitCell, "a", "abc2/-cd/ec2f", "a");
        row("split a wide cell", spans, SplitCell, "e", "ar2bc2/cd/e-f", "e");
        row("split what was merged", "<tr><td id=a colspan=2 rowspan=2><td id=b><tr><td id=c>", SplitCell,
            "a", "a-b/--c", "a");

        const char* const head =
            "<thead><tr><th id=a><th id=b><tbody><tr><td id=c><td id=d><tfoot><tr><td id=e><td id=f>";
        row("row below the header", head, RowBelow, "a", "h ab|--/cd|f ef", "-");
        row("row above the header", head, RowAbove, "a", "h ++/ab|cd|f ef", "+");
        row("column with a header", head, ColumnLeft, "d", "h a+b|c-d|f e-f", "-");
        row("the only row of a group", head, RemoveRows, "c", "h ab|f ef", "e");
        row("header off", head, HeaderRow, "d", "ab/cd|f ef", "d");
        row("header on", plain, HeaderRow, "d", "h ab|cd", "d");
        row("row below a header without a group", "<tr><th id=a><th id=b>", RowBelow, "a", "ab/--", "-");
        row("row below a header alone", "<thead><tr><th id=a><th id=b>", RowBelow, "b", "h ab|--", "-");
        row("header off without a group", "<tr><th id=a><th id=b><tr><td id=c><td id=d>", HeaderRow, "a",
            "ab/cd", "a");
        row("cell up to the end of the group", "<tr><td id=a rowspan=0><td id=b><tr><td id=c>", RowBelow, "c",
            "ar0b/c/-", "-");
        row("short row", "<tr><td id=a><td id=b><tr><td id=c>", ColumnRight, "b", "ab-/c", "-");
        row("row headers", "<tr><th id=a><td id=b>", RowBelow, "b", "ab/+-", "-");
    }
    void edits_respectCellsThatSpanOthers()
    {
        QFETCH(QByteArray, rows);
        QFETCH(TableEdit, edit);
        QFETCH(QByteArray, cells);
        QFETCH(QByteArray, selected);
        load("<table>" + rows + "</table>");
        const std::string before = m_tree.document()->outerHtml();
        const auto done = perform(edit, cells);
        QVERIFY2(done, done ? "" : done.error().text.c_str());
        QFETCH(QByteArray, result);
        QCOMPARE(shape(find("table")), result);
        const std::string after = m_tree.document()->outerHtml();
        const std::string_view id = (*done)->attr("id");
        QCOMPARE(id.empty() ? QByteArray((*done)->is("th") ? "+" : "-") : QByteArray(std::string(id).c_str()),
                 selected);
        QCOMPARE(m_stack.count(), 1);
        QVERIFY(!m_stack.undoText().isEmpty());
        m_stack.undo();
        QCOMPARE(m_tree.document()->outerHtml(), before);
        m_stack.redo();
        QCOMPARE(m_tree.document()->outerHtml(), after);
    }

    void refusedEdits_sayWhy_data()
    {
        using enum TableEdit;
        const test::Rows<QByteArray, TableEdit, QByteArray, QString> row("rows", "edit", "cells", "reason");
        const char* const head = "<thead><tr><th id=a><tbody><tr><td id=b>";
        row("one cell", head, MergeCells, "b", "Select the cells that are to become one first.");
        row("header and body", head, MergeCells, "ab",
            "Cells of the header and of the body can't be merged.");
        row("plain cell", head, SplitCell, "a", "Only a merged cell can be split.");
        row("high header", "<tr><td id=a rowspan=2><td><tr><td>", HeaderRow, "a",
            "A cell of the first row reaches into the next one. Split it first.");
        row("too large", "<tr><td id=a colspan=1000 rowspan=60000>" + QByteArray("<tr>").repeated(1000),
            RowAbove, "a", "This table is too large to be changed here.");
    }
    void refusedEdits_sayWhy()
    {
        QFETCH(QByteArray, rows);
        QFETCH(TableEdit, edit);
        QFETCH(QByteArray, cells);
        load("<table>" + rows + "</table>");
        const std::string before = m_tree.document()->outerHtml();
        const auto done = perform(edit, cells);
        QVERIFY(!done);
        QTEST(QString::fromStdString(done.error().text), "reason");
        QCOMPARE(m_tree.document()->outerHtml(), before);
        QCOMPARE(m_stack.count(), 0);
    }

    void markup_isLaidOutAsItsNeighbours_data()
    {
        using enum TableEdit;
        const test::Rows<TableEdit, QByteArray, QByteArray> row("edit", "cells", "result");
        row("row", RowBelow, "b",
            "\n <tbody><tr>\n  <td id=\"a\" class=\"n\">1</td>\n  <td id=\"b\">2</td>\n </tr>\n <tr>\n  <td "
            "class=\"n\"><br></td>\n  <td><br></td>\n </tr>\n</tbody>");
        row("column", ColumnRight, "a",
            "\n <tbody><tr>\n  <td id=\"a\" class=\"n\">1</td>\n  <td class=\"n\"><br></td>\n  <td id=\"b\">2</td>\n "
            "</tr>\n</tbody>");
        row("merged texts", MergeCells, "ab",
            "\n <tbody><tr>\n  <td id=\"a\" class=\"n\" colspan=\"2\">1<br>2</td>\n </tr>\n</tbody>");
        row("header", HeaderRow, "a",
            "\n <thead>\n <tr>\n  <th id=\"a\" class=\"n\" scope=\"col\">1</th>\n  <th id=\"b\" scope=\"col\">2</th>\n "
            "</tr>\n</thead>");
    }
    void markup_isLaidOutAsItsNeighbours()
    {
        QFETCH(TableEdit, edit);
        QFETCH(QByteArray, cells);
        load("<table>\n <tr>\n  <td id=a class=n>1</td>\n  <td id=b>2</td>\n </tr>\n</table>");
        QVERIFY(perform(edit, cells));
        QTEST(QByteArray::fromStdString(find("table").html()), "result");
    }

    void columnElements_followTheColumns_data()
    {
        using enum TableEdit;
        const test::Rows<QByteArray, TableEdit, QByteArray> row("before", "edit", "after");
        row("added", "<colgroup><col class=x><col>", ColumnLeft,
            "<colgroup><col class=\"x\"><col class=\"x\"><col></colgroup>");
        row("wider", "<colgroup><col span=2>", ColumnRight, "<colgroup><col span=\"3\"></colgroup>");
        row("group", "<colgroup span=2>", RemoveColumns, "<colgroup></colgroup>");
        row("removed", "<colgroup><col class=x><col>", RemoveColumns, "<colgroup><col></colgroup>");
    }
    void columnElements_followTheColumns()
    {
        QFETCH(QByteArray, before);
        QFETCH(TableEdit, edit);
        load("<table>" + before + "<tr><td id=a><td id=b>");
        QVERIFY(perform(edit, "a"));
        QTEST(QByteArray::fromStdString(find("colgroup").outerHtml()), "after");
    }

    void removingAllRows_removesTheTable()
    {
        load("<div><table><tr><td id=a><tr><td id=b></table>");
        const auto done = perform(TableEdit::RemoveRows, "ab");
        QVERIFY(done);
        QCOMPARE((*done)->outerHtml(), std::string("<div></div>"));
        m_stack.undo();
        QVERIFY(tableCellFor(find("tr")) == &find("#a"));
    }
};

LUMA_TEST(tst_tableedits)
#include "tst_tableedits.moc"
