// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <chrono>

namespace luma {

/// Posts the watcher's notification: at most once per interval, and always after the last change.
class Announcer final
{
public:
    static constexpr auto shortestInterval = std::chrono::milliseconds(100);

    /// The notification's name is "folderChanged" followed by `caption`; its object is this process's id.
    explicit Announcer(const QString& caption);

    void changed() { m_pending = true; }
    /// Posts if it is time; returns the milliseconds until then, or -1 if nothing is pending.
    int postIfDue();

private:
    QString m_name;
    QString m_object;
    bool m_pending = false;
    std::chrono::steady_clock::time_point m_next = std::chrono::steady_clock::now();
};

} // namespace luma
