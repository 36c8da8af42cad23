// SPDX-License-Identifier: GPL-3.0-or-later
#include "lumactl/standardoutput.h"
#include "lumactl/syncarguments.h"
#include "site/filetransfer.h"
#include "site/foldercomparison.h"

#include <unordered_set>

namespace luma {

namespace {

// A name is taken as it was printed, or as the bytes that it is.
void untick(std::vector<SyncRow>& rows, const std::vector<std::string>& exceptions)
{
    const std::unordered_set<std::string> names(exceptions.begin(), exceptions.end());
    for (SyncRow& row : rows)
        row.select = !names.contains(row.displayName) && !names.contains(row.relativePath);
}

ExitCode run(const std::vector<std::string>& arguments)
{
    const CommandArguments line(arguments, {"--download"}, {"--except"});
    const auto folders = syncFolders(publishCommand, line);
    if (!folders)
        return ExitCode::Unusable;
    auto report = FolderComparison(folders->sending, folders->receiving).run(WorkItem());
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

const LumactlCommand publishCommand = {
    "publish", "SOURCE DESTINATION [--download] [--except NAME]...",
    "copy new and modified files to the other side",
    "Copies what \"lumactl changed\" prints, with modification time and mode. With\n"
    "--download it copies from DESTINATION to SOURCE. --except leaves one file out,\n"
    "named as it was printed, and may be given many times.\n"
    "\n"
    "The exit code is 1 when something could not be copied; the rest is done.\n",
    run};

} // namespace luma
