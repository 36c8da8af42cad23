// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/paneconnection.h"

#include "base/console.h"
#include "base/mainhop.h"
#include "mounts/volumemounter.h"

namespace luma {

namespace {

using Guard = QPointer<PaneConnection>;

/// Runs one job on its background thread.
void run(const Guard& guard, const WorkItem& item, const ConnectionRequest& request, VolumeMounter& mounter)
{
    if (item.isCancelled()) {
        printDiagnostic("workItem is cancelled");
        return;
    }
    const MountResult result = mountStep(request, mounter, [&item] { return !item.isCancelled(); });
    bool wanted = false;
    onMain(guard, [&](PaneConnection& connection) {
        wanted = !item.isCancelled();
        if (wanted)
            emit connection.finished(result, request);
    });
    // The pane will not unmount what it was never told of.
    if (!wanted && result.folder && !request.isLocal())
        mounter.unmount(result.mountPath);
}

} // namespace

PaneConnection::PaneConnection(std::shared_ptr<VolumeMounter> mounter, QObject* parent)
    : QObject(parent), m_mounter(std::move(mounter))
{}

PaneConnection::~PaneConnection()
{
    cancel();
}

void PaneConnection::begin(const ConnectionRequest& request)
{
    workItem = std::make_shared<WorkItem>();
    const Guard guard(this);
    start(workItem, [guard, request, mounter = m_mounter](const WorkItem& item) {
        run(guard, item, request, *mounter);
    });
}

void PaneConnection::cancel()
{
    if (workItem)
        workItem->cancel();
    workItem.reset();
}

} // namespace luma
