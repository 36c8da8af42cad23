// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QTableView;

namespace luma {

class SyncTableModel;

/// Gives a table of `model` its column widths, its order, and a warning sign in the rows that begin unticked.
/// Main thread only.
void setUpSyncTable(QTableView& table, const SyncTableModel& model);

} // namespace luma
