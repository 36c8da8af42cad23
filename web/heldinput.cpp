// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/heldinput.h"

#include <utility>

namespace luma {

void HeldInput::release()
{
    --m_reasons;
    while (m_reasons == 0 && !m_actions.empty()) {
        const auto action = std::move(m_actions.front());
        m_actions.pop_front();
        // Anything that the action itself has held waits for its end.
        ++m_reasons;
        action();
        --m_reasons;
    }
}

void HeldInput::take(const std::function<void()>& action)
{
    m_actions.push_back(action);
    if (!isHolding()) {
        hold();
        release();
    }
}

} // namespace luma
