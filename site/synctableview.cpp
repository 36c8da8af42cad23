// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/synctableview.h"

#include "site/synctablemodel.h"

#include <QHeaderView>
#include <QStyledItemDelegate>
#include <QTableView>

#include <utility>

namespace luma {

namespace {

// Shows a warning before the rows that begin unticked.
class KindDelegate final : public QStyledItemDelegate
{
public:
    KindDelegate(const SyncTableModel& table, QObject* parent) : QStyledItemDelegate(parent), m_table(table)
    {}

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        if (index.column() != SyncTableModel::KindColumn || !m_table.shownRow(index.row()).isMarked())
            return;
        option->features |= QStyleOptionViewItem::HasDecoration;
        option->icon = option->widget->style()->standardIcon(QStyle::SP_MessageBoxWarning);
        option->decorationSize = QSize(option->fontMetrics.height(), option->fontMetrics.height());
    }

private:
    const SyncTableModel& m_table;
};

} // namespace

void setUpSyncTable(QTableView& table, const SyncTableModel& model)
{
    table.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    table.setItemDelegate(new KindDelegate(model, &table));
    // At first in the order of the comparison, by name.
    table.horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    table.setSortingEnabled(true);
    table.horizontalHeader()->setHighlightSections(false);
    const int letter = table.fontMetrics().averageCharWidth();
    for (const auto& [column, letters] :
         {std::pair(SyncTableModel::KindColumn, 18), std::pair(SyncTableModel::NameColumn, 40),
          std::pair(SyncTableModel::SentSizeColumn, 15), std::pair(SyncTableModel::SentDateColumn, 24),
          std::pair(SyncTableModel::ReceivedSizeColumn, 18),
          std::pair(SyncTableModel::ReceivedDateColumn, 24)})
        table.setColumnWidth(column, letter * letters);
}

} // namespace luma
