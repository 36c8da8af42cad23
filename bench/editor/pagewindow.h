// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/files.h"
#include "bench/measuring.h"
#include "editor/htmldocument.h"
#include "web/scriptcall.h"
#include "web/viewcontroller.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace luma::bench {

/// Processes events until the condition holds. Ends the program where that takes longer than a minute.
template <class Condition>
void waitFor(const Condition& condition, const char* what = "the page")
{
    constexpr qint64 patience = 60'000; // milliseconds
    QTimer wake;                        // what the engine paints is no event here
    wake.start(2);
    QElapsedTimer waited;
    waited.start();
    while (!condition()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        if (waited.elapsed() > patience) {
            std::fprintf(stderr, "Waited a minute for %s.\n", what);
            std::_Exit(1);
        }
    }
}

/// Processes events for that long.
inline void rest(int milliseconds)
{
    bool over = false;
    QTimer::singleShot(milliseconds, [&over] { over = true; });
    waitFor([&over] { return over; });
}

/// The window of a page that is in a folder of its own, with the caret in the middle of the page.
class Window final
{
public:
    explicit Window(const std::string& markup)
    {
        const std::filesystem::path page = std::filesystem::path(m_folder.path().toStdString()) / "page.html";
        if (!writeFile(page, markup))
            std::exit(1);
        m_document.readFromURL(page);
        m_document.show();
        m_document.activateWindow();
        m_document.windowDidLoad();
        waitFor([this] { return rendering().webView()->editorPage().isComplete(); });
        rest(1500);
        rendering().webView()->setFocus();
        (void)ScriptCall::wait(
            &rendering().webView()->editorPage(),
            QStringLiteral("const texts = document.querySelectorAll('p');"
                           "getSelection().collapse(texts[texts.length >> 1].firstChild, 5)"));
        // The engine drops keys until it has painted the page.
        for (bool isTyped = false; !isTyped; rest(500)) {
            type();
            isTyped = m_document.undoStack()->canUndo();
        }
    }
    ~Window() { m_document.undoStack()->setClean(); }

    ViewController& rendering() { return m_document.viewController(); }
    HTMLDocument& document() { return m_document; }
    void type()
    {
        QWidget* const keys = rendering().webView()->focusProxy();
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent key(type, Qt::Key_X, {}, QStringLiteral("x"));
            QCoreApplication::sendEvent(keys, &key);
        }
    }

private:
    QTemporaryDir m_folder;
    HTMLDocument m_document;
};

/// Watches how long the main thread doesn't process events, from its construction on.
class Pauses final
{
public:
    Pauses()
    {
        m_last.start();
        QObject::connect(&m_beat, &QTimer::timeout, &m_beat, [this] {
            m_longest = std::max(m_longest, static_cast<double>(m_last.nsecsElapsed()) / 1e6);
            m_last.start();
        });
        m_beat.start(1);
    }

    /// The longest one, in milliseconds.
    [[nodiscard]] double longest() const { return m_longest; }

private:
    QElapsedTimer m_last;
    QTimer m_beat;
    double m_longest = 0;
};

} // namespace luma::bench
