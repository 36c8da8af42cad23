// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/unlinkeditems.h"
#include "lumactl/commandarguments.h"
#include "lumactl/lumactlcommands.h"
#include "lumactl/standardoutput.h"

namespace luma {

namespace {

ExitCode run(const std::vector<std::string>& arguments)
{
    const CommandArguments line(arguments, {}, {"--except"});
    if (!line.error().empty())
        return wrongUsage(unlinkedCommand, line.error());
    if (line.operands().size() != 1)
        return wrongUsage(unlinkedCommand, "one site is needed");
    const auto site = siteFolder(line.operands().front());
    if (!site)
        return ExitCode::Unusable;
    StandardOutput output;
    bool anyFound = false;
    UnlinkedItemsCallbacks callbacks;
    callbacks.row = [&](const std::string& subpath) {
        anyFound = true;
        output.text().append(subpath).append("\n");
        output.flushIfLarge();
    };
    if (const auto done = findUnlinkedItems(*site, line.value("--except"), callbacks); !done)
        return unusable(done.error().text);
    return output.finish() && !anyFound ? ExitCode::Ok : ExitCode::Found;
}

} // namespace

const LumactlCommand unlinkedCommand = {
    "unlinked", "SITE [--except \"a, b\"]", "list the files of a site that nothing refers to",
    "Prints one subpath a line.\n"
    "\n"
    "  --except \"a, b\"    leave out the files below the folders a and b of SITE; the\n"
    "                     names are regular expressions, letter case ignored. Links\n"
    "                     in these folders still count\n"
    "\n"
    "The exit code is 1 if there is such a file.\n",
    run};

} // namespace luma
