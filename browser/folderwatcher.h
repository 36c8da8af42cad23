// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <filesystem>
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

    /// The folders in which something has changed since the last call; nothing where that is unknown.
    std::optional<std::set<std::string>> takeChangedFolders();

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
    std::optional<std::set<std::string>> m_changedFolders; // none: any

    void receive();
    void readFolders();
    void tell();
};

} // namespace luma
