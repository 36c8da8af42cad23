// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/linkreportmodel.h"

#include <QSet>
#include <QTreeView>

namespace luma {

/// Shows a LinkReportModel: a flat table, or groups that can be closed. Selection, closed groups and the scroll
/// position stay when the model shows the report anew. Copies rows as text or CSV. Main thread only.
class LinkReportView final : public QTreeView
{
    Q_OBJECT

public:
    explicit LinkReportView(QWidget* parent = nullptr);

    /// Called once. `model` outlives the view.
    void setReport(LinkReportModel& model);
    void setGrouping(LinkReportModel::Grouping grouping);

    /// Lays out added rows now, which else happens later.
    void layOut();

    /// The findings of the selected rows, or of all rows while none is selected.
    [[nodiscard]] std::vector<LinkReportModel::Finding> selectedFindings() const;
    /// To the clipboard, with tabs between the columns.
    void copyText() const;
    void copyCsv() const;

signals:
    /// The user double-clicked this row, or pressed Return on it.
    void findingActivated(const LinkReportModel::Finding& finding);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    LinkReportModel* m_model = nullptr;
    QSet<QByteArray> m_closedGroups;
    QSet<QByteArray> m_selected; // while the model is reset
    QByteArray m_current;
    int m_scrolled = 0;

    void connectModel();
    void setColumnWidths();
    void noteGroup(const QModelIndex& index, bool isOpen);
    void keepState();
    void restoreState();
    void restoreRow(const QModelIndex& index, QItemSelection& selection);
    void openGroups(int first, int last);
    void activate(const QModelIndex& index);
    [[nodiscard]] QByteArray keyOf(const QModelIndex& index) const;
};

} // namespace luma
