// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/watcher/announcer.h"

#include "desktop/notifications.h"

#include <QCoreApplication>

namespace luma {

Announcer::Announcer(const QString& caption)
    : m_name(QLatin1String("folderChanged") + caption),
      m_object(QString::number(QCoreApplication::applicationPid()))
{}

int Announcer::postIfDue()
{
    if (!m_pending)
        return -1;
    const auto now = std::chrono::steady_clock::now();
    if (const auto wait = std::chrono::ceil<std::chrono::milliseconds>(m_next - now).count(); wait > 0)
        return static_cast<int>(wait);
    postNotification(m_name, m_object);
    m_pending = false;
    m_next = now + shortestInterval;
    return -1;
}

} // namespace luma
