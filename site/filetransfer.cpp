// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/filetransfer.h"

#include "base/filecalls.h"
#include "base/files.h"
#include "site/folderaccess.h"
#include "site/shownname.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace luma {

namespace fs = std::filesystem;

namespace {

// An open folder's entry as a path that stays right when the folder is moved or replaced by a link (proc(5),
// /proc/self/fd).
fs::path entryOf(const FileDescriptor& folder, const std::string& name)
{
    return fs::path("/proc/self/fd") / std::to_string(folder.get()) / name;
}

std::string_view folderPart(std::string_view path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
}

std::string namePart(std::string_view path)
{
    return std::string(path.substr(path.rfind('/') + 1));
}

std::string whyNoFolder(std::errc code)
{
    if (code == std::errc::too_many_symbolic_link_levels)
        return "a symbolic link stands where the folder should be";
    if (code == std::errc::not_a_directory)
        return "a file stands where the folder should be";
    return systemReason(code);
}

bool isMissing(const Error& error)
{
    return error.code == std::errc::no_such_file_or_directory;
}

bool isOnFuse(const FileDescriptor& folder)
{
    struct statfs status = {};
    return ::fstatfs(folder.get(), &status) == 0 && status.f_type == FUSE_SUPER_MAGIC;
}

// As the server has it now, not as the kernel remembers it.
bool lookAgain(const FileDescriptor& folder, const std::string& name, struct statx& status)
{
    constexpr int flags = AT_SYMLINK_NOFOLLOW | AT_STATX_FORCE_SYNC;
    return ::statx(folder.get(), name.c_str(), flags, STATX_MTIME | STATX_SIZE, &status) == 0;
}

// The two sides of a transfer. Rows come sorted, so the folders of the last one are kept open.
class Transfer final
{
public:
    explicit Transfer(const SyncFolders& folders)
        : m_sendingRoot(openSiteFolder(folders.sending)),
          m_receivingRoot(openSiteFolder(folders.receiving)),
          m_receivesOnFuse(m_receivingRoot && isOnFuse(*m_receivingRoot))
    {}

    // Empty when the row was copied, else why not.
    std::string copy(const SyncRow& row, const StillWanted& stillWanted);
    // Gives the folders made their mode and time, and brings everything to the disk.
    std::string finish();

private:
    Result<FileDescriptor> m_sendingRoot;
    Result<FileDescriptor> m_receivingRoot;
    bool m_receivesOnFuse;
    std::vector<std::string> m_maybeStamped;
    std::string m_folder;
    FileDescriptor m_sending;
    FileDescriptor m_receiving;
    std::vector<std::string> m_madeFolders;
    bool m_copiedAny = false;

    std::string enterFolder(std::string_view folder);
    Result<FileDescriptor> openOrMakeReceiving(std::string_view folder);
    Result<FileDescriptor> makeFolder(const FileDescriptor& parent, const std::string& path);
    [[nodiscard]] std::string objection(const SyncRow& row, const std::string& name) const;
    [[nodiscard]] bool removeIfEmpty(const std::string& folder) const;
    void finishFolder(const std::string& folder) const;
    void restoreTime(const std::string& path) const;
};

std::string Transfer::copy(const SyncRow& row, const StillWanted& stillWanted)
{
    if (std::string reason = enterFolder(folderPart(row.relativePath)); !reason.empty())
        return reason;
    const std::string name = namePart(row.relativePath);
    if (std::string reason = objection(row, name); !reason.empty())
        return reason;
    const fs::path source = entryOf(m_sending, name);
    const fs::path target = entryOf(m_receiving, name);
    const Existing existing = row.mode == SyncMode::DeleteFirst ? Existing::Replace : Existing::Keep;
    // Synced one by one, a thousand small files cost seconds; finish() syncs them all at once.
    const auto copied = copyFile(source, target, existing, Durability::Unsynced, stillWanted);
    m_copiedAny = m_copiedAny || copied;
    if (copied && m_receivesOnFuse)
        m_maybeStamped.push_back(row.relativePath);
    // The code's words, for the text names a descriptor.
    return copied ? std::string() : systemReason(copied.error().code);
}

std::string Transfer::enterFolder(std::string_view folder)
{
    if (m_receiving && folder == m_folder)
        return {};
    m_receiving.reset();
    if (!m_sendingRoot || !m_receivingRoot)
        return systemReason((m_sendingRoot ? m_receivingRoot : m_sendingRoot).error().code);
    auto sending = openFolderBelow(*m_sendingRoot, folder);
    if (!sending)
        return whyNoFolder(sending.error().code);
    auto receiving = openOrMakeReceiving(folder);
    if (!receiving)
        return whyNoFolder(receiving.error().code);
    m_sending = *std::move(sending);
    m_receiving = *std::move(receiving);
    m_folder = folder;
    return {};
}

Result<FileDescriptor> Transfer::openOrMakeReceiving(std::string_view folder)
{
    auto opened = openFolderBelow(*m_receivingRoot, folder);
    if (opened || !isMissing(opened.error()) || folder.empty())
        return opened;
    auto parent = openFolderBelow(*m_receivingRoot, {});
    for (std::size_t end = 0; parent && end < folder.size();) {
        end = std::min(folder.find('/', end + 1), folder.size());
        const std::string path(folder.substr(0, end));
        auto next = openFolderBelow(*parent, namePart(path));
        if (!next && isMissing(next.error()))
            next = makeFolder(*parent, path);
        parent = std::move(next);
    }
    return parent;
}

Result<FileDescriptor> Transfer::makeFolder(const FileDescriptor& parent, const std::string& path)
{
    const auto sending = openFolderBelow(*m_sendingRoot, path);
    if (!sending)
        return sending.error();
    struct stat original = {};
    if (::fstat(sending->get(), &original) != 0)
        return systemError(path, errno);
    // The owner may write for now, because the folder's files are still to come.
    if (::mkdirat(parent.get(), namePart(path).c_str(), (original.st_mode & 0777U) | 0700U) != 0)
        return systemError(path, errno);
    m_madeFolders.push_back(path);
    return openFolderBelow(parent, namePart(path));
}

std::string Transfer::objection(const SyncRow& row, const std::string& name) const
{
    struct stat sent = {};
    if (::fstatat(m_sending.get(), name.c_str(), &sent, AT_SYMLINK_NOFOLLOW) != 0)
        return systemReason(std::errc(errno));
    if (!S_ISREG(sent.st_mode) && !S_ISLNK(sent.st_mode))
        return "no longer a file";
    struct stat received = {};
    if (::fstatat(m_receiving.get(), name.c_str(), &received, AT_SYMLINK_NOFOLLOW) != 0)
        return {};
    if (S_ISDIR(received.st_mode))
        return "a folder stands where the file should be";
    if (row.mode == SyncMode::Copy)
        return "something has appeared in its place since the comparison";
    const bool areFiles = S_ISREG(sent.st_mode) && S_ISREG(received.st_mode);
    if (areFiles && received.st_mtim.tv_sec >= sent.st_mtim.tv_sec)
        return "the receiving side has been changed since the comparison";
    return {};
}

bool Transfer::removeIfEmpty(const std::string& folder) const
{
    const auto parent = openFolderBelow(*m_receivingRoot, folderPart(folder));
    return parent && ::unlinkat(parent->get(), namePart(folder).c_str(), AT_REMOVEDIR) == 0;
}

void Transfer::finishFolder(const std::string& folder) const
{
    // Made for a file that then could not be copied.
    if (removeIfEmpty(folder))
        return;
    struct stat original = {};
    const auto sending = openFolderBelow(*m_sendingRoot, folder);
    const auto receiving = openFolderBelow(*m_receivingRoot, folder);
    if (!sending || !receiving || ::fstat(sending->get(), &original) != 0)
        return;
    const std::array<timespec, 2> times = {original.st_atim, original.st_mtim};
    // A server that keeps neither has the files all the same.
    (void)::fchmod(receiving->get(), original.st_mode & 07777U);
    (void)::futimens(receiving->get(), times.data());
}

// On FUSE a file is closed some time after close() has returned, and a server may stamp it only then, after
// its time was set.
void Transfer::restoreTime(const std::string& path) const
{
    const auto sending = openFolderBelow(*m_sendingRoot, folderPart(path));
    const auto receiving = openFolderBelow(*m_receivingRoot, folderPart(path));
    const std::string name = namePart(path);
    struct statx sent = {};
    struct statx received = {};
    if (!sending || !receiving || !lookAgain(*sending, name, sent) || !lookAgain(*receiving, name, received))
        return;
    if (sent.stx_mtime.tv_sec == received.stx_mtime.tv_sec || sent.stx_size != received.stx_size)
        return;
    const std::array<timespec, 2> times = {
        timespec{0, UTIME_OMIT}, timespec{sent.stx_mtime.tv_sec, static_cast<long>(sent.stx_mtime.tv_nsec)}};
    (void)::utimensat(receiving->get(), name.c_str(), times.data(), AT_SYMLINK_NOFOLLOW);
}

std::string Transfer::finish()
{
    for (const std::string& path : m_maybeStamped)
        restoreTime(path);
    // The innermost first: a folder's time changes with what is made in it.
    for (auto folder = m_madeFolders.rbegin(); folder != m_madeFolders.rend(); ++folder)
        finishFolder(*folder);
    if (!m_copiedAny || ::syncfs(m_receivingRoot->get()) == 0)
        return {};
    const bool isUnknown = errno == EINVAL || errno == ENOSYS || errno == ENOTSUP;
    return isUnknown ? std::string() : systemReason(std::errc(errno));
}

} // namespace

FileTransfer::FileTransfer(std::vector<SyncRow> rows) : m_rows(std::move(rows)) {}

TransferReport FileTransfer::run(const WorkItem& item, const std::function<void(std::size_t)>& progress) const
{
    TransferReport report;
    if (m_rows.empty())
        return report;
    Transfer transfer(*m_rows.front().folders);
    std::size_t dealtWith = 0;
    for (const std::size_t i : transferOrder(m_rows)) {
        if (item.isCancelled())
            break;
        const std::string reason = transfer.copy(m_rows[i], [&item] { return !item.isCancelled(); });
        if (reason.empty())
            report.copied.push_back(i);
        else if (!item.isCancelled())
            report.problems.push_back({.row = i, .text = m_rows[i].displayName + ": " + reason});
        if (progress)
            progress(++dealtWith);
    }
    std::sort(report.copied.begin(), report.copied.end());
    if (const std::string reason = transfer.finish(); !reason.empty()) {
        // What did not reach the disk does not count as copied.
        for (const std::size_t row : report.copied)
            report.problems.push_back({.row = row, .text = m_rows[row].displayName + ": " + reason});
        report.copied.clear();
    }
    return report;
}

} // namespace luma
