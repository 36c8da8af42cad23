// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <functional>

namespace luma::test {

/// Calls `begin` from the event loop and runs the loop until `isDone` is true; false after two minutes. Prints
/// how long that took and the longest time for which the main thread was blocked.
inline bool runFlow(const char* name, const std::function<void()>& begin, const std::function<bool()>& isDone)
{
    constexpr qint64 patience = 120'000;
    constexpr double nanosecondsPerMillisecond = 1e6;
    QEventLoop loop;
    QElapsedTimer whole;
    QElapsedTimer sinceTick;
    qint64 longest = 0;
    bool done = false;
    QTimer ticks;
    ticks.setTimerType(Qt::PreciseTimer);
    QObject::connect(&ticks, &QTimer::timeout, &loop, [&] {
        longest = std::max(longest, sinceTick.nsecsElapsed());
        done = isDone();
        if (done || whole.elapsed() > patience)
            loop.quit();
        sinceTick.start();
    });
    QTimer::singleShot(0, &loop, begin);
    whole.start();
    sinceTick.start();
    ticks.start(1);
    loop.exec();
    qInfo("%s: %lld ms, of them the main thread was blocked for %.1f ms at most", name, whole.elapsed(),
          static_cast<double>(longest) / nanosecondsPerMillisecond);
    return done;
}

} // namespace luma::test
