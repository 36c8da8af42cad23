// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/workitem.h"

#include <QThreadPool>

namespace luma {

namespace {

// Jobs mostly wait for servers and child processes; with one per core, a few silent servers would block all
// others.
constexpr int jobsAtOnce = 16;

QThreadPool& pool()
{
    QThreadPool* const global = QThreadPool::globalInstance();
    if (global->maxThreadCount() < jobsAtOnce)
        global->setMaxThreadCount(jobsAtOnce);
    return *global;
}

} // namespace

void start(const WorkItemPointer& item, std::function<void(const WorkItem&)> job)
{
    pool().start([item, job = std::move(job)] {
        if (!item->isCancelled())
            job(*item);
    });
}

} // namespace luma
