// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "mounts/volumemounter.h"

#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>

namespace luma {

class MountMonitor;

/// The desktop's mounter: mounts.h and MountMonitor behind one interface. Created and destroyed on the main
/// thread. The first one of a session takes some hundredths of a second.
class GvfsMounter final : public VolumeMounter
{
    Q_OBJECT

public:
    explicit GvfsMounter(QObject* parent = nullptr);

    /// The one that all windows share, so that a volume that two of them show is mounted once. Main thread only,
    /// but the pointer may be let go on any thread, as by a job that ends after its window was closed.
    static std::shared_ptr<VolumeMounter> shared();

    Result<std::filesystem::path> mount(const QString& shareURL, const QString& user, const QString& password,
                                        const std::function<bool()>& isWanted) override;
    /// The mount of the account that mount() last used for this address, or of any account if there was none.
    std::optional<std::filesystem::path> existingMount(const QString& shareURL) override;
    void unmount(const std::filesystem::path& mountPoint) override;

private:
    void remember(const std::filesystem::path& folder);
    /// Emits unmounted() for the mount point and for every folder on it that mount() returned.
    void reportUnmounted(const std::filesystem::path& mountPoint);

    std::mutex m_mutex;
    std::map<std::string, std::string> m_users;
    std::set<std::filesystem::path> m_folders;
};

} // namespace luma
