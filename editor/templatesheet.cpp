// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/templatesheet.h"

#include "base/mainhop.h"
#include "base/pathtext.h"
#include "html/document.h"
#include "html/pagecodec.h"
#include "html/textsearch.h"
#include "links/decodedfile.h"
#include "ui_TemplateSheet.h"

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QPointer>
#include <QStandardPaths>
#include <QStyledItemDelegate>
#include <QUrl>

#include <utility>

namespace luma {

namespace fs = std::filesystem;

namespace {

constexpr qint64 readBytes = qint64{128} << 10U; // of a template, for its first words
constexpr qsizetype mostLetters = 90;

// The page's title and what it begins with, on one line.
QString summaryOf(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString();
    const auto page =
        html::PageCodec().read(file.read(readBytes).toStdString(), markupLanguage(path.toStdString()));
    if (!page)
        return QString::fromStdString(page.error().text);
    const QString title = QString::fromStdString((*page)->title()).simplified();
    QString words;
    for (const QString& run : textRuns(**page)) {
        if (words.size() >= mostLetters)
            break;
        words += u' ' + run;
    }
    words = words.simplified().left(mostLetters);
    return title.isEmpty() || words.isEmpty() ? title + words : title + QStringLiteral(" \u2013 ") + words;
}

// Rows are as wide as the list, and longer words are cut off with an ellipsis.
class TemplateRows final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        return {1, QStyledItemDelegate::sizeHint(option, index).height()};
    }
};

} // namespace

TemplateSheet::TemplateSheet(std::function<fs::path()> folder, QWidget* parent)
    : QDialog(parent), m_folder(std::move(folder)), m_ui(std::make_unique<Ui::TemplateSheet>())
{
    m_ui->setupUi(this);
    m_ui->templateList->setItemDelegate(new TemplateRows(this));
    connect(m_ui->templateList, &QListWidget::itemActivated, m_ui->templateButton, &QPushButton::click);
    connect(m_ui->templateFolderButton, &QPushButton::clicked, this, &TemplateSheet::openFolder);
    connect(m_ui->templateCancelButton, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_ui->templateButton, &QPushButton::clicked, this, &QDialog::accept);
    connect(this, &QDialog::accepted, this, [this] {
        if (const QListWidgetItem* const item = m_ui->templateList->currentItem())
            emit confirmed({pathOf(item->data(Qt::UserRole).toString()),
                            m_ui->templateFilesBox->isChecked() ? m_folder() : fs::path()});
    });
    connect(m_ui->templateList, &QListWidget::currentItemChanged, this, &TemplateSheet::countFiles);
}

TemplateSheet::~TemplateSheet()
{
    if (m_counting)
        m_counting->cancel();
}

fs::path TemplateSheet::usualFolder()
{
    return pathOf(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)) / "luma" /
           "templates";
}

void TemplateSheet::begin()
{
    const QDir folder(textOf(m_folder()));
    const QStringList names =
        folder.entryList({QStringLiteral("*.html"), QStringLiteral("*.htm"), QStringLiteral("*.xhtml")},
                         QDir::Files, QDir::LocaleAware);
    m_ui->templateList->clear();
    for (const QString& name : names) {
        const QString path = folder.filePath(name);
        const QString summary = summaryOf(path);
        const QString shown = QFileInfo(name).completeBaseName().simplified();
        auto* const item = new QListWidgetItem(shown + u'\n' + summary, m_ui->templateList);
        item->setData(Qt::UserRole, path);
        item->setData(Qt::AccessibleTextRole, QString(shown + QStringLiteral(", ") + summary));
        item->setToolTip(name.toHtmlEscaped());
    }
    m_ui->templateList->setCurrentRow(0);
    m_ui->templateList->setVisible(!names.isEmpty());
    m_ui->templateLabel->setVisible(!names.isEmpty());
    m_ui->templateFilesBox->setVisible(!names.isEmpty());
    m_ui->noTemplates->setVisible(names.isEmpty());
    m_ui->templateButton->setEnabled(!names.isEmpty());
    open();
    (names.isEmpty() ? static_cast<QWidget*>(m_ui->templateFolderButton) : m_ui->templateList)->setFocus();
}

// How many files come along, as soon as it is known.
void TemplateSheet::countFiles()
{
    if (m_counting)
        m_counting->cancel();
    const QListWidgetItem* const item = m_ui->templateList->currentItem();
    tellFiles(0);
    if (!item)
        return;
    m_counting = std::make_shared<WorkItem>();
    const PageTemplate from{pathOf(item->data(Qt::UserRole).toString()), m_folder()};
    start(m_counting, [self = QPointer(this), from](const WorkItem& counting) {
        const auto files = filesOfTemplate(from);
        onMain(self, [&](TemplateSheet& sheet) {
            if (files && !counting.isCancelled())
                sheet.tellFiles(files->size());
        });
    });
}

void TemplateSheet::tellFiles(std::size_t count)
{
    m_ui->templateFilesBox->setEnabled(count > 0);
    const QString text = tr("&Copy the files that it uses into the site");
    m_ui->templateFilesBox->setText(count > 0 ? text + QStringLiteral(" (%1)").arg(count) : text);
}

void TemplateSheet::openFolder()
{
    QDir().mkpath(textOf(m_folder()));
    QDesktopServices::openUrl(QUrl::fromLocalFile(textOf(m_folder())));
}

} // namespace luma
