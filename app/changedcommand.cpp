#include "app/changedcommand.h"

#include "app/syncarguments.h"

#include <cstdio>

namespace luma {

namespace {

constexpr const char* usage =
    "Usage: lumactl changed SOURCE DESTINATION [--download]\n"
    "Prints the files of SOURCE that are missing in DESTINATION or older there, one a line.\n"
    "  --download  the other way: the files of DESTINATION that SOURCE lacks\n"
    "Exit status: 0; 1 when something could not be compared; 2 for unusable arguments.\n";

} // namespace

int changedCommand(const std::vector<std::string>& arguments)
{
    const auto read = readSyncArguments(arguments, ExceptOption::Refused);
    if (!read) {
        (void)std::fprintf(stderr, "lumactl changed: %s\n%s", read.error().text.c_str(), usage);
        return 2;
    }
    if (read->wantsHelp)
        return std::fputs(usage, stdout) < 0 ? 1 : 0;
    const auto report = FolderComparison(read->folders.sending, read->folders.receiving).run(WorkItem());
    if (!report) {
        (void)std::fprintf(stderr, "lumactl changed: %s\n", report.error().text.c_str());
        return 2;
    }
    for (const SyncRow& row : report->rows)
        (void)std::printf("%s\n", row.displayName.c_str());
    for (const std::string& problem : report->problems)
        (void)std::fprintf(stderr, "lumactl changed: %s\n", problem.c_str());
    return std::fflush(stdout) == 0 && report->problems.empty() ? 0 : 1;
}

} // namespace luma
