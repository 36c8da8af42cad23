// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/mainhop.h"

#include <QCoreApplication>
#include <QThread>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>

namespace luma {

namespace {

enum class HopState { Waiting, Running, Done, Dropped };

struct Hop
{
    const std::function<void()>* function = nullptr;
    HopState state = HopState::Waiting;
};

// Never destroyed, because jobs may outlive the application object.
class HopQueue final
{
public:
    static HopQueue& instance()
    {
        static auto* const queue = new HopQueue;
        return *queue;
    }

    bool runAndWait(const std::function<void()>& f);
    void runNext();
    void close();
    [[nodiscard]] bool isClosed() const { return m_closed.load(std::memory_order_relaxed); }

private:
    QObject* receiver();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::shared_ptr<Hop>> m_waiting;
    QObject* m_receiver = nullptr;
    std::atomic<bool> m_closed = false;
};

// Created by the first hop; lives on the main thread.
QObject* HopQueue::receiver()
{
    if (!m_receiver) {
        m_receiver = new QObject;
        m_receiver->moveToThread(QCoreApplication::instance()->thread());
        QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, closeMainHop);
        qAddPostRoutine(closeMainHop);
    }
    return m_receiver;
}

bool HopQueue::runAndWait(const std::function<void()>& f)
{
    auto hop = std::make_shared<Hop>();
    hop->function = &f;
    std::unique_lock lock(m_mutex);
    if (m_closed || !QCoreApplication::instance())
        return false;
    m_waiting.push_back(hop);
    QMetaObject::invokeMethod(
        receiver(), [this] { runNext(); }, Qt::QueuedConnection);
    m_changed.wait(lock, [&] { return hop->state == HopState::Done || hop->state == HopState::Dropped; });
    return hop->state == HopState::Done;
}

void HopQueue::runNext()
{
    std::unique_lock lock(m_mutex);
    if (m_waiting.empty())
        return;
    const std::shared_ptr<Hop> hop = m_waiting.front();
    m_waiting.pop_front();
    hop->state = HopState::Running;
    lock.unlock();
    (*hop->function)();
    lock.lock();
    hop->state = HopState::Done;
    m_changed.notify_all();
}

void HopQueue::close()
{
    const std::scoped_lock lock(m_mutex);
    m_closed = true;
    for (const std::shared_ptr<Hop>& hop : m_waiting)
        hop->state = HopState::Dropped;
    m_waiting.clear();
    m_changed.notify_all();
}

} // namespace

bool onMain(const std::function<void()>& f)
{
    const QCoreApplication* application = QCoreApplication::instance();
    if (application && QThread::currentThread() == application->thread()) {
        f();
        return true;
    }
    return HopQueue::instance().runAndWait(f);
}

void closeMainHop()
{
    HopQueue::instance().close();
}

bool isMainHopClosed()
{
    return HopQueue::instance().isClosed();
}

} // namespace luma
