// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/synctablemodel.h"

#include <QDateTime>
#include <QLocale>

#include <array>

namespace luma {

namespace {

using Column = TickColumn<SyncRow>;

QString sizeText(const FileFacts& facts)
{
    return facts.type == FileFacts::Type::File ? QLocale().formattedDataSize(facts.size) : QString();
}

QString dateText(const FileFacts& facts)
{
    if (!facts.exists())
        return {};
    return QLocale().toString(QDateTime::fromSecsSinceEpoch(facts.time), QLocale::ShortFormat);
}

// In the order of SyncTableModel::Column.
constexpr std::array<Column, SyncTableModel::ColumnCount>
columnsNamed(const char* sentSize, const char* sentDate, const char* receivedSize, const char* receivedDate)
{
    return {{
        {.title = QT_TRANSLATE_NOOP("luma::SyncTableModel", "What"),
         .text = [](const SyncRow& row) { return SyncTableModel::textOf(row.kind); },
         .sortKey = [](const SyncRow& row) { return std::int64_t(row.kind); }},
        {.title = QT_TRANSLATE_NOOP("luma::SyncTableModel", "File"),
         .text = [](const SyncRow& row) { return QString::fromStdString(row.displayName); }},
        {.title = sentSize,
         .text = [](const SyncRow& row) { return sizeText(row.sent); },
         .sortKey = [](const SyncRow& row) { return row.sent.size; },
         .isNumber = true},
        {.title = sentDate,
         .text = [](const SyncRow& row) { return dateText(row.sent); },
         .sortKey = [](const SyncRow& row) { return row.sent.time; }},
        {.title = receivedSize,
         .text = [](const SyncRow& row) { return sizeText(row.received); },
         .sortKey = [](const SyncRow& row) { return row.received.size; },
         .isNumber = true},
        {.title = receivedDate,
         .text = [](const SyncRow& row) { return dateText(row.received); },
         .sortKey = [](const SyncRow& row) { return row.received.time; }},
        {.title = QT_TRANSLATE_NOOP("luma::SyncTableModel", "Why"),
         .text = [](const SyncRow& row) { return SyncTableModel::tr(luma::textOf(row.reason)); },
         .sortKey = [](const SyncRow& row) { return std::int64_t(row.reason); }},
    }};
}

constexpr auto sourceSize = QT_TRANSLATE_NOOP("luma::SyncTableModel", "Source size");
constexpr auto sourceDate = QT_TRANSLATE_NOOP("luma::SyncTableModel", "Source date");
constexpr auto destinationSize = QT_TRANSLATE_NOOP("luma::SyncTableModel", "Destination size");
constexpr auto destinationDate = QT_TRANSLATE_NOOP("luma::SyncTableModel", "Destination date");

constexpr auto uploadColumns = columnsNamed(sourceSize, sourceDate, destinationSize, destinationDate);
constexpr auto downloadColumns = columnsNamed(destinationSize, destinationDate, sourceSize, sourceDate);

constexpr auto restoreColumns = columnsNamed(QT_TRANSLATE_NOOP("luma::SyncTableModel", "Kept size"),
                                             QT_TRANSLATE_NOOP("luma::SyncTableModel", "Kept date"),
                                             QT_TRANSLATE_NOOP("luma::SyncTableModel", "Size now"),
                                             QT_TRANSLATE_NOOP("luma::SyncTableModel", "Date now"));

} // namespace

SyncTableModel::SyncTableModel(QObject* parent) : TickTable(uploadColumns, parent) {}

void SyncTableModel::setDirection(Direction direction)
{
    setColumns(direction == Direction::Upload ? uploadColumns : downloadColumns);
}

void SyncTableModel::setRestoring()
{
    setColumns(restoreColumns);
}

QString SyncTableModel::textOf(SyncKind kind)
{
    switch (kind) {
    case SyncKind::New:
        return tr("New");
    case SyncKind::Newer:
        return tr("Newer");
    case SyncKind::Different:
        return tr("Different");
    case SyncKind::Conflict:
        return tr("Conflict");
    case SyncKind::Delete:
        return tr("Delete");
    }
    return {};
}

} // namespace luma
