// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/linkreportview.h"

#include "links/webreporttext.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>
#include <QStyledItemDelegate>

namespace luma {

namespace {

using Grouping = LinkReportModel::Grouping;

// Rows with some space between their texts.
class RowDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(0, 6);
    }
};

QByteArray bytesOf(std::string_view text)
{
    return {text.data(), static_cast<qsizetype>(text.size())};
}

} // namespace

LinkReportView::LinkReportView(QWidget* parent) : QTreeView(parent)
{
    setUniformRowHeights(true);
    setItemDelegate(new RowDelegate(this));
    setAlternatingRowColors(true);
    setAllColumnsShowFocus(true);
    setSelectionMode(ExtendedSelection);
    setTextElideMode(Qt::ElideMiddle);
    setExpandsOnDoubleClick(true);
    setHorizontalScrollMode(ScrollPerPixel);
    header()->setSectionsMovable(false);
    header()->setStretchLastSection(true);
    header()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header()->setSortIndicatorClearable(true);
    header()->setSortIndicator(-1, Qt::AscendingOrder);
    connect(this, &QTreeView::doubleClicked, this, &LinkReportView::activate);
    connect(this, &QTreeView::expanded, this, [this](const QModelIndex& index) { noteGroup(index, true); });
    connect(this, &QTreeView::collapsed, this, [this](const QModelIndex& index) { noteGroup(index, false); });
}

void LinkReportView::setReport(LinkReportModel& model)
{
    m_model = &model;
    // Before the view's own connections, so that its state can be kept.
    connect(m_model, &QAbstractItemModel::modelAboutToBeReset, this, &LinkReportView::keepState);
    setModel(m_model);
    connect(m_model, &QAbstractItemModel::modelReset, this, &LinkReportView::restoreState);
    connect(m_model, &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex& /*parent*/, int first, int last) { openGroups(first, last); });
    setSortingEnabled(true);
    setColumnWidths();
    setGrouping(m_model->grouping());
}

void LinkReportView::setColumnWidths()
{
    const auto widthOf = [this](int characters) {
        return fontMetrics().averageCharWidth() * characters + 24;
    };
    setColumnWidth(LinkReportModel::Link, widthOf(36));
    setColumnWidth(LinkReportModel::Page, widthOf(28));
    setColumnWidth(LinkReportModel::Line, widthOf(6));
    setColumnWidth(LinkReportModel::Character, widthOf(7));
    setColumnWidth(LinkReportModel::Attribute, widthOf(10));
    setColumnWidth(LinkReportModel::Problem, widthOf(24));
}

void LinkReportView::setGrouping(Grouping grouping)
{
    m_closedGroups.clear();
    m_model->setGrouping(grouping);
    const bool isFlat = grouping == Grouping::None;
    setRootIsDecorated(!isFlat);
    setColumnHidden(LinkReportModel::Page, grouping == Grouping::ByPage);
    // The first column of the model holds the branches; the flat table begins with the page, like the report.
    header()->moveSection(header()->visualIndex(LinkReportModel::Link),
                          isFlat ? LinkReportModel::Attribute : 0);
}

void LinkReportView::noteGroup(const QModelIndex& index, bool isOpen)
{
    if (isOpen)
        m_closedGroups.remove(keyOf(index));
    else
        m_closedGroups.insert(keyOf(index));
}

/// Names a row across two runs of a report.
QByteArray LinkReportView::keyOf(const QModelIndex& index) const
{
    if (m_model->isGroup(index))
        return bytesOf(m_model->groupName(index));
    const auto [page, link] = m_model->finding(index);
    if (!page)
        return {};
    QByteArray key = bytesOf(page->path) + '\0';
    if (link)
        key += QByteArray::number(link->line) + ':' + QByteArray::number(link->column) + ' ' +
               bytesOf(link->value);
    return key;
}

void LinkReportView::layOut()
{
    executeDelayedItemsLayout();
}

void LinkReportView::keepState()
{
    m_selected.clear();
    for (const QModelIndex& row : selectionModel()->selectedRows())
        m_selected.insert(keyOf(row));
    m_current = keyOf(currentIndex());
    m_scrolled = verticalScrollBar()->value();
}

void LinkReportView::restoreState()
{
    openGroups(0, m_model->rowCount() - 1);
    if (m_selected.isEmpty() && m_current.isEmpty())
        return;
    QItemSelection selection;
    for (int row = 0; row < m_model->rowCount(); ++row) {
        const QModelIndex index = m_model->index(row, 0);
        restoreRow(index, selection);
        for (int child = 0; child < m_model->rowCount(index); ++child)
            restoreRow(m_model->index(child, 0, index), selection);
    }
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(m_scrolled);
}

void LinkReportView::restoreRow(const QModelIndex& index, QItemSelection& selection)
{
    const QByteArray key = keyOf(index);
    if (m_selected.contains(key))
        selection.select(index, index);
    if (!m_current.isEmpty() && key == m_current)
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
}

void LinkReportView::openGroups(int first, int last)
{
    if (m_model->grouping() == Grouping::None)
        return;
    const QSignalBlocker quiet(this);
    for (int row = first; row <= last; ++row) {
        const QModelIndex group = m_model->index(row, 0);
        setFirstColumnSpanned(row, {}, true);
        setExpanded(group, !m_closedGroups.contains(keyOf(group)));
    }
}

std::vector<LinkReportModel::Finding> LinkReportView::selectedFindings() const
{
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? m_model->shownFindings() : m_model->findings(rows);
}

void LinkReportView::copyText() const
{
    QString text;
    for (const auto& [page, link] : selectedFindings()) {
        const QStringList cells =
            link ? QStringList{QString::fromStdString(page->path),
                               QString::number(link->line),
                               QString::number(link->column),
                               QString::fromUtf8(bytesOf(nameOf(link->place))),
                               QString::fromStdString(link->value),
                               QString::fromUtf8(bytesOf(textOf(link->why))),
                               QString::fromStdString(link->suggestion)}
                 : QStringList{QString::fromStdString(page->path), QString::fromStdString(page->unreadable)};
        text += cells.join(QLatin1Char('\t')) + QLatin1Char('\n');
    }
    QApplication::clipboard()->setText(text);
}

void LinkReportView::copyCsv() const
{
    std::string text(csvHeader);
    for (const auto& [page, link] : selectedFindings())
        appendCsv(text, *page, link);
    QApplication::clipboard()->setText(QString::fromStdString(text));
}

void LinkReportView::activate(const QModelIndex& index)
{
    const LinkReportModel::Finding finding = m_model->finding(index);
    if (finding.page)
        emit findingActivated(finding);
}

void LinkReportView::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
        QTreeView::keyPressEvent(event);
    } else if (const QModelIndex current = currentIndex(); m_model->isGroup(current)) {
        setExpanded(current.siblingAtColumn(0), !isExpanded(current.siblingAtColumn(0)));
    } else {
        activate(current);
    }
}

} // namespace luma
