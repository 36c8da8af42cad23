// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <functional>

namespace luma::test {

/// Runs `begin` from the event loop and then the loop until `isThere` answers true; false when it never does.
/// Prints how long the flow took and the longest time for which the main thread served no timer meanwhile.
inline bool runFlow(const char* name, const std::function<void()>& begin,
                    const std::function<bool()>& isThere)
{
    constexpr qint64 patience = 120'000;
    constexpr double nanosecondsPerMillisecond = 1e6;
    QEventLoop loop;
    QElapsedTimer whole;
    QElapsedTimer sinceTick;
    qint64 longest = 0;
    bool came = false;
    QTimer ticks;
    ticks.setTimerType(Qt::PreciseTimer);
    QObject::connect(&ticks, &QTimer::timeout, &loop, [&] {
        longest = std::max(longest, sinceTick.nsecsElapsed());
        came = isThere();
        if (came || whole.elapsed() > patience)
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
    return came;
}

} // namespace luma::test
