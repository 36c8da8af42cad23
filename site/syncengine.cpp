// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/syncengine.h"

#include "base/console.h"
#include "base/files.h"
#include "base/mainhop.h"
#include "site/filetransfer.h"
#include "site/foldercomparison.h"
#include "site/rsynccommand.h"

#include <QElapsedTimer>
#include <QSet>
#include <QTemporaryDir>

#include <algorithm>

namespace luma {

namespace {

constexpr int progressInterval = 100; // milliseconds

QString comparisonTitle(bool isUpload)
{
    return isUpload ? QStringLiteral("Move these new/modified files from Source to Destination?")
                    : QStringLiteral("Move these new/modified files from Destination to Source?");
}

QString nothingChangedTitle(bool isUpload)
{
    return isUpload ? QStringLiteral("Nothing changed from Source to Destination")
                    : QStringLiteral("Nothing changed from Destination to Source");
}

void printLines(const std::vector<std::string>& lines)
{
    for (const std::string& line : lines)
        printLine(line);
}

std::vector<std::string> shellCommand(const std::string& commandLine)
{
    return {"/bin/sh", "-c", commandLine};
}

std::vector<SyncRow> rowsOf(const std::vector<std::string>& listing)
{
    std::vector<SyncRow> rows;
    rows.reserve(listing.size());
    for (const std::string& line : listing)
        rows.push_back({1, line, {}, {}, {}});
    return rows;
}

// True when rsync succeeded: it always prints a report.
bool runTransfer(const SyncEngine::ShellRunner& runShell, const RsyncCommand& command,
                 const std::vector<RsyncRule>& rules)
{
    if (RsyncCommand::fitCommandLine(rules))
        return !runShell(shellCommand(command.transfer(rules))).empty();
    const QTemporaryDir folder;
    const std::filesystem::path file = folder.filePath(QStringLiteral("rules")).toStdString();
    if (!folder.isValid() || !writeFile(file, RsyncCommand::rulesFile(rules), 0600))
        return false;
    return !runShell(shellCommand(command.transferWithRulesFile(file.string()))).empty();
}

std::vector<std::size_t> tickedRows(const std::vector<SyncRow>& rows)
{
    std::vector<std::size_t> ticked;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].select == 1)
            ticked.push_back(i);
    }
    return ticked;
}

} // namespace

SyncEngine::SyncEngine(SiteRecord& record, ShellRunner runShell, std::function<SyncSides()> sides,
                       QObject* parent)
    : QObject(parent), m_record(record), m_runShell(std::move(runShell)), m_sides(std::move(sides))
{}

SyncEngine::~SyncEngine()
{
    dropItem();
}

bool SyncEngine::isUpload() const
{
    return m_direction == QLatin1String("Upload");
}

SyncFolders SyncEngine::folders(const SyncSides& sides) const
{
    if (isUpload())
        return {sides.source, sides.destination};
    return {sides.destination, sides.source};
}

void SyncEngine::dropItem()
{
    if (m_workItem)
        m_workItem->cancel();
    m_workItem.reset();
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

void SyncEngine::setMessage(const std::vector<std::string>& problems)
{
    m_message.clear();
    if (problems.empty())
        return;
    m_message = QString::fromStdString(problems.front());
    if (problems.size() > 1)
        m_message = tr("%1 (and %2 more)").arg(m_message).arg(problems.size() - 1);
}

void SyncEngine::compare(const QString& direction, bool deletes)
{
    startItem();
    m_direction = direction;
    m_table.setRows({});
    m_title = comparisonTitle(isUpload());
    setState(State::Comparing);
    const SyncSides sides = m_sides();
    if (sides.rsync)
        listWithRsync(deletes);
    else
        compareFolders(folders(sides));
}

void SyncEngine::compareFolders(const SyncFolders& folders)
{
    start(m_workItem, [self = QPointer(this), folders](const WorkItem& item) {
        auto report = FolderComparison(folders.sending, folders.receiving).run(item);
        if (item.isCancelled())
            return;
        ComparisonReport found;
        if (report)
            found = std::move(*report);
        else
            found.problems = {report.error().text};
        printLines(found.problems);
        onMain(self, [&](SyncEngine& engine) {
            engine.endComparison(item, std::move(found.rows), found.problems);
        });
    });
}

void SyncEngine::listWithRsync(bool deletes)
{
    RsyncArguments arguments =
        isUpload() ? RsyncArguments::forUpload(*m_record.sourceDict(), *m_record.destinationDict())
                   : RsyncArguments::forDownload(*m_record.sourceDict(), *m_record.destinationDict());
    arguments.deletes = deletes;
    start(m_workItem, [self = QPointer(this), arguments, runShell = m_runShell](const WorkItem& item) {
        const std::string output = runShell(shellCommand(RsyncCommand(arguments).dryRun()));
        std::vector<SyncRow> rows = rowsOf(RsyncCommand::listing(output));
        onMain(self, [&](SyncEngine& engine) { engine.endComparison(item, std::move(rows), {}); });
    });
}

void SyncEngine::endComparison(const WorkItem& item, std::vector<SyncRow> rows,
                               const std::vector<std::string>& problems)
{
    if (&item != m_workItem.get())
        return;
    m_workItem.reset();
    const QStringList names = m_record.untickedNames(m_direction);
    const QSet<QString> unticked(names.begin(), names.end());
    for (SyncRow& row : rows) {
        const bool isUnticked =
            unticked.contains(QString::fromStdString(nameWithoutDeleting(row.displayName)));
        row.select = isUnticked ? 0 : 1;
    }
    setMessage(problems);
    if (rows.empty())
        m_title = nothingChangedTitle(isUpload());
    m_table.setRows(std::move(rows));
    setState(m_table.rows().empty() ? State::Empty : State::Ready);
}

void SyncEngine::rememberUnticked()
{
    QStringList names;
    for (const SyncRow& row : m_table.rows()) {
        if (row.select != 1)
            names.append(QString::fromStdString(nameWithoutDeleting(row.displayName)));
    }
    m_record.setUntickedNames(m_direction, names);
}

void SyncEngine::transfer(bool deletes)
{
    if (m_state != State::Ready)
        return;
    startItem();
    rememberUnticked();
    setState(State::Transferring);
    // The rows know how they were found, whatever the connection check has said since.
    if (m_table.rows().front().folders)
        transferFiles();
    else
        transferWithRsync(deletes);
}

void SyncEngine::transferFiles()
{
    start(m_workItem, [self = QPointer(this), rows = m_table.rows()](const WorkItem& item) {
        const int total = static_cast<int>(tickedRows(rows).size());
        QElapsedTimer sinceHop;
        sinceHop.start();
        const TransferReport report = FileTransfer(rows).run(item, [&](std::size_t done) {
            if (sinceHop.elapsed() < progressInterval)
                return;
            onMain(self, [&](SyncEngine& engine) {
                if (&item == engine.m_workItem.get())
                    emit engine.progressed(static_cast<int>(done), total);
            });
            sinceHop.restart();
        });
        std::vector<std::string> problems;
        for (const TransferProblem& problem : report.problems)
            problems.push_back(problem.text);
        printLines(problems);
        onMain(self, [&](SyncEngine& engine) { engine.endTransfer(item, report.copied, problems); });
    });
}

void SyncEngine::transferWithRsync(bool deletes)
{
    RsyncArguments arguments =
        isUpload() ? RsyncArguments::forUpload(*m_record.sourceDict(), *m_record.destinationDict())
                   : RsyncArguments::forDownload(*m_record.sourceDict(), *m_record.destinationDict());
    arguments.deletes = deletes;
    start(m_workItem, [self = QPointer(this), arguments, rows = m_table.rows(),
                       runShell = m_runShell](const WorkItem& item) {
        const bool done = runTransfer(runShell, RsyncCommand(arguments), rsyncRules(rows, arguments.deletes));
        const std::vector<std::size_t> moved = done ? tickedRows(rows) : std::vector<std::size_t>();
        std::vector<std::string> problems;
        if (!done)
            problems.emplace_back("rsync could not transfer everything; compare again to see what is left");
        printLines(problems);
        onMain(self, [&](SyncEngine& engine) { engine.endTransfer(item, moved, problems); });
    });
}

void SyncEngine::endTransfer(const WorkItem& item, const std::vector<std::size_t>& moved,
                             const std::vector<std::string>& problems)
{
    if (&item == m_workItem.get()) {
        m_workItem.reset();
        m_table.removeRowsAt(moved);
        setMessage(problems);
        if (m_table.rows().empty())
            m_title = QStringLiteral("No more files to be moved.");
        setState(m_table.rows().empty() ? State::Done : State::Ready);
    }
    emit transferred();
}

void SyncEngine::cancel()
{
    dropItem();
    // A comparison that was not seen to its end says nothing about what the user leaves out.
    if (m_state != State::Comparing && m_state != State::Idle)
        rememberUnticked();
    setState(State::Idle);
}

} // namespace luma
