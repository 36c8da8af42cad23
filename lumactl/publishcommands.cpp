// SPDX-License-Identifier: GPL-3.0-or-later
#include "lumactl/commandarguments.h"
#include "lumactl/lumactlcommands.h"
#include "lumactl/standardoutput.h"
#include "site/filetransfer.h"
#include "site/foldercomparison.h"
#include "site/rsyncjob.h"
#include "site/shownname.h"
#include "site/syncguards.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

// The commands that compare two folders and copy what differs.

namespace luma {

namespace {

namespace fs = std::filesystem;

// What to compare, and how.
struct Sides
{
    fs::path source;
    std::string destination; // a folder, here or on the server
    std::string login;       // user@host, or empty
    std::string port = "22";
    Direction direction = Direction::Upload;
    IgnoredNames ignored;
    Deletions deletions = Deletions::Ignored;

    [[nodiscard]] std::string identity() const
    {
        return login.empty() ? siteIdentity(source, destination) : siteIdentity(source, login, destination);
    }
    [[nodiscard]] SyncFolders folders() const
    {
        if (direction == Direction::Upload)
            return {source, destination};
        return {destination, source};
    }
    [[nodiscard]] RsyncJob rsync() const
    {
        return {{source.native() + '/', login + ':' + destination + '/', direction, port}, &runProgram};
    }
};

// What a transfer did, in either way.
struct Outcome
{
    std::vector<std::size_t> done = {};
    std::vector<FileFacts> received = {};
    std::vector<std::string> problems = {};
};

// Nothing, after a message, if the arguments or the folders can't be used.
std::optional<Sides> sidesOf(const LumactlCommand& command, const CommandArguments& line)
{
    if (!line.error().empty() || line.operands().size() != 2) {
        wrongUsage(command, line.error().empty() ? "a source folder and a destination folder are needed"
                                                 : line.error());
        return std::nullopt;
    }
    const auto source = siteFolder(line.operands()[0]);
    if (!source)
        return std::nullopt;
    Sides sides;
    sides.source = *source;
    sides.destination = line.operands()[1];
    sides.login = line.value("--ssh");
    if (line.has("--ssh")) {
        const std::size_t colon = sides.login.rfind(':');
        if (colon != std::string::npos) {
            sides.port = sides.login.substr(colon + 1);
            sides.login.erase(colon);
        }
        const bool isNumber =
            !sides.port.empty() && sides.port.find_first_not_of("0123456789") == std::string::npos;
        if (sides.login.find('@') == std::string::npos || sides.login.starts_with('-') || !isNumber) {
            wrongUsage(command, "--ssh needs user@host or user@host:port");
            return std::nullopt;
        }
    } else if (const auto destination = siteFolder(sides.destination)) {
        sides.destination = destination->native();
    } else {
        return std::nullopt;
    }
    std::string patterns;
    for (const std::string& pattern : line.values("--ignore"))
        patterns.append(pattern).push_back('\n');
    sides.ignored = IgnoredNames(patterns);
    sides.direction = line.has("--download") ? Direction::Download : Direction::Upload;
    sides.deletions = line.has("--delete") ? Deletions::Listed : Deletions::Ignored;
    return sides;
}

// What differs; how much is ignored is said.
Result<ComparisonReport> compare(const Sides& sides)
{
    PublishedFiles before = PublishedFiles::load(sides.identity());
    const WorkItem item;
    auto report = sides.login.empty()
                      ? FolderComparison(sides.folders(), sides.ignored, sides.deletions)
                            .run(item, std::move(before), sides.direction)
                      : sides.rsync().compare(sides.ignored, sides.deletions, item, std::move(before));
    if (report && report->ignored > 0)
        complain(std::to_string(report->ignored) + " ignored");
    return report;
}

const char* nameOf(SyncKind kind)
{
    switch (kind) {
    case SyncKind::New:
        return "new";
    case SyncKind::Newer:
        return "newer";
    case SyncKind::Different:
        return "different";
    case SyncKind::Conflict:
        return "conflict";
    case SyncKind::Delete:
        return "delete";
    }
    return "";
}

void putFacts(QJsonObject& object, const FileFacts& facts, const QString& size, const QString& time)
{
    object.insert(size, facts.exists() ? QJsonValue(qint64{facts.size}) : QJsonValue());
    object.insert(time, facts.exists() ? QJsonValue(qint64{facts.time}) : QJsonValue());
}

void append(std::string& text, const SyncRow& row, bool asJson)
{
    if (!asJson) {
        text.append(row.displayName).push_back('\n');
        return;
    }
    QJsonObject object = {{QStringLiteral("what"), QLatin1StringView(nameOf(row.kind))},
                          {QStringLiteral("file"), QString::fromStdString(shownName(row.relativePath))},
                          {QStringLiteral("why"), QLatin1StringView(textOf(row.reason))},
                          {QStringLiteral("asks"), row.isMarked()}};
    putFacts(object, row.sent, QStringLiteral("size"), QStringLiteral("time"));
    putFacts(object, row.received, QStringLiteral("sizeThere"), QStringLiteral("timeThere"));
    text.append(QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString()).push_back('\n');
}

bool print(const std::vector<SyncRow>& rows, bool asJson, bool tickedOnly)
{
    StandardOutput output;
    for (const SyncRow& row : rows) {
        if (row.select || !tickedOnly)
            append(output.text(), row, asJson);
        output.flushIfLarge();
    }
    return output.finish();
}

ExitCode changed(const std::vector<std::string>& arguments)
{
    const CommandArguments line(arguments, {"--download", "--delete", "--json"}, {"--ignore", "--ssh"});
    const auto sides = sidesOf(changedCommand, line);
    if (!sides)
        return ExitCode::Unusable;
    const auto report = compare(*sides);
    if (!report)
        return unusable(report.error().text);
    const bool isPrinted = print(report->rows, line.has("--json"), false);
    for (const std::string& problem : report->problems)
        complain(problem);
    return isPrinted && report->problems.empty() ? ExitCode::Ok : ExitCode::Found;
}

// A name may be given as it was printed, else as its bytes.
void untick(std::vector<SyncRow>& rows, const std::vector<std::string>& exceptions)
{
    for (const std::string& name : exceptions) {
        const auto isShown = [&name](const SyncRow& row) { return shownName(row.relativePath) == name; };
        const bool asPrinted = std::any_of(rows.begin(), rows.end(), isShown);
        for (SyncRow& row : rows) {
            if (asPrinted ? isShown(row) : row.relativePath == name)
                row.select = false;
        }
    }
}

Outcome transfer(const Sides& sides, const ComparisonReport& report)
{
    if (!sides.login.empty()) {
        RsyncReport sent = sides.rsync().transfer(report.rows, report.foldersOnlyThere, {}, {});
        return {std::move(sent.done), std::move(sent.received), std::move(sent.problems)};
    }
    TransferReport copied = FileTransfer(report.rows, report.foldersOnlyThere).run(WorkItem());
    Outcome outcome = {std::move(copied.done), std::move(copied.received), {}};
    for (TransferProblem& problem : copied.problems)
        outcome.problems.push_back(std::move(problem.text));
    return outcome;
}

// Transfers, and remembers what both sides have since.
Outcome publishRows(const Sides& sides, ComparisonReport& report)
{
    const auto lock = lockForPublishing(sides.identity());
    if (!lock)
        return {.problems = {lock.error().text}};
    Outcome outcome = transfer(sides, report);
    for (std::size_t i = 0; i < outcome.done.size(); ++i)
        noteTransfer(report.published, report.rows[outcome.done[i]], outcome.received[i], sides.direction);
    if (const auto saved = report.published.save(); !saved)
        outcome.problems.push_back(saved.error().text);
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
                                {"--except", "--ignore", "--ssh"});
    const auto sides = sidesOf(publishCommand, line);
    if (!sides)
        return ExitCode::Unusable;
    auto report = compare(*sides);
    if (!report)
        return unusable(report.error().text);
    for (SyncRow& row : report->rows)
        row.select = row.select || line.has("--yes");
    untick(report->rows, line.values("--except"));
    std::vector<std::string> problems = report->problems;
    for (const SyncRow& row : report->rows) {
        if (row.isMarked() && !line.has("--yes"))
            problems.push_back(row.displayName + ": " + textOf(row.reason));
    }
    bool isPrinted = true;
    if (line.has("--dry-run")) {
        isPrinted = print(report->rows, line.has("--json"), true);
    } else if (!line.has("--yes") && isHeldBack(report->rows, report->counts)) {
        return ExitCode::Found;
    } else {
        const Outcome outcome = publishRows(*sides, *report);
        problems.insert(problems.end(), outcome.problems.begin(), outcome.problems.end());
        std::vector<SyncRow> done;
        for (const std::size_t row : outcome.done)
            done.push_back(report->rows[row]);
        isPrinted = !line.has("--json") || print(done, true, false);
    }
    for (const std::string& problem : problems)
        complain(problem);
    return isPrinted && problems.empty() ? ExitCode::Ok : ExitCode::Found;
}

} // namespace

const LumactlCommand changedCommand = {
    "changed",
    "SOURCE DESTINATION [--download] [--delete] [--json] [--ssh USER@HOST[:PORT]] [--ignore PATTERN]...",
    "list the files that publish would copy",
    "Prints the files of SOURCE that are missing in DESTINATION, older there or have\n"
    "changed since the last publish, one a line; control characters and bytes that\n"
    "are not UTF-8 are printed as \"\\#\" and three octal digits. With --download it\n"
    "lists the files of DESTINATION for SOURCE in the same way, with --delete also\n"
    "what only the receiving side has, after \"deleting \". With --ssh, DESTINATION\n"
    "is a folder on that server, and rsync does the work; login must work by key.\n"
    "\n"
    "Left alone and counted: .git, .svn, .hg, *~, .*.swp, Thumbs.db, .DS_Store, and\n"
    "what --ignore names: a pattern for names, with a slash for paths below the\n"
    "folder, with a slash at the end for folders only.\n"
    "\n"
    "--json prints one JSON object a line: what (new, newer, different, conflict,\n"
    "delete), file, why, asks (publish leaves it without --yes), size and time (in\n"
    "seconds since 1970), sizeThere and timeThere of the receiving side.\n"
    "\n"
    "The exit code is 1 if something could not be compared.\n",
    changed};

const LumactlCommand publishCommand = {
    "publish",
    "SOURCE DESTINATION [--download] [--delete] [--dry-run] [--yes] [--json] [--ssh USER@HOST[:PORT]] "
    "[--except NAME]... [--ignore PATTERN]...",
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
    "The exit code is 1 if something could not be or was not copied.\n",
    publish};

} // namespace luma
