// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"
#include "browser/mountstep.h"

#include <QObject>

namespace luma {

class VolumeMounter;

/// The background job that makes a pane's folder reachable. A second connection does not stop the first; the
/// one that finishes last wins. A cancelled job emits no further signals and unmounts what it has mounted.
/// Main thread only; may be destroyed at any time.
class PaneConnection final : public QObject
{
    Q_OBJECT

public:
    explicit PaneConnection(std::shared_ptr<VolumeMounter> mounter, QObject* parent = nullptr);
    ~PaneConnection() override;

    void begin(const ConnectionRequest& request);
    void cancel();
    [[nodiscard]] VolumeMounter& mounter() const { return *m_mounter; }

signals:
    void finished(const luma::MountResult& result, const luma::ConnectionRequest& request);

private:
    std::shared_ptr<VolumeMounter> m_mounter;
    WorkItemPointer workItem;
};

} // namespace luma
