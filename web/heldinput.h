// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <deque>
#include <functional>

namespace luma {

/// Holds back the user's keys and commands while the page can't accept them, because an edit is being made or
/// the page is loading, and replays them in order as soon as it can. Main thread.
class HeldInput final : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Calls are paired; the last release() runs the actions held.
    void hold() { ++m_reasons; }
    void release();
    [[nodiscard]] bool isHolding() const { return m_reasons > 0; }

    /// Runs the action now, or later in its turn.
    void take(const std::function<void()>& action);
    /// Discards the actions held.
    void clear() { m_actions.clear(); }

private:
    int m_reasons = 0;
    std::deque<std::function<void()>> m_actions;
};

} // namespace luma
