// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/pagewatch.h"

#include "base/pathtext.h"

namespace luma {

PageWatch::PageWatch(QObject* parent) : QObject(parent)
{
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &PageWatch::mayHaveChanged);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &PageWatch::mayHaveChanged);
}

void PageWatch::setFile(const std::filesystem::path& file)
{
    const QStringList wanted = {textOf(file), textOf(file.parent_path())};
    const QStringList watched = m_watcher.files() + m_watcher.directories();
    for (const QString& path : watched) {
        if (!wanted.contains(path))
            m_watcher.removePath(path);
    }
    for (const QString& path : wanted) {
        if (!watched.contains(path) && QFile::exists(path))
            m_watcher.addPath(path);
    }
}

} // namespace luma
