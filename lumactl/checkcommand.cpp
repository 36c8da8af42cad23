// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/browserreports.h"
#include "links/linkreports.h"
#include "lumactl/lumactlcommands.h"
#include "lumactl/reportoptions.h"
#include "lumactl/standardoutput.h"

#include <algorithm>

namespace luma {

namespace {

Result<bool> checkByLetter(const std::filesystem::path& site, FindingsKept kept, StandardOutput& output,
                           bool& anyMissing)
{
    return findMissingLinks(site, kept, [&](const PageFindings& page) {
        appendLines(output.text(), page);
        for (const LinkFinding& link : page.links)
            anyMissing = anyMissing || link.state == LinkState::Missing;
        output.flushIfLarge();
    });
}

Result<bool> checkAsBrowser(const std::filesystem::path& site, FindingsKept kept,
                            const CommandArguments& line, StandardOutput& output, bool& anyMissing)
{
    return checkWebLinks(site, webRules(line, line.operands().front()), kept, [&](const WebPage& page) {
        if (line.has("--json"))
            appendJson(output.text(), page);
        else
            appendLines(output.text(), (site / page.path).native(), page);
        anyMissing = anyMissing || !page.unreadable.empty() ||
                     std::any_of(page.links.begin(), page.links.end(),
                                 [](const WebLink& link) { return link.state == LinkState::Missing; });
        output.flushIfLarge();
    });
}

ExitCode run(const std::vector<std::string>& arguments)
{
    const CommandArguments line = reportArguments(arguments, {"--missing", "--no-fragments"});
    if (!line.error().empty())
        return wrongUsage(checkCommand, line.error());
    if (line.operands().size() != 1)
        return wrongUsage(checkCommand, "one site is needed");
    if (const std::string conflict = conflictIn(line); !conflict.empty())
        return wrongUsage(checkCommand, conflict);
    const auto site = siteFolder(line.operands().front());
    if (!site)
        return ExitCode::Unusable;
    StandardOutput output;
    bool anyMissing = false;
    const FindingsKept kept = line.has("--missing") ? FindingsKept::Missing : FindingsKept::All;
    const auto done = linkRules(line) == LinkRules::Letter
                          ? checkByLetter(*site, kept, output, anyMissing)
                          : checkAsBrowser(*site, kept, line, output, anyMissing);
    if (!done)
        return unusable(done.error().text);
    return output.finish() && !anyMissing ? ExitCode::Ok : ExitCode::Found;
}

constexpr std::string_view help =
    "Prints the path of every page and style sheet and then its links, as a browser\n"
    "reads them, with line and column. A missing link is marked and says why.\n"
    "\n"
    "  --missing            only missing links, and only pages that have one\n"
    "  --no-fragments       don't look for the places that \"#name\" leads to\n"
    "\n"
    "  lumactl check ~/site --missing\n"
    "  lumactl check ~/site --missing --json --web-address https://example.org\n"
    "\n"
    "The exit code is 1 if a link is missing or a page can't be read.\n";

} // namespace

const LumactlCommand checkCommand = {"check",
                                     "SITE [--missing] [--no-fragments] [--json] [--by-letter]",
                                     "list the links of all pages of a site, missing ones marked",
                                     help,
                                     run,
                                     true};

} // namespace luma
