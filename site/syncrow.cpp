// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/syncrow.h"

#include "base/ascii.h"
#include "base/pathbelow.h"
#include "site/shownname.h"

#include <sys/stat.h>

#include <QtGlobal>

#include <algorithm>
#include <array>
#include <functional>
#include <iterator>
#include <optional>
#include <unordered_set>

namespace luma {

namespace {

using Type = FileFacts::Type;

struct Verdict
{
    SyncKind kind;
    SyncReason reason;
};

using Known = std::optional<PublishedFiles::Pair>;

Verdict judgeOnlyThere(const FileFacts& received, const Known& known)
{
    if (received.type == Type::Folder)
        return {SyncKind::Delete, SyncReason::EmptyFolder};
    if (!known)
        return {SyncKind::Delete, SyncReason::OnlyThere};
    return {SyncKind::Delete, received.isSameFile(known->received) ? SyncReason::DeletedHere
                                                                   : SyncReason::DeletedHereChangedThere};
}

std::optional<Verdict> judgeFiles(const FileFacts& sent, const FileFacts& received, const Known& known)
{
    if (sent.isSameFile(received))
        return std::nullopt;
    const bool isNewer = sent.time > received.time;
    const bool isCandidate = isNewer || sent.time == received.time;
    const Verdict byTime = isNewer ? Verdict{SyncKind::Newer, SyncReason::Newer}
                                   : Verdict{SyncKind::Different, SyncReason::OtherSize};
    if (!known)
        return isCandidate ? std::optional(byTime) : std::nullopt;
    const bool changedHere = !sent.isSameFile(known->sent);
    const bool changedThere = !received.isSameFile(known->received);
    if (changedHere && changedThere)
        return Verdict{SyncKind::Conflict, SyncReason::ChangedOnBoth};
    if (changedHere)
        return isNewer ? byTime : Verdict{SyncKind::Different, SyncReason::ChangedHere};
    if (changedThere && isCandidate)
        return Verdict{SyncKind::Different, SyncReason::ChangedThere};
    return std::nullopt;
}

std::optional<Verdict> judge(const FileFacts& sent, const FileFacts& received, const Known& known)
{
    if (!sent.exists())
        return judgeOnlyThere(received, known);
    if (!received.exists())
        return Verdict{SyncKind::New, known ? SyncReason::DeletedThere : SyncReason::NotThere};
    if (received.type == Type::Folder)
        return Verdict{SyncKind::Different, SyncReason::FolderInPlace};
    if (sent.type == Type::File && received.type == Type::File)
        return judgeFiles(sent, received, known);
    if (sent.type == received.type && sent.target != received.target)
        return Verdict{SyncKind::Different, SyncReason::OtherTarget};
    if (sent.type != received.type && sent.time > received.time)
        return Verdict{SyncKind::Different, SyncReason::OtherType};
    return std::nullopt;
}

} // namespace

FileFacts FileFacts::of(const struct stat& status)
{
    FileFacts facts;
    if (S_ISREG(status.st_mode))
        facts.type = Type::File;
    else if (S_ISLNK(status.st_mode))
        facts.type = Type::Link;
    else if (S_ISDIR(status.st_mode))
        facts.type = Type::Folder;
    facts.size = status.st_size;
    facts.time = status.st_mtim.tv_sec;
    return facts;
}

const char* textOf(SyncReason reason)
{
    switch (reason) {
    case SyncReason::NotThere:
        return QT_TRANSLATE_NOOP("luma::SyncTableModel", "Not on the receiving side");
    case SyncReason::Newer:
        return QT_TRANSLATE_NOOP("luma::SyncTableModel", "Newer than on the receiving side");
    case SyncReason::OtherSize:
        return QT_TRANSLATE_NOOP("luma::SyncTableModel", "Same time, but another size");
    case SyncReason::OtherTarget:
        return QT_TRANSLATE_NOOP("luma::SyncTableModel", "The links lead to different places");
    case SyncReason::OtherType:
        return QT_TRANSLATE_NOOP("luma::SyncTableModel", "A file on one side, a link on the other");
    case SyncReason::FolderInPlace:
        return QT_TRANSLATE_NOOP("luma::SyncTableModel", "A folder stands in its place");
    case SyncReason::OnlyThere:
        return QT_TRANSLATE_NOOP("luma::SyncTableModel", "Only on the receiving side");
    case SyncReason::EmptyFolder:
        return QT_TRANSLATE_NOOP("luma::SyncTableModel", "An empty folder, only on the receiving side");
    case SyncReason::DeletedThere:
        return QT_TRANSLATE_NOOP("luma::SyncTableModel", "Deleted there since the last publish");
    case SyncReason::ChangedHere:
        return QT_TRANSLATE_NOOP("luma::SyncTableModel", "Changed since the last publish, but not newer");
    case SyncReason::ChangedThere:
        return QT_TRANSLATE_NOOP("luma::SyncTableModel", "Changed there since the last publish");
    case SyncReason::ChangedOnBoth:
        return QT_TRANSLATE_NOOP("luma::SyncTableModel", "Changed on both sides since the last publish");
    case SyncReason::DeletedHere:
        return QT_TRANSLATE_NOOP("luma::SyncTableModel", "Deleted since the last publish");
    case SyncReason::DeletedHereChangedThere:
        return QT_TRANSLATE_NOOP("luma::SyncTableModel", "Deleted, but changed there since the last publish");
    case SyncReason::Replaced:
        return QT_TRANSLATE_NOOP("luma::SyncTableModel", "Replaced by this publish");
    case SyncReason::Deleted:
        return QT_TRANSLATE_NOOP("luma::SyncTableModel", "Deleted by this publish");
    }
    return "";
}

bool SyncRow::isMarked() const
{
    return reason == SyncReason::ChangedThere || reason == SyncReason::ChangedOnBoth ||
           reason == SyncReason::DeletedHereChangedThere;
}

ComparisonReport judged(FoundFiles found, PublishedFiles before, Direction direction)
{
    ComparisonReport report;
    report.published = before.emptied();
    report.counts.sent = report.counts.received = report.counts.common = found.same.size();
    report.counts.receivingIsEmpty = found.receivingIsEmpty;
    report.counts.freeBytes = found.freeBytes;
    for (FilePair& pair : found.files) {
        if (pair.sent.isSameFile(pair.received))
            found.same.add({}, pair.path, pair.sent);
        report.counts.sent += pair.sent.exists() ? 1U : 0U;
        report.counts.received += pair.received.exists() ? 1U : 0U;
        report.counts.common += pair.sent.exists() && pair.received.exists() ? 1U : 0U;
        const auto verdict = judge(pair.sent, pair.received, before.find(pair.path, direction));
        // Only a complete comparison knows what is gone on both sides.
        if (found.isComplete)
            report.published.keep(pair.path, before);
        if (!verdict)
            continue;
        const bool isDeletion = verdict->kind == SyncKind::Delete;
        const bool isFolder = isDeletion && pair.received.type == Type::Folder;
        report.rows.push_back(
            {.kind = verdict->kind,
             .reason = verdict->reason,
             .displayName = (isDeletion ? "deleting " : "") + shownName(pair.path) + (isFolder ? "/" : ""),
             .relativePath = std::move(pair.path),
             .sent = std::move(pair.sent),
             .received = std::move(pair.received)});
    }
    if (!found.isComplete)
        report.published = std::move(before);
    report.published.addSame(std::move(found.same));
    for (SyncRow& row : report.rows)
        row.select = !row.isMarked();
    std::sort(report.rows.begin(), report.rows.end(),
              [](const SyncRow& a, const SyncRow& b) { return a.relativePath < b.relativePath; });
    std::sort(found.problems.begin(), found.problems.end());
    report.problems = std::move(found.problems);
    report.ignored = found.ignored;
    report.foldersOnlyThere = std::move(found.foldersOnlyThere);
    return report;
}

bool isListed(const FileFacts& sent, const FileFacts& received,
              const std::optional<PublishedFiles::Pair>& known)
{
    return judge(sent, received, known).has_value();
}

void noteTransfer(PublishedFiles& published, const SyncRow& row, const FileFacts& received,
                  Direction direction)
{
    if (row.kind == SyncKind::Delete)
        published.forget(row.relativePath);
    else
        published.set(row.relativePath, {row.sent, received}, direction);
}

SyncTotals tickedTotals(const std::vector<SyncRow>& rows)
{
    SyncTotals totals;
    for (const SyncRow& row : rows) {
        if (!row.select)
            continue;
        if (row.kind == SyncKind::Delete) {
            ++totals.deletions;
        } else {
            ++totals.files;
            totals.bytes += row.sent.size;
        }
    }
    return totals;
}

bool isPage(std::string_view path)
{
    constexpr auto extensions =
        std::to_array<std::string_view>({"html", "htm", "xhtml", "xht", "shtml", "php", "xml"});
    const std::string_view name = namePart(path);
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos)
        return false;
    return isOneOf(name.substr(dot + 1), extensions);
}

std::vector<std::size_t> transferOrder(const std::vector<SyncRow>& rows)
{
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].select && rows[i].kind != SyncKind::Delete)
            order.push_back(i);
    }
    std::stable_partition(order.begin(), order.end(),
                          [&rows](std::size_t row) { return !isPage(rows[row].relativePath); });
    return order;
}

std::vector<std::size_t> tickedDeletions(const std::vector<SyncRow>& rows)
{
    std::vector<std::size_t> numbers;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].select && rows[i].kind == SyncKind::Delete)
            numbers.push_back(i);
    }
    return numbers;
}

std::vector<std::string> emptiedFolders(const std::vector<SyncRow>& rows,
                                        const std::vector<std::size_t>& numbers,
                                        const std::vector<std::string>& folders)
{
    std::unordered_set<std::string_view> touched;
    for (const std::size_t row : numbers) {
        const std::string_view path = rows[row].relativePath;
        if (rows[row].received.type == Type::Folder)
            touched.insert(path);
        for (std::size_t slash = path.find('/'); slash != std::string_view::npos;
             slash = path.find('/', slash + 1))
            touched.insert(path.substr(0, slash));
    }
    std::vector<std::string> emptied;
    std::copy_if(folders.begin(), folders.end(), std::back_inserter(emptied),
                 [&touched](const std::string& folder) { return touched.contains(folder); });
    // A path comes after the paths above it.
    std::sort(emptied.begin(), emptied.end(), std::greater<>());
    return emptied;
}

} // namespace luma
