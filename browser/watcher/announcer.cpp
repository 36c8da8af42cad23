// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/watcher/announcer.h"

#include "desktop/notifications.h"

#include <QCoreApplication>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>

namespace luma {

Announcer::Announcer(const QString& caption)
    : m_name(QLatin1String("folderChanged") + caption),
      m_object(QString::number(QCoreApplication::applicationPid()))
{}

void Announcer::changed(std::optional<std::set<std::string>> folders)
{
    m_pending = true;
    if (!folders)
        m_folders.reset();
    else if (m_folders)
        m_folders->merge(*folders);
}

// In one piece, which a pipe takes whole or not at all (POSIX, write()): a reader that is busy never blocks the watcher.
void Announcer::writeFolders()
{
    struct stat status = {};
    if (::fstat(STDOUT_FILENO, &status) != 0 || !S_ISFIFO(status.st_mode))
        return;
    std::string text;
    if (m_folders) {
        for (const std::string& folder : *m_folders)
            text.append(folder).push_back('\0');
    }
    if (text.empty() || text.size() > PIPE_BUF)
        text.assign(1, '\0');
    const int flags = ::fcntl(STDOUT_FILENO, F_GETFL);
    ::fcntl(STDOUT_FILENO, F_SETFL, flags | O_NONBLOCK);
    if (::write(STDOUT_FILENO, text.data(), text.size()) == static_cast<ssize_t>(text.size()))
        m_folders = std::set<std::string>();
    else
        m_folders.reset();
}

int Announcer::postIfDue()
{
    if (!m_pending)
        return -1;
    const auto now = std::chrono::steady_clock::now();
    if (const auto wait = std::chrono::ceil<std::chrono::milliseconds>(m_next - now).count(); wait > 0)
        return static_cast<int>(wait);
    writeFolders();
    postNotification(m_name, m_object);
    m_pending = false;
    m_next = now + shortestInterval;
    return -1;
}

} // namespace luma
