// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/linkreports.h"
#include "lumactl/commandarguments.h"
#include "lumactl/lumactlcommands.h"
#include "lumactl/standardoutput.h"

#include <algorithm>

namespace luma {

namespace {

ExitCode run(const std::vector<std::string>& arguments)
{
    const CommandArguments line(arguments, {"--missing"}, {});
    if (!line.error().empty())
        return wrongUsage(checkCommand, line.error());
    if (line.operands().size() != 1)
        return wrongUsage(checkCommand, "one site is needed");
    const auto site = siteFolder(line.operands().front());
    if (!site)
        return ExitCode::Unusable;
    StandardOutput output;
    bool anyMissing = false;
    const auto show = [&](const PageFindings& page) {
        appendLines(output.text(), page);
        for (const LinkFinding& link : page.links)
            anyMissing = anyMissing || link.state == LinkState::Missing;
        output.flushIfLarge();
    };
    const FindingsKept kept = line.has("--missing") ? FindingsKept::Missing : FindingsKept::All;
    if (const auto done = findMissingLinks(*site, kept, show); !done)
        return unusable(done.error().text);
    return output.finish() && !anyMissing ? ExitCode::Ok : ExitCode::Found;
}

} // namespace

const LumactlCommand checkCommand = {"check", "SITE [--missing]",
                                     "list the links of all pages of a site, missing ones marked",
                                     "Prints the path and the links of every page, as links-from does.\n"
                                     "\n"
                                     "  --missing    only missing links, and only pages that have one\n"
                                     "\n"
                                     "The exit code is 1 if a link is missing.\n",
                                     run};

} // namespace luma
