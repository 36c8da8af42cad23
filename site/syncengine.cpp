// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/syncengine.h"

#include "base/console.h"
#include "base/mainhop.h"
#include "base/pathbelow.h"
#include "base/usertext.h"
#include "site/filetransfer.h"
#include "site/rsyncjob.h"

#include <QElapsedTimer>
#include <QSet>

#include <algorithm>
#include <utility>

namespace luma {

namespace fs = std::filesystem;

namespace {

constexpr int progressInterval = 100; // milliseconds

QString comparisonTitle(Direction direction)
{
    return direction == Direction::Upload
               ? SyncEngine::tr("Move these new/modified files from Source to Destination?")
               : SyncEngine::tr("Move these new/modified files from Destination to Source?");
}

QString nothingChangedTitle(Direction direction)
{
    return direction == Direction::Upload ? SyncEngine::tr("Nothing changed from Source to Destination")
                                          : SyncEngine::tr("Nothing changed from Destination to Source");
}

void printLines(const std::vector<std::string>& lines)
{
    for (const std::string& line : lines)
        printLine(line);
}

} // namespace

QString problemLine(const std::vector<std::string>& problems)
{
    if (problems.empty())
        return {};
    const QString first = QString::fromStdString(problems.front());
    return problems.size() == 1 ? first
                                : SyncEngine::tr("%1 (and %2 more)").arg(first).arg(problems.size() - 1);
}

Result<KeptVersions> keptVersionsOf(const SiteRecord& record, const SyncSides& sides,
                                    const ProgramRunner& runProgram)
{
    if (sides.rsync)
        return KeptVersions::onServer(RsyncArguments::of(record, Direction::Upload), runProgram,
                                      record.keepChoice());
    if (sides.destination.empty())
        return Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "Connect the destination first"))};
    return KeptVersions::here(sides.destination, record.keepChoice());
}

SyncEngine::SyncEngine(SiteRecord& record, ProgramRunner runProgram, std::function<SyncSides()> sides,
                       QObject* parent)
    : QObject(parent), m_record(record), m_runProgram(std::move(runProgram)), m_sides(std::move(sides))
{}

SyncEngine::~SyncEngine()
{
    dropItem();
}

SyncFolders SyncEngine::folders(const SyncSides& sides) const
{
    if (m_direction == Direction::Upload)
        return {.sending = sides.source, .receiving = sides.destination};
    return {.sending = sides.destination, .receiving = sides.source};
}

void SyncEngine::dropItem()
{
    if (m_workItem)
        m_workItem->cancel();
    if (m_stop)
        m_stop->cancel();
    m_workItem.reset();
    m_stop.reset();
}

void SyncEngine::startItem()
{
    dropItem();
    m_workItem = std::make_shared<WorkItem>();
    m_message.clear();
}

void SyncEngine::setState(State state)
{
    m_state = state;
    emit changed();
}

void SyncEngine::compare(Direction direction, Deletions deletions, const std::vector<std::string>& only)
{
    startItem();
    if (m_state == State::Ready)
        rememberUnticked();
    // The rows of a comparison that did not end are none.
    if (m_direction != direction || m_only != only)
        m_rowsBefore.clear();
    else if (m_state != State::Comparing)
        m_rowsBefore = m_table.rows();
    m_wasStopped = false;
    m_only = only;
    m_direction = direction;
    m_deletions = deletions;
    m_table.setDirection(direction);
    m_ignoredCount = 0;
    m_table.setRows({});
    m_title = comparisonTitle(m_direction);
    setState(State::Comparing);
    const SyncSides sides = m_sides();
    if (sides.rsync)
        compareWithRsync(deletions);
    else
        compareFolders(folders(sides), deletions);
}

IgnoredNames SyncEngine::ignoredNames() const
{
    return IgnoredNames(m_record.ignoredNames().toStdString());
}

void SyncEngine::compareFolders(const SyncFolders& folders, Deletions deletions)
{
    const FolderComparison comparison(folders, ignoredNames(), deletions);
    const bool areConnected = !folders.sending.empty() && !folders.receiving.empty();
    start(m_workItem, [self = QPointer(this), comparison, areConnected, site = siteIdentity(m_record),
                       direction = m_direction](const WorkItem& item) {
        auto report = areConnected ? comparison.run(item, PublishedFiles::load(site), direction)
                                   : Result<ComparisonReport>(Error{userText(
                                         QT_TRANSLATE_NOOP("luma::Engines", "Connect both sides first"))});
        if (item.isCancelled())
            return;
        onMain(self, [&](SyncEngine& engine) { engine.endComparison(item, std::move(report)); });
    });
}

void SyncEngine::compareWithRsync(Deletions deletions)
{
    const RsyncJob job(RsyncArguments::of(m_record, m_direction), m_runProgram);
    start(m_workItem, [self = QPointer(this), job, deletions, ignored = ignoredNames(),
                       site = siteIdentity(m_record)](const WorkItem& item) {
        auto report = job.compare(ignored, deletions, item, PublishedFiles::load(site));
        onMain(self, [&](SyncEngine& engine) { engine.endComparison(item, std::move(report)); });
    });
}

void SyncEngine::endComparison(const WorkItem& item, Result<ComparisonReport> result)
{
    if (&item != m_workItem.get())
        return;
    m_workItem.reset();
    if (!result || (result->rows.empty() && !result->problems.empty())) {
        showFailure(result ? result->problems : std::vector<std::string>{result.error().text});
        return;
    }
    printLines(result->problems);
    m_message = problemLine(result->problems);
    m_ignoredCount = result->ignored;
    m_counts = result->counts;
    if (m_counts.sent == 0 && m_message.isEmpty())
        m_message = tr("The sending side has no files; its disk or share may not be mounted.");
    // With problems, none or not all of them are listed.
    if (!result->problems.empty())
        m_deletions = Deletions::Ignored;
    m_foldersOnlyThere = std::move(result->foldersOnlyThere);
    m_published = std::move(result->published);
    m_leftovers = std::move(result->leftovers);
    if (m_only.empty())
        untickRemembered(result->rows, m_record, m_direction);
    else
        std::erase_if(result->rows, [this](const SyncRow& row) {
            return std::none_of(m_only.begin(), m_only.end(), [&row](const std::string& path) {
                return isAtOrBelow(row.relativePath, path);
            });
        });
    if (result->rows.empty())
        m_title = nothingChangedTitle(m_direction);
    m_table.setRows(std::move(result->rows));
    setState(m_table.rows().empty() ? State::Empty : State::Ready);
}

void untickRemembered(std::vector<SyncRow>& rows, const SiteRecord& record, Direction direction)
{
    const QStringList names = record.untickedNames(direction);
    const QStringList deletions = record.untickedDeletions(direction);
    const QSet<QString> unticked(names.begin(), names.end());
    const QSet<QString> untickedDeletions(deletions.begin(), deletions.end());
    if (unticked.isEmpty() && untickedDeletions.isEmpty())
        return;
    for (SyncRow& row : rows) {
        const QString name = QString::fromStdString(nameWithoutDeleting(row.displayName));
        if (unticked.contains(name) || (row.kind == SyncKind::Delete && untickedDeletions.contains(name)))
            row.select = false;
    }
}

void SyncEngine::showFailure(const std::vector<std::string>& problems)
{
    printLines(problems);
    m_message = problemLine(problems);
    m_title = tr("The comparison failed");
    m_table.setRows(std::exchange(m_rowsBefore, {}));
    setState(State::Failed);
}

void SyncEngine::tickOnly(const QModelIndexList& indexes)
{
    restoreTicks();
    m_tickedBefore.emplace();
    for (const SyncRow& row : m_table.rows()) {
        if (row.select)
            m_tickedBefore->insert(row.relativePath);
    }
    m_table.tickWhere([](const SyncRow&) { return true; }, false);
    m_table.tick(indexes, true);
}

void SyncEngine::restoreTicks()
{
    if (const auto before = std::exchange(m_tickedBefore, std::nullopt)) {
        m_table.tickWhere([](const SyncRow&) { return true; }, false);
        m_table.tickWhere([&before](const SyncRow& row) { return before->contains(row.relativePath); }, true);
    }
}

bool SyncEngine::ignore(const std::string& path)
{
    const auto pattern = IgnoredNames::patternOf(path);
    if (!pattern)
        return false;
    const QString before = m_record.ignoredNames();
    const bool needsEnd = !before.isEmpty() && !before.endsWith(u'\n');
    m_record.setIgnoredNames(before + QLatin1StringView(needsEnd ? "\n" : "") +
                             QString::fromStdString(*pattern) + u'\n');
    return true;
}

void SyncEngine::rememberUnticked()
{
    restoreTicks();
    if (!m_only.empty())
        return;
    const QStringList remembered =
        m_record.untickedNames(m_direction) + m_record.untickedDeletions(m_direction);
    const QSet<QString> before(remembered.begin(), remembered.end());
    QStringList names;
    QStringList deletions;
    for (const SyncRow& row : m_table.rows()) {
        const QString name = QString::fromStdString(nameWithoutDeleting(row.displayName));
        if (row.select || (row.isMarked() && !before.contains(name)))
            continue;
        names.append(name);
        if (row.kind == SyncKind::Delete)
            deletions.append(name);
    }
    m_record.setUntickedNames(m_direction, names);
    if (m_deletions == Deletions::Listed)
        m_record.setUntickedDeletions(m_direction, deletions);
}

void SyncEngine::transfer()
{
    if (m_state != State::Ready)
        return;
    startItem();
    m_stop = std::make_shared<WorkItem>();
    m_wasStopped = false;
    if (!m_tickedBefore)
        rememberUnticked();
    setState(State::Transferring);
    const auto kept = keeping();
    // As the rows were found, even if a connection check has ended since.
    if (!kept)
        startTransfer(
            [problem = kept.error().text](const WorkItem&) { return Transferred{.problems = {problem}}; },
            {});
    else if (!m_table.rows().front().folders)
        transferWithRsync(*kept);
    else
        transferFiles(*kept);
}

// Of an upload. An error if the site wants something kept, but not where.
Result<std::optional<SyncEngine::Keeping>> SyncEngine::keeping() const
{
    const int days = m_record.keepChoice().days;
    if (days == 0 || m_direction == Direction::Download)
        return std::optional<Keeping>();
    const auto& folders = m_table.rows().front().folders;
    auto versions = keptVersionsOf(
        m_record, {.rsync = !folders, .source = {}, .destination = folders ? folders->receiving : fs::path()},
        m_runProgram);
    if (!versions)
        return versions.error();
    KeptPublish publish = versions->newPublish();
    return std::optional(Keeping{*std::move(versions), std::move(publish), days});
}

void SyncEngine::stop()
{
    if (m_state != State::Transferring)
        return;
    m_stop->cancel();
    emit changed();
}

// Runs `transfer` in the background, while nobody else publishes the site, and remembers what it did.
void SyncEngine::startTransfer(std::function<Transferred(const WorkItem& item)> transfer,
                               const std::optional<Keeping>& keeping)
{
    start(m_workItem, [self = QPointer(this), transfer = std::move(transfer), keeping, stop = m_stop,
                       site = siteIdentity(m_record), rows = m_table.rows(),
                       published = std::move(m_published),
                       direction = m_direction](const WorkItem& item) mutable {
        Transferred transferred;
        // Unlocked before the window hears of the end, and may start the next transfer.
        if (const auto lock = lockForPublishing(site)) {
            transferred = transfer(item);
            for (std::size_t i = 0; i < transferred.done.size(); ++i)
                noteTransfer(published, rows[transferred.done[i]], transferred.received[i], direction);
            if (const auto saved = published.save(); !saved)
                transferred.problems.push_back(saved.error().text);
            removeOld(keeping, *stop, transferred);
        } else {
            transferred.problems.push_back(lock.error().text);
        }
        printLines(transferred.problems);
        onMain(self,
               [&](SyncEngine& engine) { engine.endTransfer(item, transferred, std::move(published)); });
    });
}

// Once a publish has done all it should.
void SyncEngine::removeOld(const std::optional<Keeping>& keeping, const WorkItem& stop,
                           Transferred& transferred)
{
    if (!keeping || !transferred.problems.empty() || stop.isCancelled())
        return;
    const auto removed =
        keeping->versions.removeOlder(keeping->days, [&stop] { return !stop.isCancelled(); });
    if (!removed)
        transferred.problems.push_back(removed.error().text);
}

// Of a job on any thread.
OnProgress SyncEngine::progressReporter(const WorkItem& item, const std::vector<SyncRow>& rows)
{
    QElapsedTimer sinceHop;
    sinceHop.start();
    return
        [self = QPointer(this), &item, sinceHop, all = tickedTotals(rows)](const SyncProgress& done) mutable {
            const bool isOver = done.rows >= all.files + all.deletions;
            if (sinceHop.elapsed() < progressInterval && !isOver)
                return;
            onMain(self, [&](SyncEngine& engine) {
                if (&item == engine.m_workItem.get())
                    emit engine.progressed(done, all);
            });
            sinceHop.restart();
        };
}

void SyncEngine::transferFiles(const std::optional<Keeping>& keeping)
{
    const OnProgress progress = progressReporter(*m_workItem, m_table.rows());
    const auto kept = keeping ? std::optional(keeping->publish) : std::nullopt;
    const auto transfer = [progress, kept, rows = m_table.rows(), folders = m_foldersOnlyThere,
                           stop = m_stop](const WorkItem&) {
        TransferReport report = FileTransfer(rows, folders, kept).run(*stop, progress);
        Transferred transferred = {.done = std::move(report.done), .received = std::move(report.received)};
        for (TransferProblem& problem : report.problems)
            transferred.problems.push_back(std::move(problem.text));
        return transferred;
    };
    startTransfer(transfer, keeping);
}

void SyncEngine::transferWithRsync(const std::optional<Keeping>& keeping)
{
    const RsyncJob job(RsyncArguments::of(m_record, m_direction), m_runProgram);
    const OnProgress progress = progressReporter(*m_workItem, m_table.rows());
    const auto kept = keeping ? std::optional(keeping->publish) : std::nullopt;
    const auto transfer = [progress, kept, job, rows = m_table.rows(), folders = m_foldersOnlyThere,
                           leftovers = m_leftovers, stop = m_stop](const WorkItem& item) {
        RsyncReport report = job.transfer(
            rows, folders, [&stop] { return !stop->isCancelled(); }, [&item] { return !item.isCancelled(); },
            progress, kept, leftovers);
        return Transferred{std::move(report.done), std::move(report.received), std::move(report.problems)};
    };
    startTransfer(transfer, keeping);
}

void SyncEngine::endTransfer(const WorkItem& item, const Transferred& transferred, PublishedFiles published)
{
    if (&item == m_workItem.get()) {
        m_workItem.reset();
        m_published = std::move(published);
        const std::size_t ticked = m_table.tickedCount();
        const std::size_t moved = transferred.done.size();
        m_table.removeRowsAt(transferred.done);
        restoreTicks();
        m_message = problemLine(transferred.problems);
        m_wasStopped = isStopping() && moved < ticked;
        if (m_wasStopped)
            m_message = tr("Stopped; %1 of %2 moved").arg(moved).arg(ticked);
        m_stop.reset();
        if (m_table.rows().empty())
            m_title = tr("No more files to be moved.");
        setState(m_table.rows().empty() ? State::Done : State::Ready);
    }
    emit SyncEngine::transferred();
}

void SyncEngine::cancel()
{
    dropItem();
    // Only these states have rows that show what the user leaves out.
    if (m_state == State::Ready || m_state == State::Transferring)
        rememberUnticked();
    setState(State::Idle);
}

} // namespace luma
