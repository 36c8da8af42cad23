// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/classsheet.h"

#include "base/mainhop.h"
#include "links/sitenames.h"
#include "ui_ClassSheet.h"

#include <QPointer>

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

ClassSheet::~ClassSheet()
{
    if (m_job)
        m_job->cancel();
}

void ClassSheet::readSite(const std::filesystem::path& site, const WebRules& rules)
{
    if (m_job)
        m_job->cancel();
    m_ofSite.clear();
    m_job = std::make_shared<WorkItem>();
    start(m_job, [site, rules, job = m_job, self = QPointer(this)](const WorkItem& item) {
        QSet<QString> classes;
        const auto names = findSiteNames(site, rules, [&item] { return !item.isCancelled(); });
        for (const SiteName& name : names ? *names : std::vector<SiteName>()) {
            if (!name.isId)
                classes.insert(QString::fromStdString(name.name));
        }
        onMain(self, [&](ClassSheet& sheet) {
            if (sheet.m_job != job)
                return;
            sheet.m_ofSite = classes;
            sheet.m_job.reset();
            sheet.check();
        });
    });
}

void ClassSheet::begin(const QStringList& sheets, const QSet<QString>& known,
                       const std::filesystem::path& site, const WebRules& rules)
{
    m_known = known;
    readSite(site, rules);
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
    else if (m_ofSite.contains(name))
        problem = tr("Another page or style sheet of the site has this class already.");
    else if (problem.isEmpty() && m_job)
        problem = tr("The site's classes are being read...");
    m_ui->classSheetProblem->setText(problem);
    m_ui->classSheetOKButton->setEnabled(problem.isEmpty() && !name.isEmpty());
}

} // namespace luma
