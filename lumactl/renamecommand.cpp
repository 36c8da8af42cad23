// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "lumactl/commandarguments.h"
#include "lumactl/lumactlcommands.h"
#include "lumactl/movereport.h"
#include "lumactl/standardoutput.h"

namespace luma {

namespace {

ExitCode run(const std::vector<std::string>& arguments)
{
    const CommandArguments line(arguments, {}, {});
    if (!line.error().empty())
        return wrongUsage(renameCommand, line.error());
    const std::vector<std::string>& operands = line.operands();
    if (operands.size() != 3)
        return wrongUsage(renameCommand, "a site, an item and a name are needed");
    const std::string& name = operands[2];
    if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos)
        return wrongUsage(renameCommand, "\"" + name + "\" is no name for a file");
    const auto site = siteFolder(operands[0]);
    if (!site)
        return ExitCode::Unusable;
    const std::filesystem::path item = itemPath(*site, operands[1]);
    if (item == *site)
        return unusable("the site's own folder can't be renamed");
    MoveReport report;
    return report.finish(LinkUpdatingMove(*site, report.callbacks()).rename(item, name));
}

} // namespace

const LumactlCommand renameCommand = {
    "rename", "SITE ITEM NEWNAME", "rename a file or folder of a site and keep the links to it right",
    "ITEM is a subpath of SITE, or any other path to the item. It stays in its folder.\n"
    "\n"
    "The exit code is 1 when the item could not be renamed, because the name is taken\n"
    "for instance, or a page not be rewritten.\n",
    run};

} // namespace luma
