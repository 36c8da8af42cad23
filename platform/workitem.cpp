#include "platform/workitem.h"

#include <QThreadPool>

namespace luma {

void start(const WorkItemPointer& item, std::function<void(const WorkItem&)> job)
{
    QThreadPool::globalInstance()->start([item, job = std::move(job)] {
        if (!item->isCancelled())
            job(*item);
    });
}

} // namespace luma
