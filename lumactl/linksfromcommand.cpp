// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "links/browserreports.h"
#include "links/linkreports.h"
#include "lumactl/lumactlcommands.h"
#include "lumactl/reportoptions.h"
#include "lumactl/standardoutput.h"

namespace luma {

namespace {

ExitCode listByLetter(const std::string& page)
{
    // An unreadable file must not look like a page without links.
    if (const auto source = readFile(page); !source)
        return unusable(source.error().text);
    const PageFindings findings = findLinksFrom(page);
    if (!findings.isPage)
        return unusable(page + ": Not a page");
    StandardOutput output;
    appendLines(output.text(), findings);
    return output.finish() ? ExitCode::Ok : ExitCode::Found;
}

ExitCode run(const std::vector<std::string>& arguments)
{
    const CommandArguments line = reportArguments(arguments, {"--no-fragments"}, {"--site"});
    if (!line.error().empty())
        return wrongUsage(linksFromCommand, line.error());
    if (line.operands().size() != 1)
        return wrongUsage(linksFromCommand, "one page is needed");
    if (const std::string conflict = conflictIn(line); !conflict.empty())
        return wrongUsage(linksFromCommand, conflict);
    const std::string& page = line.operands().front();
    if (linkRules(line) == LinkRules::Letter)
        return listByLetter(page);
    std::filesystem::path site;
    if (line.has("--site")) {
        const auto folder = siteFolder(line.value("--site"));
        if (!folder)
            return ExitCode::Unusable;
        site = *folder;
    }
    auto found = checkWebPage(site, page, webRules(line, line.value("--site")));
    if (!found)
        return unusable(found.error().text);
    if (site.empty())
        found->path = page;
    StandardOutput output;
    if (line.has("--json"))
        appendJson(output.text(), *found);
    else
        appendLines(output.text(), page, *found);
    return output.finish() ? ExitCode::Ok : ExitCode::Found;
}

constexpr std::string_view help =
    "Prints the page's path and then one line for each link, as a browser reads them,\n"
    "with line and column. A link that leads nowhere is marked and says why.\n"
    "\n"
    "  --site SITE          the site that PAGE is in, where \"/x\" starts. Without it\n"
    "                       PAGE is read as a browser does that opens the file\n"
    "  --no-fragments       don't look for the places that \"#name\" leads to\n"
    "\n"
    "  lumactl links-from ~/site/docs/index.html --site ~/site\n";

} // namespace

const LumactlCommand linksFromCommand = {"links-from",
                                         "PAGE [--site SITE] [--no-fragments] [--json] [--by-letter]",
                                         "list the links of one page",
                                         help,
                                         run,
                                         true};

} // namespace luma
