// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "links/browserreports.h"
#include "links/linkreports.h"
#include "lumactl/lumactlcommands.h"
#include "lumactl/reportoptions.h"
#include "lumactl/standardoutput.h"

namespace luma {

namespace {

ExitCode run(const std::vector<std::string>& arguments)
{
    const CommandArguments line = reportArguments(arguments, {"-0"});
    if (!line.error().empty())
        return wrongUsage(linksToCommand, line.error());
    if (line.operands().size() != 2)
        return wrongUsage(linksToCommand, "a site and a file are needed");
    if (const std::string conflict = conflictIn(line); !conflict.empty())
        return wrongUsage(linksToCommand, conflict);
    const auto site = siteFolder(line.operands()[0]);
    if (!site)
        return ExitCode::Unusable;
    const std::filesystem::path target = itemPath(*site, line.operands()[1]);
    if (!itemExists(target))
        return unusable(line.operands()[1] + ": No such file");
    StandardOutput output;
    const auto show = [&](const std::string& subpath) {
        output.text().append(subpath).push_back(line.has("-0") ? '\0' : '\n');
        output.flushIfLarge();
    };
    const auto showPage = [&](const WebPage& page) {
        if (!line.has("--json"))
            show(page.path);
        else if (page.links.empty())
            appendJson(output.text(), "page", page.path);
        else
            appendJson(output.text(), page);
        output.flushIfLarge();
    };
    const auto done = linkRules(line) == LinkRules::Letter
                          ? findLinksTo(*site, target, show)
                          : findWebLinksTo(*site, target, webRules(line, line.operands().front()), showPage);
    if (!done)
        return unusable(done.error().text);
    return output.finish() ? ExitCode::Ok : ExitCode::Found;
}

constexpr std::string_view help =
    "FILE is a subpath of SITE, or any other path to the file or folder. A page or\n"
    "style sheet refers to it by a link as a browser reads it, or a page by its name in\n"
    "scripts, data attributes or server code, a script, data file or text by containing\n"
    "its name. Prints one subpath a line.\n"
    "\n"
    "  -0                   a NUL byte after each subpath instead of a line feed\n"
    "\n"
    "  lumactl links-to ~/site images/logo.png --json\n";

} // namespace

const LumactlCommand linksToCommand = {"links-to",
                                       "SITE FILE [--json] [-0] [--by-letter]",
                                       "list the files of a site that refer to one of its files",
                                       help,
                                       run,
                                       true};

} // namespace luma
