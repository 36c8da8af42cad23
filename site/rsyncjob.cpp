// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/rsyncjob.h"

#include "base/filedescriptor.h"
#include "base/pathbelow.h"
#include "base/usertext.h"
#include "site/folderaccess.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <functional>
#include <iterator>
#include <map>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace luma {

namespace {

// rsync(1), EXIT VALUES: some files failed; some files were not there.
constexpr int partialTransfer = 23;
constexpr int vanishedFiles = 24;

using Words = std::vector<std::string>;
using RowNumbers = std::vector<std::size_t>;

// What only the remote side has, as deletions of an upload.
void addOnlyRemote(FoundFiles& found, const RsyncListing& remote)
{
    std::unordered_set<std::string_view> local(found.folders.begin(), found.folders.end());
    for (const FilePair& pair : found.files)
        local.insert(pair.path);
    std::unordered_set<std::string_view> withItems;
    for (const auto& [path, facts] : remote.items)
        withItems.insert(folderPart(path));
    for (const std::string& path : remote.hidden)
        withItems.insert(folderPart(path));
    std::vector<FilePair> added;
    for (const auto& [path, facts] : remote.items) {
        if (local.contains(path))
            continue;
        const bool isFolder = facts.type == FileFacts::Type::Folder;
        if (isFolder)
            found.foldersOnlyThere.push_back(path);
        if (!isFolder || !withItems.contains(path))
            added.push_back({path, {}, facts});
    }
    std::move(added.begin(), added.end(), std::back_inserter(found.files));
}

FoundFiles pairedForUpload(FoundFiles local, const RsyncListing& remote, Deletions deletions)
{
    for (FilePair& pair : local.files) {
        if (const auto there = remote.items.find(pair.path); there != remote.items.end())
            pair.received = there->second;
    }
    local.receivingIsEmpty = remote.items.size() <= 1;
    if (deletions == Deletions::Listed)
        addOnlyRemote(local, remote);
    return local;
}

FoundFiles pairedForDownload(FoundFiles local, const RsyncListing& remote, Deletions deletions)
{
    FoundFiles found;
    found.problems = std::move(local.problems);
    found.ignored = remote.hidden.size();
    found.receivingIsEmpty = local.files.empty() && local.folders.size() <= 1;
    std::unordered_map<std::string_view, FilePair*> here;
    for (FilePair& pair : local.files)
        here.emplace(pair.path, &pair);
    for (const auto& [path, facts] : remote.items) {
        if (facts.type == FileFacts::Type::Folder) {
            found.folders.push_back(path);
            continue;
        }
        FilePair pair = {path, facts, {}};
        if (const auto same = here.find(path); same != here.end())
            pair.received = std::move(same->second->sent);
        found.files.push_back(std::move(pair));
    }
    if (deletions == Deletions::Ignored)
        return found;
    for (std::vector<FilePair>* const pairs : {&local.files, &local.emptyFolders}) {
        for (FilePair& pair : *pairs) {
            if (!remote.items.contains(pair.path))
                found.files.push_back({std::move(pair.path), {}, std::move(pair.sent)});
        }
    }
    for (std::string& folder : local.folders) {
        if (!remote.items.contains(folder))
            found.foldersOnlyThere.push_back(std::move(folder));
    }
    return found;
}

std::vector<std::string_view> pathsOf(const FoundFiles& local)
{
    std::vector<std::string_view> paths;
    for (const FilePair& pair : local.files)
        paths.emplace_back(pair.path);
    return paths;
}

// Follows the log of a run that is sending files, and passes on what it says. What a killed run has left of the log,
// the site's next one overwrites.
class TransferLog final
{
public:
    TransferLog(const std::string& site, SyncProgress& done, const OnProgress& progress)
        : m_done(done), m_progress(progress)
    {
        if (site.empty() || !progress)
            return;
        m_path = publishingFile(site, ".log");
        m_file.reset(::open(m_path.c_str(), O_RDONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0600));
    }
    TransferLog(const TransferLog&) = delete;
    TransferLog& operator=(const TransferLog&) = delete;
    ~TransferLog()
    {
        if (m_file)
            ::unlink(m_path.c_str());
    }

    [[nodiscard]] Words wordsFor(const Words& words) const
    {
        return m_file ? RsyncCommand::logged(words, m_path) : words;
    }

    void follow()
    {
        std::array<char, 65536> buffer;
        for (ssize_t got = 1; m_file && got > 0;) {
            got = ::read(m_file.get(), buffer.data(), buffer.size());
            m_rest.append(buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
        }
        const std::size_t end = m_rest.rfind('\n') + 1; // 0 without one
        if (end == 0)
            return;
        readRsyncLog(std::string_view(m_rest).substr(0, end), m_done);
        m_rest.erase(0, end);
        m_progress(m_done);
    }

private:
    SyncProgress& m_done;
    const OnProgress& m_progress;
    std::string m_path;
    FileDescriptor m_file;
    std::string m_rest; // the beginning of a line
};

// What a transfer asks the server at its end. After a stop, an answer is awaited only for a moment, and a server that
// has not answered is asked no more.
class LastQuestions final
{
public:
    LastQuestions(const ProgramRunner& runProgram, const StillWanted& stillWanted,
                  const StillWanted& mayCheck)
        : m_runProgram(runProgram), m_stillWanted(stillWanted), m_mayCheck(mayCheck)
    {}

    // None if the server doesn't answer, or must not be asked.
    std::optional<ProgramResult> ask(const Words& words, const std::vector<std::string>& paths)
    {
        if (m_isSilent || !isWanted(m_mayCheck))
            return std::nullopt;
        constexpr std::chrono::seconds moment(15);
        const auto end = std::chrono::steady_clock::now() + moment;
        ProgramResult result = m_runProgram(words, RsyncCommand::nameList(paths), [&] {
            return isWanted(m_mayCheck) &&
                   (isWanted(m_stillWanted) || std::chrono::steady_clock::now() < end);
        });
        m_isSilent = !hasAnswered(result);
        return m_isSilent ? std::nullopt : std::optional(std::move(result));
    }

private:
    const ProgramRunner& m_runProgram;
    const StillWanted& m_stillWanted;
    const StillWanted& m_mayCheck;
    bool m_isSilent = false;
};

// One transfer of some rows.
class Run final
{
public:
    Run(const ProgramRunner& runProgram, const std::vector<SyncRow>& rows, const StillWanted& stillWanted,
        LastQuestions& questions, const std::string& site, const OnProgress& progress, RsyncReport& report)
        : m_runProgram(runProgram),
          m_rows(rows),
          m_stillWanted(stillWanted),
          m_questions(questions),
          m_site(site),
          m_progress(progress),
          m_report(report)
    {}

    // The rows that are done are added to the report. False if the next run would fail too.
    bool transfer(const Words& words, const RowNumbers& numbers);
    bool deleteRows(const Words& words, const std::vector<std::string>& foldersOnlyThere);

private:
    const ProgramRunner& m_runProgram;
    const std::vector<SyncRow>& m_rows;
    const StillWanted& m_stillWanted;
    LastQuestions& m_questions;
    const std::string& m_site;
    const OnProgress& m_progress;
    RsyncReport& m_report;
    SyncProgress m_sent;

    bool run(const Words& words, const RowNumbers& numbers, bool mayMissFiles);
    bool keepNamed(const RowNumbers& numbers, const std::string& output);
    void check(const Words& words, const RowNumbers& numbers, const std::string& output);
    void addProblems(const ProgramResult& result);
};

void Run::addProblems(const ProgramResult& result)
{
    if (!isWanted(m_stillWanted))
        return;
    for (std::string& reason : rsyncReasons(result))
        m_report.problems.push_back(std::move(reason));
}

bool Run::run(const Words& words, const RowNumbers& numbers, bool mayMissFiles)
{
    if (numbers.empty())
        return true;
    if (!isWanted(m_stillWanted))
        return false;
    std::vector<std::string> paths;
    for (const std::size_t row : numbers)
        paths.push_back(m_rows[row].relativePath);
    TransferLog log(m_site, m_sent, m_progress);
    const ProgramResult result = m_runProgram(log.wordsFor(words), RsyncCommand::nameList(paths), [&] {
        log.follow();
        return isWanted(m_stillWanted);
    });
    log.follow();
    if (result.status == 0 && !mayMissFiles)
        return keepNamed(numbers, result.output);
    if (result.status == 0 || (mayMissFiles && result.status == vanishedFiles)) {
        m_report.done.insert(m_report.done.end(), numbers.begin(), numbers.end());
        return true;
    }
    addProblems(result);
    check(words, numbers, result.output);
    return result.status == partialTransfer || result.status == vanishedFiles;
}

// After a run without a failure: rsync leaves out, in silence, what is newer on the receiving side by now.
bool Run::keepNamed(const RowNumbers& numbers, const std::string& output)
{
    const std::vector<std::string> lines = readRsyncNames(output);
    const std::unordered_set<std::string_view> named(lines.begin(), lines.end());
    for (const std::size_t row : numbers) {
        if (named.contains(m_rows[row].relativePath))
            m_report.done.push_back(row);
        else
            m_report.problems.push_back(m_rows[row].displayName +
                                        ": the receiving side has been changed since the comparison");
    }
    return true;
}

// Keeps those rows that rsync has named and no longer wants to do.
void Run::check(const Words& words, const RowNumbers& numbers, const std::string& output)
{
    const std::vector<std::string> named = readRsyncNames(output);
    if (named.empty())
        return;
    const auto result = m_questions.ask(RsyncCommand::dryRunOf(words), named);
    if (!result)
        return;
    std::unordered_set<std::string> done(named.begin(), named.end());
    for (const std::string& path : readRsyncNames(result->output))
        done.erase(path);
    std::copy_if(numbers.begin(), numbers.end(), std::back_inserter(m_report.done),
                 [&](std::size_t row) { return done.contains(m_rows[row].relativePath); });
}

bool Run::transfer(const Words& words, const RowNumbers& numbers)
{
    return run(words, numbers, false);
}

bool Run::deleteRows(const Words& words, const std::vector<std::string>& foldersOnlyThere)
{
    const RowNumbers numbers = tickedDeletions(m_rows);
    RowNumbers files;
    RowNumbers folders;
    for (const std::size_t row : numbers) {
        const bool isFolder = m_rows[row].received.type == FileFacts::Type::Folder;
        (isFolder ? folders : files).push_back(row);
    }
    // rsync warns of the missing folders of missing files.
    if (!run(words, files, true))
        return false;
    // One run for each depth, the deepest first: within a run, rsync tries a folder before those in it.
    std::map<std::ptrdiff_t, std::vector<std::string>, std::greater<>> byDepth;
    for (std::string& folder : emptiedFolders(m_rows, numbers, foldersOnlyThere))
        byDepth[std::count(folder.begin(), folder.end(), '/')].push_back(std::move(folder));
    for (const auto& [depth, names] : byDepth) {
        const ProgramResult result = m_runProgram(words, RsyncCommand::nameList(names), m_stillWanted);
        if (result.status != 0 && result.status != vanishedFiles) {
            addProblems(result);
            return false;
        }
    }
    m_report.done.insert(m_report.done.end(), folders.begin(), folders.end());
    return true;
}

void lookAgainHere(const RsyncCommand& command, const std::vector<SyncRow>& rows, RsyncReport& report)
{
    for (std::size_t i = 0; i < report.done.size(); ++i) {
        struct stat status = {};
        const std::string path = command.arguments().local + rows[report.done[i]].relativePath;
        if (::lstat(path.c_str(), &status) == 0)
            report.received[i] = FileFacts::of(status);
    }
}

// A server may not keep what it was sent. If it can't be asked, it is taken to have kept it.
void lookAgain(const RsyncCommand& command, const std::vector<SyncRow>& rows, RsyncReport& report,
               LastQuestions& questions)
{
    Words paths;
    for (const std::size_t row : report.done) {
        report.received.push_back(rows[row].sent);
        if (rows[row].kind != SyncKind::Delete)
            paths.push_back(rows[row].relativePath);
    }
    if (command.arguments().direction == Direction::Download) {
        lookAgainHere(command, rows, report);
        return;
    }
    const auto result =
        paths.empty() ? std::nullopt : questions.ask(command.listingOfNames(IgnoredNames()), paths);
    if (!result)
        return;
    const RsyncListing listing = readRsyncListing(result->output);
    for (std::size_t i = 0; i < report.done.size(); ++i) {
        if (const auto now = listing.items.find(rows[report.done[i]].relativePath);
            now != listing.items.end())
            report.received[i] = now->second;
    }
}

} // namespace

RsyncJob::RsyncJob(RsyncArguments arguments, ProgramRunner runProgram)
    : m_command(std::move(arguments)), m_runProgram(std::move(runProgram))
{}

Result<ComparisonReport> RsyncJob::compare(const IgnoredNames& ignored, Deletions deletions,
                                           const WorkItem& item, PublishedFiles before) const
{
    if (!m_command.isComplete())
        return Error{
            userText(QT_TRANSLATE_NOOP("luma::Engines", "The site lacks a path, a server or a user name"))};
    auto local =
        FolderComparison({.sending = m_command.arguments().local, .receiving = {}}, ignored).find(item);
    if (!local)
        return local.error();
    return compareWith(*std::move(local), ignored, deletions, item, std::move(before));
}

Result<ComparisonReport> RsyncJob::compareWith(FoundFiles local, const IgnoredNames& ignored,
                                               Deletions deletions, const WorkItem& item,
                                               PublishedFiles before) const
{
    const bool isUpload = m_command.arguments().direction == Direction::Upload;
    const bool listsAll = !isUpload || deletions == Deletions::Listed;
    Words folders;
    for (const std::string& folder : local.folders)
        folders.push_back(folder + '/');
    const ProgramResult result = m_runProgram(
        listsAll ? m_command.listing(ignored) : m_command.listingOfNames(ignored),
        listsAll ? std::string() : RsyncCommand::nameList(folders), [&item] { return !item.isCancelled(); });
    const RsyncListing remote = readRsyncListing(result.output);
    if (result.status != 0) {
        Words problems = rsyncReasons(result);
        if (!hasAnswered(result) || remote.items.empty())
            return Error{std::move(problems.back())};
        std::move(problems.begin(), problems.end(), std::back_inserter(local.problems));
    }
    // What could not be read must not count as deleted.
    if (!local.problems.empty())
        deletions = Deletions::Ignored;
    RsyncLeftovers leftovers(before.site(), m_command.arguments().direction,
                             isUpload ? rsyncTemporaries(pathsOf(remote), pathsOf(local))
                                      : rsyncTemporaries(pathsOf(local), pathsOf(remote)));
    FoundFiles found = isUpload ? pairedForUpload(std::move(local), remote, deletions)
                                : pairedForDownload(std::move(local), remote, deletions);
    found.freeBytes = freeBytes(found, item);
    found.isComplete = deletions == Deletions::Listed && !item.isCancelled();
    ComparisonReport report = judged(std::move(found), std::move(before), m_command.arguments().direction);
    report.leftovers = std::move(leftovers);
    return report;
}

// Of the receiving side. A server is asked only before a transfer that might fill its disk.
std::optional<std::int64_t> RsyncJob::freeBytes(const FoundFiles& found, const WorkItem& item) const
{
    if (m_command.arguments().direction == Direction::Download) {
        const auto folder = openSiteFolder(m_command.arguments().local);
        return folder ? freeBytesAt(*folder) : std::nullopt;
    }
    constexpr std::int64_t worthAsking = 10'000'000;
    std::int64_t bytes = 0;
    for (const FilePair& pair : found.files)
        bytes += pair.received.exists() && pair.sent.time <= pair.received.time ? 0 : pair.sent.size;
    const Words words = m_command.freeSpace();
    if (bytes < worthAsking || words.empty())
        return std::nullopt;
    return readFreeSpace(m_runProgram(words, {}, [&item] { return !item.isCancelled(); }).output);
}

RsyncReport RsyncJob::transfer(const std::vector<SyncRow>& rows,
                               const std::vector<std::string>& foldersOnlyThere,
                               const StillWanted& stillWanted, const StillWanted& mayCheck,
                               const OnProgress& progress, const std::optional<KeptPublish>& kept,
                               const RsyncLeftovers& leftovers) const
{
    using Overwrites = RsyncCommand::Overwrites;
    RsyncCommand command = m_command;
    if (kept)
        command.keep(*kept);
    RsyncReport report;
    leftovers.noteBegin();
    if (!leftovers.paths().empty())
        (void)m_runProgram(m_command.deletion(), RsyncCommand::nameList(leftovers.paths()), stillWanted);
    LastQuestions questions(m_runProgram, stillWanted, mayCheck);
    Run run(m_runProgram, rows, stillWanted, questions, leftovers.site(), progress, report);
    const RowNumbers order = transferOrder(rows);
    bool goesOn = true;
    for (const bool pages : {false, true}) {
        for (const Overwrites overwrites : {Overwrites::OlderFiles, Overwrites::AllFiles}) {
            RowNumbers numbers;
            std::copy_if(order.begin(), order.end(), std::back_inserter(numbers), [&](std::size_t row) {
                const bool replacesAll = rows[row].kind != SyncKind::New && rows[row].kind != SyncKind::Newer;
                return isPage(rows[row].relativePath) == pages &&
                       replacesAll == (overwrites == Overwrites::AllFiles);
            });
            goesOn = goesOn && run.transfer(command.transfer(overwrites), numbers);
        }
    }
    if (goesOn && report.problems.empty())
        run.deleteRows(command.deletion(), foldersOnlyThere);
    std::sort(report.done.begin(), report.done.end());
    // rsync only says that some folder can't be made.
    const auto isFileError = [](const std::string& line) {
        return line.find("(code 11)") != std::string::npos;
    };
    if (kept && std::any_of(report.problems.begin(), report.problems.end(), isFileError))
        report.problems.insert(
            report.problems.begin(),
            userText(
                QT_TRANSLATE_NOOP("luma::Engines",
                                  "What is replaced can't be kept in \"%1\"; choose another folder for it"),
                {kept->place.fromReceiving()}));
    lookAgain(m_command, rows, report, questions);
    if (report.problems.empty() && isWanted(stillWanted))
        leftovers.noteEnd();
    return report;
}

} // namespace luma
