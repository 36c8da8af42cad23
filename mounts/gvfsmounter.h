// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "mounts/volumemounter.h"

#include <map>
#include <mutex>
#include <set>
#include <string>

namespace luma {

class MountMonitor;

/// The mounter for the desktop: mounts.h and MountMonitor behind one interface. Made and destroyed on the
/// main thread, one for the application; a first monitor of a session takes some hundredths of a second.
class GvfsMounter final : public VolumeMounter
{
    Q_OBJECT

public:
    explicit GvfsMounter(QObject* parent = nullptr);

    std::optional<std::filesystem::path> mount(const QString& shareURL, const QString& user,
                                               const QString& password,
                                               const std::function<bool()>& isWanted) override;
    /// Of the account that mount() was last asked for with this address; of any when it was not asked.
    std::optional<std::filesystem::path> existingMount(const QString& shareURL) override;
    void unmount(const std::filesystem::path& mountPoint) override;

private:
    void remember(const std::filesystem::path& folder);
    /// A folder below a volume's root goes with the volume: told for each that we gave out.
    void tellUnmounted(const std::filesystem::path& mountPoint);

    std::mutex m_mutex;
    std::map<std::string, std::string> m_users;
    std::set<std::filesystem::path> m_folders;
};

} // namespace luma
