// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/rsynccommand.h"

#include "browser/endpoint.h"
#include "site/shownname.h"

#include <algorithm>

namespace luma {

namespace {

constexpr std::string_view deletingPrefix = "deleting ";
// Begins the lines of items; none of rsync's messages begins so.
constexpr std::string_view itemMark = "|";
// What happens, and the name (rsync(1) --out-format).
constexpr auto outputFormat = "--out-format=|%i %n";

std::string localArgument(const ObservedDictionary& endpointValues)
{
    const QString path = endpointValues.string(endpoint::path);
    return path.isEmpty() ? std::string() : path.toStdString() + '/';
}

std::string remoteArgument(const ObservedDictionary& values)
{
    const QString user = values.string(endpoint::user);
    const QString server = values.string(endpoint::server);
    const QString path = values.string(endpoint::path);
    if (user.isEmpty() || server.isEmpty() || path.isEmpty())
        return {};
    return user.toStdString() + '@' + server.toStdString() + ':' + path.toStdString() + '/';
}

// The first line of `text`, which is removed from it.
std::string_view takeLine(std::string_view& text)
{
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

// `item` is "YXcstpoguax name" or "*deleting   name" (rsync(1) --itemize-changes).
void addItem(ComparisonReport& listing, std::string_view item)
{
    constexpr std::size_t changeLength = 11;
    // A dot says that only attributes differ.
    if (item.size() < changeLength + 2 || item.front() == '.')
        return;
    std::string path = bytesOfShownName(item.substr(changeLength + 1));
    const bool isDeletion = item.starts_with("*deleting");
    if (path.ends_with('/')) {
        path.pop_back();
        if (isDeletion)
            listing.deletedFolders.push_back(std::move(path));
        return;
    }
    const std::string_view prefix = isDeletion ? deletingPrefix : std::string_view();
    listing.rows.push_back({.displayName = std::string(prefix) + shownName(path),
                            .mode = isDeletion ? SyncMode::RsyncDelete : SyncMode::Rsync,
                            .relativePath = std::move(path)});
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

ComparisonReport readRsyncOutput(std::string_view output)
{
    ComparisonReport listing;
    while (!output.empty()) {
        const std::string_view line = takeLine(output);
        if (line.starts_with(itemMark))
            addItem(listing, line.substr(itemMark.size()));
        else if (line.starts_with("[sender] hiding "))
            ++listing.ignored;
    }
    return listing;
}

bool RsyncCommand::isComplete() const
{
    return !m_arguments.source.empty() && !m_arguments.destination.empty();
}

std::vector<std::string> RsyncCommand::words(const std::vector<std::string>& options) const
{
    // Archive mode and compression; rsync splits the words of the remote shell itself.
    std::vector<std::string> words = {"rsync", "-e", "ssh -p " + m_arguments.port, "-az", outputFormat};
    words.insert(words.end(), options.begin(), options.end());
    words.insert(words.end(), {"--", m_arguments.source, m_arguments.destination});
    return words;
}

std::vector<std::string> RsyncCommand::comparison(const IgnoredNames& ignored) const
{
    // The debug output names what is ignored.
    std::vector<std::string> options = {"-C", "--update", "--dry-run", "--debug=FILTER"};
    if (m_arguments.deletes)
        options.emplace_back("--delete");
    for (std::string& option : ignored.rsyncOptions())
        options.push_back(std::move(option));
    return words(options);
}

std::vector<std::string> RsyncCommand::transfer() const
{
    return words({"--update", "--from0", "--files-from=-"});
}

std::vector<std::string> RsyncCommand::deletion() const
{
    // The two options about existing files keep the run from sending any.
    return words({"--delete-missing-args", "--existing", "--ignore-existing", "--no-implied-dirs", "--from0",
                  "--files-from=-"});
}

std::vector<std::string> RsyncCommand::dryRunOf(std::vector<std::string> words)
{
    words.insert(words.begin() + 1, "--dry-run");
    return words;
}

std::string RsyncCommand::nameList(const std::vector<std::string>& paths)
{
    std::string list;
    // With "./" before it, no name looks like a comment.
    for (const std::string& path : paths)
        list.append("./").append(path).push_back('\0');
    return list;
}

} // namespace luma
