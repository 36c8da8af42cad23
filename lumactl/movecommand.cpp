// SPDX-License-Identifier: GPL-3.0-or-later
#include "lumactl/commandarguments.h"
#include "lumactl/lumactlcommands.h"
#include "lumactl/movereport.h"
#include "lumactl/standardoutput.h"

#include <system_error>

namespace luma {

namespace fs = std::filesystem;

namespace {

ExitCode run(const LumactlCommand& command, MoveOperation operation,
             const std::vector<std::string>& arguments)
{
    const CommandArguments line(arguments, {}, {});
    if (!line.error().empty())
        return wrongUsage(command, line.error());
    const std::vector<std::string>& operands = line.operands();
    if (operands.size() < 3)
        return wrongUsage(command, "a site, items and a folder are needed");
    const auto site = siteFolder(operands.front());
    if (!site)
        return ExitCode::Unusable;
    const fs::path folder = itemPath(*site, operands.back());
    std::error_code error;
    if (!fs::is_directory(folder, error))
        return unusable(operands.back() + ": not a folder");
    std::vector<fs::path> items;
    for (auto item = operands.begin() + 1; item != operands.end() - 1; ++item)
        items.push_back(itemPath(*site, *item));
    MoveReport report;
    return report.finish(LinkUpdatingMove(*site, report.callbacks()).run(operation, items, folder));
}

ExitCode runMove(const std::vector<std::string>& arguments)
{
    return run(moveCommand, MoveOperation::Move, arguments);
}

ExitCode runCopy(const std::vector<std::string>& arguments)
{
    return run(copyCommand, MoveOperation::Copy, arguments);
}

} // namespace

const LumactlCommand moveCommand = {
    "move", "SITE ITEM... FOLDER", "move files or folders within a site and keep the links right",
    "Items and folder are subpaths of SITE, or any other paths to them. Links to the\n"
    "items are rewritten in every page of SITE, and so are the links of pages that\n"
    "move. Nothing is overwritten: an item whose name is taken stays where it is.\n"
    "\n"
    "The exit code is 1 when an item could not be moved or a page not be rewritten.\n",
    runMove};

const LumactlCommand copyCommand = {
    "copy", "SITE ITEM... FOLDER",
    "copy files or folders into a folder of a site and lead links to the copies",
    "As move, but with a copy: the links of copied pages are kept right, and what\n"
    "linked to an item links to its copy from now on.\n"
    "\n"
    "The exit code is 1 when an item could not be copied or a page not be rewritten.\n",
    runCopy};

} // namespace luma
