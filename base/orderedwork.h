// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/stillwanted.h"

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace luma {

/// Spreads a numbered list of work over all cores and delivers the results in the list's order.
///
/// `work(index, worker)` runs on any worker; `worker` is its number, below workerCount(). `take(index,
/// Value&&)` runs on the calling thread, in order; while there is nothing to take, that thread works, too. The
/// workers stay at most a few hundred items ahead, so memory is bounded.
template <class Value>
class OrderedWork final
{
public:
    explicit OrderedWork(std::size_t count, StillWanted stillWanted)
        : m_count(count), m_stillWanted(std::move(stillWanted)), m_slots(window)
    {}

    static std::size_t workerCount()
    {
        const std::size_t cores = std::thread::hardware_concurrency();
        return cores == 0 ? 1 : cores;
    }

    /// True when everything was taken, false when the job was stopped.
    template <class Work, class Take>
    bool run(Work work, Take take)
    {
        std::vector<std::jthread> helpers;
        for (std::size_t worker = 1; worker < workerCount() && worker < m_count; ++worker)
            helpers.emplace_back([this, &work, worker] { help(work, worker); });
        const bool complete = takeAll(work, take);
        stop();
        return complete;
    }

private:
    static constexpr std::size_t window = 256;

    template <class Work>
    void help(Work& work, std::size_t worker)
    {
        while (const std::optional<std::size_t> index = claim(true))
            finish(*index, work(*index, worker));
    }

    template <class Work, class Take>
    bool takeAll(Work& work, Take& take)
    {
        for (std::size_t index = 0; index < m_count;) {
            if (!isWanted(m_stillWanted))
                return false;
            if (std::optional<Value> value = takeSlot(index)) {
                take(index, *std::move(value));
                ++index;
            } else if (const std::optional<std::size_t> mine = claim(false)) {
                finish(*mine, work(*mine, 0));
            } else {
                std::unique_lock lock(m_mutex);
                m_changed.wait(lock, [&] { return m_slots[index % window].has_value(); });
            }
        }
        return true;
    }

    // The next item of the list; nothing at its end, or, without `wait`, when the window is full.
    std::optional<std::size_t> claim(bool wait)
    {
        if (wait && !isWanted(m_stillWanted))
            return std::nullopt;
        std::unique_lock lock(m_mutex);
        const auto mayGoOn = [this] { return m_next < m_taken + window || m_stopped; };
        if (wait)
            m_changed.wait(lock, [&] { return mayGoOn() || m_next >= m_count; });
        if (m_stopped || m_next >= m_count || !mayGoOn())
            return std::nullopt;
        return m_next++;
    }

    void finish(std::size_t index, Value value)
    {
        bool isNext = false;
        {
            const std::scoped_lock lock(m_mutex);
            m_slots[index % window] = std::move(value);
            isNext = index == m_taken;
        }
        if (isNext)
            m_changed.notify_all();
    }

    std::optional<Value> takeSlot(std::size_t index)
    {
        std::optional<Value> value;
        bool wasFull = false;
        {
            const std::scoped_lock lock(m_mutex);
            if (!m_slots[index % window])
                return value;
            value.swap(m_slots[index % window]);
            wasFull = m_next == m_taken + window;
            m_taken = index + 1;
        }
        if (wasFull)
            m_changed.notify_all();
        return value;
    }

    void stop()
    {
        {
            const std::scoped_lock lock(m_mutex);
            m_stopped = true;
        }
        m_changed.notify_all();
    }

    const std::size_t m_count;
    const StillWanted m_stillWanted;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<std::optional<Value>> m_slots;
    std::size_t m_next = 0;
    std::size_t m_taken = 0;
    bool m_stopped = false;
};

} // namespace luma
