// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <filesystem>
#include <memory>

class QProcess;

namespace luma {

class NotificationObserver;

/// The watcher process of one pane: runs from start() to stop() and ends with this object, or with this
/// program, however that ends. Without a watcher program the pane works on, only changed() never comes. When
/// what hears changed() is slow, the next one waits until the screen has had its share of the time. Main
/// thread only.
class FolderWatcher final : public QObject
{
    Q_OBJECT

public:
    explicit FolderWatcher(QObject* parent = nullptr);
    ~FolderWatcher() override;

    /// Watches `folder` with all below it. `caption` tells the panes' watchers apart.
    void start(const QString& caption, const std::filesystem::path& folder);
    void stop();
    /// The process id of the running watcher; 0 for none.
    [[nodiscard]] qint64 processId() const;

signals:
    void changed();

private:
    QProcess* watcherTask = nullptr;
    std::unique_ptr<NotificationObserver> m_observer;
    QTimer m_delay;
    QElapsedTimer m_sinceLast;
    qint64 m_lastCost = 0;

    void receive();
    void tell();
};

} // namespace luma
