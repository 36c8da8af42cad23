// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/charactersheet.h"
#include "tests/editor/pagewindow.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/screenshot.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QUndoStack>

using namespace luma;

/// Special characters, found by their names and inserted at the caret.
class tst_characters final : public QObject, private test::PageWindow
{
    Q_OBJECT

private slots:
    void cleanup() { close(); }

    void characters_areFound_data()
    {
        const test::Rows<QString, QString> row("text", "first");
        row("name", "rightwards arrow", "\u2192");
        row("beginnings of words", "euro s", "\u20ac");
        row("in any order", "arrow rightwards", "\u2192");
        row("code", "2014", "\u2014");
        row("code with its mark", "u+00a0", "\u00a0");
        row("beyond the first plane", "1F600", "\U0001F600");
        row("the character", "\u00df", "\u00df");
        row("nothing", "no such name", "");
        row("no character", "FFFF", "");
        row("not beyond", "110000", "");
        row("half of one", "D800", "");
    }
    void characters_areFound()
    {
        QFETCH(QString, text);
        const QList<char32_t> found = CharacterSheet::found(text);
        QTEST(found.isEmpty() ? QString() : QString::fromUcs4(&found.first(), 1), "first");
    }

    void character_isInserted_data()
    {
        const test::Rows<QByteArray, QString, std::string> row("charset", "text", "written");
        row("UTF-8", "utf-8", "2014", "one\u2014two");
        row("what the encoding lacks", "iso-8859-1", "2192", "one&#8594;two");
        row("no-break space", "utf-8", "00A0", "one&nbsp;two");
        row("beyond the first plane", "utf-8", "1F600", "one\U0001F600two");
        row("markup", "utf-8", "FF1C", "one\uff1ctwo");
    }
    void character_isInserted()
    {
        QFETCH(QByteArray, charset);
        QFETCH(QString, text);
        QFETCH(std::string, written);
        open("<meta charset=" + charset.toStdString() + "><p>onetwo</p>");
        setCaretBehind("one");
        trigger("insertCharacterAction");
        auto* const sheet = the<CharacterSheet>("characterSheet");
        QVERIFY(sheet->isVisible());
        the<QLineEdit>("characterField")->setText(text);
        QTest::keyClick(the<QLineEdit>("characterField"), Qt::Key_Return);
        QTRY_VERIFY2(window->undoStack()->canUndo(), "the character is in the tree");
        QCOMPARE(window->undoStack()->undoText(), "Insert Character");
        QVERIFY(window->saveToURL(at("page.html")));
        QVERIFY2(file("page.html").find("<p>" + written + "</p>") != std::string::npos,
                 file("page.html").c_str());
        window->undoStack()->undo();
        QCOMPARE(body(), "<p>onetwo</p>");
    }

    void sheet_isUsedByKeyboard()
    {
        open("<p>one</p>");
        setCaretBehind("one");
        trigger("insertCharacterAction");
        auto* const list = the<QListWidget>("characterList");
        auto* const field = the<QLineEdit>("characterField");
        auto* const group = the<QComboBox>("characterGroup");
        for (int i = group->count() - 1; i > 0; --i) {
            group->setCurrentIndex(i);
            QVERIFY2(list->count() > 20, qPrintable(group->currentText()));
        }
        test::saveScreenshots(*the<CharacterSheet>("characterSheet"), "characters");
        field->setText("no such name");
        QVERIFY(!the<QPushButton>("characterButton")->isEnabled());
        QCOMPARE(the<QLabel>("characterName")->text(), "No character has this name.");
        field->setText("greek small letter alpha");
        QCOMPARE(the<QLabel>("characterName")->text(), "U+03B1 GREEK SMALL LETTER ALPHA");
        QTest::keyClick(field, Qt::Key_Down);
        QVERIFY(list->currentRow() >= 0);
        list->setCurrentRow(0);
        QTest::keyClick(list, Qt::Key_Return);
        QTRY_COMPARE(body(), QByteArray("<p>one\u03b1</p>"));
        // It comes first the next time.
        trigger("insertCharacterAction");
        group->setCurrentIndex(0);
        QCOMPARE(list->item(0)->text(), "\u03b1");
    }
};

LUMA_TEST(tst_characters)
#include "tst_characters.moc"
