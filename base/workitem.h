// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <functional>
#include <memory>

namespace luma {

/// A token shared by a background job and the code that may stop it. Cancelling is cooperative: a job that has
/// not started never starts, a running one checks isCancelled() between files. Any thread.
class WorkItem final
{
public:
    void cancel() { m_cancelled.store(true, std::memory_order_relaxed); }
    [[nodiscard]] bool isCancelled() const { return m_cancelled.load(std::memory_order_relaxed); }

private:
    std::atomic<bool> m_cancelled = false;
};

using WorkItemPointer = std::shared_ptr<WorkItem>;

/// Runs `job` on the global thread pool, unless `item` is cancelled first. The pool keeps the item alive;
/// `job` must own everything it needs.
void start(const WorkItemPointer& item, std::function<void(const WorkItem&)> job);

} // namespace luma
