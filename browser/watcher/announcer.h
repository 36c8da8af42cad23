// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <chrono>
#include <optional>
#include <set>
#include <string>

namespace luma {

/// Posts the watcher's notification: at most once per interval, and always after the last change. Before each, where standard
/// output is a pipe, it writes there which folders have changed, each path followed by a NUL; an empty path means any folder.
/// Answers to questions are written there, too.
class Announcer final
{
public:
    static constexpr auto shortestInterval = std::chrono::milliseconds(100);

    /// The notification's name is "folderChanged" followed by `caption`; its object is this process's id.
    explicit Announcer(const QString& caption);

    using Folders = std::optional<std::set<std::string>>; // none: any

    /// Something has changed in these folders, or anywhere without them.
    void changed(const Folders& folders);
    /// The same, but it is no reason for a notification.
    void note(const Folders& folders);
    /// Writes at once which folders have changed since the last answer, in the same way, and then the number of the question,
    /// but each text begins with "=". If the pipe is full, there is no answer.
    void answer(const std::string& question);
    /// Posts if it is time; returns the milliseconds until then, or -1 if nothing is pending.
    int postIfDue();

private:
    QString m_name;
    QString m_object;
    bool m_pending = false;
    Folders m_folders = std::set<std::string>();    // since the last notification
    Folders m_unanswered = std::set<std::string>(); // since the last answer

    void writeFolders();
    std::chrono::steady_clock::time_point m_next = std::chrono::steady_clock::now();
};

} // namespace luma
