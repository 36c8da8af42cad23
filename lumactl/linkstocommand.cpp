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
        return wrongUsage(linksToCommand, line.error());
    if (line.operands().size() != 2)
        return wrongUsage(linksToCommand, "a site and a file are needed");
    const auto site = siteFolder(line.operands()[0]);
    if (!site)
        return ExitCode::Unusable;
    const std::filesystem::path target = itemPath(*site, line.operands()[1]);
    if (!itemExists(target))
        return unusable(line.operands()[1] + ": No such file");
    StandardOutput output;
    const auto show = [&output](const std::string& subpath) {
        output.text().append(subpath).append("\n");
        output.flushIfLarge();
    };
    if (const auto done = findLinksTo(*site, target, show); !done)
        return unusable(done.error().text);
    return output.finish() ? ExitCode::Ok : ExitCode::Found;
}

} // namespace

const LumactlCommand linksToCommand = {
    "links-to", "SITE FILE", "list the files of a site that refer to one of its files",
    "FILE is a subpath of SITE, or any other path to the file. A page refers to it by\n"
    "a link or in a style element, a style sheet by url(...), a text or script by\n"
    "containing its name. Prints one subpath a line.\n",
    run};

} // namespace luma
