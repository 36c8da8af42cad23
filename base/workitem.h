// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <functional>
#include <memory>

namespace luma {

/// A token shared by a background job and whoever may want to stop it. Cancelling is cooperative: a job
/// that has not begun never begins, a running one asks isCancelled() between files. Safe on any thread.
class WorkItem final
{
public:
    void cancel() { m_cancelled.store(true, std::memory_order_relaxed); }
    [[nodiscard]] bool isCancelled() const { return m_cancelled.load(std::memory_order_relaxed); }

private:
    std::atomic<bool> m_cancelled = false;
};

using WorkItemPointer = std::shared_ptr<WorkItem>;

/// Runs `job` on the global thread pool, unless `item` is cancelled before its turn comes. The pool keeps
/// the item alive; `job` owns by value whatever it needs.
void start(const WorkItemPointer& item, std::function<void(const WorkItem&)> job);

} // namespace luma
