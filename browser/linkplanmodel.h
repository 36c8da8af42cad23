// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/linkplan.h"

#include <QAbstractTableModel>

#include <cstdint>
#include <memory>
#include <vector>

namespace luma {

/// The rows of a plan that the user looks at before it is carried out: first the pages that it can't change, with the reason,
/// then each link that it changes. Main thread only.
class LinkPlanModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Page, Line, OldLink, NewLink, ColumnCount };

    explicit LinkPlanModel(std::shared_ptr<const LinkPlan> plan, QObject* parent = nullptr);

    /// By the text of a column, lines as numbers. Column -1 is the order of the plan.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    struct Row
    {
        std::uint32_t page; // in the plan's pages, or its problems
        std::uint32_t edit; // noEdit for a problem
    };
    static constexpr std::uint32_t noEdit = UINT32_MAX;

    [[nodiscard]] std::vector<Row> rowsOfPlan() const;
    [[nodiscard]] const std::filesystem::path& pageOf(Row row) const;
    [[nodiscard]] QString text(Row row, int column) const;

    std::shared_ptr<const LinkPlan> m_plan;
    std::vector<Row> m_rows;
};

} // namespace luma
