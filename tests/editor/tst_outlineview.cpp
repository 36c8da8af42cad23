// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/outlineview.h"
#include "html/element.h"
#include "tests/editor/pagewindow.h"
#include "tests/support/registry.h"
#include "web/viewcontroller.h"

#include <QAction>
#include <QMimeData>
#include <QScrollBar>
#include <QTest>

using namespace luma;

namespace {

std::string repeated(const std::string& text, int count)
{
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

} // namespace

/// How the outline scrolls, and what is selected in it after an edit, in the window of a page.
class tst_outlineview final : public QObject, private luma::test::PageWindow
{
    Q_OBJECT

private:
    void drop(const char* dragged, const char* target, Qt::DropAction action) const
    {
        QAbstractItemModel& model = *outline()->model();
        const std::unique_ptr<QMimeData> record(model.mimeData({row(dragged)}));
        QVERIFY(record);
        QVERIFY(model.dropMimeData(record.get(), action, -1, 0, row(target)));
    }

private slots:
    void cleanup() { close(); }

    void deepRow_isScrolledIntoView()
    {
        open("<title>T</title>" + repeated("<div><span>", 40) + "<b>deepest</b>");
        const QScrollBar& bar = *outline()->horizontalScrollBar();
        QCOMPARE(bar.value(), 0);
        outline()->setCurrentIndex(row("<b>"));
        const QRect deepest = outline()->visualRect(row("<b>"));
        QVERIFY(deepest.left() >= 0);
        QVERIFY(deepest.left() + outline()->fontMetrics().horizontalAdvance("<b> deep") <
                outline()->viewport()->width());
        outline()->setCurrentIndex(row("<html>"));
        QCOMPARE(bar.value(), 0);
    }

    void shallowPage_hasNoHorizontalScrollBar()
    {
        open("<title>T</title><section class='" + repeated("long ", 100) + "'><p>one</p></section>");
        QCOMPARE(outline()->horizontalScrollBar()->maximum(), 0);
    }

    void copiedElement_isSelected()
    {
        open("<title>T</title><section><p>one</p></section><article></article>");
        click("<p>");
        drop("<p>", "<article>", Qt::CopyAction);
        QTRY_COMPARE(body(), QByteArray("<section><p>one</p></section><article><p>one</p></article>"));
        QCOMPARE(outline()->currentIndex().parent(), row("<article>"));
        drop("<article>", "<section>", Qt::MoveAction);
        QTRY_COMPARE(body(), QByteArray("<section><article><p>one</p></article><p>one</p></section>"));
        QCOMPARE(outline()->currentIndex(), row("<article>"));
    }

    void elements_areMovedAndCopiedByKeyboard()
    {
        open("<title>T</title><section><p>one</p></section><article></article>");
        const auto paste = [this](const char* taken, const char* action, const char* target) {
            click(taken);
            trigger(action);
            click(target);
            trigger("pasteAction");
            QCoreApplication::processEvents();
        };
        paste("<p>", "copyAction", "<article>");
        QTRY_COMPARE(body(), QByteArray("<section><p>one</p></section><article><p>one</p></article>"));
        paste("<article>", "cutAction", "<section>");
        const QByteArray moved = "<section><article><p>one</p></article><p>one</p></section>";
        QTRY_COMPARE(body(), moved);
        trigger("pasteAction"); // it was moved once
        paste("<section>", "cutAction", "<article>");
        paste("<title>", "copyAction", "<section>");
        paste("<body>", "cutAction", "<head>");
        QCOMPARE(body(), moved);
        trigger("undoAction");
        trigger("undoAction");
        QTRY_COMPARE(body(), QByteArray("<section><p>one</p></section><article></article>"));
    }

    void scrollPositions_stayOverEditUndoAndReload()
    {
        open("<title>T</title>" + repeated("<section><h2>Head</h2><p>text</p></section>", 300));
        outline()->setCurrentIndex(row("<body>"));
        outline()->setCurrentIndex(outline()->model()->index(100, 0, row("<body>")));
        outline()->scrollTo(outline()->currentIndex(), QTreeView::PositionAtCenter);
        QTRY_VERIFY(answer("getSelection().toString()").startsWith("Head"));
        const QString before = answer("document.body.scrollTop");
        QVERIFY(before.toDouble() > 1000);
        const int rows = outline()->verticalScrollBar()->value();
        for (const char* action :
             {"deleteTagAction", "undoAction", "redoAction", "undoAction", "reloadAction"}) {
            const QByteArray markup = body();
            trigger(action);
            QTRY_VERIFY(isShown());
            QTRY_COMPARE(answer("document.body.scrollTop"), before);
            QCOMPARE(outline()->verticalScrollBar()->value(), rows);
            QCOMPARE(body() == markup, qstrcmp(action, "reloadAction") == 0);
        }
    }
};

LUMA_TEST(tst_outlineview)
#include "tst_outlineview.moc"
