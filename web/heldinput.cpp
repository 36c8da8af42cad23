// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/heldinput.h"

#include <QPointer>

#include <utility>

namespace luma {

void HeldInput::release()
{
    --m_reasons;
    const QPointer<HeldInput> self = this;
    while (m_reasons == 0 && !m_actions.empty()) {
        const auto action = std::move(m_actions.front());
        m_actions.pop_front();
        // An action may run other events; what comes of them waits for its end.
        ++m_reasons;
        action();
        if (!self)
            return;
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
