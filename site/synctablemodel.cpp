// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/synctablemodel.h"

#include <array>

namespace luma {

namespace {

// In the order of SyncTableModel::Column.
constexpr auto columns = std::to_array<TickColumn<SyncRow>>({
    {.title = QT_TRANSLATE_NOOP("luma::SyncTableModel", "File"),
     .text = [](const SyncRow& row) { return QString::fromStdString(row.displayName); }},
});
static_assert(columns.size() == SyncTableModel::ColumnCount);

} // namespace

SyncTableModel::SyncTableModel(QObject* parent) : TickTable(columns, parent) {}

} // namespace luma
