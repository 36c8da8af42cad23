// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "site/syncrow.h"

#include <QAbstractTableModel>

#include <vector>

namespace luma {

/// The rows of the sync table: one column, the shown name with the row's check box. Main thread only.
class SyncTableModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    [[nodiscard]] const std::vector<SyncRow>& rows() const { return m_rows; }
    void setRows(std::vector<SyncRow> rows);
    /// Removes the rows at `indexes`, which ascend.
    void removeRowsAt(const std::vector<std::size_t>& indexes);
    /// Sets `select` of every row.
    void selectAll(bool on);
    [[nodiscard]] std::size_t selectedCount() const { return m_selectedCount; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

signals:
    /// Rows have come or gone, or were ticked or unticked.
    void selectionChanged();

private:
    std::vector<SyncRow> m_rows;
    std::size_t m_selectedCount = 0;

    void countSelected();
};

} // namespace luma
