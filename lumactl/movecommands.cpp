// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/linkupdatingmove.h"
#include "lumactl/commandarguments.h"
#include "lumactl/lumactlcommands.h"
#include "lumactl/standardoutput.h"

#include <system_error>

// The commands that move, copy or rename items and keep the links right.

namespace luma {

namespace fs = std::filesystem;

namespace {

// Shows a move's log on standard output and its problems on standard error.
class MoveReport final
{
public:
    [[nodiscard]] LinkUpdatingMove::Callbacks callbacks()
    {
        LinkUpdatingMove::Callbacks callbacks;
        callbacks.log = [this](const std::string& text) { m_output.text() += text; };
        callbacks.problem = [](const MoveProblem& problem) { complain(problem.text); };
        return callbacks;
    }

    // Ok when there was no problem.
    ExitCode finish(const MoveOutcome& outcome)
    {
        if (!m_output.text().empty())
            m_output.text() += "\n";
        return m_output.finish() && outcome.problems.empty() ? ExitCode::Ok : ExitCode::Found;
    }

private:
    StandardOutput m_output;
};

ExitCode moveOrCopy(const LumactlCommand& command, MoveOperation operation,
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
        return unusable(operands.back() + ": Not a folder");
    std::vector<fs::path> items;
    for (auto item = operands.begin() + 1; item != operands.end() - 1; ++item)
        items.push_back(itemPath(*site, *item));
    MoveReport report;
    return report.finish(LinkUpdatingMove(*site, report.callbacks()).run(operation, items, folder));
}

ExitCode move(const std::vector<std::string>& arguments)
{
    return moveOrCopy(moveCommand, MoveOperation::Move, arguments);
}

ExitCode copy(const std::vector<std::string>& arguments)
{
    return moveOrCopy(copyCommand, MoveOperation::Copy, arguments);
}

ExitCode rename(const std::vector<std::string>& arguments)
{
    const CommandArguments line(arguments, {}, {});
    if (!line.error().empty())
        return wrongUsage(renameCommand, line.error());
    const std::vector<std::string>& operands = line.operands();
    if (operands.size() != 3)
        return wrongUsage(renameCommand, "a site, an item and a name are needed");
    const std::string& name = operands[2];
    if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos)
        return wrongUsage(renameCommand, "\"" + name + "\" is not a valid file name");
    const auto site = siteFolder(operands[0]);
    if (!site)
        return ExitCode::Unusable;
    const fs::path item = itemPath(*site, operands[1]);
    if (item == *site)
        return unusable("the site's folder itself can't be renamed");
    MoveReport report;
    return report.finish(LinkUpdatingMove(*site, report.callbacks()).rename(item, name));
}

} // namespace

const LumactlCommand moveCommand = {
    "move", "SITE ITEM... FOLDER", "move files or folders within a site and keep the links right",
    "Items and folder are subpaths of SITE, or any other paths to them. Links to the\n"
    "items are rewritten in every page of SITE, and so are the links of pages that\n"
    "move. Nothing is overwritten: an item stays where it is if its name is taken.\n"
    "\n"
    "The exit code is 1 if an item could not be moved or a page could not be\n"
    "rewritten.\n",
    move};

const LumactlCommand copyCommand = {
    "copy", "SITE ITEM... FOLDER",
    "copy files or folders into a folder of a site and point links to the copies",
    "Like move, but copies: the links of copied pages are kept right, and links to an\n"
    "item lead to its copy from now on.\n"
    "\n"
    "The exit code is 1 if an item could not be copied or a page could not be\n"
    "rewritten.\n",
    copy};

const LumactlCommand renameCommand = {
    "rename", "SITE ITEM NEWNAME", "rename a file or folder of a site and keep the links to it right",
    "ITEM is a subpath of SITE, or any other path to the item. It stays in its folder.\n"
    "\n"
    "The exit code is 1 if the item could not be renamed, for example because the\n"
    "name is taken, or a page could not be rewritten.\n",
    rename};

} // namespace luma
