// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/workitem.h"

#include <QThreadPool>

namespace luma {

namespace {

// Jobs mostly wait, for servers and for child processes; one a core would let two silent servers stop all
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
