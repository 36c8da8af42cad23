// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/ticklist.h"

#include "browser/ticklistmodel.h"
#include "ui_TickList.h"

#include <QKeyEvent>
#include <QLocale>

namespace luma {

TickList::TickList(QWidget* parent) : QWidget(parent), m_ui(std::make_unique<Ui::TickList>())
{
    m_ui->setupUi(this);
    m_ui->table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_ui->table->verticalHeader()->setDefaultSectionSize(m_ui->table->fontMetrics().height() + 6);
    m_ui->table->installEventFilter(this);
    m_ui->placeholder->setBackgroundRole(QPalette::Base);
    m_ui->placeholder->setForegroundRole(QPalette::PlaceholderText);
    connect(m_ui->all, &QCheckBox::clicked, this, &TickList::AllOffOrOn);
}

TickList::~TickList() = default;

void TickList::setUp(TickListModel& model, const Names& names)
{
    m_model = &model;
    m_ui->table->setObjectName(QLatin1StringView(names.table));
    m_ui->all->setObjectName(QLatin1StringView(names.all));
    m_ui->count->setObjectName(QLatin1StringView(names.count));
    m_ui->placeholder->setObjectName(QLatin1StringView(names.placeholder));
    m_ui->table->setAccessibleName(accessibleName());
    m_ui->table->setModel(m_model);
    // A single column needs no title.
    m_ui->table->horizontalHeader()->setVisible(m_model->columnCount() > 1);
    connect(m_model, &TickListModel::tickStateChanged, this, &TickList::updateForTicks);
    updateForTicks();
}

QTableView& TickList::table() const
{
    return *m_ui->table;
}

void TickList::setPlaceholder(const QString& text)
{
    m_ui->placeholder->setText(text);
}

void TickList::setNote(const QString& note)
{
    m_note = note;
    updateForTicks();
}

void TickList::setTickingEnabled(bool on)
{
    m_ui->table->setEnabled(on);
    updateForTicks();
}

void TickList::AllOffOrOn()
{
    // A click on the half state ticks all.
    m_model->tickAll(m_ui->all->checkState() != Qt::Unchecked);
}

void TickList::updateForTicks()
{
    const auto all = static_cast<qulonglong>(m_model->allCount());
    m_ui->all->setCheckState(m_model->tickState());
    m_ui->all->setEnabled(m_model->rowCount() > 0 && m_ui->table->isEnabled());
    const QLocale locale;
    QStringList texts;
    if (all > 0)
        texts.append(
            tr("%1 of %2 selected").arg(locale.toString(m_model->tickedCount()), locale.toString(all)));
    if (!m_note.isEmpty())
        texts.append(m_note);
    m_ui->count->setText(texts.join(QStringLiteral(", ")));
    m_ui->stack->setCurrentWidget(all > 0 ? static_cast<QWidget*>(m_ui->table) : m_ui->placeholder);
}

bool TickList::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space) {
        toggleSelectedRows();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void TickList::toggleSelectedRows()
{
    const QModelIndex current = m_ui->table->currentIndex().siblingAtColumn(0);
    if (!current.isValid())
        return;
    const bool isTicked = current.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    m_model->tick(m_ui->table->selectionModel()->selectedRows(), !isTicked);
}

} // namespace luma
