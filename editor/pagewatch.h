// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"

#include <QFileSystemWatcher>
#include <QObject>

namespace luma {

class PageFile;
class PageStore;

/// Notices that another program has changed a page's file. It looks on another thread, as a file of a share whose server is
/// silent can't be looked at. Main thread.
class PageWatch final : public QObject
{
    Q_OBJECT

public:
    /// The store outlives it.
    PageWatch(const PageStore& store, QObject* parent);
    ~PageWatch() override;

    /// Watches the page's file from now on, which has just been read or written, or has moved.
    void follow();
    /// Looks whether the file has changed.
    void check();

signals:
    /// The file is not what the store knows.
    void changed();

private:
    void takeCheck(const PageFile& checked, bool hasChanged);

    const PageStore& m_store;
    QFileSystemWatcher m_watcher;
    WorkItemPointer m_check; // under way
    bool m_checksAgain = false;
};

} // namespace luma
