// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/pagewindow.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/screenshot.h"
#include "web/linksheet.h"

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using namespace luma;

namespace {

constexpr auto picture = "<svg xmlns='http://www.w3.org/2000/svg' width='200' height='100'/>";
constexpr auto source = "<!DOCTYPE html>\n<title>T</title>\n<p class='a'  id=one>x</p>\n"
                        "<IMG src=wide.svg  title=\"T\">\n<input type=text required>\n<dl><dt>d</dl>\n";

} // namespace

/// The attributes of the selected element in a page's window, read and edited by keyboard.
class tst_attributespanel final : public QObject, private luma::test::PageWindow
{
    Q_OBJECT

private:
    [[nodiscard]] QTreeView* table() const { return the<QTreeView>("attributesView"); }
    [[nodiscard]] QModelIndex value(const QString& name) const
    {
        const QAbstractItemModel& model = *table()->model();
        const QModelIndexList found =
            model.match(model.index(0, 0), Qt::DisplayRole, name, 1, Qt::MatchExactly);
        return found.isEmpty() ? QModelIndex() : found.first().siblingAtColumn(1);
    }
    void openPage()
    {
        put("wide.svg", picture);
        open(source);
        QTRY_COMPARE(answer("document.images[0].naturalWidth"), "200");
    }
    void press(Qt::Key key) const { QTest::keyClick(QApplication::focusWidget(), key); }
    void begin(const QString& name) const
    {
        table()->setFocus();
        QTRY_VERIFY(table()->hasFocus());
        QVERIFY(value(name).isValid());
        table()->setCurrentIndex(value(name));
    }

private slots:
    void cleanup() { close(); }

    void attributesOfTheElement_areListedWithTheSetOnesFirst_data()
    {
        const test::Rows<QString, QString> row("element", "first");
        row("paragraph", "<p", "class=a id=one title lang dir style");
        row("image", "<img", "src=wide.svg title=T alt width height loading srcset sizes");
        row("field", "<input", "type=text required= src alt name value");
        row("term", "<dt", "id class title lang");
    }
    void attributesOfTheElement_areListedWithTheSetOnesFirst()
    {
        openPage();
        const QAbstractItemModelTester tester(table()->model());
        QFETCH(QString, element);
        click(qPrintable(element));
        QFETCH(QString, first);
        QStringList found;
        for (int i = 0; i <= first.count(u' '); ++i) {
            const QModelIndex name = table()->model()->index(i, 0);
            const bool isSet = !name.data(Qt::ForegroundRole).isValid();
            found.append(name.data().toString() +
                         (isSet ? u'=' + name.siblingAtColumn(1).data().toString() : QString()));
        }
        QCOMPARE(found.join(u' '), first);
    }

    // Nothing of the file changes but the attribute.
    void values_areUndoStepsThatLeaveTheRestOfTheFileAlone_data()
    {
        const test::Rows<QString, QString, QString, QByteArray, QString> row("element", "name", "typed",
                                                                             "tag", "undo");
        const char* const image = "<IMG src=wide.svg  title=\"T\"";
        row("new text", "<img", "alt", "A \"cat\"\n", image + std::string(" alt=\"A &quot;cat&quot;\">"),
            "Add Attribute");
        row("changed text", "<p", "class", "b c\n", "<p class='b c'  id=one>", "Change Attribute");
        row("emptied", "<p", "id", "\b\n", "<p class='a'>", "Remove Attribute");
        row("keyword", "<img", "loading", "lazy\n", image + std::string(" loading=\"lazy\">"),
            "Add Attribute");
        row("switched on", "<input", "disabled", " ", "<input type=text required disabled=\"\">",
            "Add Attribute");
        row("switched off", "<input", "required", " ", "<input type=text>", "Remove Attribute");
        row("width and height", "<img", "width", "50\n", image + std::string(" width=\"50\" height=\"25\">"),
            "Change Size");
        row("a share of the width", "<img", "width", "50%\n", image + std::string(" width=\"50%\">"),
            "Add Attribute");
    }
    void values_areUndoStepsThatLeaveTheRestOfTheFileAlone()
    {
        openPage();
        const QByteArray before = tree();
        QFETCH(QString, element);
        QFETCH(QString, name);
        QFETCH(QString, typed);
        QFETCH(QByteArray, tag);
        click(qPrintable(element));
        begin(name);
        if (typed != " ")
            press(Qt::Key_F2);
        for (const QChar letter : typed)
            QTest::keyClick(QApplication::focusWidget(), letter == u'\n' ? '\r' : letter.toLatin1());
        QTRY_COMPARE(window->undoStack()->count(), 1);
        QTEST(window->undoStack()->undoText(), "undo");
        trigger("undoAction");
        QTRY_COMPARE(tree(), before);
        trigger("redoAction");
        trigger("saveAction");
        const QByteArray saved = QByteArray::fromStdString(file("page.html"));
        QVERIFY2(saved.contains(tag), saved.constData());
        const qsizetype begin = saved.indexOf(tag);
        const qsizetype behind = saved.size() - begin - tag.size();
        QVERIFY(saved.startsWith(QByteArray(source).left(begin)));
        QVERIFY(saved.endsWith(QByteArray(source).right(behind)));
    }

    void refusedValue_isToldAndNotWritten()
    {
        openPage();
        click("<img");
        begin("width");
        press(Qt::Key_F2);
        QTest::keyClicks(QApplication::focusWidget(), "wide");
        press(Qt::Key_Return);
        QTRY_COMPARE(the<QLabel>("noticeText")->text(), "\u201cwide\u201d is not a number.");
        QCOMPARE(value("width").data().toString(), QString());
        QCOMPARE(window->undoStack()->count(), 0);
    }

    void imageWithoutText_isTold()
    {
        openPage();
        click("<p");
        QVERIFY(!the<QLabel>("altText")->isVisible());
        click("<img");
        QTRY_VERIFY(the<QLabel>("altText")->isVisible());
        test::saveScreenshots(*window, "attributes");
        QTest::mouseClick(the<QPushButton>("decorativeButton"), Qt::LeftButton);
        QTRY_VERIFY(!the<QLabel>("altText")->isVisible());
        QVERIFY(body().contains("alt=\"\""));
        QCOMPARE(window->undoStack()->undoText(), "Add Attribute");
    }

    void image_isWrappedInALink()
    {
        openPage();
        click("<img");
        auto* const button = the<QPushButton>("imageLinkButton");
        QTRY_COMPARE(button->text(), "Make Link...");
        QTest::mouseClick(button, Qt::LeftButton);
        QTRY_VERIFY(rendering().linkSheet()->isVisible());
        the<QLineEdit>("linkAddress")->setText("b.html");
        QTest::mouseClick(the<QPushButton>("linkButton"), Qt::LeftButton);
        QTRY_VERIFY2(body().contains("<a href=\"b.html\"><img src=\"wide.svg\" title=\"T\"></a>"),
                     body().constData());
        QCOMPARE(window->undoStack()->undoText(), "Make Link");
        click("<img");
        QTRY_COMPARE(button->text(), "Edit Link...");
    }

    // An edit by Tab goes on to the next value, although the rows are brought up to date meanwhile.
    void tab_goesOnToTheNextValue()
    {
        openPage();
        click("<img");
        begin("alt");
        press(Qt::Key_F2);
        QTest::keyClicks(QApplication::focusWidget(), "Cat");
        press(Qt::Key_Tab);
        QTRY_COMPARE(value("alt").data().toString(), "Cat");
        QCOMPARE(table()->currentIndex(), value("width"));
        the<QCheckBox>("keepRatioBox")->setChecked(false);
        QTest::keyClicks(table()->indexWidget(value("width")) ? table()->indexWidget(value("width"))
                                                              : QApplication::focusWidget(),
                         "7");
        press(Qt::Key_Return);
        QTRY_COMPARE(value("width").data().toString(), "7");
        QVERIFY(body().contains("title=\"T\" alt=\"Cat\" width=\"7\""));
        begin("alt");
        press(Qt::Key_Delete);
        QTRY_VERIFY(!body().contains("alt"));
    }
};

LUMA_TEST(tst_attributespanel)
#include "tst_attributespanel.moc"
