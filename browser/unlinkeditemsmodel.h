// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractTableModel>

#include <string>
#include <vector>

namespace luma {

/// The rows of the unlinked items: one column, the path below the site's folder with the row's check box.
/// Paths are bytes; the screen gets them as displayText. Main thread only.
class UnlinkedItemsModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    struct Row
    {
        int select = 1; // 1 = checked
        std::string displayName;
    };

    using QAbstractTableModel::QAbstractTableModel;

    [[nodiscard]] const std::vector<Row>& rows() const { return m_rows; }
    void clear();
    /// Adds rows, checked.
    void append(const std::vector<std::string>& displayNames);
    /// Removes the rows of these names, which stand in the order of the rows.
    void remove(const std::vector<std::string>& displayNames);
    /// Sets `select` of every row.
    void selectAll(bool on);
    [[nodiscard]] std::vector<std::string> selectedNames() const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

signals:
    /// Rows have come or gone, or were ticked or unticked.
    void selectionChanged();

private:
    std::vector<Row> m_rows;
};

} // namespace luma
