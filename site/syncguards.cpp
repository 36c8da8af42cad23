// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/syncguards.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>

namespace luma {

namespace {

struct Guards
{
    Q_DECLARE_TR_FUNCTIONS(luma::SyncGuards)
};

QString text(std::size_t number)
{
    return QLocale().toString(static_cast<qulonglong>(number));
}

QString deletionQuestion(std::size_t deletions, const SyncCounts& counts)
{
    if (deletions == 0)
        return {};
    if (counts.sent == 0)
        return Guards::tr(
                   "The sending side has no files at all; its disk or share may not be mounted. Delete %1 on "
                   "the receiving side?")
            .arg(text(deletions));
    if (deletions > counts.received / 3)
        return Guards::tr(
                   "More than a third of the receiving side would be deleted: %1 of %2 files. Delete them?")
            .arg(text(deletions), text(counts.received));
    return {};
}

// What the disk must take at once: a file replaces another one only when it is complete.
std::int64_t neededRoom(const std::vector<SyncRow>& rows)
{
    std::int64_t growth = 0;
    std::int64_t largest = 0;
    for (const SyncRow& row : rows) {
        if (!row.select || row.kind == SyncKind::Delete)
            continue;
        growth += row.sent.size - row.received.size;
        largest = std::max(largest, row.received.exists() ? row.sent.size : 0);
    }
    return std::max(growth, std::int64_t{0}) + largest;
}

} // namespace

QStringList guardQuestions(const std::vector<SyncRow>& rows, const SyncCounts& counts)
{
    const SyncTotals totals = tickedTotals(rows);
    QStringList questions;
    if (const QString question = deletionQuestion(totals.deletions, counts); !question.isEmpty())
        questions.append(question);
    if (totals.files > 0 && counts.common == 0 && !counts.receivingIsEmpty)
        questions.append(
            Guards::tr("The two folders have no file in common. Is the receiving folder the right one?"));
    const std::int64_t needed = neededRoom(rows);
    if (counts.freeBytes && needed > *counts.freeBytes)
        questions.append(
            Guards::tr("The receiving disk has %1 free, but %2 are needed. Try it all the same?")
                .arg(QLocale().formattedDataSize(*counts.freeBytes), QLocale().formattedDataSize(needed)));
    return questions;
}

} // namespace luma
