// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/boxview.h"
#include "tests/editor/pagewindow.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/screenshot.h"

#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QTest>
#include <QUndoStack>

using namespace luma;

namespace {

constexpr auto boxedPage = "<!DOCTYPE html><title>T</title><link rel=stylesheet href=main.css>\n"
                           "<p style='padding-left: 3px'>Text <b>bold</b></p>\n";
constexpr auto boxSheet = "p { margin: 1em 2em; border: 1px solid; width: 50%; font-size: 10px }\n"
                          "p { border-right-width: 4px !important; margin-inline-end: 7px }\n"
                          "b { margin: 2px }\n";

} // namespace

/// The drawing of the selected element's box: its numbers, and what an edit of one does to the sheets.
class tst_boxpanel final : public QObject, private luma::test::PageWindow
{
    Q_OBJECT

private:
    [[nodiscard]] QLineEdit* number(const QString& property) const
    {
        return the<BoxView>("boxView")->findChild<QLineEdit*>(property);
    }
    [[nodiscard]] QString shown(const QString& properties) const
    {
        QStringList texts;
        for (const QString& property : properties.split(u' '))
            texts.append(number(property)->text());
        return texts.join(u' ');
    }
    void openBox()
    {
        put("main.css", boxSheet);
        open(boxedPage);
        window->resize(1100, 800);
        trigger("rulesAction");
        the<QTabWidget>("rulesPages")->setCurrentIndex(1);
        click("<p");
        QTRY_COMPARE(shown("padding-left margin-right"), u"3 7"_qs);
    }
    /// Types keys into a field: "^" and "v" are Up and Down, "S" and "A" hold Shift and Alt for the next one.
    static void press(QLineEdit* field, const QString& keys)
    {
        Qt::KeyboardModifiers held;
        for (const QChar key : keys) {
            if (key == u'S' || key == u'A') {
                held = key == u'S' ? Qt::ShiftModifier : Qt::AltModifier;
                continue;
            }
            if (key == u'^' || key == u'v')
                QTest::keyClick(field, key == u'^' ? Qt::Key_Up : Qt::Key_Down, held);
            else
                QTest::keyClick(field, key.toLatin1());
            held = Qt::NoModifier;
        }
    }

private slots:
    void cleanup() { close(); }

    void numbers_areThoseOfTheElement()
    {
        openBox();
        QCOMPARE(shown("margin-top margin-right margin-bottom margin-left"), u"10 7 10 20"_qs);
        QCOMPARE(shown("border-top-width border-right-width padding-top"), u"1 4 0"_qs);
        QCOMPARE(number("width")->text(), answer("parseFloat(getComputedStyle(document.querySelector('p'))"
                                                 ".width)"));
        test::saveScreenshots(*window, "box");
        click("<b>");
        QTRY_COMPARE(shown("margin-top margin-left width"), u"2 2 auto"_qs);
        press(number("width"), "5");
        QVERIFY2(number("width")->isReadOnly(), "what takes its size from its text has none to edit");
        QTest::mouseMove(the<BoxView>("boxView"), {3, the<BoxView>("boxView")->height() / 3});
        click("<title>");
        QTRY_COMPARE(number("margin-top")->text(), u""_qs);
    }

    void edit_goesWhereTheNumberIsSet_data()
    {
        const test::Rows<QString, QString, QString, QString, QString, QString> row(
            "property", "keys", "file", "before", "after", "computed");
        row("one side of two", "margin-left", "5", "main.css", "1em 2em", "1em 2em 1em 5px",
            "marginLeft=5px");
        row("with a unit", "margin-top", "3em", "main.css", "1em 2em", "3em 2em 1em", "marginTop=30px");
        row("a step in its unit", "margin-top", "^", "main.css", "1em 2em", "2em 2em 1em", "marginTop=20px");
        row("a step of 10", "padding-left", "S^", "page.html", "padding-left: 3px", "padding-left: 13px",
            "paddingLeft=13px");
        row("a step of a tenth down", "padding-left", "AvAv", "page.html", "padding-left: 3px",
            "padding-left: 2.8px", "paddingLeft=2.8px");
        row("what no rule sets", "padding-top", "4", "page.html", "padding-left: 3px",
            "padding-left: 3px;padding-top: 4px;", "paddingTop=4px");
        row("important", "border-right-width", "^", "main.css", "4px !important", "5px !important",
            "borderRightWidth=5px");
        row("of a whole border", "border-left-width", "2", "main.css", "1px solid;",
            "1px solid; border-left-width: 2px;", "borderLeftWidth=2px");
        row("of a logical side", "margin-right", "1", "main.css", "margin-inline-end: 7px",
            "margin-inline-end: 7px; margin-right: 1px;", "marginRight=1px");
        row("the content", "width", "100", "main.css", "width: 50%", "width: 100px", "width=100px");
    }
    void edit_goesWhereTheNumberIsSet()
    {
        QFETCH(QString, property);
        QFETCH(QString, keys);
        QFETCH(QString, file);
        QFETCH(QString, before);
        QFETCH(QString, after);
        QFETCH(QString, computed);
        openBox();
        const QString old = QString::fromStdString(this->file(file.toStdString()));
        const QStringList expected = computed.split(u'=');
        const QString asked = u"getComputedStyle(document.querySelector('p')).%1"_qs.arg(expected[0]);
        const QString unedited = answer(asked);
        number(property)->setFocus();
        press(number(property), keys);
        QTRY_COMPARE(answer(asked), expected[1]); // while it is typed
        QCOMPARE(window->undoStack()->count(), 0);
        QTest::keyClick(number(property), Qt::Key_Escape);
        QTRY_COMPARE(answer(asked), unedited);
        QVERIFY(number(property)->isReadOnly());
        press(number(property), keys);
        QTest::keyClick(number(property), Qt::Key_Return);
        QTRY_COMPARE(window->undoStack()->count(), 1);
        QCOMPARE(window->undoStack()->undoText(),
                 after.contains(";padding-top") ? "Add Style" : "Change Style");
        QTRY_COMPARE(answer(asked), expected[1]);
        QTRY_VERIFY(number(property)->isReadOnly());
        trigger("saveAction");
        QTRY_COMPARE(QString::fromStdString(this->file(file.toStdString())),
                     QString(old).replace(before, after));
        trigger("undoAction");
        QTRY_COMPARE(answer(asked), unedited);
    }

    void editsThatFollowEachOther_areAllMade()
    {
        openBox();
        number("margin-top")->setFocus();
        for (const QChar key : u"1\t\t2\t3"_qs)
            QTest::keyClick(window->focusWidget(), key.toLatin1());
        click("<b>");
        QTRY_COMPARE(window->undoStack()->count(), 3);
        trigger("saveAction");
        QTRY_VERIFY2(file("main.css").starts_with("p { margin: 1px 2em 2px 3px; "), file("main.css").c_str());
    }

    void whatIsNoValue_isRefused()
    {
        openBox();
        QTest::mouseDClick(number("padding-top"), Qt::LeftButton);
        QVERIFY(!number("padding-top")->isReadOnly());
        press(number("padding-top"), "-3");
        QTest::keyClick(number("padding-top"), Qt::Key_Return);
        QTRY_VERIFY(the<QLabel>("noticeText")->isVisible());
        QCOMPARE(the<QLabel>("noticeText")->text(), u"“-3px” is no value of padding-top."_qs);
        QCOMPARE(number("padding-top")->text(), u"0"_qs);
        QCOMPARE(window->undoStack()->count(), 0);
    }

    void windowIsClosedWhileANumberIsEdited()
    {
        openBox();
        number("padding-top")->setFocus();
        press(number("padding-top"), "5");
        QVERIFY(!number("padding-top")->isReadOnly());
        const std::string before = file("page.html");
        delete window;
        QCOMPARE(file("page.html"), before);
    }

    void ringUnderTheMouse_isMarkedInThePage()
    {
        openBox();
        auto* const overlay = the<BoxOverlay>("boxOverlay");
        auto* const view = the<BoxView>("boxView");
        emit view->hovered(BoxOverlay::Part::Padding);
        QTRY_VERIFY2(overlay->isVisible(), "the box is marked");
        QCOMPARE(overlay->part(), BoxOverlay::Part::Padding);
        emit view->left();
        QTRY_VERIFY(!overlay->isVisible());
    }
};

LUMA_TEST(tst_boxpanel)
#include "tst_boxpanel.moc"
