// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/classsheet.h"

#include "links/sitenames.h"
#include "ui_ClassSheet.h"

namespace luma {

ClassSheet::ClassSheet(QWidget* parent) : QDialog(parent), m_ui(std::make_unique<Ui::ClassSheet>())
{
    m_ui->setupUi(this);
    connect(m_ui->classSheetName, &QLineEdit::textChanged, this, &ClassSheet::check);
    connect(m_ui->classSheetCancelButton, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_ui->classSheetOKButton, &QPushButton::clicked, this, &QDialog::accept);
    connect(this, &QDialog::accepted, this,
            [this] { emit confirmed(m_ui->classSheetName->text(), m_ui->classSheetTarget->currentIndex()); });
}

ClassSheet::~ClassSheet() = default;

void ClassSheet::begin(const QStringList& sheets, const QSet<QString>& known)
{
    m_known = known;
    m_ui->classSheetTarget->clear();
    m_ui->classSheetTarget->addItems(sheets);
    m_ui->classSheetTarget->setCurrentIndex(static_cast<int>(sheets.size()) - 1);
    m_ui->classSheetName->clear();
    m_ui->classSheetName->setFocus();
    check();
    open();
}

void ClassSheet::check()
{
    const QString name = m_ui->classSheetName->text();
    QString problem = name.isEmpty() ? QString() : QString::fromStdString(problemOfName(name.toStdString()));
    if (m_known.contains(name))
        problem = tr("The page or one of its style sheets has this class already.");
    m_ui->classSheetProblem->setText(problem);
    m_ui->classSheetOKButton->setEnabled(problem.isEmpty() && !name.isEmpty());
}

} // namespace luma
