// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

class QProcess;

namespace luma {

class NotificationObserver;

/// The watcher process of one pane: runs from start() to stop(), and ends with this object or with this
/// program, even if that crashes. If the watcher can't be started, changed() is never emitted. When the slots
/// of changed() are slow, the next one is delayed so that the user interface keeps responding. Main thread
/// only.
class FolderWatcher final : public QObject
{
    Q_OBJECT

public:
    explicit FolderWatcher(QObject* parent = nullptr);
    ~FolderWatcher() override;

    /// Watches `folder` recursively. `caption` distinguishes the watchers of the panes.
    void start(const QString& caption, const std::filesystem::path& folder);
    void stop();
    /// The process id of the watcher; 0 if none is running.
    [[nodiscard]] qint64 processId() const;

    using Folders = std::optional<std::set<std::string>>; // nothing: any
    /// The folders in which something has changed since the last call.
    Folders takeChangedFolders();

    using Answer = std::function<void(bool isWatching, const Folders& folders)>;
    /// Asks the watcher for the folders in which something has changed between its last answer and this question; the first
    /// answer is any folder. changed() tells of these changes, too. False where no watcher is running, or if it ends first.
    void askForChanges(const Answer& answer);

signals:
    void changed();
    /// The watcher has ended by itself: changed() will not be emitted any more.
    void ended();

private:
    QProcess* watcherTask = nullptr;
    std::unique_ptr<NotificationObserver> m_observer;
    QTimer m_delay;
    QElapsedTimer m_sinceLast;
    qint64 m_lastCost = 0;
    QByteArray m_unread;
    Folders m_changedFolders;
    Folders m_answer = std::set<std::string>(); // of which not all is read
    std::map<qint64, Answer> m_questions;       // by number
    qint64 m_lastQuestion = 0;
    bool m_hasRead = false; // something, since the last notification

    void receive();
    void readFolders();
    void take(const QByteArray& text);
    void takeAnswer(const QByteArray& text);
    void answerQuestions(qint64 last, bool isWatching);
    void tell();
};

} // namespace luma
