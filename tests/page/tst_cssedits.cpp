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

    void sideOfABox_isChangedWhereItIsSet_data()
    {
        const test::Rows<QByteArray, QByteArray, QByteArray, QByteArray> row("sheet", "property", "value",
                                                                             "after");
        row("by itself", "p{margin-left:1em}", "margin-left", "2em", "p{margin-left:2em}");
        row("one for all", "p{margin:1em}", "margin-left", "5px", "p{margin:1em 1em 1em 5px}");
        row("one for all, top", "p{padding:1em}", "padding-top", "5px", "p{padding:5px 1em 1em}");
        row("as all others", "p{margin:1em}", "margin-left", "1em", "p{margin:1em}");
        row("of two", "p{margin: 1em  2em}", "margin-right", "0", "p{margin: 1em 0 1em 2em}");
        row("of two, bottom", "p{margin: 1em 2em}", "margin-bottom", "0", "p{margin: 1em 2em 0}");
        row("of three, with blanks", "p{margin: 1em  2em  3em}", "margin-bottom", "0",
            "p{margin: 1em  2em  0}");
        row("of three, left", "p{margin: 1em 2em 3em}", "margin-left", "0", "p{margin: 1em 2em 3em 0}");
        row("of four", "p{margin: 0 auto calc(1px + 2px) 3px}", "margin-bottom", "0",
            "p{margin: 0 auto 0 3px}");
        row("beside auto", "p{margin: auto}", "margin-top", "0", "p{margin: 0 auto auto}");
        row("important", "p{margin: 1px !important}", "margin-top", "2px",
            "p{margin: 2px 1px 1px !important}");
        row("width of a border", "p{border-left: 1px solid red}", "border-left-width", "3px",
            "p{border-left: 3px solid red}");
        row("of all widths", "p{Border-Width: thin 2px}", "border-left-width", "3px",
            "p{Border-Width: thin 2px thin 3px}");
        row("of a whole border", "p{border: 1px solid}", "border-left-width", "3px",
            "p{border: 1px solid;border-left-width: 3px;}");
        row("of a whole border, important", "p { border: 1px solid !important; a: b }", "border-left-width",
            "3px", "p { border: 1px solid !important; border-left-width: 3px !important; a: b }");
        row("of what stands for all", "p{\n  margin: inherit\n}", "margin-left", "3px",
            "p{\n  margin: inherit;\n  margin-left: 3px;\n}");
        row("of a variable", "p{margin: var(--x)}", "margin-left", "3px",
            "p{margin: var(--x);margin-left: 3px;}");
        row("of a logical side", "p{margin-inline: 1px}", "margin-left", "3px",
            "p{margin-inline: 1px;margin-left: 3px;}");
        row("with a comment", "p{margin: 1px /* x */ 2px}", "margin-left", "3px",
            "p{margin: 1px /* x */ 2px;margin-left: 3px;}");
        row("what is no value", "p{margin: 1px}", "margin-left", "3px}", "error");
        row("what is no value behind", "p{border: 1px}", "border-left-width", "3px;a:b", "error");
    }
    void sideOfABox_isChangedWhereItIsSet()
    {
        QFETCH(QByteArray, sheet);
        QFETCH(QByteArray, property);
        QFETCH(QByteArray, value);
        const std::string css = sheet.toStdString();
        const std::vector<CssRule> rules = readCssRules(css);
        QTEST(applied(css, withCssBoxValue(css, rules.front().declarations.front(), property.toStdString(),
                                           value.toStdString())),
              "after");
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
