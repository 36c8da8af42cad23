// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/tablesheet.h"

#include "ui_TableSheet.h"

namespace luma {

TableSheet::TableSheet(QWidget* parent) : QDialog(parent), m_ui(std::make_unique<Ui::TableSheet>())
{
    m_ui->setupUi(this);
    connect(m_ui->tableCancelButton, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_ui->tableButton, &QPushButton::clicked, this, &QDialog::accept);
    connect(this, &QDialog::accepted, this, [this] {
        emit confirmed(m_ui->tableRows->value(), m_ui->tableColumns->value(),
                       m_ui->tableHeaderBox->isChecked());
    });
}

TableSheet::~TableSheet() = default;

void TableSheet::begin()
{
    open();
    m_ui->tableRows->setFocus();
    m_ui->tableRows->selectAll();
}

} // namespace luma
