// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>

#include <deque>
#include <functional>

namespace luma {

class MyWebView;
class RenderingReader;

/// Lets an edit of the tree wait until the document has everything that the user did in the rendering: the
/// keys on their way to the page, then the changes that the page holds. What the user does meanwhile is held
/// and comes after the edit. Main thread.
class CatchUp final : public QObject
{
    Q_OBJECT

public:
    /// View and reader outlive it.
    CatchUp(MyWebView& view, RenderingReader& reader, QObject* parent);

    /// Runs `then` once the document is up to date, in the order of the calls; never if `context` has been
    /// deleted by then. Runs it at once if nothing is waiting and the page can't answer.
    using Then = std::function<void()>;
    void whenCaughtUp(QObject* context, const Then& then);

private:
    struct Waiting
    {
        QPointer<QObject> context;
        Then then;
    };

    void start();
    void read();
    void runFirst();

    MyWebView& m_view;
    RenderingReader& m_reader;
    std::deque<Waiting> m_waiting;
    QElapsedTimer m_sinceStart;
    int m_keysBefore = 0; // pressed when the document was last up to date
    bool m_isRunning = false;
};

} // namespace luma
