// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <chrono>

namespace luma {

/// Posts the watcher's notification, at most once in the shortest interval and never leaving out the last
/// change.
class Announcer final
{
public:
    static constexpr auto shortestInterval = std::chrono::milliseconds(100);

    /// The notification is called "folderChanged" followed by `caption`; its object is this process's id.
    explicit Announcer(const QString& caption);

    void changed() { m_pending = true; }
    /// Posts when it is time; answers how many milliseconds until then, -1 when nothing waits.
    int postIfDue();

private:
    QString m_name;
    QString m_object;
    bool m_pending = false;
    std::chrono::steady_clock::time_point m_next = std::chrono::steady_clock::now();
};

} // namespace luma
