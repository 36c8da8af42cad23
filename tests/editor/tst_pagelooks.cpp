// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/filedescriptor.h"
#include "base/files.h"
#include "tests/editor/pagewindow.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/screenshot.h"
#include "web/previewprocess.h"

#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTest>
#include <QWheelEvent>

#include <sys/inotify.h>

#include <array>
#include <csignal>
#include <cstdlib>

using namespace luma;

/// Looking at a page as it is on other devices and in other programs.
class tst_pagelooks final : public QObject, private luma::test::PageWindow
{
    Q_OBJECT

private:
    static std::filesystem::path programs()
    {
        return std::filesystem::path(qgetenv("XDG_DATA_HOME").toStdString()) / "applications";
    }
    /// Turns the wheel over the page, by notches.
    void turnWheel(int notches, Qt::KeyboardModifiers modifiers) const
    {
        QWidget* const receiver = rendering().webView()->focusProxy();
        const QPointF where(20, 20);
        QWheelEvent event(where, receiver->mapToGlobal(where), {}, {0, 120 * notches}, Qt::NoButton,
                          modifiers, Qt::NoScrollPhase, false);
        QApplication::sendEvent(receiver, &event);
    }

private slots:
    void cleanup() { close(); }

    void page_isAsWideAsTheDevice_data()
    {
        const test::Rows<QByteArray, int> row("action", "width");
        row("narrower than the window", "phoneWidthAction", 390);
        row("tablet, wider than the window has room", "tabletWidthAction", 768);
        row("desktop", "desktopWidthAction", 1280);
    }
    void page_isAsWideAsTheDevice()
    {
        QFETCH(QByteArray, action);
        QFETCH(int, width);
        open("<p>one</p>");
        window->resize(1000, 500);
        const auto distance = [&] { return std::abs(answer("innerWidth").toInt() - width); };
        trigger(action.constData());
        QTRY_VERIFY(distance() <= 1);
        QVERIFY(rendering().webView()->width() <= the<QWidget>("contentView")->width());
        QVERIFY(test::screenshot(*window, action));
        trigger("outlineAction");
        QTRY_VERIFY(distance() <= 1);
        trigger("reloadAction");
        waitUntilShown();
        QTRY_VERIFY(distance() <= 1);
        trigger("freeWidthAction");
        QTRY_COMPARE(rendering().webView()->width(), the<QWidget>("contentView")->width());
    }

    // The preview's scripts tell what they see by the files of the site that they read.
    void previewWithScripts_followsEditsAndSaves()
    {
        put("sheet.css", "p { width: 66px }");
        put("other.html", "<p>saved</p>");
        for (const char* name : {"one66px.txt", "two77px.txt", "three77px.txt", "saved.txt", "unsaved.txt"})
            put(name, "");
        open(
            "<title>one</title><link rel=stylesheet href=sheet.css><p>text</p><script>"
            "addEventListener('load', () => fetch(document.title + getComputedStyle(document.querySelector('p')).width"
            " + '.txt'));"
            "fetch('other.html').then((r) => r.text()).then((t) => fetch(t.match(/[a-z]+(?=<.p)/)[0] + '.txt'))</script>");
        const FileDescriptor watch(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
        QVERIFY(::inotify_add_watch(watch.get(), at("").c_str(), IN_OPEN) >= 0);
        QByteArray read;
        const auto hasRead = [&](const char* name) {
            std::array<char, 4096> events = {};
            for (ssize_t size = 0; (size = ::read(watch.get(), events.data(), events.size())) > 0;)
                read.append(events.data(), size);
            return read.contains(name);
        };
        trigger("scriptPreviewAction");
        QTRY_VERIFY(hasRead("one66px.txt"));
        setTitle("two");
        the<QPlainTextEdit>("cssField")->setPlainText("p { width: 77px }");
        trigger("scriptPreviewAction");
        QVERIFY(!hasRead("two"));
        trigger("saveAction");
        QTRY_VERIFY(hasRead("two77px.txt"));
        setTitle("three");
        trigger("saveAction");
        QTRY_VERIFY(hasRead("three77px.txt"));
        const auto* const process = window->findChild<PreviewProcess*>();
        ::kill(static_cast<pid_t>(process->processId()), SIGKILL);
        QTRY_VERIFY(the<QLabel>("noticeText")->text().contains("ended by itself"));
        QVERIFY(!hasRead("unsaved.txt"));
        read.clear();
        HTMLDocument other;
        other.mountPath = at("");
        other.readFromURL(at("other.html"));
        other.recover({{}, at("other.html"), "<p>unsaved</p>"});
        other.windowDidLoad();
        trigger("scriptPreviewAction");
        QTRY_VERIFY(hasRead("three77px.txt"));
        QTRY_VERIFY(hasRead("unsaved.txt"));
    }

    void wheelWithControl_zooms()
    {
        open("<p>one</p>");
        turnWheel(2, Qt::ControlModifier);
        QTRY_COMPARE(answer("devicePixelRatio.toFixed(2)"), "1.21");
        turnWheel(-1000, Qt::ControlModifier);
        QCOMPARE(rendering().magnification(), 0.25);
        trigger("actualSizeAction");
        turnWheel(1, {});
        QCOMPARE(rendering().magnification(), 1.0);
    }

    void media_changeWhatTheSheetsShow()
    {
        put("print.css", "p { text-decoration: underline }");
        put("both.css", "@import 'dark.css' (prefers-color-scheme: dark); @import 'paper.css' print;");
        put("dark.css", "p { font-style: italic }");
        put("paper.css", "p { font-weight: 700 }");
        const std::string markup =
            "<link rel=stylesheet media=print href=print.css><link rel=stylesheet href=both.css>"
            "<style>@supports (color: red) { @media (prefers-color-scheme: dark) and (min-width: 1px) {"
            " p { color: rgb(1, 2, 3) } } } @media only screen { p { text-align: right } }</style><p>one</p>";
        open(markup);
        const QByteArray before = tree();
        const QString looks = "{ const { color, fontStyle, fontWeight, textDecorationLine, textAlign } ="
                              " getComputedStyle(document.querySelector('p'));"
                              " [color, fontStyle, fontWeight, textDecorationLine, textAlign].join('; ') }";
        const QString plain = QStringLiteral("rgb(0, 0, 0); normal; 400; none; right");
        QTRY_COMPARE(answer(looks), plain);
        trigger("darkAction");
        QTRY_COMPARE(answer(looks), QStringLiteral("rgb(1, 2, 3); italic; 400; none; right"));
        trigger("printAction");
        QTRY_COMPARE(answer(looks), QStringLiteral("rgb(1, 2, 3); italic; 700; underline; start"));
        trigger("reloadAction");
        waitUntilShown();
        QTRY_COMPARE(answer(looks), QStringLiteral("rgb(1, 2, 3); italic; 700; underline; start"));
        typeInto("p", "s");
        QTRY_VERIFY(body().contains("<p>ones</p>"));
        trigger("undoAction");
        QTRY_COMPARE(tree(), before);
        trigger("darkAction");
        trigger("printAction");
        QTRY_COMPARE(answer(looks), plain);
    }

    void browsers_openTheSavedPage()
    {
        std::filesystem::create_directories(programs());
        const std::string opened = at("opened").native();
        QVERIFY(writeFile(
            programs() / "viewer.desktop",
            "[Desktop Entry]\nType=Application\nName=Viewer & Co\nExec=sh -c 'echo \"$1\" >\"$0\"' \"" +
                opened + "\" %u\nMimeType=x-scheme-handler/http;\n"));
        QVERIFY(writeFile(programs() / "mimeapps.list",
                          "[Default Applications]\nx-scheme-handler/http=viewer.desktop\n"));
        open("<p>one</p>");
        typeInto("p", "s");
        QTRY_COMPARE(body(), QByteArray("<p>ones</p>"));
        auto* const menu = the<QMenu>("browserMenu");
        emit menu->aboutToShow();
        QCOMPARE(menu->actions().constFirst()->text(), QStringLiteral("Viewer && Co"));
        menu->actions().constFirst()->trigger();
        QTRY_VERIFY(file("opened").ends_with("page.html\n"));
        QCOMPARE(file("page.html"), std::string("<p>ones</p>"));
        QVERIFY(!window->isWindowModified());
    }
};

LUMA_TEST(tst_pagelooks)
#include "tst_pagelooks.moc"
