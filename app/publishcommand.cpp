#include "app/publishcommand.h"

#include "app/syncarguments.h"
#include "site/filetransfer.h"

#include <cstdio>
#include <set>

namespace luma {

namespace {

constexpr const char* usage =
    "Usage: lumactl publish SOURCE DESTINATION [--download] [--except NAME]...\n"
    "Copies the files of SOURCE that are missing in DESTINATION or older there.\n"
    "  --download     the other way: from DESTINATION to SOURCE\n"
    "  --except NAME  leaves one file out; NAME as \"lumactl changed\" prints it\n"
    "Exit status: 0; 1 when something could not be copied; 2 for unusable arguments.\n";

void printProblem(const std::string& text)
{
    (void)std::fprintf(stderr, "lumactl publish: %s\n", text.c_str());
}

// A name is taken as it was printed, or as the bytes that it is.
void untick(std::vector<SyncRow>& rows, const std::vector<std::string>& exceptions)
{
    const std::set<std::string> names(exceptions.begin(), exceptions.end());
    for (SyncRow& row : rows)
        row.select = names.contains(row.displayName) || names.contains(row.relativePath) ? 0 : 1;
}

int publish(const SyncCommandArguments& arguments)
{
    auto report = FolderComparison(arguments.folders.sending, arguments.folders.receiving).run(WorkItem());
    if (!report) {
        printProblem(report.error().text);
        return 2;
    }
    untick(report->rows, arguments.exceptions);
    const TransferReport transferred = FileTransfer(std::move(report->rows)).run(WorkItem());
    for (const std::string& problem : report->problems)
        printProblem(problem);
    for (const TransferProblem& problem : transferred.problems)
        printProblem(problem.text);
    return report->problems.empty() && transferred.problems.empty() ? 0 : 1;
}

} // namespace

int publishCommand(const std::vector<std::string>& arguments)
{
    const auto read = readSyncArguments(arguments, ExceptOption::Taken);
    if (!read) {
        (void)std::fprintf(stderr, "lumactl publish: %s\n%s", read.error().text.c_str(), usage);
        return 2;
    }
    if (read->wantsHelp)
        return std::fputs(usage, stdout) < 0 ? 1 : 0;
    return publish(*read);
}

} // namespace luma
