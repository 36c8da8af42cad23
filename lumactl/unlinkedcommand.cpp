// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/browserreports.h"
#include "links/unlinkeditems.h"
#include "lumactl/lumactlcommands.h"
#include "lumactl/reportoptions.h"
#include "lumactl/standardoutput.h"

#include <algorithm>

namespace luma {

namespace {

ExitCode run(const std::vector<std::string>& arguments)
{
    const CommandArguments line = reportArguments(arguments, {"-0"}, {"--except"});
    if (!line.error().empty())
        return wrongUsage(unlinkedCommand, line.error());
    if (line.operands().size() != 1)
        return wrongUsage(unlinkedCommand, "one site is needed");
    if (const std::string conflict = conflictIn(line); !conflict.empty())
        return wrongUsage(unlinkedCommand, conflict);
    const auto site = siteFolder(line.operands().front());
    if (!site)
        return ExitCode::Unusable;
    const auto record = savedSite(line.operands().front());
    const auto kept = record && *record ? (*record)->keptItems() : std::vector<std::string>();
    StandardOutput output;
    bool anyFound = false;
    UnlinkedItemsCallbacks callbacks;
    callbacks.row = [&](const std::string& subpath) {
        if (std::find(kept.begin(), kept.end(), subpath) != kept.end())
            return;
        anyFound = true;
        if (line.has("--json"))
            appendJson(output.text(), "file", subpath);
        else
            output.text().append(subpath).push_back(line.has("-0") ? '\0' : '\n');
        output.flushIfLarge();
    };
    const std::string except = line.value("--except");
    const auto done =
        linkRules(line) == LinkRules::Letter
            ? findUnlinkedItems(*site, except, callbacks)
            : findWebUnlinked(*site, webRules(line, line.operands().front()), except, callbacks);
    if (!done)
        return unusable(done.error().text);
    return output.finish() && !anyFound ? ExitCode::Ok : ExitCode::Found;
}

constexpr std::string_view help =
    "Prints one subpath a line. A file is linked if another page or style sheet leads\n"
    "to it as a browser reads links, or if a script, data file or text contains its\n"
    "name, or the scripts, data attributes or server code of another page do. Hidden\n"
    "files are left out, and at the top of SITE what is asked for without a link:\n"
    "index pages, robots.txt, favicon.ico, sitemap.xml and the like. So are the items\n"
    "kept in LUMA if SITE is the name of a site in its list.\n"
    "\n"
    "  --except \"a, b\"      leave out the files below the folders a and b of SITE; the\n"
    "                       names are regular expressions, letter case ignored. Links\n"
    "                       in these folders still count\n"
    "  -0                   a NUL byte after each subpath instead of a line feed\n"
    "\n"
    "  lumactl unlinked ~/site --except \"drafts, old.*\"\n"
    "\n"
    "The exit code is 1 if there is such a file.\n";

} // namespace

const LumactlCommand unlinkedCommand = {"unlinked",
                                        "SITE [--except \"a, b\"] [--json] [-0] [--by-letter]",
                                        "list the files of a site that nothing refers to",
                                        help,
                                        run,
                                        true};

} // namespace luma
