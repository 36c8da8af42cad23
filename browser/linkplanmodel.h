// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/linkplan.h"

#include <QAbstractTableModel>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// The rows of a plan that the user looks at before it is carried out: first the pages that it can't change, with the reason,
/// and what else the user should know, then each link that it changes, and each symbolic link. Main thread only.
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
    // All in the plan.
    struct Row
    {
        const std::filesystem::path* page = nullptr;
        const std::string* after = nullptr;  // the new link, or a text for the user
        const std::string* before = nullptr; // null where nothing changes
        std::uint32_t line = 0;              // 0: none
        bool isProblem = false;
    };

    [[nodiscard]] std::vector<Row> rowsOfPlan() const;
    [[nodiscard]] static std::string_view reasonOf(const Row& row);
    [[nodiscard]] QString text(const Row& row, int column) const;

    std::shared_ptr<const LinkPlan> m_plan;
    std::vector<Row> m_rows;
};

} // namespace luma
