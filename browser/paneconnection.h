// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"
#include "browser/mountstep.h"

#include <QObject>

namespace luma {

class VolumeMounter;

/// The background job that makes a pane's folder reachable. A second connection does not stop the first; the
/// later one to finish counts. What was cancelled reports nothing any more. Main thread only; may go at any
/// time.
class PaneConnection final : public QObject
{
    Q_OBJECT

public:
    explicit PaneConnection(std::shared_ptr<VolumeMounter> mounter, QObject* parent = nullptr);
    ~PaneConnection() override;

    /// Begins a job for `request` (see connectionrequest.h).
    void begin(const QVariantMap& request);
    void cancel();
    [[nodiscard]] VolumeMounter& mounter() const { return *m_mounter; }

signals:
    void started();
    void finished(const luma::MountResult& result, const QVariantMap& request);

private:
    std::shared_ptr<VolumeMounter> m_mounter;
    WorkItemPointer workItem;
};

} // namespace luma
