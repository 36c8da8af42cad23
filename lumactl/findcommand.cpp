// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/sitemoves.h"
#include "links/sitesearch.h"
#include "lumactl/commandarguments.h"
#include "lumactl/lumactlcommands.h"
#include "lumactl/standardoutput.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <optional>

namespace luma {

namespace fs = std::filesystem;

namespace {

SiteQuery queryOf(const CommandArguments& line)
{
    SiteQuery query;
    query.text = {QString::fromStdString(line.operands()[1]), line.has("--regex"), line.has("--case"),
                  line.has("--words")};
    query.searched = line.has("--source") ? SearchedText::Source : SearchedText::Shown;
    query.folder = line.value("--folder");
    const bool isAnyKind = !line.has("--pages") && !line.has("--sheets") && !line.has("--scripts");
    query.inPages = isAnyKind || line.has("--pages");
    query.inStyleSheets = isAnyKind || line.has("--sheets");
    query.inScripts = isAnyKind || line.has("--scripts");
    return query;
}

// What the place is replaced with, if it is.
void appendPlace(std::string& text, const SearchedFile& file, const FoundText& found,
                 const std::optional<QString>& anew, bool isJson)
{
    if (isJson) {
        QJsonObject object{{QStringLiteral("file"), QString::fromStdString(file.path)},
                           {QStringLiteral("line"), static_cast<int>(found.line)},
                           {QStringLiteral("column"), static_cast<int>(found.column)},
                           {QStringLiteral("text"), found.captured.front()}};
        if (anew)
            object.insert(QStringLiteral("new"), *anew);
        text += QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
    } else {
        text.append(file.path).append(":").append(std::to_string(found.line));
        text.append(":").append(std::to_string(found.column)).append(": ");
        if (anew)
            text.append(found.captured.front().toStdString()).append(" -> ").append(anew->toStdString());
        else
            text.append((found.before + found.captured.front() + found.after).toStdString());
    }
    text += '\n';
}

// Searches the site: says what it finds, and gives it.
Result<std::vector<WantedPlaces>> findAll(const fs::path& site, const SiteQuery& query,
                                          const std::optional<QString>& replacement,
                                          const CommandArguments& line, bool& isWhole)
{
    StandardOutput output;
    std::vector<WantedPlaces> places;
    const bool isSaid = !replacement || line.has("--dry-run");
    const auto done = searchSite(site, query, [&](const SearchedFile& file) {
        if (!file.problem.empty()) {
            complain(file.path + ": " + file.problem);
            isWhole = false;
            return;
        }
        for (const FoundText& found : file.found) {
            const auto anew =
                replacement
                    ? std::optional(replacementFor(found.captured, *replacement, query.text.isExpression))
                    : std::nullopt;
            if (isSaid)
                appendPlace(output.text(), file, found, anew, line.has("--json"));
        }
        output.flushIfLarge();
        places.push_back({file.path, file.hash, std::vector<bool>(file.found.size(), true)});
    });
    if (!done)
        return done.error();
    isWhole = output.finish() && isWhole;
    return places;
}

ExitCode replaceAll(const fs::path& site, const SiteQuery& query, const QString& replacement,
                    const std::vector<WantedPlaces>& places, bool isAnyway)
{
    auto moves = SiteMoves::open(site);
    if (!moves)
        return unusable(moves.error().text);
    const auto plan = planReplacement(site, query, replacement, places);
    if (!plan)
        return unusable(plan.error().text);
    for (const MoveProblem& problem : plan->problems)
        complain(problem.text);
    if (!isAnyway && !plan->stayingPages().empty()) {
        complain("Nothing was changed; --anyway leaves these files as they are");
        return ExitCode::Found;
    }
    const MoveReport report = moves->carryOut(*plan);
    for (const MoveProblem& problem : report.problems)
        complain(problem.text);
    StandardOutput output;
    for (const fs::path& page : report.rewritten)
        output.text().append("rewrote ").append(page.lexically_relative(site).native()).append("\n");
    const bool isWhole = report.isDone && plan->problems.empty() && report.problems.empty();
    return output.finish() && isWhole ? ExitCode::Ok : ExitCode::Found;
}

ExitCode run(const std::vector<std::string>& arguments)
{
    const CommandArguments line(arguments,
                                {"--regex", "--case", "--words", "--source", "--pages", "--sheets",
                                 "--scripts", "--dry-run", "--json", "--anyway"},
                                {"--replace", "--folder"});
    if (!line.error().empty())
        return wrongUsage(findCommand, line.error());
    if (line.operands().size() != 2 || line.operands()[1].empty())
        return wrongUsage(findCommand, "a site and a text are needed");
    const auto site = siteFolder(line.operands().front());
    if (!site)
        return ExitCode::Unusable;
    const SiteQuery query = queryOf(line);
    const std::vector<std::string> given = line.values("--replace");
    const auto replacement =
        given.empty() ? std::nullopt : std::optional(QString::fromStdString(given.back()));
    bool isWhole = true;
    const auto places = findAll(*site, query, replacement, line, isWhole);
    if (!places)
        return unusable(places.error().text);
    if (places->empty())
        return ExitCode::Found;
    if (replacement && !line.has("--dry-run") &&
        replaceAll(*site, query, *replacement, *places, line.has("--anyway")) != ExitCode::Ok)
        return ExitCode::Found;
    return isWhole ? ExitCode::Ok : ExitCode::Found;
}

constexpr std::string_view help =
    "Looks for TEXT in the text of all pages as a browser shows it: across inline\n"
    "elements, with references read, letter case ignored. Prints file, line, column\n"
    "and what stands there.\n"
    "\n"
    "  --source             look through the files as they are, style sheets and\n"
    "                       scripts too\n"
    "  --regex              TEXT is a regular expression, of PCRE's syntax\n"
    "  --case, --words      mind letter case; find whole words only\n"
    "  --pages, --sheets, --scripts\n"
    "                       only files of these kinds\n"
    "  --folder FOLDER      only files below this folder of SITE\n"
    "  --json               one JSON object a line: file, line, column, text, new\n"
    "  --replace TEXT       replace each place; $1 is the first group of a regular\n"
    "                       expression. No byte outside the places changes\n"
    "  --dry-run            change nothing, print old and new text of each place\n"
    "  --anyway             go on though a file can't be written; it stays as it is\n"
    "\n"
    "  lumactl find ~/site \"Acme Ltd\" --replace \"Acme & Co.\" --dry-run\n"
    "\n"
    "\"lumactl undo SITE\" takes a replacement back. It happens as a whole or not at\n"
    "all, as \"lumactl move --help\" describes.\n"
    "\n"
    "The exit code is 1 if nothing was found, or a file could not be read or changed.\n";

} // namespace

const LumactlCommand findCommand = {"find",
                                    "SITE TEXT [--replace TEXT] [--regex] [--source] [--dry-run] [--json]",
                                    "find text in the pages of a site, and replace it", help, run};

} // namespace luma
