// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/gpointer.h"
// GLib's headers come first, because they use Qt's word `signals` for a member.
#include "base/filedescriptor.h"
#include "mounts/mountmonitor.h"
#include "mounts/mounttable.h"

#include <QAbstractEventDispatcher>
#include <QSocketNotifier>
#include <QTimer>

#include <fcntl.h>

#include <chrono>
#include <map>
#include <set>
#include <utility>

namespace luma {

namespace fs = std::filesystem;

// The volumes of gvfs. Their local paths are recorded while they are mounted, as they are unknown afterwards.
class MountMonitor::VolumeWatch final
{
public:
    explicit VolumeWatch(MountMonitor& owner) : m_owner(owner), m_monitor(g_volume_monitor_get())
    {
        g_signal_connect(m_monitor.get(), "mount-added", G_CALLBACK(onAdded), this);
        g_signal_connect(m_monitor.get(), "mount-removed", G_CALLBACK(onRemoved), this);
        GList* mounts = g_volume_monitor_get_mounts(m_monitor.get());
        for (const GList* item = mounts; item; item = item->next)
            add(static_cast<GMount*>(item->data));
        g_list_free_full(mounts, g_object_unref);
        runGLibContext();
    }
    VolumeWatch(const VolumeWatch&) = delete;
    VolumeWatch& operator=(const VolumeWatch&) = delete;
    ~VolumeWatch() { g_signal_handlers_disconnect_by_data(m_monitor.get(), this); }

private:
    static void onAdded(GVolumeMonitor* /*monitor*/, GMount* mount, gpointer self)
    {
        static_cast<VolumeWatch*>(self)->add(mount);
    }

    static void onRemoved(GVolumeMonitor* /*monitor*/, GMount* mount, gpointer self)
    {
        static_cast<VolumeWatch*>(self)->remove(mount);
    }

    static std::string urlOf(GMount* mount)
    {
        const GPointer<GFile> root(g_mount_get_root(mount));
        return GPointer<char>(g_file_get_uri(root.get())).get();
    }

    void add(GMount* mount)
    {
        const GPointer<GFile> root(g_mount_get_root(mount));
        const GPointer<char> path(g_file_get_path(root.get()));
        if (path)
            m_paths[urlOf(mount)] = path.get();
    }

    void remove(GMount* mount)
    {
        const auto known = m_paths.extract(urlOf(mount));
        if (!known.empty())
            emit m_owner.unmounted(known.mapped());
    }

    // GVolumeMonitor reports on GLib's default main context. Qt's event loop runs it, unless Qt goes without
    // GLib.
    void runGLibContext()
    {
        const QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
        if (dispatcher && dispatcher->inherits("QEventDispatcherGlib"))
            return;
        QObject::connect(&m_pump, &QTimer::timeout, [] {
            while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
            }
        });
        m_pump.start(std::chrono::milliseconds(250));
    }

    MountMonitor& m_owner;
    GPointer<GVolumeMonitor> m_monitor;
    std::map<std::string, fs::path> m_paths;
    QTimer m_pump;
};

// The kernel's table of mounts, of which GVolumeMonitor shows only a part. The kernel signals a change as an
// exceptional condition (man 5 proc_pid_mounts).
class MountMonitor::MountTableWatch final
{
public:
    explicit MountTableWatch(MountMonitor& owner)
        : m_owner(owner),
          m_file(::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC)),
          m_notifier(m_file.get(), QSocketNotifier::Exception),
          m_mountPoints(mountPoints())
    {
        QObject::connect(&m_notifier, &QSocketNotifier::activated, &owner, [this] { compare(); });
    }

private:
    static std::set<fs::path> mountPoints()
    {
        std::set<fs::path> points;
        for (const KernelMount& mount : readMountTable())
            points.insert(mount.mountPoint);
        return points;
    }

    void compare()
    {
        const std::set<fs::path> before = std::exchange(m_mountPoints, mountPoints());
        for (const fs::path& point : before) {
            if (!m_mountPoints.contains(point))
                emit m_owner.unmounted(point);
        }
    }

    MountMonitor& m_owner;
    FileDescriptor m_file;
    QSocketNotifier m_notifier;
    std::set<fs::path> m_mountPoints;
};

MountMonitor::MountMonitor(QObject* parent)
    : QObject(parent),
      m_volumes(std::make_unique<VolumeWatch>(*this)),
      m_mountTable(std::make_unique<MountTableWatch>(*this))
{}

MountMonitor::~MountMonitor() = default;

} // namespace luma
