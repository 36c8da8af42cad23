// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/csssyntax.h"
#include "tests/editor/pagewindow.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/screenshot.h"
#include "web/codeedit.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTabBar>
#include <QTest>
#include <QToolButton>

using namespace luma;

namespace {

constexpr auto sheetPage = "<!DOCTYPE html><html lang=en><head><title>T</title>"
                           "<link rel=stylesheet href=css/main.css><link rel=stylesheet href=css/print.css>"
                           "</head><body><p class=lead id=one>Text</p></body></html>";

} // namespace

/// What helps while a style sheet is written: completion, problems in the margin, a tab a sheet.
class tst_sheetediting final : public QObject, private luma::test::PageWindow
{
    Q_OBJECT

private:
    [[nodiscard]] CodeEdit& field() const { return *the<CodeEdit>("cssField"); }
    [[nodiscard]] QListWidget* list() const { return the<QListWidget>("cssCompletions"); }
    [[nodiscard]] QStringList offered() const
    {
        QStringList words;
        for (const auto* each : window->findChildren<QListWidget*>(u"cssCompletions"_qs)) {
            for (int i = 0; each->isVisible() && i < each->count(); ++i)
                words.append(each->item(i)->text());
        }
        return words;
    }
    void
    openSheets(const char* main = ":root { --gap: 4px; --ink: #123456 }\np.note { margin: var(--gap) }\n")
    {
        put("css/main.css", main);
        put("css/print.css", "p { margin: 0 }\n");
        open(sheetPage);
        the<QTabBar>("cssTabs")->setCurrentIndex(0);
        field().setFocus();
    }
    /// Types behind the text, "|" being Control+Space.
    void typeCss(const QByteArray& text)
    {
        field().moveCursor(QTextCursor::End);
        for (const char c : text) {
            if (c == '|')
                QTest::keyClick(&field(), Qt::Key_Space, Qt::ControlModifier);
            else
                QTest::keyClick(&field(), c);
        }
    }
    [[nodiscard]] QString problem() const { return the<QLabel>("cssProblem")->text(); }

private slots:
    void cleanup() { close(); }

    void places_areToldByTheTextInFront_data()
    {
        using Kind = CssPlace::Kind;
        const test::Rows<QString, int, QString, QString> row("text", "kind", "property", "word");
        const auto add = [&row](const char* name, const char* text, Kind kind, const char* word,
                                const char* property = "") {
            row(name, QString::fromUtf8(text), static_cast<int>(kind), QString::fromUtf8(property),
                QString::fromUtf8(word));
        };
        add("selector", "a {} p.le", Kind::Selector, ".le");
        add("id", "a {} p > #", Kind::Selector, "#");
        add("pseudo-class", "a:ho", Kind::Selector, ":ho");
        add("in a group", "@media print { .x", Kind::Selector, ".x");
        add("attribute", "a[hr", Kind::Nothing, "hr");
        add("at-rule", "a {} @me", Kind::AtRule, "@me");
        add("condition", "@media pri", Kind::Nothing, "@media pri");
        add("property", "a { color: red; bor", Kind::Property, "bor");
        add("property behind a comment", "a { /* { */ bor", Kind::Property, "bor");
        add("value", "a { Border: 1px so", Kind::Value, "so", "border");
        add("variable", "a { color: var(--i", Kind::Value, "--i", "color");
        add("comment", "a { /* col", Kind::Nothing, "");
        add("text", "a { content: \"col", Kind::Nothing, "");
        add("brace in a text", "a { content: '}'; co", Kind::Property, "co");
        add("bare address", "a { background: url(it's/*.png) no", Kind::Value, "no", "background");
    }
    void places_areToldByTheTextInFront()
    {
        QFETCH(QString, text);
        const CssPlace place = cssPlaceBehind(text);
        QFETCH(int, kind);
        QCOMPARE(static_cast<int>(place.kind), kind);
        QTEST(place.property, "property");
        if (place.kind != CssPlace::Kind::Nothing)
            QTEST(place.word, "word");
    }

    void damage_isFound_data()
    {
        const test::Rows<QString, QString> row("sheet", "places");
        row("none", "@media x { a { b: c(d); e: 'f' } } /* g */", "");
        row("comment", "a { } /* b", "6");
        row("text", "a { b: 'c\n}", "7");
        row("text at the end", "a { b: \"c", "2 7");
        row("brace", "a { b: c", "2");
        row("bracket", "a { b: c(d; e }", "8");
        row("closed twice", "a { } }", "6");
        row("wrong bracket", "a { b: c(d] }", "8 10");
        row("no colon", "a { color red; b: c }", "4");
        row("escaped quote", "a { b: 'it\\'s' }", "");
        row("selectors in keyframes", "@keyframes x { from { a: b } 50% { a: c } }", "");
    }
    void damage_isFound()
    {
        QFETCH(QString, sheet);
        QStringList found;
        for (const CssFlaw& flaw : cssFlaws(sheet))
            found.append(QString::number(flaw.at));
        QTEST(found.join(u' '), "places");
    }

    void completion_offersWhatTheEngineAndThePageKnow_data()
    {
        const test::Rows<QByteArray, QString> row("typed", "first");
        row("property", "a { bord", "border");
        row("part of a property", "a { radius", "border-bottom-left-radius");
        row("value", "a { display: inl", "inline");
        row("colour of a property that has one", "a { border: 1px solid toma", "tomato");
        row("function", "a { transform: rota", "rotate()");
        row("custom property", "a { color: var(--i", "--ink");
        row("class of the page", ".le", ".lead");
        row("class of a sheet", ".no", ".note");
        row("id", "#o", "#one");
        row("at-rule", "@med", "@media");
        row("pseudo-class", "a:hov", ":hover");
    }
    void completion_offersWhatTheEngineAndThePageKnow()
    {
        QFETCH(QByteArray, typed);
        QFETCH(QString, first);
        openSheets();
        typeCss(typed);
        QTRY_VERIFY2(offered().value(0) == first, qPrintable(offered().mid(0, 5).join(u' ')));
    }

    void completion_isTakenByKeyboard()
    {
        openSheets("p { margin: 0 }\n");
        typeCss("a { disp");
        QTRY_COMPARE(offered().value(0), "display");
        QTest::keyClick(&field(), Qt::Key_Return);
        QVERIFY(!list()->isVisible());
        QVERIFY(field().toPlainText().endsWith("a { display: "));
        typeCss("|");
        QTRY_VERIFY(offered().contains("inline-flex"));
        QVERIFY(!offered().contains("bold"));
        test::saveScreenshots(*window, "css-completion");
        typeCss("inline-");
        QTRY_COMPARE(offered().value(0), "inline-block");
        QTest::keyClick(&field(), Qt::Key_Down);
        QTest::keyClick(&field(), Qt::Key_Tab);
        QVERIFY2(field().toPlainText().endsWith("a { display: inline-flex"),
                 qPrintable(field().toPlainText()));
        QVERIFY(field().hasFocus());
        typeCss("; widt");
        QTRY_COMPARE(offered().value(0), "width");
        QTest::keyClick(&field(), Qt::Key_Escape);
        QVERIFY(offered().isEmpty());
        QTest::keyClick(&field(), Qt::Key_Return);
        QVERIFY(field().toPlainText().endsWith("widt\n"));
        typeCss("transform: rotate");
        QTRY_COMPARE(offered().value(0), "rotate()");
        QTest::keyClick(&field(), Qt::Key_Return);
        QTest::keyClicks(&field(), "1deg");
        QVERIFY(field().toPlainText().endsWith("rotate(1deg)"));
    }

    void styleRules_completeNamesAndValues()
    {
        openSheets();
        trigger("rulesAction");
        click("<p");
        auto* const rules = the<QTreeView>("rulesView");
        const auto rowOf = [rules](const QString& text) {
            const QModelIndexList found = rules->model()->match(rules->model()->index(0, 0), Qt::DisplayRole,
                                                                text, 1, Qt::MatchRecursive);
            return found.value(0);
        };
        QTRY_VERIFY(rowOf("margin").isValid());
        rules->edit(rowOf("margin").parent().model()->index(1, 0, rowOf("margin").parent()));
        QTRY_VERIFY(rules->findChild<QLineEdit*>());
        auto* const editor = rules->findChild<QLineEdit*>();
        QTRY_VERIFY(editor->hasFocus());
        QTest::keyClicks(editor, "disp");
        QTRY_COMPARE(offered().value(0), "display");
        QTest::keyClick(editor, Qt::Key_Return);
        QCOMPARE(editor->text(), "display: ");
        QTest::keyClicks(editor, "inline-b");
        QTRY_COMPARE(offered().value(0), "inline-block");
        QTest::keyClick(editor, Qt::Key_Tab);
        QCOMPARE(editor->text(), "display: inline-block");
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_COMPARE(answer("getComputedStyle(document.querySelector('p')).display"), "inline-block");
    }

    void problems_areMarkedAndToldByKeyboard()
    {
        openSheets(
            "p {\n    margn: 1px;\n    color: #ff0000;\n    display: blok;\n}\n\nq:nope {\n    top: 0\n}\n\n"
            "i {\n    -moz-x: y;\n    --own: anything;\n    top: var(--own)\n}");
        QTRY_COMPARE(problem(), "3 problems");
        test::saveScreenshots(*window, "css-problems");
        QTest::keyClick(&field(), Qt::Key_Period, Qt::ControlModifier);
        QCOMPARE(problem(), "The web engine knows no property “margn”.");
        QTest::mouseClick(the<QToolButton>("cssNextProblemButton"), Qt::LeftButton);
        QCOMPARE(problem(), "“display” takes no value “blok”.");
        QCOMPARE(field().textCursor().blockNumber(), 3);
        QTest::keyClick(&field(), Qt::Key_Period, Qt::ControlModifier);
        QCOMPARE(field().textCursor().blockNumber(), 6);
        QCOMPARE(field().accessibleDescription(), problem());
        QTest::keyClick(&field(), Qt::Key_Period, Qt::ControlModifier);
        QCOMPARE(field().textCursor().blockNumber(), 1);
        QTest::keyClick(&field(), Qt::Key_Delete);
        for (int i = 0; i < 4; ++i)
            QTest::keyClick(&field(), Qt::Key_Delete);
        QTest::keyClicks(&field(), "margin");
        QTRY_COMPARE(problem(), "2 problems");
        typeCss(" b { /* ");
        QTRY_COMPARE(problem(), "This “{” is not closed. (and 1 more)");
    }

    void serverCode_isNotJudged()
    {
        openSheets();
        field().setPlainText("p {\n    color: <?= $ink ?>;\n    width: {{ wide }};\n    margn: 0\n}");
        field().moveCursor(QTextCursor::Start);
        QTRY_VERIFY2(problem() == "1 problem",
                     qPrintable(problem() + field().problemsOfLine(1) + field().problemsOfLine(2)));
        QTest::keyClick(&field(), Qt::Key_Period, Qt::ControlModifier);
        QCOMPARE(problem(), "The web engine knows no property “margn”.");
    }

    void text_isFoundAndReplacedInTheSheet()
    {
        openSheets("p {\n    margin: 1px;\n    top: 1px\n}\n\nq {\n    margin: 2px\n}");
        QTest::keyClick(&field(), Qt::Key_F, Qt::ControlModifier);
        auto* const find = the<QLineEdit>("replaceFindField");
        QTRY_VERIFY(find->hasFocus());
        QCOMPARE(find->accessibleName(), "Find in the style sheet");
        QTest::keyClicks(find, "(\\d)px");
        QTest::mouseClick(the<QToolButton>("replaceExpressionButton"), Qt::LeftButton);
        auto* const result = the<QLabel>("replaceResult");
        QTRY_COMPARE(result->text(), "1 of 3");
        QCOMPARE(field().textCursor().selectedText(), "1px");
        QTest::keyClick(find, Qt::Key_Return);
        QCOMPARE(result->text(), "2 of 3");
        auto* const replacement = the<QLineEdit>("replacementField");
        replacement->setText("$1em");
        QTest::keyClick(replacement, Qt::Key_Return);
        QTRY_VERIFY(field().toPlainText().contains("top: 1em"));
        QTRY_COMPARE(result->text(), "2 of 2");
        QTest::keyClick(replacement, Qt::Key_Return, Qt::ControlModifier);
        QTRY_COMPARE(field().toPlainText(),
                     "p {\n    margin: 1em;\n    top: 1em\n}\n\nq {\n    margin: 2em\n}");
        QTRY_COMPARE(result->text(), "Not found");
        QTest::keyClick(find, Qt::Key_Escape);
        QVERIFY(field().hasFocus());
        field().undo();
        QVERIFY(field().toPlainText().contains("margin: 1px") &&
                field().toPlainText().contains("margin: 2px"));
        rendering().webView()->setFocus();
        trigger("replaceAction");
        QCOMPARE(find->accessibleName(), "Find in the page");
    }

    void tabs_showTheSheets()
    {
        openSheets();
        auto* const tabs = the<QTabBar>("cssTabs");
        QVERIFY(tabs->isVisible());
        QCOMPARE(tabs->tabText(1), "print.css");
        QCOMPARE(the<QComboBox>("cssMenu")->currentText(), "css/main.css");
        typeCss("/**/");
        QCOMPARE(tabs->tabText(0), "main.css*");
        QCOMPARE(tabs->accessibleTabName(0), "css/main.css, not saved");
        QTest::keyClick(&field(), Qt::Key_PageDown, Qt::ControlModifier);
        QCOMPARE(tabs->currentIndex(), 1);
        QVERIFY(field().toPlainText().startsWith("p {\n    margin: 0"));
        QTest::keyClick(&field(), Qt::Key_PageDown, Qt::ControlModifier);
        QVERIFY(field().toPlainText().endsWith("/**/"));
        window->saveEverything({});
        QTRY_COMPARE(tabs->tabText(0), "main.css");
        close();
        open("<head><style>p{}</style></head><p>x</p>");
        QVERIFY(!the<QTabBar>("cssTabs")->isVisible());
    }
};

LUMA_TEST(tst_sheetediting)
#include "tst_sheetediting.moc"
