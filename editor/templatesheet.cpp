// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/templatesheet.h"

#include "base/pathtext.h"
#include "ui_TemplateSheet.h"

#include <QDesktopServices>
#include <QDir>
#include <QStandardPaths>
#include <QUrl>

namespace luma {

namespace fs = std::filesystem;

TemplateSheet::TemplateSheet(QWidget* parent) : QDialog(parent), m_ui(std::make_unique<Ui::TemplateSheet>())
{
    m_ui->setupUi(this);
    connect(m_ui->templateList, &QListWidget::itemActivated, m_ui->templateButton, &QPushButton::click);
    connect(m_ui->templateFolderButton, &QPushButton::clicked, this, &TemplateSheet::openFolder);
    connect(m_ui->templateCancelButton, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_ui->templateButton, &QPushButton::clicked, this, &QDialog::accept);
    connect(this, &QDialog::accepted, this, [this] {
        if (const QListWidgetItem* const item = m_ui->templateList->currentItem())
            emit confirmed(folder() / pathOf(item->toolTip()));
    });
}

TemplateSheet::~TemplateSheet() = default;

fs::path TemplateSheet::folder()
{
    return pathOf(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)) / "luma" /
           "templates";
}

void TemplateSheet::begin()
{
    const QDir folder(textOf(TemplateSheet::folder()));
    const QStringList names =
        folder.entryList({QStringLiteral("*.html"), QStringLiteral("*.htm"), QStringLiteral("*.xhtml")},
                         QDir::Files, QDir::LocaleAware);
    m_ui->templateList->clear();
    for (const QString& name : names) {
        auto* const item = new QListWidgetItem(QFileInfo(name).completeBaseName(), m_ui->templateList);
        item->setToolTip(name);
    }
    m_ui->templateList->setCurrentRow(0);
    m_ui->templateList->setVisible(!names.isEmpty());
    m_ui->templateLabel->setVisible(!names.isEmpty());
    m_ui->noTemplates->setVisible(names.isEmpty());
    m_ui->templateButton->setEnabled(!names.isEmpty());
    open();
    (names.isEmpty() ? static_cast<QWidget*>(m_ui->templateFolderButton) : m_ui->templateList)->setFocus();
}

void TemplateSheet::openFolder()
{
    QDir().mkpath(textOf(folder()));
    QDesktopServices::openUrl(QUrl::fromLocalFile(textOf(folder())));
}

} // namespace luma
