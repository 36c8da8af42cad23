// SPDX-License-Identifier: GPL-3.0-or-later
#include "lumactl/publishsides.h"
#include "lumactl/standardoutput.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace luma {

namespace {

bool printPublishes(const std::vector<KeptFiles>& publishes, bool asJson)
{
    StandardOutput output;
    for (const KeptFiles& kept : publishes) {
        const QJsonObject object = {{QStringLiteral("publish"), QString::fromStdString(kept.publish)},
                                    {QStringLiteral("time"), qint64{kept.time}},
                                    {QStringLiteral("files"), static_cast<qint64>(kept.files.size())}};
        const QString date = QDateTime::fromSecsSinceEpoch(kept.time).toString(Qt::ISODate);
        output.text() += asJson ? QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString()
                                : kept.publish + ' ' + date.toStdString() + ' ' +
                                      std::to_string(kept.files.size()) + " files";
        output.text() += '\n';
        output.flushIfLarge();
    }
    return output.finish();
}

// The publish of that name, or the last one.
const KeptFiles* chosen(const std::vector<KeptFiles>& publishes, const std::string& name)
{
    const auto found = std::find_if(publishes.begin(), publishes.end(), [&name](const KeptFiles& kept) {
        return name.empty() || kept.publish == name;
    });
    return found == publishes.end() ? nullptr : &*found;
}

// Ticks the rows that the arguments ask for. What must not be replaced without --yes is said.
std::vector<std::string> choose(std::vector<SyncRow>& rows, const CommandArguments& line)
{
    std::vector<std::string> problems;
    for (SyncRow& row : rows)
        row.select = !line.has("--only");
    tickNamed(rows, line.values("--only"), true);
    tickNamed(rows, line.values("--except"), false);
    for (SyncRow& row : rows) {
        if (row.select && row.isMarked() && !line.has("--yes")) {
            row.select = false;
            problems.push_back(row.displayName + ": " + textOf(row.reason));
        }
    }
    return problems;
}

ExitCode end(bool isPrinted, const std::vector<std::string>& problems)
{
    for (const std::string& problem : problems)
        complain(problem);
    return isPrinted && problems.empty() ? ExitCode::Ok : ExitCode::Found;
}

ExitCode restore(const std::vector<std::string>& arguments)
{
    const CommandArguments line(arguments, {"--download", "--list", "--dry-run", "--yes", "--json"},
                                {"--ssh", "--publish", "--only", "--except", "--keep-in"});
    const auto sides = publishSidesOf(restoreCommand, line);
    if (!sides)
        return ExitCode::Unusable;
    const auto versions = sides->keptVersions();
    const WorkItem item;
    const auto publishes = versions ? versions->list(item) : Result<std::vector<KeptFiles>>(versions.error());
    if (!publishes)
        return unusable(publishes.error().text);
    if (line.has("--list"))
        return printPublishes(*publishes, line.has("--json")) ? ExitCode::Ok : ExitCode::Found;
    const KeptFiles* const kept = chosen(*publishes, line.value("--publish"));
    if (!kept)
        return unusable("no such publish has kept anything");
    auto rows = versions->rows(*kept, PublishedFiles::load(sides->identity), sides->direction, item);
    if (!rows)
        return unusable(rows.error().text);
    std::vector<std::string> problems = choose(*rows, line);
    if (line.has("--dry-run"))
        return end(printRows(*rows, rowFormOf(line), true), problems);
    const auto lock = lockForPublishing(sides->identity);
    if (!lock)
        return unusable(lock.error().text);
    const RestoreReport report = versions->restore(sides->identity, kept->publish, *rows, item, item);
    problems.insert(problems.end(), report.problems.begin(), report.problems.end());
    std::vector<SyncRow> done;
    for (const std::size_t row : report.done)
        done.push_back(rows->at(row));
    return end(!line.has("--json") || printRows(done, RowForm::Json, false), problems);
}

} // namespace

const LumactlCommand restoreCommand = {
    "restore",
    "SOURCE DESTINATION [--list] [--publish NAME] [--only NAME]... [--except NAME]... [--download] "
    "[--dry-run] [--yes] [--json] [--ssh USER@HOST[:PORT]] [--keep-in FOLDER]",
    "put back what a publish replaced or deleted",
    "Puts the files of DESTINATION back that the last \"lumactl publish --keep\" or the\n"
    "site's window has replaced or deleted there; with --download, those of SOURCE.\n"
    "--list prints which publishes have kept files, the newest first: name, time and\n"
    "number of files. --publish names another one than the last. --only puts back\n"
    "nothing but the named file, --except leaves one out; both may be given several\n"
    "times, with names as --dry-run prints them.\n"
    "\n"
    "A file that has changed there since the publish is left, unless --yes is given.\n"
    "What is replaced is kept, too, so a restore can be taken back by another one.\n"
    "\n"
    "The exit code is 1 if something could not be or was not put back.\n",
    restore};

} // namespace luma
