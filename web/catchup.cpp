// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/catchup.h"

#include "web/mywebview.h"
#include "web/renderingreader.h"

#include <utility>

namespace luma {

namespace {

constexpr qint64 longestWaitForKeys = 300; // milliseconds

} // namespace

CatchUp::CatchUp(MyWebView& view, RenderingReader& reader, QObject* parent)
    : QObject(parent), m_view(view), m_reader(reader)
{}

void CatchUp::whenCaughtUp(QObject* context, const Then& then)
{
    m_view.heldInput().hold();
    m_waiting.push_back({context, then});
    if (!std::exchange(m_isRunning, true))
        start();
}

void CatchUp::start()
{
    m_sinceStart.start();
    read();
}

// Limited in time: a key may mean nothing to the page and never be counted.
void CatchUp::read()
{
    m_reader.catchUp([this](const std::optional<int>& keys) {
        const bool isBehind = keys && *keys < m_view.countOfKeys();
        if (isBehind && !m_sinceStart.hasExpired(longestWaitForKeys)) {
            read();
            return;
        }
        if (isBehind)
            m_view.setCountOfKeys(*keys);
        if (keys && std::exchange(m_keysBefore, m_view.countOfKeys()) != m_view.countOfKeys())
            m_reader.catchUp(
                [this](const std::optional<int>&) { runFirst(); }); // A key's effect may follow the key.
        else
            runFirst();
    });
}

// Nothing follows `then`: it may close the window and wait for the next catching up.
void CatchUp::runFirst()
{
    const Waiting first = std::move(m_waiting.front());
    m_waiting.pop_front();
    m_isRunning = !m_waiting.empty();
    if (m_isRunning)
        QMetaObject::invokeMethod(this, &CatchUp::start, Qt::QueuedConnection);
    QMetaObject::invokeMethod(&m_view.heldInput(), &HeldInput::release, Qt::QueuedConnection);
    if (first.context)
        first.then();
}

} // namespace luma
