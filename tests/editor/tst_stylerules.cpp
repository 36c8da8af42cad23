// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/pagewindow.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/screenshot.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QColorDialog>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QToolButton>
#include <QUndoStack>

using namespace luma;

namespace {

constexpr auto styledPage =
    "<!DOCTYPE html>\n<html lang=en><head><title>T</title>\n"
    "<link rel=stylesheet href=css/main.css>\n"
    "<style>\n  .note { color: green }\n</style>\n</head>\n"
    "<body><p class=note id=one style='margin: 0'>Text <b>bold</b></p></body></html>\n";
constexpr auto mainSheet = "@import \"base.css\";\n"
                           "/* of the site */\n"
                           "p::-moz-unknown { color: pink }\n"
                           "@media (min-width: 1px) {\n"
                           "  p { color: blue; colour: red; margin: 3px !important }\n"
                           "  q::-moz-unknown, p { color: pink }\n"
                           "  #one { font-weight: bold; /* top: 0; */ }\n"
                           "}\n"
                           "@media print { p { color: black } }\n"
                           "@layer low { p { color: orange; letter-spacing: 1px } }\n"
                           "p::before { content: \"x\" }\n";
constexpr auto baseSheet = "body{color:gray;margin:9px}";

} // namespace

/// The style rules of the selected element: what is listed, and what edits do to the sheets.
class tst_stylerules final : public QObject, private luma::test::PageWindow
{
    Q_OBJECT

private:
    [[nodiscard]] QTreeView* rules() const { return the<QTreeView>("rulesView"); }

    /// The rows, "~" in front of a struck one, "-" of one that is switched off.
    [[nodiscard]] QString listed(const QModelIndex& parent = {}) const
    {
        QStringList lines;
        const QAbstractItemModel& model = *rules()->model();
        for (int i = 0; i < model.rowCount(parent); ++i) {
            const QModelIndex name = model.index(i, 0, parent);
            const QString value = name.siblingAtColumn(1).data().toString();
            const bool isOff = name.data(Qt::CheckStateRole).isValid() &&
                               name.data(Qt::CheckStateRole).toInt() == Qt::Unchecked;
            const QString sign = isOff                                                ? u"-"_qs
                                 : name.data(Qt::FontRole).value<QFont>().strikeOut() ? u"~"_qs
                                                                                      : QString();
            if (name.data() != u"Add..."_qs)
                lines.append(sign + name.data().toString() + (value.isEmpty() ? u""_qs : u" | "_qs + value));
            if (const QString inner = listed(name); !inner.isEmpty())
                lines.append(inner);
        }
        return lines.join(u'\n');
    }

    void openPage()
    {
        put("css/main.css", mainSheet);
        put("css/base.css", baseSheet);
        open(styledPage);
        trigger("rulesAction");
        click("<p");
        QTRY_VERIFY2(listed().contains(u"base.css:1"), qPrintable(listed()));
    }
    /// The row of a declaration below the first rule whose place begins so.
    [[nodiscard]] QModelIndex declaration(const QString& place, const QString& name) const
    {
        const QAbstractItemModel& model = *rules()->model();
        for (int i = 0; i < model.rowCount(); ++i) {
            const QModelIndex rule = model.index(i, 0);
            for (int k = 0;
                 rule.siblingAtColumn(1).data().toString().startsWith(place) && k < model.rowCount(rule);
                 ++k) {
                if (model.index(k, 0, rule).data() == name)
                    return model.index(k, 0, rule);
            }
        }
        return {};
    }
    void press(Qt::Key key) const { QTest::keyClick(rules(), key); }

private slots:
    void cleanup() { close(); }

    void rulesOfTheElement_areListedInTheOrderOfTheCascade()
    {
        openPage();
        const QAbstractItemModelTester tester(rules()->model());
        QCOMPARE(listed(), u"element | Style attribute\n"
                           "~margin | 0\n"
                           "#one | main.css:7\n"
                           "@media (min-width: 1px)\n"
                           "font-weight | bold\n"
                           "-top | 0\n"
                           ".note | <style>:2\n"
                           "color | green\n"
                           "p | main.css:5\n"
                           "@media (min-width: 1px)\n"
                           "~color | blue\n"
                           "~colour | red\n"
                           "margin | 3px !important\n"
                           "p | main.css:10\n"
                           "@layer low\n"
                           "~color | orange\n"
                           "letter-spacing | 1px\n"
                           "Pseudo-element ::before\n"
                           "p::before | main.css:11\n"
                           "content | \"x\"\n"
                           "Inherited from body\n"
                           "body | base.css:1\n"
                           "~color | gray\n"
                           "margin | 9px"_qs);
        test::saveScreenshots(*window, "style-rules");
        click("<b>");
        QTRY_VERIFY2(listed().contains(u"Inherited from p#one.note"), qPrintable(listed()));
        QVERIFY2(!listed().contains(u"Style attribute\nmargin"), qPrintable(listed()));
    }

    void panelThatIsHidden_asksNothing()
    {
        put("css/main.css", mainSheet);
        open(styledPage);
        click("<p");
        QCOMPARE(answer("1 + 1"), "2"); // whatever was asked before is answered
        QCOMPARE(rules()->model()->rowCount(), 0);
    }

    // The bytes of sheet and page but for the edit stay, and the page shows the edit at once.
    void edits_changeTheSmallestPartAndAreShown_data()
    {
        const test::Rows<QString, QString, QString, QString, QString, QString, QString> row(
            "place", "name", "typed", "file", "before", "after", "shown");
        row("value in a file", "main.css:5", "margin", "4px", "css/main.css", "margin: 3px !important",
            "margin: 4px", "marginTop=0px");
        row("value in an imported file", "base.css:1", "color", "red", "css/base.css", "color:gray",
            "color:red", "");
        row("value in a style element", "<style>:2", "color", "red", "page.html", "color: green",
            "color: red", "color=rgb(255, 0, 0)");
        row("value in the style attribute", "Style attribute", "margin", "1px !important", "page.html",
            "style='margin: 0'", "style='margin: 1px !important'", "marginTop=1px");
        row("value by a step", "main.css:5", "margin", "^", "css/main.css", "margin: 3px", "margin: 4px",
            "marginTop=4px");
        row("switched off", "main.css:7", "font-weight", " ", "css/main.css", "font-weight: bold;",
            "/* font-weight: bold; */", "fontWeight=400");
        row("switched on", "main.css:7", "top", " ", "css/main.css", "/* top: 0; */", "top: 0;", "top=0px");
        row("removed", "main.css:5", "colour", "\b", "css/main.css", " colour: red;", "", "");
        row("added", "main.css:7", "Add...", "left: 3px", "css/main.css", "/* top: 0; */",
            "/* top: 0; */ left: 3px;", "left=3px");
        row("added to the style attribute", "Style attribute", "Add...", "left: 3px", "page.html",
            "style='margin: 0'", "style='margin: 0;left: 3px;'", "left=3px");
    }
    void edits_changeTheSmallestPartAndAreShown()
    {
        openPage();
        QFETCH(QString, place);
        QFETCH(QString, name);
        QFETCH(QString, typed);
        QFETCH(QString, file);
        QFETCH(QString, before);
        QFETCH(QString, after);
        QFETCH(QString, shown);
        const QString asBefore = listed();
        rules()->setFocus();
        const QModelIndex row = declaration(place, name);
        QVERIFY2(row.isValid(), qPrintable(asBefore));
        rules()->setCurrentIndex(row);
        if (typed == u" " || typed == u"\b") {
            press(typed == u" " ? Qt::Key_Space : Qt::Key_Delete);
        } else {
            press(Qt::Key_F2);
            auto* const field = rules()->findChild<QLineEdit*>();
            QVERIFY(field);
            field->selectAll();
            if (typed == u"^") {
                QTest::keyClick(field, Qt::Key_Up);
                QTRY_COMPARE(answer("getComputedStyle(document.querySelector('p')).marginTop"), "4px");
            } else {
                QTest::keyClicks(field, typed);
            }
            QTest::keyClick(field, Qt::Key_Return);
        }
        QTRY_COMPARE(window->undoStack()->count(), 1);
        QCOMPARE(window->undoStack()->undoText(),
                 after.isEmpty()     ? "Remove Style"
                 : typed == u" "     ? (after.contains("/*") ? "Switch Style Off" : "Switch Style On")
                 : name == u"Add..." ? "Add Style"
                                     : "Change Style");
        QTRY_VERIFY2(listed() != asBefore, qPrintable(listed()));
        QVERIFY(window->isWindowModified());
        const QStringList expected = shown.split(u'=');
        const QString asked = u"getComputedStyle(document.querySelector('p')).%1"_qs.arg(expected.first());
        if (!shown.isEmpty())
            QTRY_COMPARE(answer(asked), expected.last());
        trigger("undoAction");
        QTRY_COMPARE(listed(), asBefore);
        QTRY_VERIFY(!window->isWindowModified());
        trigger("redoAction");
        QTRY_VERIFY(listed() != asBefore);
        const QString old = QString::fromStdString(this->file(file.toStdString()));
        QCOMPARE(old.count(before), 1);
        trigger("saveAction");
        QTRY_COMPARE(QString::fromStdString(this->file(file.toStdString())),
                     QString(old).replace(before, after));
        QTRY_VERIFY(!window->isWindowModified());
        if (!shown.isEmpty())
            QTRY_COMPARE(answer(asked), expected.last());
    }

    void states_areForcedForLookingOnly_data()
    {
        const test::Rows<QString, QByteArray, QString> row("states", "row", "colours");
        const QString red = "rgb(255, 0, 0)";
        const QString black = "rgb(0, 0, 0)";
        const QString pink = "rgb(255, 192, 203)";
        row("none", "", "<a", black + black + pink);
        row("hover", ":hover", "<a", red + red + "rgb(0, 0, 255)");
        row("hover of the list", ":hover", "<ul", red + black + pink);
        row("focus", ":focus", "<a", black + red + "rgb(0, 128, 0)");
        row("focus within", ":focus-within", "<a", black + red + pink);
        row("visible focus", ":focus-visible", "<a", black + black + "rgb(0, 0, 128)");
        row("target", ":target", "<a", black + black + "rgb(255, 255, 0)");
        row("active and visited", ":active :visited", "<a", black + black + "rgb(255, 165, 0)");
        row("what is written later wins", ":hover :visited", "<a", red + red + "rgb(255, 165, 0)");
    }
    void states_areForcedForLookingOnly()
    {
        put("css/main.css", "ul, li, a { color: black }\n@media all { ul:hover { color: red } }\n"
                            "ul:hover > li:is(:hover) { color: red }\n.x\\:hover { color: pink }\n"
                            "a:link:hover { color: blue }\n"
                            "a:focus:not([title=':focus']) { color: green }\nli:focus-within { color: red }\n"
                            "a:focus-visible { color: navy }\na:target { color: yellow }\n");
        open("<!DOCTYPE html><title>T</title><link rel=stylesheet href=css/main.css>"
             "<style>@layer one { a:visited { color: pink } }\na[href]:visited { color: orange }</style>"
             "<ul><li>1<li><a class='x:hover' href=page.html>2</a></ul>");
        const std::string saved = file("page.html");
        trigger("rulesAction");
        QFETCH(QByteArray, row);
        click(row.constData());
        QFETCH(QString, states);
        const auto choose = [&] {
            for (QAction* const action : the<QMenu>("statesMenu")->actions())
                if (states.split(u' ').contains(action->text()))
                    action->trigger();
        };
        choose();
        QTRY_COMPARE(the<QToolButton>("statesButton")->isChecked(), !states.isEmpty());
        QFETCH(QString, colours);
        const auto shown = [this] {
            return answer(
                "['ul', 'li + li', 'a'].map((each) => getComputedStyle(document.querySelector(each))"
                ".color).join('')");
        };
        QTRY_COMPARE(shown(), colours);
        if (states == u":hover"_qs && row == "<a") {
            QTRY_VERIFY2(listed().contains(u"a:link:hover | main.css:5"_qs), qPrintable(listed()));
            test::saveScreenshots(*window, "style-states");
        }
        trigger("reloadAction");
        QTRY_VERIFY(isShown());
        QTRY_COMPARE(shown(), colours);
        QVERIFY(!window->isWindowModified());
        choose();
        QTRY_COMPARE(shown(), u"rgb(0, 0, 0)rgb(0, 0, 0)rgb(255, 192, 203)"_qs);
        QCOMPARE(file("page.html"), saved);
    }

    void colour_isChosenAndKeepsItsNotation_data()
    {
        const test::Rows<QString, QString, QString> row("value", "colour", "wanted");
        row("hex", "#123456", "#ff8000", "#ff8000");
        row("short hex", "#FA0", "#ffffcc00", "#FC0");
        row("hex with opacity", "#12345678", "#80ff8000", "#ff800080");
        row("short hex no longer", "#fff", "#fffffe", "#fffffe");
        row("rgb", "1px solid rgb(1, 2, 3)", "#ff8000", "1px solid rgb(255, 128, 0)");
        row("rgb with opacity", "rgba(1, 2, 3, .5)", "#33ff8000", "rgba(255, 128, 0, 0.2)");
        row("rgb with blanks", "rgb(1 2 3)", "#80ff8000", "rgb(255 128 0 / 0.502)");
        row("hsl", "hsl(0, 0%, 0%) !important", "#00ff00", "hsl(120, 100%, 50%) !important");
        row("name", "red", "#0000ff", "#0000ff");
        row("taken back", "red", "", "red");
    }
    void colour_isChosenAndKeepsItsNotation()
    {
        QFETCH(QString, value);
        QFETCH(QString, colour);
        QFETCH(QString, wanted);
        const QString property = value.contains(u"solid") ? u"border-top"_qs : u"border-top-color"_qs;
        const QString sheet = "p { " + property + ": %1; margin: 0 }\n";
        put("css/main.css", sheet.arg(value).toStdString());
        open("<!DOCTYPE html><title>T</title><link rel=stylesheet href=css/main.css><p>Text</p>");
        trigger("rulesAction");
        click("<p");
        QTRY_VERIFY(declaration("main.css", property).isValid());
        QVERIFY(!declaration("main.css", "margin").siblingAtColumn(1).data(Qt::DecorationRole).isValid());
        const auto shown = [this] {
            return answer("getComputedStyle(document.querySelector('p')).borderTopColor");
        };
        const QString before = shown();
        rules()->setCurrentIndex(declaration("main.css", property).siblingAtColumn(1));
        rules()->setFocus();
        QTest::keyClick(rules(), Qt::Key_Down, Qt::AltModifier);
        QTRY_VERIFY2(the<QColorDialog>("colourDialog"), "the dialog is open");
        auto* const dialog = the<QColorDialog>("colourDialog");
        dialog->setCurrentColor(colour.isEmpty() ? QColor(Qt::blue) : QColor(colour));
        QTRY_VERIFY2(shown() != before, qPrintable(shown()));
        QVERIFY(!window->isWindowModified());
        test::saveScreenshots(*window, "style-colours");
        test::saveScreenshots(*dialog, "style-colour-dialog");
        QTest::keyClick(dialog, colour.isEmpty() ? Qt::Key_Escape : Qt::Key_Return);
        QTRY_COMPARE(declaration("main.css", property).siblingAtColumn(1).data().toString(), wanted);
        QCOMPARE(window->undoStack()->count(), colour.isEmpty() ? 0 : 1);
        trigger("undoAction");
        QTRY_COMPARE(shown(), before);
        QTRY_COMPARE(declaration("main.css", property).siblingAtColumn(1).data().toString(), value);
    }

    void colourOfACustomProperty_isChangedWhereItIsSet()
    {
        const std::string sheet =
            ":root { --base: #f00; --accent: var(--base) }\np::before { color: var(--accent) }\n"
            "p { padding: var(--gap, 2px); --gap: 3px; border-color: blue var(--accent) }\n";
        put("css/main.css", sheet);
        open("<!DOCTYPE html><title>T</title><link rel=stylesheet href=css/main.css><p>Text</p>");
        trigger("rulesAction");
        click("<p");
        QTRY_VERIFY2(declaration("main.css:1", "--base").isValid(), qPrintable(listed()));
        const auto value = [this](const char* place, const char* name) {
            return declaration(QString::fromUtf8(place), QString::fromUtf8(name)).siblingAtColumn(1);
        };
        QVERIFY(!value("main.css:3", "padding").data(Qt::DecorationRole).isValid());
        QVERIFY2(value("main.css:3", "padding").data(Qt::ToolTipRole).toString().contains(u"--gap: 3px"),
                 "what a property comes to is told");
        QVERIFY(value("main.css:1", "--accent")
                    .data(Qt::AccessibleTextRole)
                    .toString()
                    .contains(u"--accent: #f00"));
        rules()->setCurrentIndex(value("main.css:3", "border-color"));
        rules()->setFocus();
        QTest::keyClick(rules(), Qt::Key_Down, Qt::AltModifier);
        QTRY_VERIFY2(the<QMenu>("coloursMenu"), "both colours are offered");
        QCOMPARE(the<QMenu>("coloursMenu")->actions().at(1)->text(), u"var(--accent)"_qs);
        the<QMenu>("coloursMenu")->close();
        rules()->setCurrentIndex(value("main.css:2", "color"));
        QTest::keyClick(rules(), Qt::Key_Down, Qt::AltModifier);
        QTRY_VERIFY2(the<QColorDialog>("colourDialog"), "the dialog is open");
        QCOMPARE(the<QColorDialog>("colourDialog")->windowTitle(), u"--base"_qs);
        test::saveScreenshots(*window, "style-variables");
        the<QColorDialog>("colourDialog")->setCurrentColor(Qt::blue);
        const auto shown = [this] {
            return answer("getComputedStyle(document.querySelector('p'), '::before').color");
        };
        QTRY_COMPARE(shown(), u"rgb(0, 0, 255)"_qs);
        QTest::keyClick(the<QColorDialog>("colourDialog"), Qt::Key_Return);
        QTRY_COMPARE(value("main.css:1", "--base").data().toString(), u"#00f"_qs);
        QTRY_COMPARE(shown(), u"rgb(0, 0, 255)"_qs);
        trigger("saveAction");
        QTRY_COMPARE(QString::fromStdString(file("css/main.css")),
                     QString::fromStdString(sheet).replace(u"#f00"_qs, u"#00f"_qs));
    }

    void coloursOfAStyleAttribute_areChosenFromTheSwatch()
    {
        open("<!DOCTYPE html><title>T</title><p style='background: linear-gradient(#fff, red)'>Text</p>");
        const QByteArray before = tree();
        trigger("rulesAction");
        click("<p");
        QTRY_VERIFY(declaration("Style attribute", "background").isValid());
        const QModelIndex value = declaration("Style attribute", "background").siblingAtColumn(1);
        const QRect place = rules()->visualRect(value);
        QTest::mouseClick(rules()->viewport(), Qt::LeftButton, {},
                          {place.left() + place.height() / 2, place.center().y()});
        QTRY_VERIFY2(the<QMenu>("coloursMenu"), "the colours are offered");
        the<QMenu>("coloursMenu")->actions().at(1)->trigger();
        QTRY_VERIFY2(the<QColorDialog>("colourDialog"), "the dialog is open");
        the<QMenu>("coloursMenu")->close();
        the<QColorDialog>("colourDialog")->setCurrentColor(Qt::blue);
        const auto shown = [this] {
            return answer("getComputedStyle(document.querySelector('p')).backgroundImage");
        };
        QTRY_VERIFY2(shown().contains("rgb(0, 0, 255)"), qPrintable(shown()));
        QCOMPARE(answer("document.querySelector('p').getAttribute('style')"),
                 "background: linear-gradient(#fff, red)");
        QTest::keyClick(the<QColorDialog>("colourDialog"), Qt::Key_Escape);
        QTRY_VERIFY2(shown().contains("rgb(255, 0, 0)"), qPrintable(shown()));
        QCOMPARE(tree(), before);
    }

    void newRule_isAddedToTheLastSheet()
    {
        openPage();
        auto* const menu = the<QToolButton>("newRuleButton")->menu();
        emit menu->aboutToShow();
        QStringList offered;
        for (const QAction* const action : menu->actions())
            offered.append(action->text());
        QCOMPARE(offered.join(u' '), ".note #one p  &Move Inline Style to a Class...");
        menu->actions().first()->trigger();
        QTRY_VERIFY2(tree().contains("  .note { color: green }\n\n.note {\n}\n</style>"), tree().constData());
        QTRY_VERIFY2(listed().contains(u".note | <style>:4"), qPrintable(listed()));
        QCOMPARE(window->undoStack()->undoText(), "New Rule");
    }

    void inlineStyle_movesToAClass_data()
    {
        QTest::addColumn<QString>("sheet");
        QTest::newRow("of a file") << "main.css";
        QTest::newRow("of the page") << "style element of the page";
    }
    void inlineStyle_movesToAClass()
    {
        QFETCH(QString, sheet);
        put("other/page.html", "<title>Other</title><p class=elsewhere>x</p>");
        openPage();
        const QByteArray before = tree();
        auto* const menu = the<QToolButton>("newRuleButton")->menu();
        emit menu->aboutToShow();
        menu->actions().last()->trigger();
        QTRY_VERIFY2(the<QDialog>("classSheet"), "the sheet does not open");
        auto* const asked = the<QDialog>("classSheet");
        QTRY_VERIFY(asked->isVisible());
        test::saveScreenshots(*asked, "move-style-to-class");
        auto* const ok = the<QPushButton>("classSheetOKButton");
        the<QLineEdit>("classSheetName")->setText("note");
        QVERIFY(!ok->isEnabled());
        QVERIFY(!the<QLabel>("classSheetProblem")->text().isEmpty());
        the<QLineEdit>("classSheetName")->setText("two words");
        QVERIFY(!ok->isEnabled());
        the<QLineEdit>("classSheetName")->setText("elsewhere");
        QTRY_COMPARE(the<QLabel>("classSheetProblem")->text(),
                     u"Another page or style sheet of the site has this class already."_qs);
        QVERIFY(!ok->isEnabled());
        the<QLineEdit>("classSheetName")->setText("moved");
        QTRY_VERIFY2(ok->isEnabled(), "the site is read");
        the<QComboBox>("classSheetTarget")->setCurrentText(sheet);
        ok->click();
        QTRY_VERIFY2(tree().contains("note moved\""), tree().constData());
        QTRY_VERIFY2(listed().contains(u".moved | "), qPrintable(listed()));
        QVERIFY(!tree().contains("style=\"margin"));
        QCOMPARE(window->undoStack()->undoText(), "Move Style to Class");
        the<QAction>("undoAction")->trigger();
        QTRY_COMPARE(tree(), before);
        QTRY_VERIFY2(!listed().contains(u".moved | "), qPrintable(listed()));
    }

    void textThatIsNoDeclaration_isRefused()
    {
        openPage();
        rules()->setFocus();
        rules()->setCurrentIndex(declaration(u"main.css:7"_qs, u"Add..."_qs));
        press(Qt::Key_F2);
        auto* const field = rules()->findChild<QLineEdit*>();
        QVERIFY(field);
        QTest::keyClicks(field, u"left: 3px } p { top: 0"_qs);
        QTest::keyClick(field, Qt::Key_Return);
        QTRY_VERIFY(the<QLabel>("noticeText")->isVisible());
        QCOMPARE(the<QLabel>("noticeText")->text(),
                 u"Type a property and its value, such as “color: red”."_qs);
        QCOMPARE(window->undoStack()->count(), 0);
    }

    void computedValues_areFiltered()
    {
        openPage();
        the<QTabWidget>("rulesPages")->setCurrentIndex(1);
        auto* const view = the<QTreeView>("computedView");
        QTRY_VERIFY(view->model()->rowCount() > 100);
        the<QLineEdit>("computedFilter")->setText(u"letter-sp"_qs);
        QCOMPARE(view->model()->rowCount(), 1);
        QCOMPARE(view->model()->index(0, 1).data(), u"1px"_qs);
        test::saveScreenshots(*window, "computed-styles");
    }
};

LUMA_TEST(tst_stylerules)
#include "tst_stylerules.moc"
