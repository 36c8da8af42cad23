// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/rsynccommand.h"

#include "base/ascii.h"
#include "browser/endpoint.h"
#include "shell/quote.h"
#include "site/shownname.h"

#include <algorithm>
#include <unordered_set>

namespace luma {

namespace {

constexpr std::string_view deletingPrefix = "deleting ";
constexpr std::string_view linkArrow = " -> ";

bool isPlainCharacter(char c)
{
    return isAsciiAlphanumeric(c) || std::string_view(" ._-/").find(c) != std::string_view::npos;
}

// rsync would read a leading "- " as its prefix for an exclusion.
bool isPlainName(std::string_view name)
{
    return std::all_of(name.begin(), name.end(), isPlainCharacter) && !name.starts_with("- ");
}

// A backslash is an escape only in a pattern with wildcards (rsync(1), PATTERN MATCHING RULES).
std::string anchoredPattern(std::string_view path)
{
    std::string pattern = "/";
    const bool hasWildcards = path.find_first_of("*?[") != std::string_view::npos;
    for (const char c : path) {
        if (hasWildcards && std::string_view("*?[\\").find(c) != std::string_view::npos)
            pattern.push_back('\\');
        pattern.push_back(c);
    }
    return pattern;
}

std::string patternFor(const std::string& name)
{
    return isPlainName(name) ? name : anchoredPattern(name);
}

// The paths that a row's line may mean: a link is listed with its target, and a file name may contain the
// words that rsync adds.
std::vector<std::string> pathsBehind(const SyncRow& row, bool deletes)
{
    std::vector<std::string> paths = {bytesOfShownName(nameWithoutDeleting(row.displayName))};
    const auto add = [&paths](std::string path) {
        if (std::find(paths.begin(), paths.end(), path) == paths.end())
            paths.push_back(std::move(path));
    };
    std::string_view line = row.displayName;
    if (deletes && line.starts_with(deletingPrefix))
        line.remove_prefix(deletingPrefix.size());
    if (line.find(deletingPrefix) != std::string_view::npos)
        add(bytesOfShownName(line));
    for (std::size_t arrow = line.find(linkArrow); arrow != std::string_view::npos;
         arrow = line.find(linkArrow, arrow + 1))
        add(bytesOfShownName(line.substr(0, arrow)));
    return paths;
}

// Calls `f` with every folder on the way to `path`, and with `path` itself.
template <class Function>
void forEachStep(const std::string& path, Function f)
{
    for (std::size_t slash = path.find('/'); slash != std::string::npos; slash = path.find('/', slash + 1))
        f(path.substr(0, slash));
    f(path);
}

// A pattern without a leading slash matches the last components of a path. True when one of `patterns`
// matches a file that it was not made for.
bool isNamesakeMatched(const std::string& path, const std::unordered_set<std::string>& patterns)
{
    if (patterns.contains(path))
        return false;
    for (std::size_t slash = path.find('/'); slash != std::string::npos; slash = path.find('/', slash + 1)) {
        if (patterns.contains(path.substr(slash + 1)))
            return true;
    }
    return false;
}

// All ticked paths and the folders above them, which no rule may leave out.
std::unordered_set<std::string> tickedSteps(const std::vector<SyncRow>& rows, bool deletes)
{
    std::unordered_set<std::string> steps;
    for (const SyncRow& row : rows) {
        if (!row.select)
            continue;
        for (const std::string& path : pathsBehind(row, deletes))
            forEachStep(path, [&steps](std::string step) { steps.insert(std::move(step)); });
    }
    return steps;
}

std::string localArgument(const ObservedDictionary& endpointValues)
{
    const QString path = endpointValues.string(endpoint::path);
    return path.isNull() ? std::string() : path.toStdString() + '/';
}

std::string remoteArgument(const ObservedDictionary& values)
{
    const QString user = values.string(endpoint::user);
    const QString server = values.string(endpoint::server);
    const QString path = values.string(endpoint::path);
    if (user.isNull() || server.isNull() || path.isNull())
        return {};
    return user.toStdString() + '@' + server.toStdString() + ':' + path.toStdString() + '/';
}

std::string_view trimmedNewlines(std::string_view text)
{
    while (!text.empty() && (text.front() == '\n' || text.front() == '\r'))
        text.remove_prefix(1);
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r'))
        text.remove_suffix(1);
    return text;
}

std::string optionsFor(const std::vector<RsyncRule>& rules)
{
    std::string options;
    for (const RsyncRule& rule : rules)
        options += (rule.excludes ? "--exclude=" : "--include=") + quotedForShell(rule.pattern) + ' ';
    return options;
}

} // namespace

RsyncArguments RsyncArguments::of(const SiteRecord& record, Direction direction, bool deletes)
{
    const ObservedDictionary& destination = *record.destinationDict();
    RsyncArguments arguments = {
        .source = localArgument(*record.sourceDict()),
        .destination = remoteArgument(destination),
        .port = destination.string(endpoint::sshPortNo, QStringLiteral("22")).toStdString(),
        .deletes = deletes};
    if (direction == Direction::Download)
        std::swap(arguments.source, arguments.destination);
    return arguments;
}

std::string nameWithoutDeleting(std::string_view displayName)
{
    std::string name(displayName);
    for (std::size_t at = name.find(deletingPrefix); at != std::string::npos;
         at = name.find(deletingPrefix, at))
        name.erase(at, deletingPrefix.size());
    return name;
}

std::vector<RsyncRule> rsyncRules(const std::vector<SyncRow>& rows, bool deletes)
{
    const std::unordered_set<std::string> wanted = tickedSteps(rows, deletes);
    std::vector<RsyncRule> exclusions;
    std::unordered_set<std::string> unanchored;
    for (const SyncRow& row : rows) {
        if (row.select)
            continue;
        const std::vector<std::string> paths = pathsBehind(row, deletes);
        exclusions.push_back({.excludes = true, .pattern = patternFor(paths.front())});
        if (isPlainName(paths.front()))
            unanchored.insert(paths.front());
        // The line's other meanings are excluded too, unless a ticked row needs them.
        for (auto path = paths.begin() + 1; path != paths.end(); ++path) {
            if (!wanted.contains(*path))
                exclusions.push_back({.excludes = true, .pattern = anchoredPattern(*path)});
        }
    }
    std::vector<RsyncRule> rules;
    for (const std::string& step : wanted) {
        if (isNamesakeMatched(step, unanchored))
            rules.push_back({.excludes = false, .pattern = anchoredPattern(step)});
    }
    std::sort(rules.begin(), rules.end(),
              [](const RsyncRule& a, const RsyncRule& b) { return a.pattern < b.pattern; });
    std::move(exclusions.begin(), exclusions.end(), std::back_inserter(rules));
    return rules;
}

std::string RsyncCommand::start() const
{
    return "rsync -e \"ssh -p " + m_arguments.port + "\" -avzC --update " +
           (m_arguments.deletes ? "--delete" : "");
}

std::string RsyncCommand::dryRun() const
{
    // The filters remove the header, the last three lines (a blank one and the summary) and the folders.
    return start() + " --dry-run --exclude=.DS_Store " + m_arguments.source + ' ' + m_arguments.destination +
           " | sed '1d' | sed -n -e :a -e '1,3!{P;N;D;};N;ba' | grep -v .*/$";
}

std::string RsyncCommand::transferWith(const std::string& options) const
{
    return start() + " --exclude=.DS_Store " + options + ' ' + m_arguments.source + ' ' +
           m_arguments.destination;
}

std::string RsyncCommand::transfer(const std::vector<RsyncRule>& rules) const
{
    return transferWith(optionsFor(rules));
}

bool RsyncCommand::fitCommandLine(const std::vector<RsyncRule>& rules)
{
    constexpr std::size_t limit = 100'000;
    std::size_t size = 0;
    for (const RsyncRule& rule : rules)
        size += rule.pattern.size() * 2 + 20;
    return size < limit;
}

std::string RsyncCommand::rulesFile(const std::vector<RsyncRule>& rules)
{
    // Separated by NUL, as a name may contain a newline. In a file "#" and ";" begin a comment and "+ " an
    // inclusion; plain and anchored patterns begin with none of these.
    std::string text;
    for (const RsyncRule& rule : rules)
        text.append(rule.excludes ? "" : "+ ").append(rule.pattern).push_back('\0');
    return text;
}

std::string RsyncCommand::transferWithRulesFile(const std::string& path) const
{
    return transferWith("--from0 --exclude-from=" + quotedForShell(path) + ' ');
}

std::vector<std::string> RsyncCommand::listing(std::string_view output)
{
    std::vector<std::string> lines;
    output = trimmedNewlines(output);
    while (!output.empty()) {
        const std::size_t end = std::min(output.find('\n'), output.size());
        lines.emplace_back(output.substr(0, end));
        output.remove_prefix(std::min(end + 1, output.size()));
    }
    return lines;
}

} // namespace luma
