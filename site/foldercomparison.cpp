// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/foldercomparison.h"

#include "base/filecalls.h"
#include "base/folderreader.h"
#include "site/folderaccess.h"
#include "site/shownname.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>

namespace luma {

namespace {

// Two threads hide each other's waiting for the disk or the server; more only quarrel.
constexpr unsigned workerCount = 2;

struct PendingFolder
{
    std::string relativePath;
    bool isMissing = false; // on the receiving side, so that nothing below needs a look there
};

// The folders still to be visited, shared out to the workers.
class FolderQueue final
{
public:
    void add(std::vector<PendingFolder>& folders)
    {
        const std::scoped_lock lock(m_mutex);
        std::move(folders.begin(), folders.end(), std::back_inserter(m_folders));
        folders.clear();
        m_changed.notify_all();
    }

    // The next folder, waiting while others may still add some; nothing when all are done. Whoever took a
    // folder calls finish() after it.
    std::optional<PendingFolder> take()
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return !m_folders.empty() || m_busy == 0; });
        if (m_folders.empty())
            return std::nullopt;
        ++m_busy;
        PendingFolder folder = std::move(m_folders.back());
        m_folders.pop_back();
        return folder;
    }

    void finish()
    {
        const std::scoped_lock lock(m_mutex);
        --m_busy;
        m_changed.notify_all();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<PendingFolder> m_folders;
    int m_busy = 0;
};

std::string linkTarget(int folder, const char* name)
{
    std::array<char, PATH_MAX> target;
    const ssize_t length = ::readlinkat(folder, name, target.data(), target.size());
    return {target.data(), length < 0 ? 0 : static_cast<std::size_t>(length)};
}

Result<FolderReader> readFolderBelow(const FileDescriptor& root, const std::string& relativePath)
{
    auto folder = openFolderBelow(root, relativePath);
    if (!folder)
        return folder.error();
    return FolderReader::open(*std::move(folder), relativePath);
}

// One of the threads at work: visits folders and keeps what it finds to itself.
class Worker final
{
public:
    Worker(const FileDescriptor& sending, const FileDescriptor& receiving,
           const std::shared_ptr<const SyncFolders>& folders, const IgnoredNames& ignored, FolderQueue& queue,
           const WorkItem& item)
        : m_sendingRoot(sending),
          m_receivingRoot(receiving),
          m_folders(folders),
          m_ignored(ignored),
          m_queue(queue),
          m_item(item)
    {}

    void run()
    {
        while (const std::optional<PendingFolder> folder = m_queue.take()) {
            visit(*folder);
            m_queue.finish();
        }
    }

    ComparisonReport report;

private:
    const FileDescriptor& m_sendingRoot;
    const FileDescriptor& m_receivingRoot;
    const std::shared_ptr<const SyncFolders>& m_folders;
    const IgnoredNames& m_ignored;
    FolderQueue& m_queue;
    const WorkItem& m_item;
    std::string m_folder;       // the relative path of the folder being visited
    FileDescriptor m_receiving; // empty where the receiving side has no such folder
    std::vector<PendingFolder> m_subfolders;

    void visit(const PendingFolder& folder);
    Result<void> openReceiving(const PendingFolder& folder);
    void examine(int sending, const FolderReader::Entry& entry);
    void compare(const char* name, int sending, const struct stat& sent);
    void addRow(SyncMode mode, const char* name);
    void addProblem(const char* name, std::errc code);
    [[nodiscard]] std::string pathOf(std::string_view name) const;
};

std::string Worker::pathOf(std::string_view name) const
{
    std::string path;
    path.reserve(m_folder.size() + 1 + name.size());
    path.append(m_folder);
    if (!m_folder.empty() && !name.empty())
        path.push_back('/');
    return path.append(name);
}

void Worker::addRow(SyncMode mode, const char* name)
{
    std::string path = pathOf(name);
    report.rows.push_back({.displayName = shownName(path),
                           .mode = mode,
                           .relativePath = std::move(path),
                           .folders = m_folders});
}

void Worker::addProblem(const char* name, std::errc code)
{
    const std::string path = pathOf(name);
    report.problems.push_back(shownName(path.empty() ? "." : path) + ": " + systemReason(code));
}

// An error when the folder exists on the receiving side but can't be compared with.
Result<void> Worker::openReceiving(const PendingFolder& folder)
{
    m_receiving.reset();
    if (folder.isMissing)
        return {};
    auto opened = openFolderBelow(m_receivingRoot, folder.relativePath);
    if (opened) {
        m_receiving = *std::move(opened);
        return {};
    }
    const std::errc code = opened.error().code;
    if (code == std::errc::no_such_file_or_directory || code == std::errc::not_a_directory ||
        code == std::errc::too_many_symbolic_link_levels)
        return {};
    return opened.error();
}

void Worker::visit(const PendingFolder& folder)
{
    m_folder = folder.relativePath;
    if (m_item.isCancelled())
        return;
    auto sending = readFolderBelow(m_sendingRoot, m_folder);
    if (!sending) {
        // Not found: removed since its name was read.
        if (sending.error().code != std::errc::no_such_file_or_directory)
            addProblem("", sending.error().code);
        return;
    }
    if (const auto opened = openReceiving(folder); !opened) {
        addProblem("", opened.error().code);
        return;
    }
    while (const auto entry = sending->next()) {
        if (m_item.isCancelled())
            return;
        examine(sending->descriptor(), *entry);
    }
    if (sending->error())
        addProblem("", sending->error()->code);
    m_queue.add(m_subfolders);
}

void Worker::examine(int sending, const FolderReader::Entry& entry)
{
    const char* name = entry.name();
    struct stat sent = {};
    if (!entry.isListedAsFolder() && ::fstatat(sending, name, &sent, AT_SYMLINK_NOFOLLOW) != 0) {
        if (errno != ENOENT)
            addProblem(name, std::errc(errno));
        return;
    }
    const bool isFolder = entry.isListedAsFolder() || S_ISDIR(sent.st_mode);
    if (m_ignored.match(m_folder, name, isFolder))
        ++report.ignored;
    else if (isFolder)
        m_subfolders.push_back({.relativePath = pathOf(name), .isMissing = !m_receiving});
    else if (S_ISREG(sent.st_mode) || S_ISLNK(sent.st_mode))
        compare(name, sending, sent);
}

void Worker::compare(const char* name, int sending, const struct stat& sent)
{
    struct stat received = {};
    if (!m_receiving) {
        addRow(SyncMode::Copy, name);
    } else if (::fstatat(m_receiving.get(), name, &received, AT_SYMLINK_NOFOLLOW) != 0) {
        if (errno == ENOENT)
            addRow(SyncMode::Copy, name);
        else
            addProblem(name, std::errc(errno));
    } else if (S_ISLNK(sent.st_mode) && S_ISLNK(received.st_mode)) {
        if (linkTarget(sending, name) != linkTarget(m_receiving.get(), name))
            addRow(SyncMode::DeleteFirst, name);
    } else if (S_ISDIR(received.st_mode) || received.st_mtim.tv_sec < sent.st_mtim.tv_sec) {
        addRow(SyncMode::DeleteFirst, name);
    }
}

// Runs `worker` on that many threads, the caller's included; on fewer where the system gives no more.
void runInParallel(unsigned threads, const std::function<void()>& worker)
{
    std::vector<std::jthread> others;
    for (unsigned i = 1; i < threads; ++i) {
        try {
            others.emplace_back(worker);
        } catch (const std::system_error&) {
            break;
        }
    }
    worker();
}

template <class T>
void append(std::vector<T>& all, std::vector<T>& more)
{
    std::move(more.begin(), more.end(), std::back_inserter(all));
}

} // namespace

FolderComparison::FolderComparison(std::filesystem::path sending, std::filesystem::path receiving,
                                   IgnoredNames ignored)
    : m_folders(std::make_shared<const SyncFolders>(SyncFolders{std::move(sending), std::move(receiving)})),
      m_ignored(std::move(ignored))
{}

Result<ComparisonReport> FolderComparison::run(const WorkItem& item) const
{
    const auto sending = openSiteFolder(m_folders->sending);
    if (!sending)
        return sending.error();
    const auto receiving = openSiteFolder(m_folders->receiving);
    if (!receiving)
        return receiving.error();
    FolderQueue queue;
    std::vector<PendingFolder> first(1);
    queue.add(first);
    ComparisonReport report;
    std::mutex reportMutex;
    runInParallel(workerCount, [&] {
        Worker worker(*sending, *receiving, m_folders, m_ignored, queue, item);
        worker.run();
        const std::scoped_lock lock(reportMutex);
        append(report.rows, worker.report.rows);
        append(report.problems, worker.report.problems);
        report.ignored += worker.report.ignored;
    });
    std::sort(report.rows.begin(), report.rows.end(),
              [](const SyncRow& a, const SyncRow& b) { return a.relativePath < b.relativePath; });
    std::sort(report.problems.begin(), report.problems.end());
    return report;
}

} // namespace luma
