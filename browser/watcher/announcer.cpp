// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/watcher/announcer.h"

#include "desktop/notifications.h"

#include <QCoreApplication>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <string_view>

namespace luma {

namespace {

bool isPipe()
{
    struct stat status = {};
    return ::fstat(STDOUT_FILENO, &status) == 0 && S_ISFIFO(status.st_mode);
}

// In one piece, which a pipe takes whole or not at all (POSIX, write()): a reader that is busy never blocks the watcher.
bool written(const std::string& text)
{
    const int flags = ::fcntl(STDOUT_FILENO, F_GETFL);
    ::fcntl(STDOUT_FILENO, F_SETFL, flags | O_NONBLOCK);
    return ::write(STDOUT_FILENO, text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

std::string textOf(const std::optional<std::set<std::string>>& folders, std::string_view mark)
{
    constexpr std::size_t spaceForNumber = 64;
    std::string text;
    if (folders) {
        for (const std::string& folder : *folders)
            text.append(mark).append(folder).push_back('\0');
    }
    return text.size() + spaceForNumber > PIPE_BUF || !folders ? std::string(mark) + '\0' : text;
}

} // namespace

Announcer::Announcer(const QString& caption)
    : m_name(QLatin1String("folderChanged") + caption),
      m_object(QString::number(QCoreApplication::applicationPid()))
{}

void Announcer::changed(const Folders& folders)
{
    note(folders);
    m_pending = true;
}

void Announcer::note(const Folders& folders)
{
    for (Folders* const noted : {&m_folders, &m_unanswered}) {
        if (!folders)
            noted->reset();
        else if (*noted)
            (*noted)->insert(folders->begin(), folders->end());
    }
}

void Announcer::writeFolders()
{
    if (!isPipe())
        return;
    const std::string text = textOf(m_folders, "");
    if (written(text.empty() ? std::string(1, '\0') : text))
        m_folders = std::set<std::string>();
    else
        m_folders.reset();
}

void Announcer::answer(const std::string& question)
{
    constexpr std::string_view mark = "=";
    if (isPipe() && written(textOf(m_unanswered, mark).append(mark).append(question) + '\0'))
        m_unanswered = std::set<std::string>();
    else
        m_unanswered.reset();
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
