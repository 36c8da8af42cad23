// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/linkupdatingmove.h"
#include "links/sitemoves.h"
#include "links/sitenames.h"
#include "lumactl/commandarguments.h"
#include "lumactl/lumactlcommands.h"
#include "lumactl/reportoptions.h"
#include "lumactl/standardoutput.h"

#include <functional>
#include <system_error>

// The commands that move, copy or rename items, keep the links right, and take that back.

namespace luma {

namespace fs = std::filesystem;

namespace {

// A path as the output shows it: below the site relative to it.
std::string shown(const fs::path& path, const fs::path& site)
{
    const fs::path relative = path.lexically_relative(site);
    return relative.empty() || *relative.begin() == ".." ? path.native() : relative.native();
}

std::string countOfEdits(std::size_t count, const LinkPlan& plan)
{
    const std::string what = plan.text ? "place" : "link";
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

ExitCode complainAbout(const std::vector<MoveProblem>& problems)
{
    for (const MoveProblem& problem : problems)
        complain(problem.text);
    return problems.empty() ? ExitCode::Ok : ExitCode::Found;
}

// What happens to each item: "moved", "copied" or "renamed"; `would` puts "would move" in its place.
void appendItems(std::string& text, const std::vector<MovedItem>& items, const fs::path& site, bool isCopy,
                 bool would)
{
    for (const MovedItem& item : items) {
        const bool isRename = item.from.parent_path() == item.to.parent_path();
        const std::string verb = isCopy     ? (would ? "copy" : "copied")
                                 : isRename ? (would ? "rename" : "renamed")
                                            : (would ? "move" : "moved");
        text.append(would ? "would " : "").append(verb).append(" ").append(shown(item.from, site));
        text.append(" to ").append(shown(item.to, site)).append("\n");
    }
}

void appendNotes(std::string& text, const LinkPlan& plan)
{
    for (const PlanNote& note : plan.notes)
        text.append(shown(note.page, plan.request.site)).append(": ").append(note.text).append("\n");
}

ExitCode printPlan(const LinkPlan& plan)
{
    StandardOutput output;
    const fs::path& site = plan.request.site;
    if (!plan.request.changesLinksOnly)
        appendItems(output.text(), plan.request.items, site, plan.request.operation == MoveOperation::Copy,
                    true);
    for (const PageRewrite& page : plan.pages) {
        for (const LinkEdit& edit : page.edits) {
            output.text().append(shown(page.oldPage, site)).append(":").append(std::to_string(edit.line));
            output.text().append(": ").append(edit.oldLink).append(" -> ").append(edit.newLink).append("\n");
        }
        output.flushIfLarge();
    }
    for (const SymlinkChange& change : plan.symlinks)
        output.text()
            .append(shown(change.oldLink, site))
            .append(": ")
            .append(change.before)
            .append(" -> ")
            .append(change.after)
            .append("\n");
    appendNotes(output.text(), plan);
    return output.finish() ? ExitCode::Ok : ExitCode::Found;
}

// What a command does with its plan.
enum class Way { Show, CarryOut, CarryOutAnyway };

Way wayOf(const CommandArguments& line)
{
    if (line.has("--dry-run"))
        return Way::Show;
    return line.has("--anyway") ? Way::CarryOutAnyway : Way::CarryOut;
}

ExitCode carryOut(const fs::path& site, const std::function<Result<LinkPlan>()>& planned, Way way)
{
    auto moves = SiteMoves::open(site);
    if (!moves)
        return unusable(moves.error().text);
    const auto plan = planned();
    if (!plan)
        return unusable(plan.error().text);
    const MoveRequest& request = plan->request;
    if (plan->text && plan->pages.empty() && plan->problems.empty()) {
        complain("Not found");
        return ExitCode::Found;
    }
    const ExitCode outcome = complainAbout(plan->problems);
    if (way == Way::Show)
        return printPlan(*plan) == ExitCode::Ok ? outcome : ExitCode::Found;
    if (way == Way::CarryOut && !plan->stayingPages().empty()) {
        complain(plan->text ? "Nothing was changed; --anyway leaves these files as they are"
                            : "Nothing was changed, because links there would break; --anyway accepts that");
        return ExitCode::Found;
    }
    const MoveReport report = moves->carryOut(*plan);
    StandardOutput output;
    if (report.isDone) {
        if (!report.items.empty() && !request.changesLinksOnly)
            appendItems(output.text(), report.items, request.site, request.operation == MoveOperation::Copy,
                        false);
        for (const PageRewrite& page : plan->pages)
            output.text()
                .append("rewrote ")
                .append(shown(page.page, request.site))
                .append(": ")
                .append(countOfEdits(page.edits.size(), *plan))
                .append("\n");
        appendNotes(output.text(), *plan);
    }
    const ExitCode done = complainAbout(report.problems);
    return output.finish() && done == ExitCode::Ok ? outcome : ExitCode::Found;
}

ExitCode carryOut(const MoveRequest& request, Way way)
{
    return carryOut(
        request.site, [&request] { return planMove(request); }, way);
}

// Shows a move's log on standard output and its problems on standard error.
class LetterMoveReport final
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

CommandArguments moveArguments(const std::vector<std::string>& arguments)
{
    return {arguments,
            {"--anyway", "--by-letter", "--dry-run", "--short-addresses"},
            {"--web-address", "--index"}};
}

ExitCode moveOrCopy(const LumactlCommand& command, MoveOperation operation,
                    const std::vector<std::string>& arguments)
{
    const CommandArguments line = moveArguments(arguments);
    if (!line.error().empty())
        return wrongUsage(command, line.error());
    const std::vector<std::string>& operands = line.operands();
    if (operands.size() < 3)
        return wrongUsage(command, "a site, items and a folder are needed");
    if (const std::string conflict = conflictIn(line); !conflict.empty())
        return wrongUsage(command, conflict);
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
    if (linkRules(line) == LinkRules::Letter) {
        LetterMoveReport report;
        return report.finish(LinkUpdatingMove(*site, report.callbacks()).run(operation, items, folder));
    }
    MoveRequest request{*site, {}, operation, {}, webRules(line, operands.front())};
    for (const fs::path& item : items)
        request.items.push_back({item, folder / item.filename()});
    return carryOut(request, wayOf(line));
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
    const CommandArguments line = moveArguments(arguments);
    if (!line.error().empty())
        return wrongUsage(renameCommand, line.error());
    const std::vector<std::string>& operands = line.operands();
    if (operands.size() != 3)
        return wrongUsage(renameCommand, "a site, an item and a name are needed");
    if (const std::string conflict = conflictIn(line); !conflict.empty())
        return wrongUsage(renameCommand, conflict);
    const std::string& name = operands[2];
    if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos)
        return wrongUsage(renameCommand, "\"" + name + "\" is not a valid file name");
    const auto site = siteFolder(operands[0]);
    if (!site)
        return ExitCode::Unusable;
    const fs::path item = itemPath(*site, operands[1]);
    if (item == *site)
        return unusable("the site's folder itself can't be renamed");
    if (linkRules(line) == LinkRules::Letter) {
        LetterMoveReport report;
        return report.finish(LinkUpdatingMove(*site, report.callbacks()).rename(item, name));
    }
    return carryOut(
        {*site, {}, MoveOperation::Move, {{item, item.parent_path() / name}}, webRules(line, operands[0])},
        wayOf(line));
}

ExitCode relink(const std::vector<std::string>& arguments)
{
    const CommandArguments line(arguments, {"--anyway", "--dry-run", "--short-addresses"},
                                {"--web-address", "--index"});
    if (!line.error().empty())
        return wrongUsage(relinkCommand, line.error());
    const std::vector<std::string>& operands = line.operands();
    if (operands.size() != 3)
        return wrongUsage(relinkCommand, "a site, the old target and the new one are needed");
    const auto site = siteFolder(operands[0]);
    if (!site)
        return ExitCode::Unusable;
    const fs::path target = fs::path(operands[1]).is_absolute() ? fs::path(operands[1]) : *site / operands[1];
    MoveRequest request{*site,
                        {},
                        MoveOperation::Move,
                        {{target.lexically_normal(), itemPath(*site, operands[2])}},
                        webRules(line, operands[0])};
    request.changesLinksOnly = true;
    return carryOut(request, wayOf(line));
}

ExitCode renameName(const std::vector<std::string>& arguments)
{
    const CommandArguments line(arguments, {"--anyway", "--dry-run", "--id"}, {"--web-address", "--index"});
    if (!line.error().empty())
        return wrongUsage(renameClassCommand, line.error());
    const std::vector<std::string>& operands = line.operands();
    if (operands.size() != 3)
        return wrongUsage(renameClassCommand, "a site, a name and its new name are needed");
    if (const std::string problem = problemOfName(operands[2]); !problem.empty())
        return wrongUsage(renameClassCommand, problem);
    const auto site = siteFolder(operands[0]);
    if (!site)
        return ExitCode::Unusable;
    const WebRules rules = webRules(line, operands[0]);
    return carryOut(
        *site, [&] { return planNameChange(*site, line.has("--id"), operands[1], operands[2], rules); },
        wayOf(line));
}

ExitCode undo(const std::vector<std::string>& arguments)
{
    const CommandArguments line(arguments, {"--skip"}, {});
    if (!line.error().empty())
        return wrongUsage(undoCommand, line.error());
    if (line.operands().size() != 1)
        return wrongUsage(undoCommand, "one site is needed");
    const auto site = siteFolder(line.operands().front());
    if (!site)
        return ExitCode::Unusable;
    auto moves = SiteMoves::open(*site);
    if (!moves)
        return unusable(moves.error().text);
    StandardOutput output;
    if (line.has("--skip")) {
        const auto skipped = moves->skipUndo();
        if (skipped)
            output.text().append("left as it is: ").append(*skipped).append("\n");
        return output.finish() && skipped ? ExitCode::Ok : ExitCode::Found;
    }
    const MoveReport report = moves->undo();
    if (report.isDone)
        output.text().append("took back: ").append(report.title).append("\n");
    for (const fs::path& page : report.rewritten)
        output.text().append("rewrote ").append(shown(page, *site)).append("\n");
    const ExitCode done = complainAbout(report.problems);
    return output.finish() ? done : ExitCode::Found;
}

constexpr std::string_view moveHelp =
    "Items and folder are subpaths of SITE, or any other paths to them. Links to the\n"
    "items are rewritten in every page and style sheet of SITE, and so are the links\n"
    "of pages that move. Each keeps its form; nothing else changes. Nothing is\n"
    "overwritten: an item stays where it is if its name is taken.\n"
    "\n"
    "  --dry-run            change nothing, print each link that would change: page,\n"
    "                       line, old and new link\n"
    "  --anyway             go on though a page can't be read, or can't be written\n"
    "                       and has links to change: these links break\n"
    "  --web-address URL, --index NAME, --short-addresses, --by-letter\n"
    "                       as \"lumactl check --help\" describes them\n"
    "\n"
    "  lumactl move ~/site about.html images/team.jpg company --dry-run\n"
    "\n"
    "It happens as a whole or not at all: if a page can't be written, nothing moves\n"
    "without --anyway. If the command is interrupted, the next lumactl command on\n"
    "SITE finishes it or takes it back. \"lumactl undo SITE\" takes it back later. With\n"
    "--by-letter there is no undo, and pages that can't be written stay as they are.\n"
    "\n"
    "The exit code is 1 if an item could not be moved or a page could not be read or\n"
    "rewritten.\n";

constexpr std::string_view copyHelp =
    "Like move, but copies: links of copied pages are kept right, and links between\n"
    "the items lead to their copies. Links to the originals stay, but with --by-letter\n"
    "they lead to the copies. Options and undo are those of move.\n"
    "\n"
    "The exit code is 1 if an item could not be copied or a page could not be\n"
    "rewritten.\n";

constexpr std::string_view renameHelp =
    "ITEM is a subpath of SITE, or any other path to the item. It stays in its folder.\n"
    "Options and undo are those of move.\n"
    "\n"
    "  lumactl rename ~/site images pictures --dry-run\n"
    "\n"
    "The exit code is 1 if the item could not be renamed, for example because the\n"
    "name is taken, or a page could not be rewritten.\n";

} // namespace

const LumactlCommand moveCommand = {"move", "SITE ITEM... FOLDER [--dry-run] [--anyway] [--by-letter]",
                                    "move files or folders within a site and keep the links right", moveHelp,
                                    move};

const LumactlCommand copyCommand = {
    "copy", "SITE ITEM... FOLDER [--dry-run] [--anyway] [--by-letter]",
    "copy files or folders into a folder of a site and keep their links right", copyHelp, copy};

const LumactlCommand renameCommand = {"rename", "SITE ITEM NEWNAME [--dry-run] [--anyway] [--by-letter]",
                                      "rename a file or folder of a site and keep the links to it right",
                                      renameHelp, rename};

const LumactlCommand renameClassCommand = {
    "rename-class", "SITE NAME NEWNAME [--id] [--dry-run] [--anyway]",
    "rename a class or id in all pages and style sheets of a site",
    "Renames the class NAME where elements have it and in selectors; an id also where\n"
    "labels and links name it. No other byte changes. Scripts stay as they are: those\n"
    "that mention the name are listed.\n"
    "\n"
    "  --id                 NAME is an id\n"
    "  --dry-run            change nothing, print what would change\n"
    "  --anyway             go on though a file can't be read or written; it stays as\n"
    "                       it is\n"
    "\n"
    "  lumactl rename-class ~/site teaser intro --dry-run\n"
    "\n"
    "\"lumactl undo SITE\" takes it back. It happens as a whole or not at all, as\n"
    "\"lumactl move --help\" describes. The exit code is 1 if nothing has the name, or a\n"
    "file could not be read or changed.\n",
    renameName};

const LumactlCommand relinkCommand = {
    "relink", "SITE OLD NEW [--dry-run] [--anyway]", "point all links to one file of a site to another one",
    "OLD is the subpath of a file, which need not be there: the target of links that\n"
    "\"lumactl check --missing\" lists. NEW is a file of the site. Links in all pages and\n"
    "style sheets that lead to OLD lead to NEW; each keeps its form, and nothing else\n"
    "changes. Options and undo are those of move.\n"
    "\n"
    "  lumactl relink ~/site images/logo.gif images/logo.svg --dry-run\n"
    "\n"
    "The exit code is 1 if NEW is not there or a page could not be rewritten.\n",
    relink};

const LumactlCommand undoCommand = {
    "undo", "SITE [--skip]", "take back the last move, rename, copy, relink or replacement in a site",
    "Files go back to their places and links to their old text, byte for byte. The last\n"
    "twenty are kept; each undo takes back one more. Files that have changed since are\n"
    "left alone and named. Where an item can't go back, nothing is done.\n"
    "\n"
    "  --skip               leave the last one as it is for good; the next undo takes\n"
    "                       back the one before\n"
    "\n"
    "The exit code is 1 if there was nothing to take back, or not all of it could be.\n",
    undo};

} // namespace luma
