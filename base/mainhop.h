// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointer>

#include <functional>

namespace luma {

/// The hop from a background job to the main thread.
///
/// onMain(f) runs `f` on the main thread and returns when it has run; called on the main thread it just calls
/// `f`. The answer is false when `f` was not run: the application is quitting, or there is none. Nobody waits
/// for ever: quitting releases every waiting job.
bool onMain(const std::function<void()>& f);

/// The same for a job that speaks to `target`, which may be gone by the time the main thread gets there: then
/// `f` is not run and the answer is false.
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

/// From here on every hop, waiting or to come, does nothing. Happens by itself when the application's event
/// loop ends or the application object dies; call it before waiting for jobs on the main thread.
void closeMainHop();

/// True from then on, on any thread: nobody sees any more what a job does, so a long one ends at its next
/// step.
bool isMainHopClosed();

} // namespace luma
