// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/metasheet.h"

#include "ui_MetaSheet.h"

namespace luma {

MetaSheet::MetaSheet(QWidget* parent) : QDialog(parent), m_ui(std::make_unique<Ui::MetaSheet>())
{
    m_ui->setupUi(this);
    for (QPushButton* button : {m_ui->metaSheetOKButton, m_ui->metaSheetCancelButton})
        connect(button, &QPushButton::clicked, this, [this, button] { closeSheet(button); });
}

MetaSheet::~MetaSheet() = default;

void MetaSheet::begin(const QString& label, const QString& text)
{
    m_ui->metaSheetLabel->setText(label);
    m_ui->metaSheetTextField->setText(text);
    m_ui->metaSheetTextField->selectAll();
    m_ui->metaSheetTextField->setFocus();
    open();
}

void MetaSheet::closeSheet(QObject* sender)
{
    const bool isConfirmed = sender->property("tag").toInt() == 1;
    done(isConfirmed ? Accepted : Rejected);
    if (isConfirmed)
        emit confirmed(m_ui->metaSheetTextField->text());
}

} // namespace luma
