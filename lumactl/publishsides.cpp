// SPDX-License-Identifier: GPL-3.0-or-later
#include "lumactl/publishsides.h"

#include "lumactl/standardoutput.h"
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

void append(std::string& text, const SyncRow& row, bool asJson)
{
    if (!asJson) {
        text.append(row.displayName).push_back('\n');
        return;
    }
    QJsonObject object = {{QStringLiteral("what"), QLatin1StringView(nameOf(row.kind))},
                          {QStringLiteral("file"), QString::fromStdString(shownName(row.relativePath))},
                          {QStringLiteral("why"), QLatin1StringView(textOf(row.reason))},
                          {QStringLiteral("asks"), row.isMarked()}};
    putFacts(object, row.sent, QStringLiteral("size"), QStringLiteral("time"));
    putFacts(object, row.received, QStringLiteral("sizeThere"), QStringLiteral("timeThere"));
    text.append(QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString()).push_back('\n');
}

} // namespace

std::optional<PublishSides> publishSidesOf(const LumactlCommand& command, const CommandArguments& line)
{
    if (!line.error().empty() || line.operands().size() != 2) {
        wrongUsage(command, line.error().empty() ? "a source folder and a destination folder are needed"
                                                 : line.error());
        return std::nullopt;
    }
    const auto source = siteFolder(line.operands()[0]);
    if (!source)
        return std::nullopt;
    PublishSides sides;
    sides.source = *source;
    sides.destination = line.operands()[1];
    sides.login = line.value("--ssh");
    if (line.has("--ssh")) {
        const std::size_t colon = sides.login.rfind(':');
        if (colon != std::string::npos) {
            sides.port = sides.login.substr(colon + 1);
            sides.login.erase(colon);
        }
        const bool isNumber =
            !sides.port.empty() && sides.port.find_first_not_of("0123456789") == std::string::npos;
        if (sides.login.find('@') == std::string::npos || sides.login.starts_with('-') || !isNumber) {
            wrongUsage(command, "--ssh needs user@host or user@host:port");
            return std::nullopt;
        }
    } else if (const auto destination = siteFolder(sides.destination)) {
        sides.destination = destination->native();
    } else {
        return std::nullopt;
    }
    std::string patterns;
    for (const std::string& pattern : line.values("--ignore"))
        patterns.append(pattern).push_back('\n');
    sides.ignored = IgnoredNames(patterns);
    sides.direction = line.has("--download") ? Direction::Download : Direction::Upload;
    sides.deletions = line.has("--delete") ? Deletions::Listed : Deletions::Ignored;
    sides.keep.folder = line.value("--keep-in");
    if (const std::string days = line.value("--keep"); line.has("--keep")) {
        const auto [end, error] = std::from_chars(days.data(), days.data() + days.size(), sides.keep.days);
        if (error != std::errc() || end != days.data() + days.size() || sides.keep.days < 1) {
            wrongUsage(command, "--keep needs a number of days");
            return std::nullopt;
        }
    }
    return sides;
}

bool printRows(const std::vector<SyncRow>& rows, bool asJson, bool tickedOnly)
{
    StandardOutput output;
    for (const SyncRow& row : rows) {
        if (row.select || !tickedOnly)
            append(output.text(), row, asJson);
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
