// SPDX-License-Identifier: GPL-3.0-or-later
#include "lumactl/commandarguments.h"
#include "lumactl/lumactlcommands.h"
#include "lumactl/standardoutput.h"
#include "site/filetransfer.h"
#include "site/foldercomparison.h"

#include <unordered_set>

// The commands that compare two folders and copy what differs.

namespace luma {

namespace {

// The two folders in the direction of the transfer; nothing, after a message, if they can't be used.
std::optional<SyncFolders> syncFolders(const LumactlCommand& command, const CommandArguments& line)
{
    if (!line.error().empty() || line.operands().size() != 2) {
        wrongUsage(command, line.error().empty() ? "a source folder and a destination folder are needed"
                                                 : line.error());
        return std::nullopt;
    }
    const auto source = siteFolder(line.operands()[0]);
    const auto destination = source ? siteFolder(line.operands()[1]) : std::nullopt;
    if (!source || !destination)
        return std::nullopt;
    return line.has("--download") ? SyncFolders{*destination, *source} : SyncFolders{*source, *destination};
}

// What differs, without what --ignore names; how much is ignored is said.
Result<ComparisonReport> compare(const SyncFolders& folders, const CommandArguments& line)
{
    std::string patterns;
    for (const std::string& pattern : line.values("--ignore"))
        patterns.append(pattern).push_back('\n');
    auto report = FolderComparison(folders, IgnoredNames(patterns)).run(WorkItem());
    if (report && report->ignored > 0)
        complain(std::to_string(report->ignored) + " ignored");
    return report;
}

ExitCode changed(const std::vector<std::string>& arguments)
{
    const CommandArguments line(arguments, {"--download"}, {"--ignore"});
    const auto folders = syncFolders(changedCommand, line);
    if (!folders)
        return ExitCode::Unusable;
    const auto report = compare(*folders, line);
    if (!report)
        return unusable(report.error().text);
    StandardOutput output;
    for (const SyncRow& row : report->rows) {
        output.text().append(row.displayName).push_back('\n');
        output.flushIfLarge();
    }
    for (const std::string& problem : report->problems)
        complain(problem);
    return output.finish() && report->problems.empty() ? ExitCode::Ok : ExitCode::Found;
}

// A name may be given as it was printed, or as its bytes.
void untick(std::vector<SyncRow>& rows, const std::vector<std::string>& exceptions)
{
    const std::unordered_set<std::string> names(exceptions.begin(), exceptions.end());
    for (SyncRow& row : rows)
        row.select = !names.contains(row.displayName) && !names.contains(row.relativePath);
}

ExitCode publish(const std::vector<std::string>& arguments)
{
    const CommandArguments line(arguments, {"--download"}, {"--except", "--ignore"});
    const auto folders = syncFolders(publishCommand, line);
    if (!folders)
        return ExitCode::Unusable;
    auto report = compare(*folders, line);
    if (!report)
        return unusable(report.error().text);
    untick(report->rows, line.values("--except"));
    const TransferReport transferred = FileTransfer(std::move(report->rows)).run(WorkItem());
    for (const std::string& problem : report->problems)
        complain(problem);
    for (const TransferProblem& problem : transferred.problems)
        complain(problem.text);
    return report->problems.empty() && transferred.problems.empty() ? ExitCode::Ok : ExitCode::Found;
}

} // namespace

const LumactlCommand changedCommand = {
    "changed", "SOURCE DESTINATION [--download] [--ignore PATTERN]...",
    "list the files that publish would copy",
    "Prints the files of SOURCE that are missing in DESTINATION or older there, one a\n"
    "line; control characters and bytes that are not UTF-8 are printed as \"\\#\" and\n"
    "three octal digits. With --download it lists the files of DESTINATION that are\n"
    "missing in SOURCE or older there.\n"
    "\n"
    "Left alone and counted: .git, .svn, .hg, *~, .*.swp, Thumbs.db, .DS_Store, and\n"
    "what --ignore names: a pattern for names, with a slash for paths below the\n"
    "folder, with a slash at the end for folders only.\n"
    "\n"
    "The exit code is 1 if something could not be compared.\n",
    changed};

const LumactlCommand publishCommand = {
    "publish", "SOURCE DESTINATION [--download] [--except NAME]... [--ignore PATTERN]...",
    "copy new and modified files to the other side",
    "Copies what \"lumactl changed\" prints, with modification time and mode. With\n"
    "--download it copies from DESTINATION to SOURCE. --except leaves out one file,\n"
    "named as it was printed; it may be given several times.\n"
    "\n"
    "The exit code is 1 if something could not be copied; everything else is done.\n",
    publish};

} // namespace luma
