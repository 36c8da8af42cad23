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

QString comparisonTitle(Direction direction)
{
    return direction == Direction::Upload
               ? QStringLiteral("Move these new/modified files from Source to Destination?")
               : QStringLiteral("Move these new/modified files from Destination to Source?");
}

QString nothingChangedTitle(Direction direction)
{
    return direction == Direction::Upload ? QStringLiteral("Nothing changed from Source to Destination")
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
        rows.push_back({.displayName = line});
    return rows;
}

// True when rsync succeeded: then it always prints a report.
bool runTransfer(const CommandRunner& runProgram, const RsyncCommand& command,
                 const std::vector<RsyncRule>& rules)
{
    if (RsyncCommand::fitCommandLine(rules))
        return !runProgram(shellCommand(command.transfer(rules))).empty();
    const QTemporaryDir folder;
    const std::filesystem::path file = folder.filePath(QStringLiteral("rules")).toStdString();
    if (!folder.isValid() || !writeFile(file, RsyncCommand::rulesFile(rules), 0600))
        return false;
    return !runProgram(shellCommand(command.transferWithRulesFile(file.string()))).empty();
}

std::vector<std::size_t> tickedRows(const std::vector<SyncRow>& rows)
{
    std::vector<std::size_t> ticked;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].select)
            ticked.push_back(i);
    }
    return ticked;
}

} // namespace

SyncEngine::SyncEngine(SiteRecord& record, CommandRunner runProgram, std::function<SyncSides()> sides,
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

void SyncEngine::compare(Direction direction, bool deletes)
{
    startItem();
    m_direction = direction;
    m_table.setRows({});
    m_title = comparisonTitle(m_direction);
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
    const auto arguments = RsyncArguments::of(m_record, m_direction, deletes);
    start(m_workItem, [self = QPointer(this), arguments, runProgram = m_runProgram](const WorkItem& item) {
        const std::string output = runProgram(shellCommand(RsyncCommand(arguments).dryRun()));
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
        const std::string name = nameWithoutDeleting(row.displayName);
        row.select = !unticked.contains(QString::fromStdString(name));
    }
    setMessage(problems);
    if (rows.empty())
        m_title = nothingChangedTitle(m_direction);
    m_table.setRows(std::move(rows));
    setState(m_table.rows().empty() ? State::Empty : State::Ready);
}

void SyncEngine::rememberUnticked()
{
    QStringList names;
    for (const SyncRow& row : m_table.rows()) {
        if (!row.select)
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
    // As the rows were found, even if a connection check has ended since.
    if (m_table.rows().front().mode == SyncMode::Rsync)
        transferWithRsync(deletes);
    else
        transferFiles();
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
    const auto arguments = RsyncArguments::of(m_record, m_direction, deletes);
    start(m_workItem, [self = QPointer(this), arguments, rows = m_table.rows(),
                       runProgram = m_runProgram](const WorkItem& item) {
        const bool done =
            runTransfer(runProgram, RsyncCommand(arguments), rsyncRules(rows, arguments.deletes));
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
    // The rows of an unfinished comparison don't show what the user leaves out.
    if (m_state != State::Comparing && m_state != State::Idle)
        rememberUnticked();
    setState(State::Idle);
}

} // namespace luma
