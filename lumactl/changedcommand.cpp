// SPDX-License-Identifier: GPL-3.0-or-later
#include "lumactl/standardoutput.h"
#include "lumactl/syncarguments.h"
#include "site/foldercomparison.h"

namespace luma {

namespace {

ExitCode run(const std::vector<std::string>& arguments)
{
    const auto folders = syncFolders(changedCommand, CommandArguments(arguments, {"--download"}, {}));
    if (!folders)
        return ExitCode::Unusable;
    const auto report = FolderComparison(folders->sending, folders->receiving).run(WorkItem());
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

} // namespace

const LumactlCommand changedCommand = {
    "changed", "SOURCE DESTINATION [--download]", "list the files that publish would copy",
    "Prints the files of SOURCE that are missing in DESTINATION or older there, one a\n"
    "line, control characters and bytes that are not UTF-8 as \"\\#\" and three octal\n"
    "digits. With --download it looks the other way, for files of DESTINATION.\n"
    "\n"
    "The exit code is 1 when something could not be compared.\n",
    run};

} // namespace luma
