// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/mainhop.h"

#include <QObject>
#include <QPointer>

#include <chrono>
#include <future>
#include <memory>
#include <thread>
#include <type_traits>
#include <utility>

namespace luma {

/// How long the main thread waits for a file. One of a share whose server is silent may take for ever.
constexpr std::chrono::seconds patienceWithFiles(1);

/// Runs `work`, which must own everything it needs, on a thread of its own, as those of the pool may all wait for servers,
/// and gives its result to `then` on the main thread: before this returns if it comes within patienceWithFiles, else later,
/// and never once `context` has been destroyed. Gives whether `then` has been called. Main thread.
template <class Work, class Then>
bool runAside(QObject& context, Work work, Then then)
{
    struct Shared
    {
        std::promise<std::invoke_result_t<Work>> promise;
        std::future<std::invoke_result_t<Work>> result = promise.get_future();
        bool isTaken = false; // main thread
    };
    auto shared = std::make_shared<Shared>();
    const auto take = [shared, then = std::move(then)] {
        shared->isTaken = true;
        then(shared->result.get());
    };
    std::thread([shared, work = std::move(work), take, guard = QPointer(&context)] {
        shared->promise.set_value(work());
        onMain(guard, [&](QObject&) {
            if (!shared->isTaken)
                take();
        });
    }).detach();
    if (shared->result.wait_for(patienceWithFiles) != std::future_status::ready)
        return false;
    take();
    return true;
}

} // namespace luma
