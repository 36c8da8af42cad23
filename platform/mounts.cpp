#include "platform/gpointer.h"
// GLib's headers come first: they use Qt's word `signals` for a member.
#include "platform/mountrequest.h"
#include "platform/mounts.h"
#include "platform/mounttable.h"
#include "platform/owncontext.h"
#include "platform/shareurl.h"

#include <QThreadPool>

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <set>
#include <system_error>
#include <thread>

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

// What we mounted and which of its folders are in use, and the unmounts under way. Thread-safe.
class MountRegistry final
{
public:
    void claim(const LocalFolder& local, bool isOurs)
    {
        const std::scoped_lock lock(m_mutex);
        if (isOurs || m_folders.contains(local.root))
            m_folders[local.root].insert(local.folder);
    }

    // The volume to be unmounted now that `folder` is not in use any more; nothing while another folder is.
    std::optional<fs::path> release(const fs::path& folder)
    {
        const std::scoped_lock lock(m_mutex);
        auto entry = m_folders.begin();
        while (entry != m_folders.end() && entry->second.erase(folder) == 0)
            ++entry;
        if (entry == m_folders.end() || !entry->second.empty())
            return {};
        ++m_unmounting;
        return entry->first;
    }

    // False when the volume came into use again between release() and now.
    bool mayUnmount(const fs::path& root)
    {
        const std::scoped_lock lock(m_mutex);
        const auto entry = m_folders.find(root);
        if (entry == m_folders.end() || !entry->second.empty())
            return false;
        m_folders.erase(entry);
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
    std::mutex m_mutex;
    std::condition_variable m_unmountEnded;
    std::map<fs::path, std::set<fs::path>> m_folders;
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

Result<fs::path> useMounted(const std::string& url, MountOutcome outcome,
                            const std::function<bool()>& isWanted)
{
    const auto local = awaitLocalFolder(url, isWanted);
    if (!isWanted())
        return Error{"cancelled"};
    if (!local)
        return Error{url + ": mounted, but its local folder can't be read (is gvfs-fuse installed?)"};
    registry().claim(*local, outcome == MountOutcome::Mounted);
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
    const auto outcome = requestMount(url, user, password, isWanted);
    if (outcome)
        return useMounted(url, *outcome, isWanted);
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
