// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/keptversions.h"

#include "base/usertext.h"
#include "site/filetransfer.h"
#include "site/foldercomparison.h"
#include "site/keptfolder.h"
#include "site/rsyncjob.h"
#include "site/rsyncleftovers.h"
#include "site/shownname.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <map>

namespace luma {

namespace fs = std::filesystem;

namespace {

StillWanted wantedBy(const WorkItem& item)
{
    return [&item] { return !item.isCancelled(); };
}

bool isByPath(const FilePair& a, const FilePair& b)
{
    return a.path < b.path;
}

bool areSame(const FileFacts& a, const FileFacts& b)
{
    return a.isSameFile(b) || (a.type == FileFacts::Type::Link && b.type == a.type && a.target == b.target);
}

// `published`: how the last publish left the file.
SyncRow rowFor(const FilePair& pair, const std::optional<PublishedFiles::Pair>& published)
{
    SyncRow row = {.kind = SyncKind::Different,
                   .reason = SyncReason::Replaced,
                   .displayName = shownName(pair.path),
                   .relativePath = pair.path,
                   .sent = pair.sent,
                   .received = pair.received};
    if (!pair.received.exists()) {
        row.kind = SyncKind::New;
        row.reason = SyncReason::Deleted;
    } else if (pair.received.type == FileFacts::Type::Folder) {
        row.reason = SyncReason::FolderInPlace;
    } else if (!published || !pair.received.isSameFile(published->received)) {
        row.reason = SyncReason::ChangedThere;
    }
    row.select = !row.isMarked();
    return row;
}

Error listingError(const ProgramResult& result)
{
    return Error{rsyncReasons(result).back()};
}

// Where files of a server wait on their way back to it. What a killed run has left, the site's next one removes.
class FetchedFiles final
{
public:
    explicit FetchedFiles(const std::string& site) : m_folder(publishingFile(site, ".fetched"))
    {
        remove();
        std::error_code error;
        fs::create_directories(m_folder, error);
        fs::permissions(m_folder, fs::perms::owner_all, error);
    }
    FetchedFiles(const FetchedFiles&) = delete;
    FetchedFiles& operator=(const FetchedFiles&) = delete;
    ~FetchedFiles() { remove(); }

    [[nodiscard]] const fs::path& folder() const { return m_folder; }

private:
    fs::path m_folder;

    void remove() const
    {
        std::error_code error;
        fs::remove_all(m_folder, error);
    }
};

} // namespace

Result<KeptVersions> KeptVersions::here(const std::string& receiving, const KeepChoice& choice)
{
    auto place = KeptPlace::of(receiving, choice);
    if (!place)
        return place.error();
    KeptVersions versions(*std::move(place));
    versions.m_receiving = receiving;
    return versions;
}

Result<KeptVersions> KeptVersions::onServer(RsyncArguments server, ProgramRunner runProgram,
                                            const KeepChoice& choice)
{
    auto place = KeptPlace::of(server.remoteFolder(), choice);
    if (!place)
        return place.error();
    KeptVersions versions(*std::move(place));
    versions.m_server = std::move(server);
    versions.m_server->direction = Direction::Upload;
    versions.m_runProgram = std::move(runProgram);
    return versions;
}

std::string KeptVersions::folderOf(const std::string& publish) const
{
    return m_place.parent() + '/' + m_place.name() + '/' + publish;
}

Result<std::vector<KeptFiles>> KeptVersions::list(const WorkItem& item) const
{
    auto all = m_server ? listOnServer(wantedBy(item)) : listHere(item);
    if (!all)
        return all;
    std::sort(all->begin(), all->end(),
              [](const KeptFiles& a, const KeptFiles& b) { return b.publish < a.publish; });
    for (KeptFiles& kept : *all)
        std::sort(kept.files.begin(), kept.files.end(), isByPath);
    return all;
}

Result<std::vector<KeptFiles>> KeptVersions::listHere(const WorkItem& item) const
{
    const auto names = KeptFolder(m_place).publishes();
    if (!names)
        return names.error();
    std::vector<KeptFiles> all;
    for (const std::string& name : *names) {
        auto found = FolderComparison({.sending = folderOf(name), .receiving = {}}).find(item);
        if (!found)
            return found.error();
        if (!found->files.empty())
            all.push_back({name, *KeptPlace::timeOf(name), std::move(found->files)});
    }
    return all;
}

Result<std::vector<KeptFiles>> KeptVersions::listOnServer(const StillWanted& stillWanted) const
{
    RsyncArguments parent = *m_server;
    parent.remote = m_server->remoteWith(m_place.parent());
    const ProgramResult result = m_runProgram(RsyncCommand(parent).listingBelowNames(),
                                              RsyncCommand::nameList({m_place.name()}), stillWanted);
    RsyncListing listing = readRsyncListing(result.output);
    if (result.status != 0)
        return listingError(result);
    std::map<std::string, KeptFiles> byName;
    const std::string prefix = m_place.name() + '/';
    for (auto& [path, facts] : listing.items) {
        if (!path.starts_with(prefix) || facts.type == FileFacts::Type::Folder)
            continue;
        const std::size_t end = path.find('/', prefix.size());
        if (end == std::string::npos)
            continue;
        const std::string name = path.substr(prefix.size(), end - prefix.size());
        const auto time = KeptPlace::timeOf(name);
        if (!time)
            continue;
        KeptFiles& kept = byName.try_emplace(name, KeptFiles{name, *time, {}}).first->second;
        kept.files.push_back({path.substr(end + 1), std::move(facts), {}});
    }
    std::vector<KeptFiles> all;
    all.reserve(byName.size());
    for (auto& [name, kept] : byName)
        all.push_back(std::move(kept));
    return all;
}

Result<std::vector<SyncRow>> KeptVersions::rows(const KeptFiles& kept, const PublishedFiles& published,
                                                Direction direction, const WorkItem& item) const
{
    auto pairs = m_server ? pairsOnServer(kept, item) : pairsHere(kept, item);
    if (!pairs)
        return pairs.error();
    std::sort(pairs->begin(), pairs->end(), isByPath);
    std::vector<SyncRow> rows;
    for (const FilePair& pair : *pairs) {
        if (!areSame(pair.sent, pair.received))
            rows.push_back(rowFor(pair, published.find(pair.path, direction)));
    }
    return rows;
}

Result<std::vector<FilePair>> KeptVersions::pairsHere(const KeptFiles& kept, const WorkItem& item) const
{
    auto found = FolderComparison({.sending = folderOf(kept.publish), .receiving = m_receiving}).find(item);
    if (!found)
        return found.error();
    if (!found->problems.empty())
        return Error{std::move(found->problems.front())};
    return std::move(found->files);
}

Result<std::vector<FilePair>> KeptVersions::pairsOnServer(const KeptFiles& kept, const WorkItem& item) const
{
    std::vector<std::string> paths;
    for (const FilePair& file : kept.files)
        paths.push_back(file.path);
    const ProgramResult result = m_runProgram(RsyncCommand(*m_server).listingOfNames(IgnoredNames()),
                                              RsyncCommand::nameList(paths), wantedBy(item));
    if (result.status != 0)
        return listingError(result);
    const RsyncListing now = readRsyncListing(result.output);
    std::vector<FilePair> pairs = kept.files;
    for (FilePair& pair : pairs) {
        if (const auto there = now.items.find(pair.path); there != now.items.end())
            pair.received = there->second;
    }
    return pairs;
}

RestoreReport KeptVersions::restore(const std::string& site, const std::string& publish,
                                    const std::vector<SyncRow>& rows, const WorkItem& stop,
                                    const WorkItem& item, const OnProgress& progress) const
{
    if (rows.empty())
        return {};
    return m_server ? restoreOnServer(site, publish, rows, stop, item, progress)
                    : restoreHere(publish, rows, stop, progress);
}

RestoreReport KeptVersions::restoreHere(const std::string& publish, std::vector<SyncRow> rows,
                                        const WorkItem& stop, const OnProgress& progress) const
{
    const auto folders = std::make_shared<const SyncFolders>(SyncFolders{folderOf(publish), m_receiving});
    for (SyncRow& row : rows)
        row.folders = folders;
    TransferReport report = FileTransfer(std::move(rows), {}, newPublish()).run(stop, progress);
    RestoreReport restored = {std::move(report.done), {}};
    for (TransferProblem& problem : report.problems)
        restored.problems.push_back(std::move(problem.text));
    return restored;
}

// By way of this computer, because rsync copies from one server to another folder of the same in no other way.
RestoreReport KeptVersions::restoreOnServer(const std::string& site, const std::string& publish,
                                            const std::vector<SyncRow>& rows, const WorkItem& stop,
                                            const WorkItem& item, const OnProgress& progress) const
{
    const FetchedFiles here(site);
    RsyncArguments arguments = *m_server;
    arguments.local = here.folder().native() + '/';
    RsyncArguments fetching = arguments;
    fetching.remote = m_server->remoteWith(folderOf(publish));
    fetching.direction = Direction::Download;
    std::vector<std::string> paths;
    for (const std::size_t row : transferOrder(rows))
        paths.push_back(rows[row].relativePath);
    const ProgramResult listed =
        m_runProgram(RsyncCommand(arguments).listing(IgnoredNames()), {}, wantedBy(stop));
    const ProgramResult fetched =
        hasAnswered(listed)
            ? m_runProgram(RsyncCommand(fetching).transfer(RsyncCommand::Overwrites::AllFiles),
                           RsyncCommand::nameList(paths), wantedBy(stop))
            : listed;
    if (stop.isCancelled())
        return {};
    if (fetched.status != 0)
        return {{}, rsyncReasons(fetched)};
    const RsyncLeftovers leftovers(site, Direction::Upload,
                                   rsyncTemporaries(pathsOf(readRsyncListing(listed.output))));
    RsyncReport report = RsyncJob(arguments, m_runProgram)
                             .transfer(rows, {}, wantedBy(stop), wantedBy(item), progress, newPublish(),
                                       leftovers.leftToTheNext());
    return {std::move(report.done), std::move(report.problems)};
}

Result<void> KeptVersions::removeOlder(int days, const StillWanted& stillWanted) const
{
    using namespace std::chrono;
    const std::int64_t before =
        duration_cast<seconds>((system_clock::now() - hours(24) * days).time_since_epoch()).count();
    return m_server ? removeOnServer(before, stillWanted) : KeptFolder(m_place).removeBefore(before);
}

Result<void> KeptVersions::removeOnServer(std::int64_t before, const StillWanted& stillWanted) const
{
    const auto all = listOnServer(stillWanted);
    if (!all)
        return Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "Old kept versions can't be removed: %1"),
                              {all.error().text})};
    std::vector<std::string> old;
    for (const KeptFiles& kept : *all) {
        if (kept.time < before)
            old.push_back(m_place.name() + '/' + kept.publish);
    }
    const QTemporaryDir empty;
    if (old.empty())
        return {};
    RsyncArguments parent = *m_server;
    parent.remote = m_server->remoteWith(m_place.parent());
    parent.local = QFile::encodeName(empty.path()).toStdString() + '/';
    const ProgramResult result =
        m_runProgram(RsyncCommand(parent).deletionOfFolders(), RsyncCommand::nameList(old), stillWanted);
    constexpr int vanishedFiles = 24; // rsync(1): said of each file that is named here to be deleted
    const bool isDone = result.status == 0 || result.status == vanishedFiles;
    if (!isDone && isWanted(stillWanted))
        return Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "Old kept versions can't be removed: %1"),
                              {rsyncReasons(result).back()})};
    return {};
}

} // namespace luma
