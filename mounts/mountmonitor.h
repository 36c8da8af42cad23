// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <filesystem>
#include <memory>

namespace luma {

/// Tells when a volume goes away, whoever unmounted it: one of gvfs' or one in the kernel's table of mounts.
/// Main thread only. A path is concerned when it is the mount point or below it (isAtOrBelow, pathbelow.h).
/// The same mount point may be told twice.
class MountMonitor final : public QObject
{
    Q_OBJECT

public:
    explicit MountMonitor(QObject* parent = nullptr);
    ~MountMonitor() override;

signals:
    void unmounted(const std::filesystem::path& mountPoint);

private:
    class VolumeWatch;
    class MountTableWatch;
    std::unique_ptr<VolumeWatch> m_volumes;
    std::unique_ptr<MountTableWatch> m_mountTable;
};

} // namespace luma
