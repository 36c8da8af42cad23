// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/cssedits.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"

#include <QTest>

using namespace luma;

/// The texts that edits of style sheets leave behind. That each is undone by its inverse is checked with all of them.
class tst_cssedits final : public QObject
{
    Q_OBJECT

private:
    /// The sheet after the edit, or "error".
    static QByteArray applied(const std::string& sheet, const Result<CssEdit>& edit)
    {
        if (!edit)
            return "error";
        const std::string after = edit->applied(sheet);
        return edit->inverse(sheet).applied(after) == sheet ? QByteArray::fromStdString(after)
                                                            : QByteArray("not undone");
    }

private slots:
    void declaration_isAddedAsTheOthersAreSet_data()
    {
        const test::Rows<QByteArray, QByteArray, QByteArray> row("sheet", "text", "after");
        row("on one line", "p{a:b}", "c:d", "p{a:b;c:d;}");
        row("with blanks", "p { a: b; }", "c: d;", "p { a: b; c: d; }");
        row("on its own line", "p {\n\ta: b\n}\n", "c: d", "p {\n\ta: b;\n\tc: d;\n}\n");
        row("with the line ends of the sheet", "p {\r\n  a: b;\r\n}", "c: d",
            "p {\r\n  a: b;\r\n  c: d;\r\n}");
        row("behind one that is off", "p { /* a: b */ }", "c: d", "p { /* a: b */ c: d; }");
        row("first of a rule", "p{}", "c: d", "p{ c: d; }");
        row("first of a rule of two lines", "  p {\n  }", "c: d", "  p {\n      c: d;\n  }");
        row("with a brace in a string", "p{}", "c: \"}\"", "p{ c: \"}\"; }");
        row("no declaration", "p{}", "c", "error");
        row("no value", "p{}", "c:", "error");
        row("two", "p{}", "c:d;e:f", "error");
        row("ends the rule", "p{}", "c:d}e{f:g", "error");
        row("open bracket", "p{}", "c:(d", "error");
        row("open string", "p{}", "c:\"d", "error");
        row("open comment", "p{}", "c:d/*", "error");
    }
    void declaration_isAddedAsTheOthersAreSet()
    {
        QFETCH(QByteArray, sheet);
        QFETCH(QByteArray, text);
        const std::string css = sheet.toStdString();
        const std::vector<CssRule> rules = readCssRules(css);
        QTEST(applied(css, withCssDeclaration(css, &rules.front(), text.toStdString())), "after");
    }

    void declaration_isChanged_data()
    {
        const test::Rows<QByteArray, QByteArray, QByteArray, QByteArray, QByteArray> row(
            "sheet", "value", "changed", "without", "switched");
        row("on one line", "p{a:b;c:d}", "e", "p{a:e;c:d}", "p{c:d}", "p{/* a:b; */c:d}");
        row("the last", "p{ x: y; }", "e !important", "p{ x: e !important; }", "p{ }", "p{ /* x: y; */ }");
        row("on its own line", "p {\n  a: b;\n  c: d\n}", "e", "p {\n  a: e;\n  c: d\n}", "p {\n  c: d\n}",
            "p {\n  /* a: b; */\n  c: d\n}");
        row("important", "p{a: b ! important}", "e", "p{a: e}", "p{}", "p{/* a: b ! important */}");
        row("off", "p{/*a:b*/c:d}", "e", "p{/*a:e*/c:d}", "p{c:d}", "p{a:b;c:d}");
        row("with a comment", "p{a: b /* x */ c; d:e}", "f", "p{a: f; d:e}", "p{ d:e}", "error");
        row("ends the rule", "p{a:b}", "c}", "error", "p{}", "p{/* a:b */}");
    }
    void declaration_isChanged()
    {
        QFETCH(QByteArray, sheet);
        QFETCH(QByteArray, value);
        const std::string css = sheet.toStdString();
        const std::vector<CssRule> rules = readCssRules(css);
        const CssDeclaration& first = rules.front().declarations.front();
        QTEST(applied(css, withCssValue(css, first, value.toStdString())), "changed");
        QTEST(applied(css, withoutCssDeclaration(css, first)), "without");
        QTEST(applied(css, withCssSwitched(css, first)), "switched");
    }

    void rule_isAddedAtTheEnd()
    {
        QCOMPARE(applied("", withCssRule("", ".x", "")), ".x {\n}\n");
        QCOMPARE(applied("p{}", withCssRule("p{}", ".x", "a:b;c:d")), "p{}\n\n.x {\n    a:b;\n    c:d;\n}\n");
        QCOMPARE(applied("p{}\r\n", withCssRule("p{}\r\n", "#x", "a:b")),
                 "p{}\r\n\r\n#x {\r\n    a:b;\r\n}\r\n");
    }
};

LUMA_TEST(tst_cssedits)
#include "tst_cssedits.moc"
