// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/element.h"
#include "html/parse.h"
#include "html/prettyprinter.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"

#include <QTest>

using namespace luma::html;

class tst_prettyprinter final : public QObject
{
    Q_OBJECT

private slots:
    void print_setsBlocksOnLines_data()
    {
        const luma::test::Rows<QByteArray, QByteArray> row("body", "expected");
        row("blocks", "<div><p>a</p><p>b</p></div>", "  <div>\n   <p>a</p>\n   <p>b</p>\n  </div>\n");
        row("indented anew", "\n\n      <div>\n<p>a</p>\n\n\t<hr></div>",
            "  <div>\n   <p>a</p>\n   <hr>\n  </div>\n");
        row("inline content stays", "<p>a <b>b</b><i> c </i>\n   d<br>e</p>",
            "  <p>a <b>b</b><i> c </i>\n   d<br>e</p>\n");
        row("white space of a leaf stays", "<p> a </p><p>\n b\n</p>", "  <p> a </p>\n  <p>\n b\n</p>\n");
        row("text that touches its element", "<ul><li>a<ul><li>b</li></ul></li><li> c <p>d</p> e</li></ul>",
            "  <ul>\n   <li>a\n    <ul>\n     <li>b</li>\n    </ul>\n   </li>\n   <li>\n    c\n    "
            "<p>d</p>\n    e</li>\n  </ul>\n");
        row("text beside blocks", "a<p>b</p> <i>c</i>d ", "  a\n  <p>b</p>\n  <i>c</i>d\n");
        row("verbatim elements", "<div><pre>\n\n a\n  <b>b</b></pre><p><textarea>\n a\n</textarea></p></div>",
            "  <div>\n   <pre>\n\n a\n  <b>b</b></pre>\n   <p><textarea> a\n</textarea></p>\n  </div>\n");
        row("white space set by its own style", "<div style='white-space:pre'> <p>a</p> </div>",
            "  <div style=\"white-space:pre\"> <p>a</p> </div>\n");
        row("unseen things get lines", "<p>a</p><script>1</script><!--c--> <style>q</style>",
            "  <p>a</p>\n  <script>1</script>\n  <!--c-->\n  <style>q</style>\n");
        row("unseen things in text stay", "a<script>1</script>b<!--c-->", "  a<script>1</script>b<!--c-->\n");
        row("tables", "<table><tr><td>a<td><p>b</table>",
            "  <table>\n   <tbody>\n    <tr>\n     <td>a</td>\n     <td>\n      <p>b</p>\n     </td>\n    "
            "</tr>\n   </tbody>\n"
            "  </table>\n");
        row("blocks shown in a line",
            "<div style='display: inline-block'>a</div><p style=DISPLAY:inline>b</p> <p>c</p>",
            "  <div style=\"display: inline-block\">a</div><p style=\"DISPLAY:inline\">b</p>\n  <p>c</p>\n");
        row("empty body", "", "");
    }
    void print_setsBlocksOnLines()
    {
        QFETCH(QByteArray, body);
        QFETCH(QByteArray, expected);
        const auto document = parse("<!doctype html><title>t</title><body>" + body.toStdString());
        QVERIFY(document);
        const std::string printed = prettyPrint(**document);
        QCOMPARE(QByteArray::fromStdString(printed),
                 "<!doctype html>\n<html>\n <head>\n  <title>t</title>\n </head>\n <body>\n" + expected +
                     " </body>\n</html>\n");
        const auto again = parse(printed);
        QVERIFY(again);
        QCOMPARE(prettyPrint(**again), printed);
    }

    void print_keepsWhatSurroundsThePage()
    {
        const auto document = parse(
            "\xEF\xBB\xBF<!--a--><!DOCTYPE html><html lang=de><head></head><body></body></html><!--b-->");
        QVERIFY(document);
        QCOMPARE(prettyPrint(**document),
                 std::string("\xEF\xBB\xBF<!--a-->\n<!DOCTYPE html>\n<html lang=\"de\">\n <head>\n </head>\n"
                             " <body>\n </body>\n</html>\n<!--b-->\n"));
    }
};

LUMA_TEST(tst_prettyprinter)
#include "tst_prettyprinter.moc"
