// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/pagewindow.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/screenshot.h"
#include "web/sizehandles.h"

#include <QImage>
#include <QLabel>
#include <QTest>
#include <QUndoStack>
#include <QWindow>

using namespace luma;

/// Dragging the size of an image with the mouse, in the real rendering.
class tst_resizing final : public QObject, private test::PageWindow
{
    Q_OBJECT

private:
    SizeHandles* handles() const { return the<SizeHandles>("sizeHandles"); }
    QPoint placeOf(const QPoint& side) const
    {
        return handles()->mapTo(window, handles()->handleAt(side).toPoint());
    }
    void openAndSelect(const QString& markup, const char* row)
    {
        QImage picture(200, 100, QImage::Format_RGB32);
        picture.fill(Qt::darkGreen);
        put("a.png", "");
        QVERIFY(picture.save(QString::fromStdString(at("a.png").native())));
        open(markup.toStdString());
        window->resize(1200, 800);
        QTRY_VERIFY(rendering().isFollowing());
        if (answer("document.images.length").toInt() > 0)
            QTRY_COMPARE(answer("document.images[0].naturalWidth"), "200");
        click(row);
        QTRY_VERIFY2(!handles()->box().isEmpty(), "handles at the element");
        QTRY_VERIFY2(isBoxRight(), "the handles stand at the element");
    }
    bool isBoxRight() const
    {
        const QString place =
            answer("(({ left, top, width, height }) => [left, top, width, height].map(Math.round).join())"
                   "(handled.element.getBoundingClientRect())");
        const QRect box = handles()->box().toRect();
        return place ==
               QStringLiteral("%1,%2,%3,%4").arg(box.x()).arg(box.y()).arg(box.width()).arg(box.height());
    }
    void press(const QPoint& side, Qt::KeyboardModifiers modifiers = {})
    {
        at0 = placeOf(side);
        QTest::mousePress(window->windowHandle(), Qt::LeftButton, modifiers, at0);
    }
    void move(const QPoint& way, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseEvent(QTest::MouseMove, window->windowHandle(), Qt::NoButton, modifiers, at0 + way);
    }
    void release(const QPoint& way, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseRelease(window->windowHandle(), Qt::LeftButton, modifiers, at0 + way);
    }
    QPoint at0;

private slots:
    void cleanup() { close(); }

    void drag_changesTheSize_data()
    {
        const test::Rows<QString, QPoint, QPoint, bool, QString> row("element", "side", "way", "isShift",
                                                                     "after");
        const QString image = QStringLiteral("<img src=\"a.png\" alt=\"\">");
        row("corner", image, QPoint(1, 1), QPoint(100, 0), false,
            "<img src=\"a.png\" alt=\"\" width=\"300\" height=\"150\">");
        row("corner down", image, QPoint(1, 1), QPoint(0, 50), false,
            "<img src=\"a.png\" alt=\"\" width=\"300\" height=\"150\">");
        row("corner, smaller", image, QPoint(-1, -1), QPoint(100, 50), false,
            "<img src=\"a.png\" alt=\"\" width=\"100\" height=\"50\">");
        row("corner, free", image, QPoint(1, 1), QPoint(40, 100), true,
            "<img src=\"a.png\" alt=\"\" width=\"240\" height=\"200\">");
        row("side", image, QPoint(1, 0), QPoint(60, 30), false, "<img src=\"a.png\" alt=\"\" width=\"260\">");
        row("bottom", image, QPoint(0, 1), QPoint(60, 30), false,
            "<img src=\"a.png\" alt=\"\" height=\"130\">");
        row("to nothing", image, QPoint(1, 0), QPoint(-900, 0), false,
            "<img src=\"a.png\" alt=\"\" width=\"1\">");
        row("attributes", "<img width=\"100\" height=\"50\" src=\"a.png\">", QPoint(1, 1), QPoint(50, 0),
            false, "<img width=\"150\" height=\"75\" src=\"a.png\">");
        row("its style", "<img src=\"a.png\" style=\"color: red; width: 50px\">", QPoint(1, 1), QPoint(50, 0),
            false, "<img src=\"a.png\" style=\"color: red; width: 100px\">");
        row("both in its style", "<img src=\"a.png\" style=\"width:50px;height:25px !important\">",
            QPoint(1, 1), QPoint(50, 0), false,
            "<img src=\"a.png\" style=\"width:100px;height:50px !important\">");
        row("with a border", "<img src=\"a.png\" style=\"border: 10px solid; padding: 5px\">", QPoint(1, 1),
            QPoint(100, 0), false,
            "<img src=\"a.png\" style=\"border: 10px solid; padding: 5px\" width=\"300\" height=\"150\">");
        row("border box",
            "<img src=\"a.png\" width=\"200\" style=\"border: 10px solid; box-sizing: border-box\">",
            QPoint(1, 0), QPoint(100, 0), false,
            "<img src=\"a.png\" width=\"300\" style=\"border: 10px solid; box-sizing: border-box\">");
        row("height left to the ratio",
            "<style>img { max-width: 100%; height: auto }</style><img src=\"a.png\">", QPoint(0, 1),
            QPoint(0, 50), false, "<img src=\"a.png\" width=\"300\" height=\"150\">");
        row("frame", "<iframe width=\"200\" height=\"100\"></iframe>", QPoint(1, 1), QPoint(10, 50), false,
            "<iframe width=\"210\" height=\"150\"></iframe>");
        row("scaled", "<div style=\"transform: scale(2); transform-origin: 0 0\"><img src=\"a.png\"></div>",
            QPoint(1, 1), QPoint(100, 0), false,
            "<div style=\"transform: scale(2); transform-origin: 0 0\"><img src=\"a.png\" width=\"250\" "
            "height=\"125\"></div>");
    }
    void drag_changesTheSize()
    {
        QFETCH(QString, element);
        QFETCH(QPoint, side);
        QFETCH(QPoint, way);
        QFETCH(QString, after);
        QFETCH(bool, isShift);
        const Qt::KeyboardModifiers modifiers = isShift ? Qt::ShiftModifier : Qt::NoModifier;
        openAndSelect(element, element.contains("iframe") ? "<iframe" : "<img");
        const QByteArray before = body();
        press(side, modifiers);
        move(way / 2, modifiers);
        move(way, modifiers);
        release(way, modifiers);
        QTRY_COMPARE(QString::fromUtf8(body()), after);
        QCOMPARE(window->undoStack()->undoText(), "Resize");
        QTRY_VERIFY2(isBoxRight(), "the handles follow");
        // The page knows nothing of the handles, and one step takes it back.
        QCOMPARE(answer("document.body.innerHTML"), QString::fromUtf8(body()));
        window->undoStack()->undo();
        QCOMPARE(body(), before);
        QVERIFY(!window->undoStack()->canUndo());
    }

    void escape_givesTheDragUp()
    {
        openAndSelect("<p>one</p><img src=\"a.png\">", "<img");
        const QRectF box = handles()->box();
        press({1, 1});
        move({50, 25});
        QTRY_COMPARE(handles()->box(), box.adjusted(0, 0, 50, 25));
        test::saveScreenshots(*window, "resizing");
        QTest::keyClick(window->windowHandle(), Qt::Key_Escape);
        QCOMPARE(handles()->box(), box);
        release({50, 25});
        QCOMPARE(body(), "<p>one</p><img src=\"a.png\">");
        QVERIFY(!window->undoStack()->canUndo());
        // A click changes nothing, and beside the handles the mouse is the page's.
        press({1, 1});
        release({0, 0});
        QTRY_COMPARE(handles()->box(), box);
        QVERIFY(!window->undoStack()->canUndo());
        click("<p>");
        QTRY_VERIFY(!handles()->isVisible());
    }

    void sizeOfASheet_isToldInsteadOfDragged_data()
    {
        const test::Rows<QString, QPoint> row("sheet", "side");
        row("width", "img.photo { width: 120px }", QPoint(1, 0));
        row("corner", ".photo { width: 120px }", QPoint(1, 1));
        row("important", ".photo { width: 120px !important }", QPoint(1, 0));
        row("both left to the ratio", ".photo { width: auto; height: auto }", QPoint(1, 1));
    }
    void sizeOfASheet_isToldInsteadOfDragged()
    {
        QFETCH(QString, sheet);
        QFETCH(QPoint, side);
        openAndSelect("<style>" + sheet + "</style><img class=photo style=\"" +
                          (sheet.contains("important") ? "width: 10px" : "") + "\" src=\"a.png\">",
                      "<img");
        const QByteArray before = body();
        press(side);
        move({30, 0});
        QTRY_VERIFY(
            the<QLabel>("noticeText")->text().startsWith("A style sheet sets the size of this element"));
        release({30, 0});
        QCOMPARE(body(), before);
    }

    void handles_followTheElement()
    {
        openAndSelect("<p>one</p><img src=\"a.png\"><div style=\"height: 3000px\"></div>", "<img");
        const double top = handles()->box().top();
        (void)answer("scrollTo(0, 20)");
        QTRY_COMPARE(handles()->box().top(), top - 20);
        rendering().setMagnification(1.5);
        QTRY_COMPARE(handles()->box().width(), 300);
        setCaretBehind("one");
        type("x");
        QTRY_COMPARE(body().left(12), QByteArray("<p>onex</p><"));
        QTRY_VERIFY(!handles()->isVisible());
    }
};

LUMA_TEST(tst_resizing)
#include "tst_resizing.moc"
