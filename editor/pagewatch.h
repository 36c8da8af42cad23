// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFileSystemWatcher>

#include <filesystem>

namespace luma {

/// Tells when a page's file may have changed on disk. Files that are replaced come under a new inode, so the
/// folder is watched too, and whoever is told looks at the file. Main thread.
class PageWatch final : public QObject
{
    Q_OBJECT

public:
    explicit PageWatch(QObject* parent = nullptr);

    /// Watches this file from now on, and no other. To be called again after a change: a watch ends with the
    /// file that it was set on.
    void setFile(const std::filesystem::path& file);

signals:
    void mayHaveChanged();

private:
    QFileSystemWatcher m_watcher;
};

} // namespace luma
