// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/filetransfer.h"

#include "base/filecalls.h"
#include "base/files.h"
#include "base/pathbelow.h"
#include "base/usertext.h"
#include "site/folderaccess.h"
#include "site/keptfolder.h"
#include "site/leftovers.h"
#include "site/shownname.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <set>

namespace luma {

namespace fs = std::filesystem;

namespace {

std::string whyNoFolder(std::errc code)
{
    if (code == std::errc::too_many_symbolic_link_levels)
        return userText(
            QT_TRANSLATE_NOOP("luma::Engines", "a symbolic link stands where the folder should be"));
    if (code == std::errc::not_a_directory)
        return userText(QT_TRANSLATE_NOOP("luma::Engines", "a file stands where the folder should be"));
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
    return ::statx(folder.get(), name.c_str(), flags, STATX_TYPE | STATX_MTIME | STATX_SIZE, &status) == 0;
}

constexpr auto changedMeanwhile =
    QT_TRANSLATE_NOOP("luma::Engines", "the receiving side has been changed since the comparison");

bool isAsCompared(const SyncRow& row, const struct stat& status)
{
    const FileFacts now = FileFacts::of(status);
    // A folder's size and time change with what is in it.
    if (now.type == FileFacts::Type::Folder)
        return row.received.type == now.type;
    return now.type == row.received.type && now.size == row.received.size && now.time == row.received.time;
}

// A copy on a share, and what the original was before.
struct CopyOnFuse
{
    std::string path;
    struct statx sent;
};

bool isSame(const struct statx& one, const struct statx& other)
{
    return one.stx_size == other.stx_size && one.stx_mtime.tv_sec == other.stx_mtime.tv_sec &&
           one.stx_mtime.tv_nsec == other.stx_mtime.tv_nsec;
}

// Failures of a connection, which may be over a moment later.
bool isPassing(const Error& error)
{
    return error.code == std::errc::io_error || error.code == std::errc::timed_out ||
           error.code == std::errc::not_connected || error.code == std::errc::connection_reset;
}

// The two sides of a transfer. Rows come sorted, so the folders of the last one are kept open.
class Transfer final
{
public:
    Transfer(const SyncFolders& folders, const std::optional<KeptPublish>& kept)
        : m_sendingRoot(openSiteFolder(folders.sending)),
          m_receivingRoot(openSiteFolder(folders.receiving)),
          m_receivesOnFuse(m_receivingRoot && isOnFuse(*m_receivingRoot)),
          m_sendsFromFuse(m_sendingRoot && isOnFuse(*m_sendingRoot))
    {
        if (kept) {
            m_kept.emplace(kept->place);
            m_publish = kept->publish;
        }
    }

    // Empty when the row was copied, else why not.
    std::string copy(const SyncRow& row, const StillWanted& stillWanted);
    // What the receiving side has now.
    [[nodiscard]] FileFacts factsOf(const SyncRow& row) const;
    // Empty when the row was deleted, else why not.
    std::string remove(const SyncRow& row, const StillWanted& stillWanted);
    [[nodiscard]] bool removeIfEmpty(const std::string& folder) const;
    // False once a share on either side does not answer any more. Asks its server.
    [[nodiscard]] bool isReachable() const;
    // Gives the folders made their mode and time, and brings everything to the disk.
    std::string finish();
    // After finish(): whether the copy of this row has not arrived whole.
    [[nodiscard]] bool isIncomplete(const SyncRow& row) const
    {
        return m_incomplete.contains(row.relativePath);
    }

private:
    Result<FileDescriptor> m_sendingRoot;
    Result<FileDescriptor> m_receivingRoot;
    bool m_receivesOnFuse;
    bool m_sendsFromFuse;
    std::optional<KeptFolder> m_kept;
    std::string m_publish;
    std::vector<CopyOnFuse> m_copiesOnFuse;
    std::set<std::string> m_incomplete;
    std::string m_folder;
    FileDescriptor m_sending;
    FileDescriptor m_receiving;
    std::vector<std::string> m_madeFolders;
    bool m_copiedAny = false;

    std::string enterFolder(std::string_view folder);
    Result<FileDescriptor> openOrMakeReceiving(std::string_view folder);
    Result<FileDescriptor> makeFolder(const FileDescriptor& parent, const std::string& path);
    [[nodiscard]] std::string objection(const SyncRow& row, const std::string& name) const;
    void finishFolder(const std::string& folder) const;
    void finishCopy(const CopyOnFuse& copy);
};

std::string Transfer::copy(const SyncRow& row, const StillWanted& stillWanted)
{
    if (std::string reason = enterFolder(folderPart(row.relativePath)); !reason.empty())
        return reason;
    const std::string name(namePart(row.relativePath));
    if (std::string reason = objection(row, name); !reason.empty())
        return reason;
    const fs::path source = entryOf(m_sending, name);
    const fs::path target = entryOf(m_receiving, name);
    const Existing existing = row.kind == SyncKind::New ? Existing::Keep : Existing::Replace;
    const bool keepsOld = m_kept && row.received.exists();
    if (keepsOld) {
        std::string reason = m_kept->keep(m_receiving, name, m_publish, row.relativePath,
                                          KeptFolder::Original::Stays, stillWanted);
        if (!reason.empty())
            return reason;
    }
    CopyOnFuse onFuse = {row.relativePath, {}};
    const bool isOnFuse = m_receivesOnFuse && lookAgain(m_sending, name, onFuse.sent);
    // Synced one by one, a thousand small files cost seconds; finish() syncs them all at once.
    auto copied = copyFile(source, target, existing, Durability::Unsynced, stillWanted);
    if (!copied && m_receivesOnFuse && isPassing(copied.error()))
        copied = copyFile(source, target, existing, Durability::Unsynced, stillWanted);
    if (keepsOld && !copied)
        m_kept->forget(m_publish, row.relativePath);
    m_copiedAny = m_copiedAny || copied;
    if (copied && isOnFuse)
        m_copiesOnFuse.push_back(std::move(onFuse));
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
    removeLeftovers(m_receiving, m_receivesOnFuse);
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
        auto next = openFolderBelow(*parent, std::string(namePart(path)));
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
    if (::mkdirat(parent.get(), std::string(namePart(path)).c_str(), (original.st_mode & 0777U) | 0700U) != 0)
        return systemError(path, errno);
    m_madeFolders.push_back(path);
    return openFolderBelow(parent, std::string(namePart(path)));
}

std::string Transfer::objection(const SyncRow& row, const std::string& name) const
{
    struct stat sent = {};
    if (::fstatat(m_sending.get(), name.c_str(), &sent, AT_SYMLINK_NOFOLLOW) != 0)
        return systemReason(std::errc(errno));
    if (!S_ISREG(sent.st_mode) && !S_ISLNK(sent.st_mode))
        return userText(QT_TRANSLATE_NOOP("luma::Engines", "no longer a file"));
    struct stat received = {};
    if (::fstatat(m_receiving.get(), name.c_str(), &received, AT_SYMLINK_NOFOLLOW) != 0)
        return {};
    if (S_ISDIR(received.st_mode))
        return userText(QT_TRANSLATE_NOOP("luma::Engines", "a folder stands where the file should be"));
    if (row.kind == SyncKind::New)
        return userText(
            QT_TRANSLATE_NOOP("luma::Engines", "something has appeared in its place since the comparison"));
    return isAsCompared(row, received) ? std::string() : userText(changedMeanwhile);
}

std::string Transfer::remove(const SyncRow& row, const StillWanted& stillWanted)
{
    if (!m_receivingRoot)
        return systemReason(m_receivingRoot.error().code);
    const std::string folder(folderPart(row.relativePath));
    const std::string name(namePart(row.relativePath));
    const auto receiving = openFolderBelow(*m_receivingRoot, folder);
    struct stat received = {};
    if (!receiving)
        return isMissing(receiving.error()) ? std::string() : whyNoFolder(receiving.error().code);
    if (::fstatat(receiving->get(), name.c_str(), &received, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT ? std::string() : systemReason(std::errc(errno));
    if (!isAsCompared(row, received))
        return userText(changedMeanwhile);
    struct stat sent = {};
    const auto sending = openFolderBelow(*m_sendingRoot, folder);
    if (sending && ::fstatat(sending->get(), name.c_str(), &sent, AT_SYMLINK_NOFOLLOW) == 0)
        return userText(
            QT_TRANSLATE_NOOP("luma::Engines", "it has appeared on the sending side since the comparison"));
    const bool isFolder = S_ISDIR(received.st_mode);
    if (m_kept && !isFolder) {
        std::string reason = m_kept->keep(*receiving, name, m_publish, row.relativePath,
                                          KeptFolder::Original::Goes, stillWanted);
        if (!reason.empty())
            return reason;
    }
    // What was moved to the kept versions is gone already.
    const bool isGone = ::unlinkat(receiving->get(), name.c_str(), isFolder ? AT_REMOVEDIR : 0) == 0;
    return isGone || errno == ENOENT ? std::string() : systemReason(std::errc(errno));
}

FileFacts Transfer::factsOf(const SyncRow& row) const
{
    const auto folder = openFolderBelow(*m_receivingRoot, folderPart(row.relativePath));
    struct statx now = {};
    if (!folder || !lookAgain(*folder, std::string(namePart(row.relativePath)), now))
        return {};
    struct stat status = {};
    status.st_mode = now.stx_mode;
    status.st_size = static_cast<off_t>(now.stx_size);
    status.st_mtim.tv_sec = now.stx_mtime.tv_sec;
    return FileFacts::of(status);
}

bool Transfer::isReachable() const
{
    struct statx status = {};
    return !(m_receivesOnFuse && !lookAgain(*m_receivingRoot, ".", status)) &&
           !(m_sendsFromFuse && !lookAgain(*m_sendingRoot, ".", status));
}

bool Transfer::removeIfEmpty(const std::string& folder) const
{
    const auto parent = openFolderBelow(*m_receivingRoot, folderPart(folder));
    return parent && ::unlinkat(parent->get(), std::string(namePart(folder)).c_str(), AT_REMOVEDIR) == 0;
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

// On FUSE a file is closed some time after close() has returned. A server may stamp it only then, after its time
// was set, and what was lost on the way shows only then. The time is that of what was copied: a newer one would
// hide a change made since.
void Transfer::finishCopy(const CopyOnFuse& copy)
{
    const auto sending = openFolderBelow(*m_sendingRoot, folderPart(copy.path));
    const auto receiving = openFolderBelow(*m_receivingRoot, folderPart(copy.path));
    const std::string name(namePart(copy.path));
    struct statx received = {};
    if (!sending || !receiving || !lookAgain(*receiving, name, received))
        return;
    struct statx sentNow = {};
    const bool isChecked =
        S_ISREG(copy.sent.stx_mode) && lookAgain(*sending, name, sentNow) && isSame(sentNow, copy.sent);
    if (isChecked && received.stx_size != copy.sent.stx_size) {
        (void)copyFile(entryOf(*sending, name), entryOf(*receiving, name), Existing::Replace,
                       Durability::Unsynced);
        if (!lookAgain(*receiving, name, received) || received.stx_size != copy.sent.stx_size)
            m_incomplete.insert(copy.path);
    }
    if (received.stx_mtime.tv_sec == copy.sent.stx_mtime.tv_sec || received.stx_size != copy.sent.stx_size)
        return;
    const std::array<timespec, 2> times = {
        timespec{0, UTIME_OMIT},
        timespec{copy.sent.stx_mtime.tv_sec, static_cast<long>(copy.sent.stx_mtime.tv_nsec)}};
    (void)::utimensat(receiving->get(), name.c_str(), times.data(), AT_SYMLINK_NOFOLLOW);
}

std::string Transfer::finish()
{
    for (const CopyOnFuse& copy : m_copiesOnFuse)
        finishCopy(copy);
    // The innermost first: a folder's time changes with what is made in it.
    for (auto folder = m_madeFolders.rbegin(); folder != m_madeFolders.rend(); ++folder)
        finishFolder(*folder);
    if (!m_copiedAny || ::syncfs(m_receivingRoot->get()) == 0)
        return {};
    const bool isUnknown = errno == EINVAL || errno == ENOSYS || errno == ENOTSUP;
    return isUnknown ? std::string() : systemReason(std::errc(errno));
}

// Does rows one after the other, and keeps the report.
class Run final
{
public:
    Run(Transfer& transfer, const std::vector<SyncRow>& rows, const WorkItem& item,
        const OnProgress& progress)
        : m_transfer(transfer), m_rows(rows), m_item(item), m_progress(progress)
    {}

    template <class Step>
    void each(const std::vector<std::size_t>& numbers, Step step)
    {
        for (const std::size_t row : numbers) {
            if (m_item.isCancelled())
                return;
            const std::string reason = step(m_rows[row]);
            if (reason.empty()) {
                report.done.push_back(row);
            } else if (!m_item.isCancelled() && !m_transfer.isReachable()) {
                addProblem(row, reason + "; the server no longer answers, so the rest was not tried");
                return;
            } else if (!m_item.isCancelled()) {
                addProblem(row, reason);
            }
            ++m_dealtWith.rows;
            m_dealtWith.bytes += m_rows[row].sent.size;
            if (m_progress)
                m_progress(m_dealtWith);
        }
    }

    // False when what was copied may not have reached the disk; then it does not count.
    bool finish()
    {
        const std::string reason = m_transfer.finish();
        if (reason.empty()) {
            std::erase_if(report.done, [this](std::size_t row) {
                const bool isIncomplete = m_transfer.isIncomplete(m_rows[row]);
                if (isIncomplete)
                    addProblem(row, "it has arrived with another size, twice");
                return isIncomplete;
            });
            return true;
        }
        for (const std::size_t row : report.done)
            addProblem(row, reason);
        report.done.clear();
        return false;
    }

    TransferReport report;

private:
    Transfer& m_transfer;
    const std::vector<SyncRow>& m_rows;
    const WorkItem& m_item;
    const OnProgress& m_progress;
    SyncProgress m_dealtWith;

    void addProblem(std::size_t row, const std::string& reason)
    {
        report.problems.push_back({.row = row, .text = m_rows[row].displayName + ": " + reason});
    }
};

} // namespace

FileTransfer::FileTransfer(std::vector<SyncRow> rows, std::vector<std::string> foldersOnlyThere,
                           std::optional<KeptPublish> kept)
    : m_rows(std::move(rows)), m_foldersOnlyThere(std::move(foldersOnlyThere)), m_kept(std::move(kept))
{}

TransferReport FileTransfer::run(const WorkItem& item, const OnProgress& progress) const
{
    if (m_rows.empty())
        return {};
    Transfer transfer(*m_rows.front().folders, m_kept);
    Run run(transfer, m_rows, item, progress);
    const StillWanted stillWanted = [&item] { return !item.isCancelled(); };
    run.each(transferOrder(m_rows), [&](const SyncRow& row) { return transfer.copy(row, stillWanted); });
    if (run.finish() && run.report.problems.empty() && !item.isCancelled()) {
        const std::vector<std::size_t> deletions = tickedDeletions(m_rows);
        run.each(deletions, [&](const SyncRow& row) { return transfer.remove(row, stillWanted); });
        for (const std::string& folder : emptiedFolders(m_rows, deletions, m_foldersOnlyThere))
            (void)transfer.removeIfEmpty(folder);
    }
    std::sort(run.report.done.begin(), run.report.done.end());
    for (const std::size_t row : run.report.done)
        run.report.received.push_back(transfer.factsOf(m_rows[row]));
    return std::move(run.report);
}

} // namespace luma
