// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointer>

#include <functional>

namespace luma {

/// Runs `f` on the main thread and returns when it is done; called on the main thread, it just calls `f`.
/// False if `f` did not run because the application is quitting or there is none. It never blocks for ever:
/// quitting releases every waiting job.
bool onMain(const std::function<void()>& f);

/// The same with `target` as the argument of `f`. If it has been destroyed by the time the main thread gets to
/// it, `f` does not run and the answer is false.
template <class Target, class Function>
bool onMain(const QPointer<Target>& target, Function f)
{
    bool ran = false;
    const bool hopped = onMain([&] {
        if (Target* alive = target.data()) {
            ran = true;
            f(*alive);
        }
    });
    return hopped && ran;
}

/// Makes every waiting and future hop do nothing. This happens by itself when the application's event loop
/// ends or the application object is destroyed; call it before waiting for jobs on the main thread.
void closeMainHop();

/// True after closeMainHop(). A long job checks this and ends at its next step, as its results are no longer
/// wanted. Any thread.
bool isMainHopClosed();

} // namespace luma
