// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/itemproperties.h"

#include "base/folderreader.h"
#include "base/mainhop.h"
#include "base/pathtext.h"
#include "browser/countedtext.h"
#include "browser/displaytext.h"

#include <QDateTime>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <QMimeDatabase>
#include <QPointer>

#include <sys/stat.h>

namespace luma {

namespace fs = std::filesystem;

namespace {

struct Contents
{
    std::size_t files = 0;
    std::size_t folders = 0;
    std::uintmax_t bytes = 0;
};

// The item, and all below it that can be read.
void add(const std::string& item, Contents& contents, const WorkItem& work)
{
    struct stat status = {};
    if (work.isCancelled() || isMainHopClosed() || ::lstat(item.c_str(), &status) != 0)
        return;
    if (!S_ISDIR(status.st_mode)) {
        ++contents.files;
        contents.bytes += S_ISREG(status.st_mode) ? static_cast<std::uintmax_t>(status.st_size) : 0;
        return;
    }
    ++contents.folders;
    if (auto folder = FolderReader::open(item)) {
        while (const auto entry = folder->next())
            add(item + '/' + entry->name(), contents, work);
    }
}

QString permissions(mode_t mode)
{
    QString text;
    for (int shift = 6; shift >= 0; shift -= 3) {
        const unsigned bits = (mode >> shift) & 7U;
        text += QLatin1Char((bits & 4U) ? 'r' : '-');
        text += QLatin1Char((bits & 2U) ? 'w' : '-');
        text += QLatin1Char((bits & 1U) ? 'x' : '-');
        text += u' ';
    }
    return text + QStringLiteral("(%1)").arg(mode & 07777U, 3, 8, QLatin1Char('0'));
}

} // namespace

ItemProperties::ItemProperties(const std::vector<fs::path>& items, QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("itemProperties"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Properties"));
    setMinimumWidth(360);
    auto* const form = new QFormLayout;
    if (items.size() == 1)
        showItem(*form, items.front());
    else
        addRow(*form, "propertyItems", tr("Items"),
               QLocale().toString(static_cast<qulonglong>(items.size())));
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* const all = new QVBoxLayout(this);
    all->addLayout(form);
    all->addStretch();
    all->addWidget(buttons);
    std::error_code error;
    if (items.size() > 1 || fs::is_directory(fs::symlink_status(items.front(), error))) {
        addRow(*form, "propertyContents", tr("Contents"), tr("Counting..."));
        m_contents = findChild<QLabel*>(QStringLiteral("propertyContents"));
        count(items);
    }
}

ItemProperties::~ItemProperties()
{
    if (m_count)
        m_count->cancel();
}

void ItemProperties::addRow(QFormLayout& form, const char* name, const QString& title, const QString& text)
{
    auto* const label = new QLabel(text, this);
    label->setObjectName(QLatin1StringView(name));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    form.addRow(title, label);
}

void ItemProperties::showItem(QFormLayout& form, const fs::path& item)
{
    struct stat status = {};
    const bool isThere = ::lstat(item.c_str(), &status) == 0;
    addRow(form, "propertyName", tr("Name"), displayText(item.filename().native()));
    addRow(form, "propertyPlace", tr("Folder"), displayText(item.parent_path().native()));
    if (!isThere) {
        addRow(form, "propertyKind", tr("Kind"), tr("No longer there"));
        return;
    }
    const bool isLink = S_ISLNK(status.st_mode);
    addRow(form, "propertyKind", tr("Kind"),
           isLink ? tr("Symbolic link") : QMimeDatabase().mimeTypeForFile(textOf(item)).comment());
    std::error_code error;
    if (isLink)
        addRow(form, "propertyTarget", tr("Leads to"), displayText(fs::read_symlink(item, error).native()));
    const QLocale locale;
    if (S_ISREG(status.st_mode))
        addRow(form, "propertySize", tr("Size"),
               tr("%1 (%2 bytes)")
                   .arg(locale.formattedDataSize(status.st_size), locale.toString(status.st_size)));
    addRow(form, "propertyTime", tr("Changed"),
           locale.toString(QDateTime::fromSecsSinceEpoch(status.st_mtime), QLocale::LongFormat));
    addRow(form, "propertyMode", tr("Permissions"), permissions(status.st_mode));
}

void ItemProperties::count(const std::vector<fs::path>& items)
{
    m_count = std::make_shared<WorkItem>();
    const QPointer<ItemProperties> guard(this);
    start(m_count, [guard, items](const WorkItem& work) {
        Contents contents;
        for (const fs::path& item : items)
            add(item.native(), contents, work);
        if (items.size() == 1 && contents.folders > 0)
            --contents.folders; // the folder itself
        onMain(guard, [&](ItemProperties& self) {
            const QLocale locale;
            self.m_contents->setText(counted(contents.files, tr("file"), tr("files")) + QLatin1String(", ") +
                                     counted(contents.folders, tr("folder"), tr("folders")) +
                                     QLatin1String(", ") +
                                     locale.formattedDataSize(static_cast<qint64>(contents.bytes)));
        });
    });
}

} // namespace luma
