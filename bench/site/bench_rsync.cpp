// SPDX-License-Identifier: GPL-3.0-or-later
// Our side of bench/site/run-rsync: the sync panel's comparison, or that and the transfer, which takes the names
// from it, with rsync between two local folders.
#include "site/rsyncjob.h"

#include <cstdio>
#include <cstring>

using namespace luma;

int main(int argc, char** argv)
{
    if (argc != 4 || (std::strcmp(argv[1], "list") != 0 && std::strcmp(argv[1], "transfer") != 0)) {
        (void)std::fputs("bench_rsync list|transfer SENDING RECEIVING\n", stderr);
        return 2;
    }
    RsyncArguments arguments;
    arguments.local = std::string(argv[2]) + '/';
    arguments.remote = std::string(argv[3]) + '/';
    const RsyncJob job(arguments, &runProgram);
    const auto found = job.compare(IgnoredNames(), Deletions::Ignored, WorkItem());
    if (!found)
        return 1;
    if (std::strcmp(argv[1], "transfer") == 0)
        return job.transfer(found->rows, {}, {}, {}).problems.empty() ? 0 : 1;
    std::printf("%zu files\n", found->rows.size());
    return 0;
}
