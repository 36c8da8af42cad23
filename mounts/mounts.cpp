// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/gpointer.h"

#include "base/usertext.h"
// GLib's headers come first, because they use Qt's word `signals` for a member.
#include "base/filecalls.h"
#include "base/folderreader.h"
#include "mounts/mountrequest.h"
#include "mounts/mounts.h"
#include "mounts/mounttable.h"
#include "mounts/owncontext.h"
#include "mounts/shareurl.h"

#include <QThreadPool>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace luma {

namespace fs = std::filesystem;

namespace {

constexpr std::chrono::milliseconds pollInterval{100};
constexpr int fusePolls = 50;

// A folder on a gvfs volume, and the volume's root.
struct LocalFolder
{
    fs::path folder;
    fs::path root;
};

// Which folders of gvfs volumes are in use, and which volumes are being unmounted. Thread-safe.
class MountRegistry final
{
public:
    // Taken before a mount is requested: claims made earlier were on a volume that is gone by now.
    int now()
    {
        const std::scoped_lock lock(m_mutex);
        return m_moment;
    }

    // Each claim needs its own release(). `mountedAfter` is set when the claimer mounted the volume.
    void claim(const LocalFolder& local, std::optional<int> mountedAfter)
    {
        const std::scoped_lock lock(m_mutex);
        Volume& volume = m_volumes[local.root];
        if (mountedAfter) {
            volume.isOurs = true;
            std::erase_if(volume.claims, [&](const Claim& claim) { return claim.moment <= *mountedAfter; });
        }
        volume.claims.push_back({local.folder, ++m_moment});
    }

    // The volume to unmount now that `folder` is no longer in use; nothing while the volume is still in use or
    // when we did not mount it.
    std::optional<fs::path> release(const fs::path& folder)
    {
        const std::scoped_lock lock(m_mutex);
        for (auto entry = m_volumes.begin(); entry != m_volumes.end(); ++entry) {
            std::vector<Claim>& claims = entry->second.claims;
            const auto claim = std::find_if(claims.begin(), claims.end(),
                                            [&](const Claim& each) { return each.folder == folder; });
            if (claim == claims.end())
                continue;
            claims.erase(claim);
            if (!claims.empty())
                return {};
            if (entry->second.isOurs) {
                ++m_unmounting;
                return entry->first;
            }
            m_volumes.erase(entry);
            return {};
        }
        return {};
    }

    // False when the volume was claimed again since release().
    bool mayUnmount(const fs::path& root)
    {
        const std::scoped_lock lock(m_mutex);
        const auto entry = m_volumes.find(root);
        if (entry == m_volumes.end() || !entry->second.claims.empty())
            return false;
        m_volumes.erase(entry);
        return true;
    }

    void unmountEnded()
    {
        const std::scoped_lock lock(m_mutex);
        --m_unmounting;
        m_unmountEnded.notify_all();
    }

    // A mount requested while its share is being unmounted would succeed and then vanish.
    bool waitForUnmounts(const std::function<bool()>& isWanted)
    {
        std::unique_lock lock(m_mutex);
        while (m_unmounting > 0) {
            m_unmountEnded.wait_for(lock, pollInterval);
            lock.unlock();
            const bool goOn = isWanted();
            lock.lock();
            if (!goOn)
                return false;
        }
        return true;
    }

private:
    struct Claim
    {
        fs::path folder;
        int moment;
    };
    struct Volume
    {
        std::vector<Claim> claims;
        bool isOurs = false;
    };

    std::mutex m_mutex;
    std::condition_variable m_unmountEnded;
    std::map<fs::path, Volume> m_volumes;
    int m_moment = 0;
    int m_unmounting = 0;
};

MountRegistry& registry()
{
    static MountRegistry instance;
    return instance;
}

std::optional<fs::path> localPath(GFile* file)
{
    const GPointer<char> path(g_file_get_path(file));
    return path ? std::optional<fs::path>(path.get()) : std::nullopt;
}

// The URL's local folder, when the volume that encloses it is mounted.
std::optional<LocalFolder> localFolder(const std::string& url)
{
    const OwnContext context;
    const GPointer<GFile> file(g_file_new_for_uri(url.c_str()));
    const GPointer<GMount> mount(g_file_find_enclosing_mount(file.get(), nullptr, nullptr));
    if (!mount)
        return {};
    const GPointer<GFile> root(g_mount_get_root(mount.get()));
    auto folderPath = localPath(file.get());
    auto rootPath = localPath(root.get());
    if (!folderPath || !rootPath)
        return {};
    return LocalFolder{std::move(*folderPath), std::move(*rootPath)};
}

// gvfs' FUSE daemon lags behind: its folder appears a moment after a session's first mount, an unmounted
// volume still shows for a second or two, and one that is mounted again in that time gives I/O errors.
enum class FolderState { Usable, Missing, NotYet };

FolderState stateOf(const fs::path& folder)
{
    auto reader = FolderReader::open(folder.native());
    std::errc error = reader ? std::errc() : reader.error().code;
    if (reader && !reader->next() && reader->error())
        error = reader->error()->code;
    if (error == std::errc() || error == std::errc::permission_denied || error == std::errc::not_a_directory)
        return FolderState::Usable;
    return error == std::errc::no_such_file_or_directory ? FolderState::Missing : FolderState::NotYet;
}

bool isUsable(const fs::path& folder)
{
    return stateOf(folder) == FolderState::Usable;
}

// Looks through the volumes in gvfs' FUSE folder, whichever user they were mounted for.
std::optional<fs::path> findInFuseFolder(const std::string& shareUrl)
{
    const auto wanted = parseShareUrl(shareUrl);
    const fs::path fuseFolder = fs::path(g_get_user_runtime_dir()) / "gvfs";
    auto reader = FolderReader::open(fuseFolder.native());
    if (!wanted || !reader)
        return {};
    while (const auto entry = reader->next()) {
        const fs::path volume = fuseFolder / entry->name();
        const GPointer<GFile> root(g_file_new_for_path(volume.c_str()));
        const GPointer<char> url(g_file_get_uri(root.get()));
        const auto share = parseShareUrl(url.get());
        const auto below = share ? pathBelowShare(*wanted, *share) : std::nullopt;
        if (below && isUsable(volume))
            return below->empty() ? volume : volume / *below;
    }
    return {};
}

Result<fs::path> existingFolder(const fs::path& folder)
{
    switch (stateOf(folder)) {
    case FolderState::Usable:
        return folder;
    case FolderState::Missing:
        return Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "%1: no such folder on the server"),
                              {folder.native()})};
    case FolderState::NotYet:
        break;
    }
    return Error{
        userText(QT_TRANSLATE_NOOP("luma::Engines", "%1: the folder can't be read"), {folder.native()})};
}

std::optional<LocalFolder> awaitLocalFolder(const std::string& url, const std::function<bool()>& isWanted)
{
    for (int i = 0; i < fusePolls && isWanted(); ++i) {
        if (auto local = localFolder(url); local && isUsable(local->root))
            return local;
        std::this_thread::sleep_for(pollInterval);
    }
    return {};
}

Result<fs::path> useMounted(const std::string& url, std::optional<int> mountedAfter,
                            const std::function<bool()>& isWanted)
{
    const auto local = awaitLocalFolder(url, isWanted);
    if (!isWanted())
        return stoppedError(url);
    if (!local)
        return Error{userText(
            QT_TRANSLATE_NOOP("luma::Engines",
                              "%1: mounted, but its local folder can't be read (is gvfs-fuse installed?)"),
            {url})};
    registry().claim(*local, mountedAfter);
    auto folder = existingFolder(local->folder);
    if (!folder)
        unmount(local->folder);
    return folder;
}

} // namespace

Result<fs::path> mountShare(const std::string& shareUrl, const std::string& user, const std::string& password,
                            const std::function<bool()>& isWanted)
{
    if (!parseShareUrl(shareUrl))
        return Error{
            userText(QT_TRANSLATE_NOOP("luma::Engines", "%1: not the address of a share"), {shareUrl})};
    if (!registry().waitForUnmounts(isWanted))
        return stoppedError(shareUrl);
    const std::string url = shareUrlForUser(shareUrl, user);
    const int before = registry().now();
    const auto outcome = requestMount(url, user, password, isWanted);
    if (outcome)
        return useMounted(url, *outcome == MountOutcome::Mounted ? std::optional(before) : std::nullopt,
                          isWanted);
    if (!isWanted())
        return stoppedError(shareUrl);
    const auto found = findExistingMount(shareUrl, user);
    if (!found)
        return Error{shareUrl + ": " + outcome.error().text};
    return existingFolder(*found);
}

std::optional<fs::path> findExistingMount(const std::string& shareUrl, const std::string& user)
{
    const std::string url = shareUrlForUser(shareUrl, user);
    for (const std::string& candidate : {url, shareUrl}) {
        if (const auto local = localFolder(candidate); local && isUsable(local->root))
            return local->folder;
    }
    if (auto found = findInFuseFolder(url))
        return found;
    return findKernelMount(readMountTable(), shareUrl, user);
}

void unmount(const fs::path& folder)
{
    const auto root = registry().release(folder);
    if (!root)
        return;
    QThreadPool::globalInstance()->start([root = *root] {
        if (registry().mayUnmount(root))
            requestUnmount(root.string());
        registry().unmountEnded();
    });
}

} // namespace luma
