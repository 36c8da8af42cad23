// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "links/linkreports.h"
#include "lumactl/commandarguments.h"
#include "lumactl/lumactlcommands.h"
#include "lumactl/standardoutput.h"

namespace luma {

namespace {

ExitCode run(const std::vector<std::string>& arguments)
{
    const CommandArguments line(arguments, {}, {});
    if (!line.error().empty())
        return wrongUsage(linksFromCommand, line.error());
    if (line.operands().size() != 1)
        return wrongUsage(linksFromCommand, "one page is needed");
    const std::string& page = line.operands().front();
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

} // namespace

const LumactlCommand linksFromCommand = {
    "links-from", "PAGE", "list the links of one page",
    "Prints the page's path and then one line for each link, grouped by attribute,\n"
    "href first. A link that leads to no file or folder is marked.\n",
    run};

} // namespace luma
