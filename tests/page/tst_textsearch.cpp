// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/document.h"
#include "html/element.h"
#include "html/parse.h"
#include "html/textsearch.h"
#include "page/pagecommands.h"
#include "page/pagetree.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"

#include <QTest>
#include <QUndoStack>

using namespace luma;

/// Text that is found as a page shows it, and replaced in its tree.
class tst_textsearch final : public QObject
{
    Q_OBJECT

private slots:
    void text_isReplaced_data()
    {
        // Options: e for an expression, c for letter case, w for whole words.
        const test::Rows<QByteArray, QString, QString, QString, QByteArray> row("body", "options", "text",
                                                                                "replacement", "result");
        row("word", "<p>one two one</p>", "", "one", "1", "<p>1 two 1</p>");
        row("letter case", "<p>One one</p>", "", "ONE", "1", "<p>1 1</p>");
        row("exact", "<p>One one</p>", "c", "one", "1", "<p>One 1</p>");
        row("whole words", "<p>one bone ones one.</p>", "w", "one", "1", "<p>1 bone ones 1.</p>");
        row("umlauts are letters", "<p>ber über</p>", "w", "ber", "x", "<p>x über</p>");
        row("dots are text", "<p>a.b axb</p>", "", "a.b", "c", "<p>c axb</p>");
        row("expression", "<p>12-34</p>", "e", "(\\d+)-(\\d+)", "$2-\\1 $$ \\\\", "<p>34-12 $ \\</p>");
        row("text is no expression", "<p>a</p>", "", "a", "$0\\1", "<p>$0\\1</p>");
        row("nothing matches nothing", "<p>a</p>", "e", "x*", "b", "<p>a</p>");
        row("across elements", "<p>on<b>e t</b>w<i>o</i>!</p>", "", "one two", "three",
            "<p>three<b></b><i></i>!</p>");
        row("part of an element", "<p>o<b>ne two</b></p>", "", "one", "1", "<p>1<b> two</b></p>");
        row("several in a node", "<p>a b<i>a</i>a</p>", "", "a", "aa", "<p>aa b<i>aa</i>aa</p>");
        row("line ends are blanks", "<p>one\n  two</p>", "", "one two", "x", "<p>x</p>");
        row("blanks stay", "<p>one\n  two\n three</p>", "", "one", "x", "<p>x\n  two\n three</p>");
        row("no-break space", "<p>one\u00a0two</p>", "", "one two", "x", "<p>x</p>");
        row("not across blocks", "<p>one</p><p>two</p>", "e", "one\\s*two", "x", "<p>one</p><p>two</p>");
        row("not across breaks", "<p>one<br>two</p>", "", "onetwo", "x", "<p>one<br>two</p>");
        row("begins of blocks", "<p>one</p><ul><li>one<ul><li>two</li></ul></li></ul>", "e", "^(\\w)", "-$1",
            "<p>-one</p><ul><li>-one<ul><li>-two</li></ul></li></ul>");
        row("lines of pre", "<pre>a  b\nc</pre>", "e", "  b$", "", "<pre>a\nc</pre>");
        row("neither scripts nor attributes",
            "<p title=\"a\">b</p><script>a</script><!--a--><style>a</style>", "", "a", "x",
            "<p title=\"a\">b</p><script>a</script><!--a--><style>a</style>");
        row("markup is text", "<p>a &amp; b</p>", "", "a & b", "<i>", "<p>&lt;i&gt;</p>");
        row("beyond the plane", "<p>\U0001F600a\U0001F601</p>", "", "a", "\U0001F602",
            "<p>\U0001F600\U0001F602\U0001F601</p>");
    }
    void text_isReplaced()
    {
        QFETCH(QByteArray, body);
        QFETCH(QString, options);
        QFETCH(QString, text);
        QFETCH(QString, replacement);
        const bool isExpression = options.contains('e');
        const auto expression =
            TextQuery{text, isExpression, options.contains('c'), options.contains('w')}.expression();
        QVERIFY(expression);
        PageTree tree;
        QUndoStack stack;
        tree.setDocument(*html::parse("<title>T</title><body>" + body.toStdString()));
        const html::Document& page = *tree.document();
        const std::string before = page.outerHtml();
        PageCommands(tree, stack)
            .setTexts(textsAfter(*matchesIn(page, *expression), replacement, isExpression), "Replace All");
        QFETCH(QByteArray, result);
        QCOMPARE(QByteArray::fromStdString(page.body()->html()), result);
        QCOMPARE(stack.count(), 1);
        stack.undo();
        QCOMPARE(page.outerHtml(), before);
        stack.redo();
        QCOMPARE(QByteArray::fromStdString(page.body()->html()), result);
    }

    void match_knowsItsCharacters()
    {
        const auto page = html::parse("<body>\n<script>xyz</script><p>\U0001F600 o<b>n</b>e</p><p>one</p>");
        const auto matches = *matchesIn(**page, *TextQuery{"one"}.expression());
        QCOMPARE(matches.size(), 2U);
        QCOMPARE(matches[0].start, 7); // a line end, a script, a surrogate pair and a blank
        QCOMPARE(matches[0].end, 10);
        QCOMPARE(matches[1].start, 10);
    }

    void wrongExpression_isTold()
    {
        const auto expression = TextQuery{"(a", true}.expression();
        QVERIFY(!expression);
        QVERIFY(expression.error().text.starts_with("Not a regular expression, at character 3: "));
    }
};

LUMA_TEST(tst_textsearch)
#include "tst_textsearch.moc"
