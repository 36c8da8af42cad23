// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preferencesdialog.h"

#include "app/preferences.h"
#include "base/pathtext.h"
#include "base/resources.h"
#include "editor/templatesheet.h"
#include "site/siterecord.h"
#include "ui_PreferencesDialog.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLocale>
#include <QRegularExpression>
#include <QScrollArea>
#include <QScrollBar>

#include <algorithm>

namespace luma {

PreferencesDialog::PreferencesDialog(Preferences& preferences, QWidget* parent)
    : QDialog(parent), m_preferences(preferences), m_ui(std::make_unique<Ui::PreferencesDialog>())
{
    m_ui->setupUi(this);
    showGeneral();
    showLinks();
    showPublishing();
    showPages();
    for (QLabel* hint : findChildren<QLabel*>(QRegularExpression(QStringLiteral("Hint$")))) {
        hint->setForegroundRole(QPalette::PlaceholderText);
        hint->setAlignment(Qt::AlignTop);
    }
    letPagesScroll();
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose);
    m_ui->excludedFolders->setText(preferences.excludedFolderNames());
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &PreferencesDialog::accept);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &PreferencesDialog::reject);
}

PreferencesDialog::~PreferencesDialog() = default;

// Wrapped texts in a large font may need more height than the screen has.
void PreferencesDialog::letPagesScroll()
{
    for (int number = 0; number < m_ui->pages->count(); ++number) {
        const QString title = m_ui->pages->tabText(number);
        QWidget* const page = m_ui->pages->widget(number);
        auto* const area = new QScrollArea;
        area->setFrameShape(QFrame::NoFrame);
        area->setFocusPolicy(Qt::NoFocus);
        area->setWidgetResizable(true);
        area->setWidget(page); // which leaves the tab
        area->setMinimumWidth(page->minimumSizeHint().width() +
                              area->verticalScrollBar()->sizeHint().width());
        area->viewport()->setAutoFillBackground(false);
        page->setAutoFillBackground(false);
        m_ui->pages->insertTab(number, area, title);
    }
    m_ui->pages->setCurrentIndex(0);
}

void PreferencesDialog::showGeneral()
{
    QStringList languages = {QStringLiteral("en")};
    const QDir catalogs(QFile::decodeName((resourceFolder() / "translations").c_str()));
    for (const QString& catalog : catalogs.entryList({QStringLiteral("luma_*.qm")}, QDir::Files))
        languages.append(catalog.section(u'_', 1).section(u'.', 0, 0));
    m_ui->language->addItem(tr("The desktop's"), QString());
    for (const QString& language : languages) {
        QString name = QLocale(language).nativeLanguageName();
        // English comes with its country.
        if (language == QLatin1StringView("en"))
            name = QLocale::languageToString(QLocale::English);
        m_ui->language->addItem(name, language);
    }
    const int chosen = m_ui->language->findData(m_preferences.value(Preferences::language).toString());
    m_ui->language->setCurrentIndex(std::max(chosen, 0));
    m_ui->reopensSites->setChecked(m_preferences.value(Preferences::reopensSites).toBool());
}

void PreferencesDialog::storeGeneral()
{
    m_preferences.setValue(Preferences::language, m_ui->language->currentData());
    m_preferences.setValue(Preferences::reopensSites, m_ui->reopensSites->isChecked());
}

void PreferencesDialog::showLinks()
{
    m_ui->linkRules->setCurrentIndex(m_preferences.value(Preferences::linksByLetter).toBool() ? 1 : 0);
    m_ui->indexPages->setText(m_preferences.indexPageNames());
    QStringList usual;
    for (const std::string& name : WebRules().indexNames)
        usual.append(QString::fromStdString(name));
    m_ui->indexPages->setPlaceholderText(usual.join(QStringLiteral(", ")));
    m_ui->extensionsMayBeLeftOut->setChecked(
        m_preferences.value(Preferences::extensionsMayBeLeftOut).toBool());
    m_ui->fragmentsAreChecked->setChecked(m_preferences.value(Preferences::fragmentsAreChecked).toBool());
    m_ui->asksBeforeManyPages->setChecked(m_preferences.value(Preferences::asksBeforeManyPages).toBool());
    m_ui->mostPagesUnasked->setValue(m_preferences.value(Preferences::mostPagesUnasked).toInt());
    const auto enableForBrowser = [this] {
        const bool asBrowser = m_ui->linkRules->currentIndex() == 0;
        for (QWidget* widget :
             {static_cast<QWidget*>(m_ui->indexPages), static_cast<QWidget*>(m_ui->indexPagesLabel),
              static_cast<QWidget*>(m_ui->extensionsMayBeLeftOut),
              static_cast<QWidget*>(m_ui->fragmentsAreChecked),
              static_cast<QWidget*>(m_ui->asksBeforeManyPages)})
            widget->setEnabled(asBrowser);
        m_ui->mostPagesUnasked->setEnabled(asBrowser && m_ui->asksBeforeManyPages->isChecked());
    };
    connect(m_ui->linkRules, &QComboBox::currentIndexChanged, this, enableForBrowser);
    connect(m_ui->asksBeforeManyPages, &QCheckBox::toggled, this, enableForBrowser);
    enableForBrowser();
}

void PreferencesDialog::storeLinks()
{
    m_preferences.setValue(Preferences::linksByLetter, m_ui->linkRules->currentIndex() == 1);
    m_preferences.setValue(Preferences::indexPages, m_ui->indexPages->text());
    m_preferences.setValue(Preferences::extensionsMayBeLeftOut, m_ui->extensionsMayBeLeftOut->isChecked());
    m_preferences.setValue(Preferences::fragmentsAreChecked, m_ui->fragmentsAreChecked->isChecked());
    m_preferences.setValue(Preferences::asksBeforeManyPages, m_ui->asksBeforeManyPages->isChecked());
    m_preferences.setValue(Preferences::mostPagesUnasked, m_ui->mostPagesUnasked->value());
}

// New sites are copies of the template, and so get what it holds.
void PreferencesDialog::showPublishing()
{
    const SiteRecord model(m_preferences.value(Preferences::siteTemplate).toMap());
    m_ui->keptDays->setValue(model.keepChoice().days);
    m_ui->ignoredNames->setPlainText(model.ignoredNames());
    const int lines = m_ui->ignoredNames->fontMetrics().lineSpacing() * 4;
    m_ui->ignoredNames->setFixedHeight(lines + 4 * m_ui->ignoredNames->frameWidth() + 8);
}

void PreferencesDialog::storePublishing()
{
    SiteRecord model(m_preferences.value(Preferences::siteTemplate).toMap());
    KeepChoice choice = model.keepChoice();
    choice.days = m_ui->keptDays->value();
    if (choice == model.keepChoice() && m_ui->ignoredNames->toPlainText() == model.ignoredNames())
        return;
    model.setKeepChoice(choice);
    model.setIgnoredNames(m_ui->ignoredNames->toPlainText());
    m_preferences.setValue(Preferences::siteTemplate, model.values());
}

void PreferencesDialog::showPages()
{
    m_ui->tidiesPages->setChecked(m_preferences.value(Preferences::tidiesPages).toBool());
    m_ui->templateFolder->setText(m_preferences.value(Preferences::templateFolder).toString());
    m_ui->templateFolder->setPlaceholderText(textOf(TemplateSheet::usualFolder()));
    connect(m_ui->templateFolderButton, &QPushButton::clicked, this,
            &PreferencesDialog::chooseTemplateFolder);
}

void PreferencesDialog::chooseTemplateFolder()
{
    const QString shown = m_ui->templateFolder->text();
    auto* const panel = new QFileDialog(this, tr("Folder of templates"),
                                        shown.isEmpty() ? m_ui->templateFolder->placeholderText() : shown);
    panel->setObjectName(QStringLiteral("templateFolderPanel"));
    panel->setFileMode(QFileDialog::Directory);
    panel->setAttribute(Qt::WA_DeleteOnClose);
    connect(panel, &QFileDialog::fileSelected, m_ui->templateFolder, &QLineEdit::setText);
    panel->open();
}

void PreferencesDialog::storePages()
{
    m_preferences.setValue(Preferences::tidiesPages, m_ui->tidiesPages->isChecked());
    QString folder = m_ui->templateFolder->text().trimmed();
    // What is no whole path counts from the home folder.
    if (folder.startsWith(QLatin1StringView("~/")))
        folder.remove(0, 2);
    if (!folder.isEmpty())
        folder = QDir::cleanPath(QDir::home().absoluteFilePath(folder));
    m_preferences.setValue(Preferences::templateFolder, folder);
}

void PreferencesDialog::accept()
{
    storeGeneral();
    storePublishing();
    m_preferences.setValue(Preferences::excludedFolders, m_ui->excludedFolders->text());
    storeLinks();
    storePages();
    // A failure is reported at quit, when the list is saved to the same file.
    (void)m_preferences.save();
    QDialog::accept();
}

} // namespace luma
