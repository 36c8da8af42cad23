// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/pagewatch.h"

#include "base/mainhop.h"
#include "base/pathtext.h"
#include "page/pagestore.h"

#include <QFile>
#include <QPointer>

#include <memory>
#include <utility>

namespace luma {

PageWatch::PageWatch(const PageStore& store, QObject* parent) : QObject(parent), m_store(store)
{
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &PageWatch::check);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &PageWatch::check);
}

PageWatch::~PageWatch()
{
    if (m_check)
        m_check->cancel();
}

// The watch ends when another program replaces the file by a new one, so the folder is watched too, and the file
// is watched again after each change.
void PageWatch::follow()
{
    if (!m_store.hasFile())
        return;
    const QStringList wanted = {textOf(m_store.docURL()), textOf(m_store.docURL().parent_path())};
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

void PageWatch::check()
{
    if (!m_store.hasFile())
        return;
    if (m_check) {
        m_checksAgain = true;
        return;
    }
    m_check = std::make_shared<WorkItem>();
    start(m_check, [guard = QPointer(this), file = m_store.file()](const WorkItem&) {
        const bool hasChanged = file.changedOnDisk();
        onMain(guard, [&](PageWatch& watch) { watch.takeCheck(file, hasChanged); });
    });
}

// The page may have been read or written meanwhile.
void PageWatch::takeCheck(const PageFile& checked, bool hasChanged)
{
    m_check.reset();
    follow();
    const bool isCurrent =
        checked.path() == m_store.file().path() && checked.knownHash() == m_store.file().knownHash();
    if (std::exchange(m_checksAgain, false) || !isCurrent)
        check();
    else if (hasChanged && !m_store.isSaving())
        emit changed();
}

} // namespace luma
