// SPDX-License-Identifier: GPL-3.0-or-later
#include "mounts/gpointer.h"
// GLib's headers come first: they use Qt's word `signals` for a member.
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

// A folder on a gvfs volume and the volume's own root.
struct LocalFolder
{
    fs::path folder;
    fs::path root;
};

// Who uses which folder of a gvfs volume, and the unmounts under way. Thread-safe.
class MountRegistry final
{
public:
    // To be taken before a mount is asked for: what was claimed earlier lay on a volume that has gone since.
    int now()
    {
        const std::scoped_lock lock(m_mutex);
        return m_moment;
    }

    // Each claim wants a release() of its own. `mountedAfter` is there when the claimer mounted the volume.
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

    // The volume to be unmounted now that `folder` is not in use any more; nothing while somebody uses it or
    // another folder of it, or when it is not ours.
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

    // False when the volume came into use again between release() and now.
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

    // A mount asked for while its share is being unmounted would be told that it is there, and then lose it.
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

// Where the URL's folder lies when the volume that encloses it is mounted.
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

// gvfs' FUSE daemon lags behind: its folder comes a moment after a session's first mount, a volume that was
// unmounted shows for a second or two, and one that is mounted again in that time gives I/O errors.
enum class FolderState { Usable, Missing, NotYet };

FolderState stateOf(const fs::path& folder)
{
    std::error_code error;
    const fs::directory_iterator entries(folder, error);
    if (!error || error == std::errc::permission_denied || error == std::errc::not_a_directory)
        return FolderState::Usable;
    return error == std::errc::no_such_file_or_directory ? FolderState::Missing : FolderState::NotYet;
}

bool isUsable(const fs::path& folder)
{
    return stateOf(folder) == FolderState::Usable;
}

// The volumes that gvfs shows in its FUSE folder, whatever user they were mounted for.
std::optional<fs::path> findInFuseFolder(const std::string& shareUrl)
{
    const auto wanted = parseShareUrl(shareUrl);
    std::error_code error;
    const fs::path fuseFolder = fs::path(g_get_user_runtime_dir()) / "gvfs";
    for (fs::directory_iterator entry(fuseFolder, error), end; !error && entry != end;
         entry.increment(error)) {
        const GPointer<GFile> root(g_file_new_for_path(entry->path().c_str()));
        const GPointer<char> url(g_file_get_uri(root.get()));
        const auto share = parseShareUrl(url.get());
        if (!wanted || !share || !isBelowShare(*wanted, *share) || !isUsable(entry->path()))
            continue;
        const std::string rest = *pathBelow(wanted->path, share->path, wanted->scheme == "smb");
        return rest.empty() ? entry->path() : entry->path() / rest;
    }
    return {};
}

Result<fs::path> existingFolder(const fs::path& folder)
{
    switch (stateOf(folder)) {
    case FolderState::Usable:
        return folder;
    case FolderState::Missing:
        return Error{folder.string() + ": no such folder on the server"};
    case FolderState::NotYet:
        break;
    }
    return Error{folder.string() + ": the folder can't be read"};
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
        return Error{"cancelled"};
    if (!local)
        return Error{url + ": mounted, but its local folder can't be read (is gvfs-fuse installed?)"};
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
        return Error{shareUrl + ": not the address of a share"};
    if (!registry().waitForUnmounts(isWanted))
        return Error{"cancelled"};
    const std::string url = shareUrlForUser(shareUrl, user);
    const int before = registry().now();
    const auto outcome = requestMount(url, user, password, isWanted);
    if (outcome)
        return useMounted(url, *outcome == MountOutcome::Mounted ? std::optional(before) : std::nullopt,
                          isWanted);
    if (!isWanted())
        return Error{"cancelled"};
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
