// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <deque>
#include <functional>

namespace luma {

/// What the user does to a page that can't take it. While an edit is made and the page is shown anew, keys
/// and commands wait here in their order, and are made up for when the last reason to hold them has gone.
/// Main thread.
class HeldInput final : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Each reason to hold is one hold() and one release(), which may run what was held.
    void hold() { ++m_reasons; }
    void release();
    [[nodiscard]] bool isHolding() const { return m_reasons > 0; }

    /// Runs the action now, or in its turn.
    void take(const std::function<void()>& action);
    /// Gives up what is held.
    void clear() { m_actions.clear(); }

private:
    int m_reasons = 0;
    std::deque<std::function<void()>> m_actions;
};

} // namespace luma
