// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/rsynccommand.h"

#include "base/usertext.h"
#include "browser/endpoint.h"
#include "site/shownname.h"

#include <algorithm>
#include <charconv>
#include <chrono>

namespace luma {

namespace {

constexpr std::string_view deletingPrefix = "deleting ";
// Begins the lines of items; none of rsync's messages begins so.
constexpr std::string_view itemMark = "|";
// What happens, and the name (rsync(1) --out-format).
constexpr auto outputFormat = "--out-format=|%i %n";
// The same with size and time, and the target of a link after two slashes.
constexpr auto listingFormat = "--out-format=|%i %l %M %n//%L";
constexpr std::size_t changeLength = 11; // of what happens
constexpr std::string_view hidingPrefix = "[sender] hiding ";

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

// The number at the beginning of `text`, which is removed from it with the character behind it.
std::int64_t takeNumber(std::string_view& text)
{
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const auto length = static_cast<std::size_t>(end - text.data());
    text.remove_prefix(std::min(length + 1, text.size()));
    return error == std::errc() ? number : 0;
}

// "2026/11/22-02:30:05", in UTC.
std::int64_t takeTime(std::string_view& text)
{
    using namespace std::chrono;
    const auto year = static_cast<int>(takeNumber(text));
    const auto month = static_cast<unsigned>(takeNumber(text));
    const auto day = static_cast<unsigned>(takeNumber(text));
    const sys_days date = std::chrono::year(year) / std::chrono::month(month) / std::chrono::day(day);
    const std::int64_t hours = takeNumber(text);
    const std::int64_t minutes = takeNumber(text);
    return std::int64_t{date.time_since_epoch().count()} * 86400 + hours * 3600 + minutes * 60 +
           takeNumber(text);
}

// `item` is "YXcstpoguax size time name// -> target" (rsync(1) --itemize-changes and --out-format).
void addItem(RsyncListing& listing, std::string_view item)
{
    if (item.size() < changeLength + 2)
        return;
    FileFacts facts;
    switch (item[1]) {
    case 'f':
        facts.type = FileFacts::Type::File;
        break;
    case 'L':
        facts.type = FileFacts::Type::Link;
        break;
    case 'd':
        facts.type = FileFacts::Type::Folder;
        break;
    default:
        return;
    }
    item.remove_prefix(changeLength + 1);
    facts.size = takeNumber(item);
    facts.time = takeTime(item);
    // No name has two slashes in a row.
    const std::size_t end = item.find("//");
    if (end == std::string_view::npos)
        return;
    const std::string_view tail = item.substr(end);
    constexpr std::string_view arrow = "// -> ";
    if (facts.type == FileFacts::Type::Link && tail.starts_with(arrow))
        facts.target = bytesOfShownName(tail.substr(arrow.size()));
    std::string path = bytesOfShownName(item.substr(0, end));
    listing.items.insert_or_assign(path == "." ? std::string() : std::move(path), std::move(facts));
}

// `line` is "[sender] hiding file NAME because of pattern PATTERN".
void addHidden(RsyncListing& listing, std::string_view line)
{
    const std::size_t begin = line.find(' ', hidingPrefix.size());
    const std::size_t end = line.rfind(" because of pattern ");
    if (begin < end && end != std::string_view::npos)
        listing.hidden.push_back(bytesOfShownName(line.substr(begin + 1, end - begin - 1)));
}

std::vector<std::string> linesOf(std::string_view text)
{
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        if (end > 0)
            lines.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

// Says only that something failed; the reason is in another line.
bool isSummary(const std::string& line)
{
    return line.starts_with("rsync error: ") || line.starts_with("rsync warning: ") ||
           line.starts_with("rsync: connection unexpectedly closed") ||
           line.find("] write error: ") != std::string::npos;
}

// For a run that has said nothing: what a server says last may be lost with its connection. The code is written as rsync
// writes it.
std::string reasonOf(int status)
{
    constexpr int fileError = 11; // rsync(1), EXIT VALUES
    if (status == fileError)
        return userText(QT_TRANSLATE_NOOP(
                   "luma::Engines",
                   "A file could not be written; the disk on the receiving side may be full")) +
               " (code 11)";
    return userText(QT_TRANSLATE_NOOP("luma::Engines", "rsync ended with code %1"), {std::to_string(status)});
}

} // namespace

RsyncArguments RsyncArguments::of(const SiteRecord& record, Direction direction)
{
    const ObservedDictionary& destination = *record.destinationDict();
    return {.local = localArgument(*record.sourceDict()),
            .remote = remoteArgument(destination),
            .direction = direction,
            .port = destination.string(endpoint::sshPortNo, QStringLiteral("22")).toStdString()};
}

std::string RsyncArguments::remoteFolder() const
{
    std::string folder = remote.substr(std::min(remote.find(':'), remote.size() - 1) + 1);
    while (folder.size() > 1 && folder.ends_with('/'))
        folder.pop_back();
    return folder;
}

std::string RsyncArguments::remoteWith(const std::string& folder) const
{
    return remote.substr(0, remote.find(':') + 1) + folder + '/';
}

RsyncListing readRsyncListing(std::string_view output)
{
    RsyncListing listing;
    while (!output.empty()) {
        const std::string_view line = takeLine(output);
        if (line.starts_with(itemMark))
            addItem(listing, line.substr(itemMark.size()));
        else if (line.starts_with(hidingPrefix))
            addHidden(listing, line);
    }
    return listing;
}

std::vector<std::string_view> pathsOf(const RsyncListing& listing)
{
    std::vector<std::string_view> paths(listing.hidden.begin(), listing.hidden.end());
    for (const auto& [path, facts] : listing.items) {
        if (facts.type == FileFacts::Type::File)
            paths.emplace_back(path);
    }
    return paths;
}

std::vector<std::string> readRsyncNames(std::string_view output)
{
    std::vector<std::string> names;
    while (!output.empty()) {
        const std::string_view line = takeLine(output);
        // A dot says that only attributes differ.
        if (!line.starts_with(itemMark) || line.size() < changeLength + 3 || line[1] == '.')
            continue;
        std::string path = bytesOfShownName(line.substr(changeLength + 2));
        if (path.ends_with('/'))
            path.pop_back();
        names.push_back(std::move(path));
    }
    return names;
}

void readRsyncLog(std::string_view lines, SyncProgress& done)
{
    while (!lines.empty()) {
        std::string_view line = takeLine(lines);
        // "2026/11/22 02:30:05 [27823] |>f+++++++++ 512"
        line.remove_prefix(std::min(line.find('|'), line.size()));
        if (line.size() < changeLength + 3 || line[1] == '.' || line[2] == 'd')
            continue;
        line.remove_prefix(changeLength + 2);
        ++done.rows;
        done.bytes += takeNumber(line);
    }
}

bool hasAnswered(const ProgramResult& result)
{
    constexpr int partialTransfer = 23;
    constexpr int vanishedFiles = 24;
    return result.status == 0 || result.status == partialTransfer || result.status == vanishedFiles;
}

std::vector<std::string> rsyncReasons(const ProgramResult& result)
{
    const std::vector<std::string> lines = linesOf(result.errors);
    std::vector<std::string> chosen;
    std::remove_copy_if(lines.begin(), lines.end(), std::back_inserter(chosen), isSummary);
    if (!chosen.empty())
        return chosen;
    if (!lines.empty())
        return {lines.back()};
    return {result.status ? reasonOf(*result.status) : "rsync was ended"};
}

std::optional<std::int64_t> readFreeSpace(std::string_view output)
{
    // "Filesystem 1024-blocks Used Available Capacity Mounted on", then one line of these.
    (void)takeLine(output);
    std::string_view line = takeLine(output);
    std::vector<std::string_view> words;
    while (!line.empty()) {
        const std::size_t end = std::min(line.find(' '), line.size());
        if (end > 0)
            words.push_back(line.substr(0, end));
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    std::int64_t kilobytes = 0;
    if (words.size() < 6 || !words[4].ends_with('%'))
        return std::nullopt;
    const auto [end, error] = std::from_chars(words[3].data(), words[3].data() + words[3].size(), kilobytes);
    return error == std::errc() ? std::optional(kilobytes * 1024) : std::nullopt;
}

std::string nameWithoutDeleting(std::string_view displayName)
{
    std::string name(displayName);
    for (std::size_t at = name.find(deletingPrefix); at != std::string::npos;
         at = name.find(deletingPrefix, at))
        name.erase(at, deletingPrefix.size());
    return name;
}

bool RsyncCommand::isComplete() const
{
    return !m_arguments.local.empty() && !m_arguments.remote.empty();
}

// ssh(1) and ssh_config(5). It is asked four times before it gives up, the server's own answers come in between.
std::vector<std::string> RsyncCommand::sshWords() const
{
    const std::string interval = std::to_string(std::max<std::int64_t>(m_arguments.patience.count() / 4, 1));
    const std::string patience = std::to_string(m_arguments.patience.count());
    return {"ssh",
            "-p",
            m_arguments.port,
            "-o",
            "ConnectTimeout=" + patience,
            "-o",
            "ServerAliveInterval=" + interval,
            "-o",
            "ServerAliveCountMax=3"};
}

// rsync splits the words itself.
std::string RsyncCommand::remoteShell() const
{
    std::string text;
    for (const std::string& word : sshWords())
        text.append(text.empty() ? "" : " ").append(word);
    return text;
}

// rsync may be silent for some time while it reads a large file, so it gets more of it than ssh.
std::string RsyncCommand::timeLimit() const
{
    return "--timeout=" + std::to_string(m_arguments.patience.count() * 3);
}

std::vector<std::string> RsyncCommand::words(const std::vector<std::string>& options) const
{
    // Archive mode and compression.
    std::vector<std::string> words = {"rsync", "-e", remoteShell(), timeLimit(), "-az", outputFormat};
    words.insert(words.end(), m_keepOptions.begin(), m_keepOptions.end());
    words.insert(words.end(), options.begin(), options.end());
    if (m_arguments.direction == Direction::Upload)
        words.insert(words.end(), {"--", m_arguments.local, m_arguments.remote});
    else
        words.insert(words.end(), {"--", m_arguments.remote, m_arguments.local});
    return words;
}

std::vector<std::string> RsyncCommand::listingWords(const std::vector<std::string>& options,
                                                    const std::vector<std::string>& filters) const
{
    // A dry run into a folder that can't exist lists every item with its size and time; these come in local
    // time. The debug output names what is ignored.
    std::vector<std::string> words = {"env",       "TZ=UTC0",   "rsync",   "-e",          remoteShell(),
                                      timeLimit(), "--dry-run", "--links", listingFormat, "--debug=FILTER"};
    words.insert(words.end(), options.begin(), options.end());
    words.insert(words.end(), filters.begin(), filters.end());
    words.insert(words.end(), {"--", m_arguments.remote, "/proc/none/"});
    return words;
}

std::vector<std::string> RsyncCommand::listing(const IgnoredNames& ignored) const
{
    return listingWords({"--recursive"}, ignored.rsyncOptions());
}

std::vector<std::string> RsyncCommand::listingOfNames(const IgnoredNames& ignored) const
{
    return listingWords({"--dirs", "--ignore-missing-args", "--from0", "--files-from=-"},
                        ignored.rsyncOptions());
}

std::vector<std::string> RsyncCommand::listingBelowNames() const
{
    return listingWords({"--recursive", "--ignore-missing-args", "--from0", "--files-from=-"}, {});
}

void RsyncCommand::keep(const KeptPublish& kept)
{
    m_keepOptions = {"--backup", "--backup-dir=" + kept.place.fromReceiving() + '/' + kept.publish};
}

std::vector<std::string> RsyncCommand::transfer(Overwrites overwrites) const
{
    if (overwrites == Overwrites::AllFiles)
        return words({"--from0", "--files-from=-"});
    return words({"--update", "--from0", "--files-from=-"});
}

std::vector<std::string> RsyncCommand::deletion() const
{
    // The two options about existing files keep the run from sending any.
    return words({"--delete-missing-args", "--existing", "--ignore-existing", "--no-implied-dirs", "--from0",
                  "--files-from=-"});
}

std::vector<std::string> RsyncCommand::deletionOfFolders() const
{
    std::vector<std::string> all = deletion();
    all.insert(all.begin() + 1, "--force");
    return all;
}

std::vector<std::string> RsyncCommand::freeSpace() const
{
    const std::size_t colon = m_arguments.remote.find(':');
    if (colon == std::string::npos)
        return {};
    std::string folder = "'";
    for (const char c : m_arguments.remote.substr(colon + 1))
        folder += c == '\'' ? std::string("'\\''") : std::string(1, c);
    std::vector<std::string> words = sshWords();
    words.insert(words.end(), {"-o", "BatchMode=yes", "--", m_arguments.remote.substr(0, colon),
                               "LC_ALL=C df -Pk -- " + folder + "'"});
    return words;
}

std::vector<std::string> RsyncCommand::dryRunOf(std::vector<std::string> words)
{
    words.insert(words.begin() + 1, "--dry-run");
    return words;
}

std::vector<std::string> RsyncCommand::logged(std::vector<std::string> words, const std::string& log)
{
    words.insert(words.begin() + 1, {"--log-file=" + log, "--log-file-format=|%i %l"});
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
