// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/foldercomparison.h"

#include "base/filecalls.h"
#include "base/folderreader.h"
#include "site/comparedside.h"
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
#include <unordered_set>

namespace luma {

namespace {

// Two threads hide each other's waiting for the disk or the server; more only quarrel.
constexpr unsigned workerCount = 2;

// On which side a folder is to be read.
enum class Side { Both, SendingOnly, ReceivingOnly };

struct PendingFolder
{
    std::string relativePath;
    Side side = Side::Both;
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

// One of the threads at work: visits folders and keeps what it finds to itself.
class Worker final
{
public:
    // Without `receiving` only the sending side is read.
    Worker(const ComparedSide& sending, const ComparedSide* receiving, bool findsOnlyThere,
           const IgnoredNames& ignored, FolderQueue& queue, const WorkItem& item)
        : m_sendingSide(sending),
          m_receivingSide(receiving),
          m_sendingRoot(sending.root),
          m_receivingRoot(receiving ? &receiving->root : nullptr),
          m_findsOnlyThere(findsOnlyThere),
          m_ignored(ignored),
          m_queue(queue),
          m_item(item)
    {}

    void run()
    {
        while (const std::optional<PendingFolder> folder = m_queue.take()) {
            if (!m_item.isCancelled() && isOnShare())
                visitOnShare(*folder);
            else if (!m_item.isCancelled() && folder->side == Side::ReceivingOnly)
                visitOnlyThere(folder->relativePath);
            else if (!m_item.isCancelled())
                visit(*folder);
            m_queue.add(m_subfolders);
            m_queue.finish();
        }
    }

    FoundFiles found;

private:
    const ComparedSide& m_sendingSide;
    const ComparedSide* m_receivingSide;
    const FileDescriptor& m_sendingRoot;
    const FileDescriptor* m_receivingRoot;
    bool m_findsOnlyThere;
    const IgnoredNames& m_ignored;
    FolderQueue& m_queue;
    const WorkItem& m_item;
    std::string m_folder;       // the relative path of the folder being visited
    FileDescriptor m_receiving; // empty where the receiving side has no such folder
    std::vector<PendingFolder> m_subfolders;
    std::unordered_set<std::string> m_names; // of the sending folder; empty unless m_findsOnlyThere

    [[nodiscard]] bool isOnShare() const
    {
        return m_sendingSide.shareLister || (m_receivingSide && m_receivingSide->shareLister);
    }
    void visitOnShare(const PendingFolder& folder);
    void compareItems(const ComparedSide::Items& sending, ComparedSide::Items& receiving, bool hasReceiving);
    void addOnlyThere(const ComparedSide::Items& receiving);
    void addEmptyFolder(const FileDescriptor& root, bool isOnlyThere);
    void visit(const PendingFolder& folder);
    void visitOnlyThere(const std::string& folder);
    Result<void> openReceiving(const PendingFolder& folder);
    void examine(int sending, const FolderReader::Entry& entry);
    void compare(const char* name, int sending, const struct stat& sent);
    void findOnlyThere();
    void examineOnlyThere(int receiving, const FolderReader::Entry& entry);
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

void Worker::addProblem(const char* name, std::errc code)
{
    const std::string path = pathOf(name);
    found.problems.push_back(shownName(path.empty() ? "." : path) + ": " + systemReason(code));
}

// Whether a folder that can't be listed counts as one that isn't there.
bool isAbsent(const Error& error)
{
    return error.code == std::errc::no_such_file_or_directory || error.code == std::errc::not_a_directory ||
           error.code == std::errc::too_many_symbolic_link_levels;
}

// An error when the folder exists on the receiving side but can't be compared with.
Result<void> Worker::openReceiving(const PendingFolder& folder)
{
    m_receiving.reset();
    if (!m_receivingRoot || folder.side == Side::SendingOnly)
        return {};
    auto opened = openFolderBelow(*m_receivingRoot, folder.relativePath);
    if (opened) {
        m_receiving = *std::move(opened);
        return {};
    }
    return isAbsent(opened.error()) ? Result<void>() : opened.error();
}

// Reads both folders whole, for a look at a single file takes a request of its own.
void Worker::visitOnShare(const PendingFolder& folder)
{
    m_folder = folder.relativePath;
    Result<ComparedSide::Items> sending = ComparedSide::Items();
    Result<ComparedSide::Items> receiving = ComparedSide::Items();
    if (folder.side != Side::ReceivingOnly)
        sending = m_sendingSide.items(m_folder);
    if (folder.side != Side::SendingOnly && m_receivingSide)
        receiving = m_receivingSide->items(m_folder);
    if (!sending) {
        // Not found: removed since its name was read.
        if (sending.error().code != std::errc::no_such_file_or_directory)
            addProblem("", sending.error().code);
        return;
    }
    if (folder.side != Side::ReceivingOnly)
        found.folders.push_back(m_folder);
    if (!receiving && (folder.side == Side::ReceivingOnly || !isAbsent(receiving.error()))) {
        addProblem("", receiving.error().code);
        return;
    }
    if (folder.side == Side::ReceivingOnly) {
        found.foldersOnlyThere.push_back(m_folder);
        if (receiving->empty())
            addEmptyFolder(*m_receivingRoot, true);
    } else if (sending->empty() && !m_receivingRoot) {
        addEmptyFolder(m_sendingRoot, false);
    }
    const bool hasReceiving = folder.side == Side::Both && m_receivingSide && receiving;
    ComparedSide::Items none;
    compareItems(*sending, receiving ? *receiving : none, hasReceiving);
    if (receiving && m_findsOnlyThere)
        addOnlyThere(*receiving);
}

void Worker::addEmptyFolder(const FileDescriptor& root, bool isOnlyThere)
{
    struct stat status = {};
    const auto folder = openFolderBelow(root, m_folder);
    if (!folder || ::fstat(folder->get(), &status) != 0)
        return;
    if (isOnlyThere)
        found.files.push_back({m_folder, {}, FileFacts::of(status)});
    else
        found.emptyFolders.push_back({m_folder, FileFacts::of(status), {}});
}

// Leaves in `receiving` what only that side has.
void Worker::compareItems(const ComparedSide::Items& sending, ComparedSide::Items& receiving,
                          bool hasReceiving)
{
    for (const auto& [name, sent] : sending) {
        auto there = receiving.extract(name);
        const bool isFolder = sent.type == FileFacts::Type::Folder;
        if (m_ignored.match(m_folder, name.c_str(), isFolder)) {
            ++found.ignored;
        } else if (isFolder) {
            const bool isThere =
                hasReceiving && !there.empty() && there.mapped().type == FileFacts::Type::Folder;
            m_subfolders.push_back({pathOf(name), isThere ? Side::Both : Side::SendingOnly});
        } else if (sent.exists()) {
            FileFacts received = there.empty() ? FileFacts() : std::move(there.mapped());
            if (sent.isSameFile(received))
                found.same.add(m_folder, name, sent);
            else
                found.files.push_back({pathOf(name), sent, std::move(received)});
        }
    }
}

void Worker::addOnlyThere(const ComparedSide::Items& receiving)
{
    for (const auto& [name, received] : receiving) {
        const bool isFolder = received.type == FileFacts::Type::Folder;
        if (m_ignored.match(m_folder, name.c_str(), isFolder))
            continue;
        if (isFolder)
            m_subfolders.push_back({pathOf(name), Side::ReceivingOnly});
        else if (received.exists())
            found.files.push_back({pathOf(name), {}, received});
    }
}

void Worker::visit(const PendingFolder& folder)
{
    m_folder = folder.relativePath;
    m_names.clear();
    auto sending = readFolderBelow(m_sendingRoot, m_folder);
    if (!sending) {
        // Not found: removed since its name was read.
        if (sending.error().code != std::errc::no_such_file_or_directory)
            addProblem("", sending.error().code);
        return;
    }
    found.folders.push_back(m_folder);
    if (const auto opened = openReceiving(folder); !opened) {
        addProblem("", opened.error().code);
        return;
    }
    bool isEmpty = true;
    while (const auto entry = sending->next()) {
        if (m_item.isCancelled())
            return;
        isEmpty = false;
        examine(sending->descriptor(), *entry);
    }
    struct stat status = {};
    if (sending->error())
        addProblem("", sending->error()->code);
    else if (isEmpty && !m_receivingRoot && ::fstat(sending->descriptor(), &status) == 0)
        found.emptyFolders.push_back({m_folder, FileFacts::of(status), {}});
    else if (m_findsOnlyThere && m_receiving)
        findOnlyThere();
}

void Worker::examine(int sending, const FolderReader::Entry& entry)
{
    const char* name = entry.name();
    if (m_findsOnlyThere)
        m_names.insert(name);
    struct stat sent = {};
    if (!entry.isListedAsFolder() && ::fstatat(sending, name, &sent, AT_SYMLINK_NOFOLLOW) != 0) {
        if (errno != ENOENT)
            addProblem(name, std::errc(errno));
        return;
    }
    const bool isFolder = entry.isListedAsFolder() || S_ISDIR(sent.st_mode);
    if (m_ignored.match(m_folder, name, isFolder))
        ++found.ignored;
    else if (isFolder)
        m_subfolders.push_back({pathOf(name), m_receiving ? Side::Both : Side::SendingOnly});
    else if (S_ISREG(sent.st_mode) || S_ISLNK(sent.st_mode))
        compare(name, sending, sent);
}

void Worker::compare(const char* name, int sending, const struct stat& sent)
{
    FileFacts receivedFacts;
    struct stat received = {};
    if (m_receiving && ::fstatat(m_receiving.get(), name, &received, AT_SYMLINK_NOFOLLOW) == 0) {
        receivedFacts = factsOf(m_receiving.get(), name, received);
    } else if (m_receiving && errno != ENOENT) {
        addProblem(name, std::errc(errno));
        return;
    }
    FileFacts sentFacts = factsOf(sending, name, sent);
    if (sentFacts.isSameFile(receivedFacts))
        found.same.add(m_folder, name, sentFacts);
    else
        found.files.push_back({pathOf(name), std::move(sentFacts), std::move(receivedFacts)});
}

// What the receiving folder has besides the names of the sending one.
void Worker::findOnlyThere()
{
    auto receiving = FolderReader::open(std::move(m_receiving), m_folder);
    if (!receiving) {
        addProblem("", receiving.error().code);
        return;
    }
    while (const auto entry = receiving->next()) {
        if (m_item.isCancelled())
            return;
        if (!m_names.contains(entry->name()))
            examineOnlyThere(receiving->descriptor(), *entry);
    }
    if (receiving->error())
        addProblem("", receiving->error()->code);
}

void Worker::visitOnlyThere(const std::string& folder)
{
    m_folder = folder;
    auto receiving = readFolderBelow(*m_receivingRoot, m_folder);
    if (!receiving) {
        addProblem("", receiving.error().code);
        return;
    }
    bool isEmpty = true;
    while (const auto entry = receiving->next()) {
        if (m_item.isCancelled())
            return;
        isEmpty = false;
        examineOnlyThere(receiving->descriptor(), *entry);
    }
    if (receiving->error()) {
        addProblem("", receiving->error()->code);
        return;
    }
    found.foldersOnlyThere.push_back(m_folder);
    struct stat status = {};
    if (isEmpty && ::fstat(receiving->descriptor(), &status) == 0)
        found.files.push_back({m_folder, {}, FileFacts::of(status)});
}

void Worker::examineOnlyThere(int receiving, const FolderReader::Entry& entry)
{
    const char* name = entry.name();
    struct stat received = {};
    if (::fstatat(receiving, name, &received, AT_SYMLINK_NOFOLLOW) != 0) {
        if (errno != ENOENT)
            addProblem(name, std::errc(errno));
        return;
    }
    const bool isFolder = S_ISDIR(received.st_mode);
    if (m_ignored.match(m_folder, name, isFolder))
        return;
    if (isFolder)
        m_subfolders.push_back({pathOf(name), Side::ReceivingOnly});
    else if (S_ISREG(received.st_mode) || S_ISLNK(received.st_mode))
        found.files.push_back({pathOf(name), {}, factsOf(receiving, name, received)});
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

// Whether the folder has anything that is not ignored; true also when it can't be read.
bool hasItems(const FileDescriptor& root, const IgnoredNames& ignored)
{
    auto reader = readFolderBelow(root, {});
    if (!reader)
        return true;
    while (const auto entry = reader->next()) {
        if (!ignored.match({}, entry->name(), entry->type() == FolderReader::Type::Folder))
            return true;
    }
    return reader->error().has_value();
}

} // namespace

FolderComparison::FolderComparison(SyncFolders folders, IgnoredNames ignored, Deletions deletions)
    : m_folders(std::move(folders)), m_ignored(std::move(ignored)), m_deletions(deletions)
{}

Result<FoundFiles> FolderComparison::find(const WorkItem& item) const
{
    const auto sending = ComparedSide::open(m_folders.sending);
    if (!sending)
        return sending.error();
    if (m_folders.receiving.empty())
        return findBelow(*sending, nullptr, item);
    const auto receiving = ComparedSide::open(m_folders.receiving);
    if (!receiving)
        return receiving.error();
    return findBelow(*sending, &*receiving, item);
}

FoundFiles FolderComparison::findBelow(const ComparedSide& sending, const ComparedSide* receiving,
                                       const WorkItem& item) const
{
    FolderQueue queue;
    std::vector<PendingFolder> first(1);
    queue.add(first);
    FoundFiles all;
    std::mutex mutex;
    runInParallel(workerCount, [&] {
        Worker worker(sending, receiving, m_deletions == Deletions::Listed, m_ignored, queue, item);
        worker.run();
        const std::scoped_lock lock(mutex);
        all.same.append(std::move(worker.found.same));
        append(all.files, worker.found.files);
        append(all.folders, worker.found.folders);
        append(all.emptyFolders, worker.found.emptyFolders);
        append(all.foldersOnlyThere, worker.found.foldersOnlyThere);
        append(all.problems, worker.found.problems);
        all.ignored += worker.found.ignored;
    });
    all.isComplete = m_deletions == Deletions::Listed && all.problems.empty() && !item.isCancelled();
    if (receiving) {
        all.receivingIsEmpty = !hasItems(receiving->root, m_ignored);
        all.freeBytes = freeBytesAt(receiving->root);
    }
    return all;
}

Result<ComparisonReport> FolderComparison::run(const WorkItem& item, PublishedFiles before,
                                               Direction direction) const
{
    auto found = find(item);
    if (!found)
        return found.error();
    ComparisonReport report = judged(*std::move(found), std::move(before), direction);
    const auto folders = std::make_shared<const SyncFolders>(m_folders);
    for (SyncRow& row : report.rows)
        row.folders = folders;
    return report;
}

} // namespace luma
