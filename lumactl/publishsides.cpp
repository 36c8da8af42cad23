// SPDX-License-Identifier: GPL-3.0-or-later
#include "lumactl/publishsides.h"

#include "lumactl/standardoutput.h"
#include "site/savedsites.h"
#include "site/shownname.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <charconv>

namespace luma {

namespace {

const char* nameOf(SyncKind kind)
{
    switch (kind) {
    case SyncKind::New:
        return "new";
    case SyncKind::Newer:
        return "newer";
    case SyncKind::Different:
        return "different";
    case SyncKind::Conflict:
        return "conflict";
    case SyncKind::Delete:
        return "delete";
    }
    return "";
}

void putFacts(QJsonObject& object, const FileFacts& facts, const QString& size, const QString& time)
{
    object.insert(size, facts.exists() ? QJsonValue(qint64{facts.size}) : QJsonValue());
    object.insert(time, facts.exists() ? QJsonValue(qint64{facts.time}) : QJsonValue());
}

void append(std::string& text, const SyncRow& row, RowForm form)
{
    if (form == RowForm::Bytes)
        return text.append(row.relativePath).push_back('\0');
    if (form == RowForm::Lines)
        return text.append(row.displayName).push_back('\n');
    QJsonObject object = {{QStringLiteral("what"), QLatin1StringView(nameOf(row.kind))},
                          {QStringLiteral("file"), QString::fromStdString(shownName(row.relativePath))},
                          {QStringLiteral("why"), QLatin1StringView(textOf(row.reason))},
                          {QStringLiteral("asks"), row.isMarked()}};
    putFacts(object, row.sent, QStringLiteral("size"), QStringLiteral("time"));
    putFacts(object, row.received, QStringLiteral("sizeThere"), QStringLiteral("timeThere"));
    text.append(QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString()).push_back('\n');
}

// "user@host[:port]"; false if it is something else.
bool readLogin(PublishSides& sides, const std::string& login)
{
    sides.login = login;
    const std::size_t colon = login.rfind(':');
    if (colon != std::string::npos) {
        sides.port = login.substr(colon + 1);
        sides.login.erase(colon);
    }
    const bool isNumber =
        !sides.port.empty() && sides.port.find_first_not_of("0123456789") == std::string::npos;
    return sides.login.find('@') != std::string::npos && !sides.login.starts_with('-') && isNumber;
}

// The two folders of the command line. Nothing, after a message, if they can't be used.
std::optional<PublishSides> givenSides(const LumactlCommand& command, const CommandArguments& line)
{
    const auto source = siteFolder(line.operands()[0]);
    if (!source)
        return std::nullopt;
    PublishSides sides;
    sides.source = *source;
    sides.destination = line.operands()[1];
    if (line.has("--ssh")) {
        if (!readLogin(sides, line.value("--ssh"))) {
            wrongUsage(command, "--ssh needs user@host or user@host:port");
            return std::nullopt;
        }
        sides.identity = siteIdentity(sides.source, sides.login, sides.destination);
        return sides;
    }
    const auto destination = siteFolder(sides.destination);
    if (!destination)
        return std::nullopt;
    sides.destination = destination->native();
    sides.identity = siteIdentity(sides.source, *destination);
    return sides;
}

// Those of a site in the user's list, which `name` names. Nothing, after a message, if they can't be used.
std::optional<PublishSides> savedSides(const std::string& name, const SiteRecord& site, Direction direction)
{
    const auto source = siteFolder(name);
    if (!source)
        return std::nullopt;
    PublishSides sides;
    sides.source = *source;
    sides.login = sshLogin(*site.destinationDict());
    const RsyncArguments remote = RsyncArguments::of(site, direction);
    if (const std::filesystem::path folder = localFolder(*site.destinationDict()); !folder.empty()) {
        const auto destination = siteFolder(folder.native());
        if (!destination)
            return std::nullopt;
        sides.destination = destination->native();
    } else if (!sides.login.empty() && !remote.remote.empty()) {
        // "user@host:folder/"
        sides.destination = remote.remote.substr(sides.login.size() + 1);
        sides.destination.pop_back();
        sides.port = remote.port;
    } else {
        complain(name + ": the destination of this site needs a server, a user and a path");
        return std::nullopt;
    }
    sides.identity = siteIdentity(site);
    return sides;
}

// The saved site that the only operand names, if it names one. Nothing, after a message, if the list can't be used.
std::optional<std::shared_ptr<SiteRecord>> onlySite(const CommandArguments& line)
{
    if (line.operands().size() != 1 || line.has("--ssh"))
        return nullptr;
    return savedSite(line.operands().front());
}

// False, after a message, if --keep is no number of days.
bool readKeep(KeepChoice& keep, const LumactlCommand& command, const CommandArguments& line)
{
    keep.folder = line.value("--keep-in");
    if (!line.has("--keep"))
        return true;
    const std::string days = line.value("--keep");
    const auto [end, error] = std::from_chars(days.data(), days.data() + days.size(), keep.days);
    if (error == std::errc() && end == days.data() + days.size() && keep.days >= 1)
        return true;
    wrongUsage(command, "--keep needs a number of days");
    return false;
}

} // namespace

std::optional<PublishSides> publishSidesOf(const LumactlCommand& command, const CommandArguments& line)
{
    if (!line.error().empty()) {
        wrongUsage(command, line.error());
        return std::nullopt;
    }
    const auto saved = onlySite(line);
    if (!saved)
        return std::nullopt;
    if (!*saved && line.operands().size() != 2) {
        wrongUsage(command, "a saved site, or a source folder and a destination folder, are needed");
        return std::nullopt;
    }
    const Direction direction = line.has("--download") ? Direction::Download : Direction::Upload;
    auto sides = *saved ? savedSides(line.operands().front(), **saved, direction) : givenSides(command, line);
    if (!sides || !readKeep(sides->keep, command, line))
        return std::nullopt;
    sides->site = *saved;
    std::string patterns = *saved ? (*saved)->ignoredNames().toStdString() + '\n' : std::string();
    for (const std::string& pattern : line.values("--ignore"))
        patterns.append(pattern).push_back('\n');
    sides->ignored = IgnoredNames(patterns);
    sides->direction = direction;
    sides->deletions = line.has("--delete") ? Deletions::Listed : Deletions::Ignored;
    return sides;
}

RowForm rowFormOf(const CommandArguments& line)
{
    if (line.has("-0"))
        return RowForm::Bytes;
    return line.has("--json") ? RowForm::Json : RowForm::Lines;
}

bool printRows(const std::vector<SyncRow>& rows, RowForm form, bool tickedOnly)
{
    StandardOutput output;
    for (const SyncRow& row : rows) {
        if (row.select || !tickedOnly)
            append(output.text(), row, form);
        output.flushIfLarge();
    }
    return output.finish();
}

void tickNamed(std::vector<SyncRow>& rows, const std::vector<std::string>& names, bool on)
{
    for (const std::string& name : names) {
        const auto isShown = [&name](const SyncRow& row) { return shownName(row.relativePath) == name; };
        const bool asPrinted = std::any_of(rows.begin(), rows.end(), isShown);
        for (SyncRow& row : rows) {
            if (asPrinted ? isShown(row) : row.relativePath == name)
                row.select = on;
        }
    }
}

} // namespace luma
