// SPDX-License-Identifier: GPL-3.0-or-later
#include "mounts/gvfsmounter.h"

#include "base/pathbelow.h"
#include "mounts/mountmonitor.h"
#include "mounts/mounts.h"
#include "mounts/sharelisting.h"

#include <QThread>

namespace luma {

namespace fs = std::filesystem;

GvfsMounter::GvfsMounter(QObject* parent) : VolumeMounter(parent)
{
    setShareLister(listShareFolder);
    connect(new MountMonitor(this), &MountMonitor::unmounted, this, &GvfsMounter::reportUnmounted);
}

std::shared_ptr<VolumeMounter> GvfsMounter::shared()
{
    static std::weak_ptr<VolumeMounter> current;
    std::shared_ptr<VolumeMounter> mounter = current.lock();
    if (mounter)
        return mounter;
    mounter.reset(new GvfsMounter, [](GvfsMounter* last) {
        // Its notifiers and gvfs' monitor report to the main thread.
        if (QThread::currentThread() == last->thread())
            delete last;
        else
            last->deleteLater();
    });
    current = mounter;
    return mounter;
}

Result<fs::path> GvfsMounter::mount(const QString& shareURL, const QString& user, const QString& password,
                                    const std::function<bool()>& isWanted)
{
    const std::string url = shareURL.toStdString();
    {
        const std::scoped_lock lock(m_mutex);
        m_users[url] = user.toStdString();
    }
    auto folder = mountShare(url, user.toStdString(), password.toStdString(), isWanted);
    if (folder)
        remember(*folder);
    return folder;
}

std::optional<fs::path> GvfsMounter::existingMount(const QString& shareURL)
{
    const std::string url = shareURL.toStdString();
    std::string user;
    {
        const std::scoped_lock lock(m_mutex);
        if (const auto known = m_users.find(url); known != m_users.end())
            user = known->second;
    }
    auto folder = findExistingMount(url, user);
    std::error_code error;
    if (!folder || !fs::exists(*folder, error))
        return {};
    remember(*folder);
    return folder;
}

void GvfsMounter::unmount(const fs::path& mountPoint)
{
    luma::unmount(mountPoint);
}

void GvfsMounter::remember(const fs::path& folder)
{
    const std::scoped_lock lock(m_mutex);
    m_folders.insert(folder);
}

void GvfsMounter::reportUnmounted(const fs::path& mountPoint)
{
    std::set<fs::path> gone = {mountPoint};
    {
        const std::scoped_lock lock(m_mutex);
        for (const fs::path& folder : m_folders) {
            if (isAtOrBelow(folder.native(), mountPoint.native()))
                gone.insert(folder);
        }
    }
    for (const fs::path& folder : gone)
        emit unmounted(folder);
}

} // namespace luma
