// SPDX-License-Identifier: GPL-3.0-or-later
// Our side of bench/site/run-rsync: times the sync panel from the click to the rows, and from the move button
// to the end, with rsync between two local folders.
#include "shell/sshcontroller.h"
#include "site/rsynccommand.h"

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
    arguments.source = argv[2];
    arguments.destination = argv[3];
    const RsyncCommand command(arguments);
    const auto run = [](const std::string& line) {
        return SSHController::unixShellWithResultAndArguments({"/bin/sh", "-c", line});
    };
    if (std::strcmp(argv[1], "transfer") == 0) {
        const std::string report = run(command.transfer(rsyncRules({}, false)));
        return report.empty() ? 1 : 0;
    }
    const std::vector<std::string> lines = RsyncCommand::listing(run(command.dryRun()));
    std::printf("%zu files\n", lines.size());
    return 0;
}
