// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preferencesdialog.h"

#include "app/preferences.h"
#include "ui_PreferencesDialog.h"

namespace luma {

PreferencesDialog::PreferencesDialog(Preferences& preferences, QWidget* parent)
    : QDialog(parent), m_preferences(preferences), m_ui(std::make_unique<Ui::PreferencesDialog>())
{
    m_ui->setupUi(this);
    m_ui->tidiesPages->setChecked(preferences.value(Preferences::tidiesPages).toBool());
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose);
    m_ui->excludedFolders->setText(preferences.excludedFolderNames());
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &PreferencesDialog::accept);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &PreferencesDialog::reject);
}

PreferencesDialog::~PreferencesDialog() = default;

void PreferencesDialog::accept()
{
    m_preferences.setValue(Preferences::excludedFolders, m_ui->excludedFolders->text());
    m_preferences.setValue(Preferences::tidiesPages, m_ui->tidiesPages->isChecked());
    // A failure is reported at quit, when the list is saved to the same file.
    (void)m_preferences.save();
    QDialog::accept();
}

} // namespace luma
