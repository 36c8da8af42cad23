// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/linkplan.h"

#include <QDialog>

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

namespace Ui {
class PlanPreview;
}

namespace luma {

/// Shows a plan before it is carried out, as a sheet: a table of the links that change, with the button that carries it out
/// and Cancel. Where links would break because pages can't be changed, it names these, and Cancel is the default. Main thread
/// only.
class PlanPreview final : public QDialog
{
    Q_OBJECT

public:
    /// `askAbove`: the number of pages above which the user wants to be asked, for the tick; without it there is no tick.
    PlanPreview(std::shared_ptr<const LinkPlan> plan, std::optional<int> askAbove, QWidget* parent);
    ~PlanPreview() override;

    /// What the plan does, in a word or two: "Rename".
    static QString actionName(const LinkPlan& plan);

signals:
    /// The user has accepted and doesn't want to be asked any more.
    void askingStopped();

private:
    struct ActionNames
    {
        QString plain;
        QString anyway;
    };
    static ActionNames actionNames(const LinkPlan& plan);

    std::unique_ptr<Ui::PlanPreview> m_ui;
    std::shared_ptr<const LinkPlan> m_plan;

    void setUpTable();
    void warn(const std::vector<std::filesystem::path>& stayingPages);
    [[nodiscard]] QString countsText() const;
};

} // namespace luma
