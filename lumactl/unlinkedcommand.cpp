// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/browserreports.h"
#include "links/unlinkeditems.h"
#include "lumactl/lumactlcommands.h"
#include "lumactl/reportoptions.h"
#include "lumactl/standardoutput.h"

namespace luma {

namespace {

ExitCode run(const std::vector<std::string>& arguments)
{
    const CommandArguments line = reportArguments(arguments, {}, {"--except"});
    if (!line.error().empty())
        return wrongUsage(unlinkedCommand, line.error());
    if (line.operands().size() != 1)
        return wrongUsage(unlinkedCommand, "one site is needed");
    if (const std::string conflict = conflictIn(line); !conflict.empty())
        return wrongUsage(unlinkedCommand, conflict);
    const auto site = siteFolder(line.operands().front());
    if (!site)
        return ExitCode::Unusable;
    StandardOutput output;
    bool anyFound = false;
    UnlinkedItemsCallbacks callbacks;
    callbacks.row = [&](const std::string& subpath) {
        anyFound = true;
        if (line.has("--json"))
            appendJson(output.text(), "file", subpath);
        else
            output.text().append(subpath).append("\n");
        output.flushIfLarge();
    };
    const std::string except = line.value("--except");
    const auto done = linkRules(line) == LinkRules::Letter
                          ? findUnlinkedItems(*site, except, callbacks)
                          : findWebUnlinked(*site, webRules(line), except, callbacks);
    if (!done)
        return unusable(done.error().text);
    return output.finish() && !anyFound ? ExitCode::Ok : ExitCode::Found;
}

constexpr std::string_view help =
    "Prints one subpath a line. A file is linked if another page or style sheet leads\n"
    "to it as a browser reads links, or if a script, data file or text contains its\n"
    "name. Hidden files are left out, and at the top of SITE what is asked for without\n"
    "a link: index pages, robots.txt, favicon.ico, sitemap.xml and the like.\n"
    "\n"
    "  --except \"a, b\"      leave out the files below the folders a and b of SITE; the\n"
    "                       names are regular expressions, letter case ignored. Links\n"
    "                       in these folders still count\n"
    "\n"
    "  lumactl unlinked ~/site --except \"drafts, old.*\"\n"
    "\n"
    "The exit code is 1 if there is such a file.\n";

} // namespace

const LumactlCommand unlinkedCommand = {"unlinked",
                                        "SITE [--except \"a, b\"] [--json] [--by-letter]",
                                        "list the files of a site that nothing refers to",
                                        help,
                                        run,
                                        true};

} // namespace luma
