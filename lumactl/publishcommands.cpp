// SPDX-License-Identifier: GPL-3.0-or-later
#include "lumactl/commandarguments.h"
#include "lumactl/lumactlcommands.h"
#include "lumactl/publishsides.h"
#include "lumactl/standardoutput.h"
#include "site/filetransfer.h"
#include "site/foldercomparison.h"
#include "site/keptversions.h"
#include "site/rsyncjob.h"
#include "site/syncengine.h"
#include "site/syncguards.h"

#include <algorithm>

// The commands that compare two folders and copy what differs.

namespace luma {

namespace {

// What a transfer did, in either way.
struct Outcome
{
    std::vector<std::size_t> done = {};
    std::vector<FileFacts> received = {};
    std::vector<std::string> problems = {};
};

// What differs; how much is ignored is said.
Result<ComparisonReport> compare(const PublishSides& sides)
{
    PublishedFiles before = PublishedFiles::load(sides.identity);
    const WorkItem item;
    auto report = sides.login.empty()
                      ? FolderComparison(sides.folders(), sides.ignored, sides.deletions)
                            .run(item, std::move(before), sides.direction)
                      : sides.rsync().compare(sides.ignored, sides.deletions, item, std::move(before));
    if (report && report->ignored > 0)
        complain(std::to_string(report->ignored) + " ignored");
    return report;
}

ExitCode changed(const std::vector<std::string>& arguments)
{
    const CommandArguments line(arguments, {"--download", "--delete", "--json", "-0"}, {"--ignore", "--ssh"});
    if (line.has("-0") && (line.has("--json") || line.has("--delete")))
        return wrongUsage(changedCommand, "-0 can't be used with --json or --delete");
    const auto sides = publishSidesOf(changedCommand, line);
    if (!sides)
        return ExitCode::Unusable;
    const auto report = compare(*sides);
    if (!report)
        return unusable(report.error().text);
    const bool isPrinted = printRows(report->rows, rowFormOf(line), false);
    for (const std::string& problem : report->problems)
        complain(problem);
    return isPrinted && report->rows.empty() && report->problems.empty() ? ExitCode::Ok : ExitCode::Found;
}

Outcome transfer(const PublishSides& sides, const ComparisonReport& report,
                 const std::optional<KeptPublish>& kept)
{
    if (!sides.login.empty()) {
        RsyncReport sent =
            sides.rsync().transfer(report.rows, report.foldersOnlyThere, {}, {}, {}, kept, report.leftovers);
        return {std::move(sent.done), std::move(sent.received), std::move(sent.problems)};
    }
    TransferReport copied = FileTransfer(report.rows, report.foldersOnlyThere, kept).run(WorkItem());
    Outcome outcome = {std::move(copied.done), std::move(copied.received), {}};
    for (TransferProblem& problem : copied.problems)
        outcome.problems.push_back(std::move(problem.text));
    return outcome;
}

// Transfers, and remembers what both sides have since.
Outcome publishRows(const PublishSides& sides, ComparisonReport& report)
{
    const auto lock = lockForPublishing(sides.identity);
    if (!lock)
        return {.problems = {lock.error().text}};
    const auto versions = sides.keptVersions();
    const bool keeps = sides.keep.days > 0;
    if (keeps && !versions)
        return {.problems = {versions.error().text}};
    Outcome outcome = transfer(sides, report, keeps ? std::optional(versions->newPublish()) : std::nullopt);
    for (std::size_t i = 0; i < outcome.done.size(); ++i)
        noteTransfer(report.published, report.rows[outcome.done[i]], outcome.received[i], sides.direction);
    if (const auto saved = report.published.save(); !saved)
        outcome.problems.push_back(saved.error().text);
    if (keeps && outcome.problems.empty()) {
        if (const auto removed = versions->removeOlder(sides.keep.days, {}); !removed)
            outcome.problems.push_back(removed.error().text);
    }
    return outcome;
}

// What keeps the rows from being published without --yes; each is said.
bool isHeldBack(const std::vector<SyncRow>& rows, const SyncCounts& counts)
{
    const QStringList questions = guardQuestions(rows, counts);
    for (const QString& question : questions)
        complain(question.toStdString() + " (--yes)");
    return !questions.isEmpty();
}

ExitCode publish(const std::vector<std::string>& arguments)
{
    const CommandArguments line(arguments, {"--download", "--delete", "--json", "--dry-run", "--yes"},
                                {"--except", "--ignore", "--ssh", "--keep", "--keep-in"});
    const auto sides = publishSidesOf(publishCommand, line);
    if (!sides)
        return ExitCode::Unusable;
    auto report = compare(*sides);
    if (!report)
        return unusable(report.error().text);
    for (SyncRow& row : report->rows)
        row.select = row.select || line.has("--yes");
    if (sides->site)
        untickRemembered(report->rows, *sides->site, sides->direction);
    tickNamed(report->rows, line.values("--except"), false);
    std::vector<std::string> problems = report->problems;
    for (const SyncRow& row : report->rows) {
        if (row.isMarked() && !line.has("--yes"))
            problems.push_back(row.displayName + ": " + textOf(row.reason));
    }
    bool isPrinted = true;
    if (line.has("--dry-run")) {
        isPrinted = printRows(report->rows, rowFormOf(line), true);
    } else if (!line.has("--yes") && isHeldBack(report->rows, report->counts)) {
        return ExitCode::Found;
    } else {
        const Outcome outcome = publishRows(*sides, *report);
        problems.insert(problems.end(), outcome.problems.begin(), outcome.problems.end());
        std::vector<SyncRow> done;
        for (const std::size_t row : outcome.done)
            done.push_back(report->rows[row]);
        isPrinted = !line.has("--json") || printRows(done, RowForm::Json, false);
    }
    for (const std::string& problem : problems)
        complain(problem);
    return isPrinted && problems.empty() ? ExitCode::Ok : ExitCode::Found;
}

} // namespace

const LumactlCommand changedCommand = {
    "changed",
    "SOURCE DESTINATION [--download] [--delete] [--json] [-0] [--ssh USER@HOST[:PORT]] "
    "[--ignore PATTERN]...",
    "list the files that publish would copy",
    "Prints the files of SOURCE that are missing in DESTINATION, older there or have\n"
    "changed since the last publish, one a line; control characters and bytes that\n"
    "are not UTF-8 are printed as \"\\#\" and three octal digits. With --download it\n"
    "lists the files of DESTINATION for SOURCE in the same way, with --delete also\n"
    "what only the receiving side has, after \"deleting \". With --ssh, DESTINATION\n"
    "is a folder on that server, and rsync does the work; login must work by key.\n"
    "The name of a site in LUMA's list may stand for both folders; its patterns are\n"
    "ignored, too, and publish leaves out what was unticked in its window.\n"
    "\n"
    "Left alone and counted: .git, .svn, .hg, *~, .*.swp, Thumbs.db, .DS_Store, and\n"
    "what --ignore names: a pattern for names, with a slash for paths below the\n"
    "folder, with a slash at the end for folders only.\n"
    "\n"
    "--json prints one JSON object a line: what (new, newer, different, conflict,\n"
    "delete), file, why, asks (publish leaves it, unless told to do all), size and\n"
    "time (in seconds since 1970), sizeThere and timeThere of the receiving side. -0\n"
    "prints the names as they are, with a NUL byte after each, for xargs -0.\n"
    "\n"
    "The exit code is 1 if a file is listed or something could not be compared.\n",
    changed};

const LumactlCommand publishCommand = {
    "publish",
    "SOURCE DESTINATION [--download] [--delete] [--dry-run] [--yes] [--json] [--ssh USER@HOST[:PORT]] "
    "[--except NAME]... [--ignore PATTERN]... [--keep DAYS] [--keep-in FOLDER]",
    "copy new and modified files to the other side",
    "Copies what \"lumactl changed\" prints with the same options, and with --delete\n"
    "deletes what it lists; modification times and modes are kept. --except leaves\n"
    "out one file, named as it was printed; it may be given several times.\n"
    "--dry-run only prints what would be done, --json prints what was done.\n"
    "\n"
    "Nothing happens if SOURCE is empty, more than a third would be deleted, the two\n"
    "folders have no file in common or the disk is too small; a file that has changed\n"
    "on the receiving side since the last publish is left. With --yes all is done.\n"
    "\n"
    "--keep keeps what is replaced or deleted for so many days, for \"lumactl restore\":\n"
    "in \".NAME.luma-kept\" beside the receiving folder NAME, or in --keep-in, an\n"
    "absolute path outside of it on the receiving side.\n"
    "\n"
    "The exit code is 1 if something could not be or was not copied.\n",
    publish};

} // namespace luma
