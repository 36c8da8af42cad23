// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <filesystem>
#include <memory>

namespace luma {

/// Reports unmounted volumes, those of gvfs and those in the kernel's table of mounts, whichever program
/// unmounted them. Main thread only. A path was on the volume when it is at or below the mount point
/// (isAtOrBelow, pathbelow.h). The same mount point may be reported twice.
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
