// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/pagewindow.h"
#include "tests/support/registry.h"

#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QUndoStack>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>

#include <csignal>

using namespace luma;
using luma::test::PageWindow;

/// Editing in the rendering of a page's window: what reaches the tree, under which name, and what is never
/// lost.
class tst_pageediting final : public QObject
{
    Q_OBJECT

private:
    PageWindow page;

    QWidget* keys() const { return page.rendering().webView()->focusProxy(); }
    QString undoText() const { return page.the<QAction>("undoAction")->text(); }
    void kill() const
    {
        const qint64 process = page.page().renderProcessPid();
        QVERIFY(process > 0);
        QCOMPARE(::kill(static_cast<pid_t>(process), SIGKILL), 0);
        QTRY_VERIFY(page.page().renderProcessPid() != process);
        QVERIFY(page.waitUntilShown());
    }
    /// As a pane or another program would drop it on the first letters of the page.
    void drop(const QList<QUrl>& files) const
    {
        QMimeData data;
        data.setUrls(files);
        MyWebView* const view = page.rendering().webView();
        QDragEnterEvent enter(QPoint(20, 30), Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(view, &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent event(QPointF(20, 30), Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(view, &event);
        QVERIFY(event.isAccepted());
    }

private slots:
    void cleanup() { page.close(); }

    void commandKeys_areStepsOfTheirName_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("tag");
        QTest::newRow("bold") << Qt::Key_B << QStringLiteral("Bold") << QByteArray("b");
        QTest::newRow("italic") << Qt::Key_I << QStringLiteral("Italic") << QByteArray("i");
        QTest::newRow("underline") << Qt::Key_U << QStringLiteral("Underline") << QByteArray("u");
    }
    void commandKeys_areStepsOfTheirName()
    {
        QFETCH(Qt::Key, key);
        QFETCH(QString, name);
        QFETCH(QByteArray, tag);
        QVERIFY(page.open("<p>one two</p>"));
        page.setCaretBehind("two");
        page.type(QStringLiteral("s"));
        page.rendering().catchUp();
        page.select("one");
        QTest::keyClick(keys(), key, Qt::ControlModifier);
        QTRY_COMPARE(page.body(), "<p><" + tag + ">one</" + tag + "> twos</p>");
        QCOMPARE(undoText(), QStringLiteral("&Undo ") + name);
        page.trigger("undoAction");
        QTRY_COMPARE(undoText(), QStringLiteral("&Undo Typing"));
        QTRY_COMPARE(page.body(), QByteArray("<p>one twos</p>"));
        page.trigger("undoAction");
        QTRY_COMPARE(page.body(), QByteArray("<p>one two</p>"));
        QTRY_COMPARE(undoText(), QStringLiteral("&Undo"));
    }

    // Every item of both menus does what it says, as a step of that name.
    void menuItems_areStepsOfTheirName_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        const auto row = [](const char* title, const char* before, const char* after) {
            QTest::newRow(title) << QByteArray(before) << QByteArray(after);
        };
        const char* const plain = "<p>word</p>";
        row("Bold", plain, "<p><b>word</b></p>");
        row("Italic", plain, "<p><i>word</i></p>");
        row("Underline", plain, "<p><u>word</u></p>");
        row("Strike Through", plain, "<p><s>word</s></p>");
        row("Superscript", plain, "<p><sup>word</sup></p>");
        row("Subscript", plain, "<p><sub>word</sub></p>");
        row("Code", plain, "<p><code>word</code></p>");
        row("Paragraph", "<h1>word</h1>", "<p>word</p>");
        row("Heading 1", plain, "<h1>word</h1>");
        row("Heading 6", plain, "<h6>word</h6>");
        row("Block Quote", plain, "<blockquote><p>word</p></blockquote>");
        row("Preformatted", plain, "<pre>word</pre>");
        row("Ordered List", plain, "<ol><li>word</li></ol>");
        row("Unordered List", plain, "<ul><li>word</li></ul>");
        row("Indent", plain, "<blockquote><p>word</p></blockquote>");
        row("Outdent", "<ul><li>word</li></ul>", "<p>word</p>");
        row("Remove Format", "<p><b><i>word</i></b></p>", "<p>word</p>");
        row("Justify Left", "<p align=\"right\">word</p>", "<p>word</p>");
        row("Justify Center", plain, "<p style=\"text-align: center;\">word</p>");
        row("Justify Right", plain, "<p style=\"text-align: right;\">word</p>");
        row("Justify Full", plain, "<p style=\"text-align: justify;\">word</p>");
        row("Remove Justification", "<p style=\"text-align: right\">word</p>", "<p>word</p>");
    }
    void menuItems_areStepsOfTheirName()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QVERIFY(page.open(before.toStdString()));
        page.select("word");
        page.the<QAction>(QTest::currentDataTag())->trigger();
        QTRY_COMPARE(page.body(), after);
        QCOMPARE(undoText(), QStringLiteral("&Undo ") + QLatin1String(QTest::currentDataTag()));
        page.trigger("undoAction");
        QTRY_COMPARE(page.body(), before);
    }

    void droppedFiles_becomeImagesAndLinks()
    {
        page.put("images/a b.png", "");
        page.put("other.html", "");
        QVERIFY(page.open("<body style=\"margin: 0; font-size: 60px\"><p style=\"margin: 0\">one</p>"));
        drop({QUrl::fromLocalFile(QString::fromStdString(page.at("images/a b.png").native()))});
        QTRY_VERIFY(page.body().contains("<img src=\"images/a b.png\" alt=\"\">"));
        QCOMPARE(undoText(), QStringLiteral("&Undo Drop"));
        page.trigger("undoAction");
        QTRY_COMPARE(page.answer("document.body.innerText.trim()"), QStringLiteral("one"));
        drop({QUrl::fromLocalFile(QString::fromStdString(page.at("other.html").native()))});
        QTRY_VERIFY(page.body().contains("<a href=\"other.html\">other.html</a>"));
        QCOMPARE(page.page().url().fileName(), QStringLiteral("page.html"));
    }

    // What a process that replaced a killed one may be without.
    void deafPage_isEditedAllTheSame_data()
    {
        QTest::addColumn<bool>("hasScripts");
        QTest::newRow("without its channel") << true;
        QTest::newRow("without the editor's scripts") << false;
    }
    void deafPage_isEditedAllTheSame()
    {
        QFETCH(bool, hasScripts);
        QVERIFY(page.open("<p>one</p><p>two</p>"));
        page.page().setWebChannel(nullptr, QWebEngineScript::ApplicationWorld);
        if (!hasScripts)
            page.page().scripts().clear();
        page.trigger("reloadAction");
        QVERIFY(page.waitUntilShown());
        page.setCaretBehind("two");
        page.type(QStringLiteral("s"));
        QTRY_COMPARE(page.body(), QByteArray("<p>one</p><p>twos</p>"));
        QTRY_COMPARE(page.the<QWidget>("elementPath")->property("text").toString(),
                     QStringLiteral("html \u203a body \u203a p"));
    }

    void processKilledTwice_losesNothing()
    {
        QVERIFY(page.open("<p>one</p>"));
        page.setCaretBehind("one");
        page.type(QStringLiteral("a"));
        QTRY_COMPARE(page.body(), QByteArray("<p>onea</p>"));
        for (const char* typed : {"b", "c"}) {
            kill();
            QTRY_COMPARE(page.answer("document.hasFocus()"), QStringLiteral("true"));
            QVERIFY(!page.answer("document.body.innerText").isEmpty());
            page.setCaretBehind(page.answer("document.body.innerText.trim()").toUtf8().constData());
            page.type(QLatin1String(typed));
            QTRY_VERIFY(page.body().contains(typed));
        }
        kill();
        QCOMPARE(page.answer("document.body.innerText.trim()"), QStringLiteral("oneabc"));
        page.trigger("undoAction");
        QTRY_COMPARE(page.body(), QByteArray("<p>one</p>"));
    }

    void typedWhileThePageIsShownAnew_comesIn()
    {
        QVERIFY(page.open("<p>one</p>"));
        page.setCaretBehind("one");
        page.trigger("reloadAction");
        page.type(QStringLiteral("ab"));
        QVERIFY(page.rendering().webView()->heldInput().isHolding());
        QTRY_COMPARE(page.body(), QByteArray("<p>oneab</p>"));
        QCOMPARE(page.window->undoStack()->count(), 1);
    }

    // Letters, an undo and letters again at full speed, also while the undo waits for the page.
    void typedAroundAnUndo_comesInItsOrder()
    {
        QVERIFY(page.open("<p>one</p>"));
        page.setCaretBehind("one");
        page.type(QStringLiteral(" two"));
        QTimer::singleShot(0, this, [this] { page.type(QStringLiteral(" thr")); });
        QTest::keyClick(keys(), Qt::Key_Z, Qt::ControlModifier);
        page.type(QStringLiteral("ee"));
        QTRY_COMPARE(page.body(), QByteArray("<p>one three</p>"));
        page.trigger("undoAction");
        QTRY_COMPARE(page.body(), QByteArray("<p>one</p>"));
    }

    // A command waits as keys do, and an edit of the tree is not undone by what the old rendering still
    // tells.
    void editsAtOnce_allStay()
    {
        QVERIFY(page.open("<title>T</title><section><p>one</p></section>"));
        page.select("one");
        page.trigger("reloadAction");
        page.trigger("boldAction");
        page.type(QStringLiteral("x"));
        page.trigger("italicAction");
        QTRY_COMPARE(page.body(), QByteArray("<section><p><b><i>x</i></b></p></section>"));
    }
};

LUMA_TEST(tst_pageediting)
#include "tst_pageediting.moc"
